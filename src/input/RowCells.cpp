// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "RowCells.h"

#include "TextLines.h"

namespace
{

constexpr char separatorOf[] = {' ', '\t', ';', ','};

std::string_view skipBlanks(std::string_view text)
{
    while (std::size_t const length = blankLength(text))
        text.remove_prefix(length);
    return text;
}

// Blanks other than the separator.
std::string_view skipBlanks(std::string_view text, char separator)
{
    while (!text.empty() && text[0] != separator && blankLength(text) > 0)
        text.remove_prefix(blankLength(text));
    return text;
}

std::size_t lengthUntilBlank(std::string_view text)
{
    std::size_t length = 0;
    while (length < text.size()) {
        char const c = text[length];
        if (isBlank(c) || (c == '\xC2' && blankLength(text.substr(length)) > 0))
            break;
        ++length;
    }
    return length;
}

} // namespace

std::string_view nameOf(Separation separation)
{
    constexpr std::string_view names[] = {"blanks", "tabs", "semicolons", "commas"};
    return names[static_cast<std::size_t>(separation)];
}

std::string Cell::content() const
{
    std::string content(text);
    if (!isQuoted)
        return content;
    std::size_t length = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"' && text.substr(i + 1, 1) == "\"")
            ++i;
        content[length++] = text[i];
    }
    content.resize(length);
    return content;
}

std::size_t quotedLength(std::string_view text)
{
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] != '"')
            continue;
        if (text.substr(i + 1, 1) != "\"")
            return i + 1;
        ++i;
    }
    return 0;
}

bool RowCells::nextBetweenBlanks(Cell& cell)
{
    rest = skipBlanks(rest);
    if (rest.empty())
        return false;
    if (rest[0] == '"') {
        std::size_t const length = quotedLength(rest);
        if (length > 0 && (length == rest.size() || blankLength(rest.substr(length)) > 0)) {
            cell = {rest.substr(1, length - 2), true};
            rest.remove_prefix(length);
            return true;
        }
    }
    std::size_t const length = lengthUntilBlank(rest);
    cell = {rest.substr(0, length), false};
    rest.remove_prefix(length);
    return true;
}

bool RowCells::nextBetweenSeparators(Cell& cell, char separator)
{
    if (isAtEnd)
        return false;
    std::string_view const start = skipBlanks(rest, separator);
    std::size_t length = start.starts_with('"') ? quotedLength(start) : 0;
    if (length > 0) {
        std::string_view const after = skipBlanks(start.substr(length), separator);
        if (after.empty() || after[0] == separator) {
            cell = {start.substr(1, length - 2), true};
            isAtEnd = after.empty();
            rest = after.substr(isAtEnd ? 0 : 1);
            return true;
        }
    }
    length = start.find(separator);
    isAtEnd = length == std::string_view::npos;
    cell = {trimmed(start.substr(0, length)), false};
    rest = isAtEnd ? std::string_view() : start.substr(length + 1);
    return true;
}

bool RowCells::next(Cell& cell)
{
    if (separation == Separation::blanks)
        return nextBetweenBlanks(cell);
    return nextBetweenSeparators(cell, separatorOf[static_cast<std::size_t>(separation)]);
}

CellCount countCells(std::string_view row, Separation separation)
{
    CellCount count;
    RowCells cells(row, separation);
    for (Cell cell; cells.next(cell);) {
        ++count.all;
        if (!cell.text.empty() || cell.isQuoted)
            count.withoutEmptyEnd = count.all;
    }
    return count;
}

void splitRow(std::string_view row, Separation separation, std::size_t most, std::vector<Cell>& cells)
{
    cells.clear();
    RowCells source(row, separation);
    for (Cell cell; cells.size() < most && source.next(cell);)
        cells.push_back(cell);
}
