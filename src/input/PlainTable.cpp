// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PlainTable.h"

#include "ColumnNames.h"

#include <optional>

namespace
{

bool findHeader(TextLines& lines, std::string_view text, TextLine& header)
{
    while (lines.next(header))
        if (!trimmed(text.substr(header.offset, header.length)).empty())
            return true;
    return false;
}

ColorSpace colorSpaceOf(std::string_view header)
{
    RowCells cells(header, Separation::blanks);
    Cell first;
    if (!cells.next(first))
        return undefined;
    std::string_view const prefix = first.text.substr(0, first.text.find('_'));
    for (ColorSpace const space : {CMYK, RGB})
        if (prefix == colorspace_names[space] && !first.isQuoted)
            return space;
    return undefined;
}

// How the header of a plain table names the columns. Its words may be any.
enum class HeaderNames { inOrder, reordered, amongOthers };

HeaderNames namesOf(std::string_view header, ColorSpace space)
{
    std::vector<Field> fields;
    RowCells cells(header, Separation::blanks);
    for (Cell cell; cells.next(cell) && fields.size() <= DataTable::largestFieldCount;)
        fields.push_back({cell.content(), 0});
    ColumnNames const names(fields);
    auto const& device = space == CMYK ? names.cmyk : names.rgb;
    if (!device)
        return HeaderNames::inOrder;
    std::size_t const count = plainColumnNames(space).size();
    if (fields.size() != count)
        return HeaderNames::amongOthers;
    for (std::size_t i = 0; i < count; ++i)
        if (device->columns[i] != i)
            return HeaderNames::reordered;
    return HeaderNames::inOrder;
}

// What the header is; nothing where the window would not open the table.
std::optional<HeaderNames> plainHeaderOf(std::string_view text)
{
    TextLines lines(text);
    TextLine line;
    if (!findHeader(lines, text, line))
        return {};
    std::string_view const header = text.substr(line.offset, line.length);
    ColorSpace const space = colorSpaceOf(header);
    if (space == undefined || header.find_first_of(",;") != std::string_view::npos)
        return {};
    return namesOf(header, space);
}

} // namespace

std::vector<std::string> plainColumnNames(ColorSpace space)
{
    if (space == CMYK)
        return {"CMYK_C", "CMYK_M", "CMYK_Y", "CMYK_K"};
    if (space == RGB)
        return {"RGB_R", "RGB_G", "RGB_B"};
    return {};
}

bool isPlainTable(std::string_view text)
{
    return plainHeaderOf(text) == HeaderNames::inOrder;
}

bool hasReorderedPlainHeader(std::string_view text)
{
    return plainHeaderOf(text) == HeaderNames::reordered;
}

void readPlainTable(TableFile& file)
{
    file.kind = TableKind::plain;
    TextLines lines(file.text);
    TextLine line;
    findHeader(lines, file.text, line);
    DataTable table;
    table.place = {line.number, 1};
    table.lastLine = line.number;
    for (std::string& name : plainColumnNames(colorSpaceOf(file.textOf(line))))
        table.fields.push_back({std::move(name), line.offset});
    while (lines.next(line))
        if (!trimmed(file.textOf(line)).empty()) {
            takeRow(file, line, table);
            table.lastLine = line.number;
        }
    file.tables.push_back(std::move(table));
}
