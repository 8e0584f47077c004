// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/OvString.h"

#include <filesystem>
#include <string_view>

/// A new folder for one test. It is removed with its contents when the object dies.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;

    std::filesystem::path const& path() const { return folder; }

    /// The folder with an ending slash.
    String pathWithSlash() const;

    /// The path of a file in the folder. The file need not exist.
    String pathOf(std::string_view name) const;

    /// Writes a file, including NULs, and returns its path.
    String write(std::string_view name, std::string_view contents) const;

private:
    std::filesystem::path folder;
};
