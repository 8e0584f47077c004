// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any bytes as a file of the CGATS family.

#include "CgatsReader.h"
#include "TableProperties.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    TableFile file = fileOf(data, size);
    readCgats(file, {0, 0, 1}, file.text.size());
    requireTables(file);
    return 0;
}
