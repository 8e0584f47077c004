// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "RowCells.h"
#include "TableMessages.h"
#include "TextDecoding.h"
#include "TextLines.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// A named column of a table. A column without a name has an empty one.
struct Field
{
    std::string name;
    std::uint32_t offset = 0; // where the name stands, bytes from the start of the text
};

/// A line before the rows that says something about a table: ORIGINATOR "Test press".
struct Keyword
{
    std::string name;
    std::string value; // without quotes and comment
    std::uint32_t line = 0;
};

/// A table of a file: named columns, and rows of cells that are not interpreted in any way.
struct DataTable
{
    /// How many columns a table may have.
    static constexpr std::size_t largestFieldCount = 20'000;

    std::string identifier; // first word of the file or table, such as CGATS.17; can be empty
    std::vector<Keyword> keywords;
    std::vector<Field> fields;
    Separation separation = Separation::blanks;
    std::vector<TextLine> rows; // rows with as many cells as there are fields; empty cells past the fields are allowed
    std::size_t unreadRows = 0; // other rows; each is a fault
    TextPlace place;            // where the table begins
    std::uint32_t lastLine = 0; // where it ends
    TableMessages faults;
    TableMessages warnings;

    /// The first keyword of that name in any case; null where there is none.
    Keyword const* findKeyword(std::string_view name) const;
};

/// What a file of tables is written in.
enum class TableKind { plain, cgats, separatedValues, targetDescription, cxf };

/// "a plain table", "CGATS", "separated values", "a target description", "CxF3"
std::string_view nameOf(TableKind kind);

/// Where a cell that a reader has put behind the text of its file comes from. Bytes from the start of the text.
struct CellOrigin
{
    std::uint32_t cell = 0;
    std::uint32_t source = 0; // in the row's line, or after it
};

/// The tables of a file, with the text that they point into.
struct TableFile
{
    std::string text;
    TextEncoding encoding = TextEncoding::utf8;
    TableKind kind = TableKind::plain;
    std::vector<DataTable> tables;
    std::vector<CellOrigin> origins; // in order; empty where rows stand in the file as they are read
    TableMessages faults;            // why there are no tables
    std::vector<std::string> notes;

    std::string_view textOf(TextLine const& line) const
    {
        return std::string_view(text).substr(line.offset, line.length);
    }

    /// Replaces `cells` by the cells of a row of one of the tables, one for each field.
    void split(DataTable const& table, TextLine const& row, std::vector<Cell>& cells) const
    {
        splitRow(textOf(row), table.separation, table.fields.size(), cells);
    }

    /// The place of a text that is part of this file's, in a row or after it.
    TextPlace placeOf(std::string_view part, TextLine const& row) const;
};

/// Adds a row to a table if it has as many cells as the table has fields; else it becomes a fault of the table.
///
/// \param row  not an empty line
void takeRow(TableFile const& file, TextLine const& row, DataTable& table);

/// The separation that a table's first rows are told by: a thousand of them are enough.
constexpr std::size_t sampleSize = 1000;

/// How many rows have another number of cells than there are fields.
std::size_t countMisfits(TableFile const& file, std::vector<TextLine> const& rows, Separation separation,
                         std::size_t fieldCount);

/// Whether two words are the same but for the case of ASCII letters.
bool isSameWord(std::string_view a, std::string_view b);
