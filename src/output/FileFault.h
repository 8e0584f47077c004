// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/OvString.h"

#include <optional>

/// A file that could not be written whole.
struct FileFault
{
    String path;
    int error; ///< the system's error number
};

/// Closes a file's writer.
///
/// \return the fault, if something that was written did not reach the disk
template <typename Writer>
std::optional<FileFault> closeFile(Writer& file, String const& path)
{
    file.Close();
    return file.hasFailed() ? std::optional(FileFault{path, file.getError()}) : std::nullopt;
}
