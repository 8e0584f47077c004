// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Fuzzing.h"
#include "TableReader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Ends the program with a finding unless a text is one line without control characters.
inline void requireLine(std::string_view text)
{
    require(!text.empty(), "a message has a text");
    require(std::none_of(text.begin(), text.end(), [](char c) { return isBlank(c) && c != ' '; }),
            "a message is one line");
    require(decodeText(std::string(text)).encoding == TextEncoding::utf8, "a message is UTF-8");
}

inline void requireMessages(TableMessages const& messages)
{
    require(messages.kept().size() == std::min(messages.total(), TableMessages::limit),
            "messages are kept up to a limit");
    for (TableMessage const& message : messages.kept())
        requireLine(message.text);
}

/// Ends the program with a finding unless the tables of a file hold what a reader promises.
inline void requireTables(TableFile const& file)
{
    requireMessages(file.faults);
    require(file.faults.isEmpty() == !file.tables.empty(), "a file has tables or faults");
    std::vector<Cell> cells;
    for (DataTable const& table : file.tables) {
        requireMessages(table.faults);
        requireMessages(table.warnings);
        require(table.fields.size() <= DataTable::largestFieldCount, "a table has a bounded number of columns");
        for (Field const& field : table.fields)
            require(field.offset <= file.text.size(), "a field stands in the text");
        for (TextLine const& row : table.rows) {
            file.split(table, row, cells);
            require(cells.size() == table.fields.size(), "a row has a cell for each field");
        }
    }
}

/// A file with a text of its own, for a reader to read.
inline TableFile fileOf(std::uint8_t const* data, std::size_t size)
{
    TableFile file;
    file.text = decodeText({reinterpret_cast<char const*>(data), size}).text;
    return file;
}
