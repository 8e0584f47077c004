// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any bytes as a plain table.

#include "PlainTable.h"
#include "TableProperties.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    TableFile file = fileOf(data, size);
    if (!isPlainTable(file.text))
        return 0;
    readPlainTable(file);
    requireTables(file);
    require(file.tables[0].fields.size() == 3 || file.tables[0].fields.size() == 4, "a plain table is CMYK or RGB");
    return 0;
}
