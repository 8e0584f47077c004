// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any bytes as a CxF document.

#include "CxfReader.h"
#include "PatchImport.h"
#include "TableProperties.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    TableFile file = fileOf(data, size);
    readCxf(file);
    requireTables(file);
    for (DataTable const& table : file.tables) {
        std::vector<Cell> cells;
        for (TextLine const& row : table.rows) {
            file.split(table, row, cells);
            for (Cell const& cell : cells)
                require(file.placeOf(cell.text, row).line >= row.number, "a value stands in its object");
        }
    }
    for (ColorSpace const space : {undefined, CMYK, RGB}) {
        ImportOptions options;
        options.space = space;
        TableImport const table = importTable({reinterpret_cast<char const*>(data), size}, options);
        requireMessages(table.faults);
        requireMessages(table.warnings);
    }
    return 0;
}
