// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "DataTable.h"

#include <algorithm>
#include <utility>

namespace
{

bool fits(CellCount count, std::size_t fieldCount)
{
    return count.all >= fieldCount && count.withoutEmptyEnd <= fieldCount;
}

char lowerCase(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// A row with a cell too many is shown from that cell on, one with too few from its start.
TableMessage misfitOf(TableFile const& file, TextLine const& row, CellCount count, DataTable const& table)
{
    std::string_view found = file.textOf(row);
    std::size_t const fieldCount = table.fields.size();
    std::size_t const cellCount = std::max(count.withoutEmptyEnd, std::min(count.all, fieldCount));
    RowCells cells(found, table.separation);
    std::size_t index = 0;
    for (Cell cell; cells.next(cell); ++index)
        if (index == 0 || index == fieldCount)
            found = cell.text;
    std::string text = counted(cellCount, "value") + " where " + counted(fieldCount, "column") +
                       (fieldCount == 1 ? " is" : " are") + " named; ";
    if (cellCount > fieldCount)
        text += excerpt(found) + " is one too many: remove it, or quote a text that holds " +
                std::string(nameOf(table.separation));
    else
        text += "the row begins with " + excerpt(found) + ": fill in what is missing";
    return {file.placeOf(found, row), text};
}

} // namespace

bool isSameWord(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowerCase(x) == lowerCase(y); });
}

Keyword const* DataTable::findKeyword(std::string_view name) const
{
    auto const found =
        std::find_if(keywords.begin(), keywords.end(), [&](Keyword const& k) { return isSameWord(k.name, name); });
    return found == keywords.end() ? nullptr : &*found;
}

std::string_view nameOf(TableKind kind)
{
    constexpr std::string_view names[] = {"a plain table", "CGATS", "separated values", "a target description", "CxF3"};
    return names[static_cast<std::size_t>(kind)];
}

TextPlace TableFile::placeOf(std::string_view part, TextLine const& row) const
{
    auto const offset = static_cast<std::size_t>(part.data() - text.data());
    if (origins.empty())
        return ::placeOf(text, offset, row);
    auto const sourceOf = [&](std::size_t place) {
        auto const next =
            std::upper_bound(origins.begin(), origins.end(), place,
                             [](std::size_t cell, CellOrigin const& origin) { return cell < origin.cell; });
        return (next == origins.begin() ? next : next - 1)->source;
    };
    std::size_t const lineEnd = text.find_last_of("\r\n", sourceOf(row.offset));
    auto const lineStart = static_cast<std::uint32_t>(lineEnd == std::string::npos ? 0 : lineEnd + 1);
    return ::placeOf(text, sourceOf(offset), {lineStart, 0, row.number});
}

void takeRow(TableFile const& file, TextLine const& row, DataTable& table)
{
    CellCount const count = countCells(file.textOf(row), table.separation);
    if (fits(count, table.fields.size())) {
        table.rows.push_back(row);
        return;
    }
    ++table.unreadRows;
    table.faults.addMade([&] { return misfitOf(file, row, count, table); });
}

std::size_t countMisfits(TableFile const& file, std::vector<TextLine> const& rows, Separation separation,
                         std::size_t fieldCount)
{
    return static_cast<std::size_t>(std::count_if(rows.begin(), rows.end(), [&](TextLine const& row) {
        return !fits(countCells(file.textOf(row), separation), fieldCount);
    }));
}
