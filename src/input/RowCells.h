// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// What stands between the cells of a row.
enum class Separation {
    blanks, // runs of blanks and control characters; texts with blanks are quoted
    tab,    // one tab; cells can be empty and hold blanks
    semicolon,
    comma
};

/// "blanks", "tabs", "semicolons", "commas"
std::string_view nameOf(Separation separation);

/// A cell of a row, without blanks around it and without the quotes that hold it.
struct Cell
{
    std::string_view text;
    bool isQuoted = false;

    /// The cell's text with doubled quotes undone.
    std::string content() const;
};

/// Takes the cells of a row one by one.
///
///     1	"A1"	  95.00	"Say ""red"""        separated by tabs
///     1 "dark skin" 95.00                  separated by blanks
///
/// A separator within quotes separates nothing. A cell whose closing quote is missing, or followed by more text, is
/// taken as it stands, quotes and all.
class RowCells
{
public:
    RowCells(std::string_view row, Separation separatedBy) : rest(row), separation(separatedBy) {}

    /// \return false, and an unchanged cell, at the end of the row
    bool next(Cell& cell);

private:
    bool nextBetweenBlanks(Cell& cell);
    bool nextBetweenSeparators(Cell& cell, char separator);

    std::string_view rest;
    Separation separation;
    bool isAtEnd = false;
};

/// How many cells a row has.
struct CellCount
{
    std::size_t all = 0;
    std::size_t withoutEmptyEnd = 0; // up to the last one that is not empty
};

CellCount countCells(std::string_view row, Separation separation);

/// Replaces the content of `cells` by the first cells of a row, at most `most`.
void splitRow(std::string_view row, Separation separation, std::size_t most, std::vector<Cell>& cells);

/// The bytes of the quoted text at the start of a text, both quotes included; 0 where it is never closed.
std::size_t quotedLength(std::string_view text);
