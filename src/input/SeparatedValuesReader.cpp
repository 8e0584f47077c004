// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SeparatedValuesReader.h"

#include "ColumnNames.h"
#include "DecimalText.h"
#include "PlainTable.h"

#include <algorithm>
#include <optional>

namespace
{

// A header stands among the first lines, and is no longer than this.
constexpr int headerLines = 100;
constexpr std::uint32_t longestHeader = 1U << 18;

constexpr Separation separations[] = {Separation::tab, Separation::semicolon, Separation::comma, Separation::blanks};
constexpr char separatorOf[] = {' ', '\t', ';', ','};

/// Walks through rows. A row goes on over a line break that stands in quotes.
class Records
{
public:
    Records(std::string_view records, Separation separation, TextLine start)
        : text(records), lines(records, start), separator(separatorOf[static_cast<std::size_t>(separation)])
    {
    }

    bool next(TextLine& record)
    {
        if (!lines.next(record))
            return false;
        if (text.substr(record.offset, record.length).find('"') == std::string_view::npos)
            return true;
        std::size_t i = record.offset;
        bool isStart = true;
        while (i < record.offset + record.length) {
            if (text[i] == '"' && isStart && canSpan) {
                i += skipQuoted(record, i);
                isStart = false;
                continue;
            }
            isStart = text[i] == separator || (isStart && blankLength(text.substr(i)) > 0);
            ++i;
        }
        return true;
    }

private:
    // Lengthens the record up to the line where the quoted text ends.
    std::size_t skipQuoted(TextLine& record, std::size_t quote)
    {
        std::size_t const length = quotedLength(text.substr(quote));
        if (length == 0) {
            // A quote that is never closed is looked for once.
            canSpan = false;
            return 1;
        }
        for (TextLine line; quote + length > record.offset + record.length && lines.next(line);)
            record.length = line.offset + line.length - record.offset;
        return length;
    }

    std::string_view text;
    TextLines lines;
    char separator;
    bool canSpan = true;
};

std::vector<Field> fieldsOf(TableFile const& file, TextLine const& line, Separation separation)
{
    std::vector<Field> fields;
    RowCells cells(file.textOf(line), separation);
    for (Cell cell; cells.next(cell);)
        fields.push_back({cell.content(), static_cast<std::uint32_t>(cell.text.data() - file.text.data())});
    while (!fields.empty() && fields.back().name.empty())
        fields.pop_back();
    return fields;
}

struct Header
{
    TextLine line;
    Separation separation = Separation::blanks;
    std::vector<Field> fields;
    int rank = 0; // 2 with device values, 1 with other colours
    bool isMissing = false;
};

std::optional<Header> findHeader(TableFile const& file, Separation separation)
{
    std::optional<Header> best;
    Records records(file.text, separation, {0, 0, 1});
    TextLine line;
    for (int i = 0; i < headerLines && records.next(line); ++i) {
        if (line.length > longestHeader)
            continue;
        std::vector<Field> fields = fieldsOf(file, line, separation);
        if (fields.size() < 3 || fields.size() > DataTable::largestFieldCount)
            continue;
        ColumnNames const names(fields);
        int const rank = names.hasDeviceValues() ? 2 : names.isColorTable() ? 1 : 0;
        if (rank > (best ? best->rank : 0))
            best = Header{line, separation, std::move(fields), rank, false};
        if (rank == 2)
            break;
    }
    return best;
}

std::vector<TextLine> firstRows(TableFile const& file, Header const& header)
{
    std::vector<TextLine> rows;
    Records records(file.text, header.separation, header.line);
    TextLine row;
    if (!header.isMissing)
        records.next(row);
    while (rows.size() < sampleSize && records.next(row))
        if (!trimmed(file.textOf(row)).empty())
            rows.push_back(row);
    return rows;
}

// The header by the separation that leaves the fewest rows of another length.
std::optional<Header> chooseHeader(TableFile const& file)
{
    std::optional<Header> best;
    std::size_t fewest = 0;
    for (Separation const separation : separations) {
        auto header = findHeader(file, separation);
        if (!header)
            continue;
        std::size_t const misfits = countMisfits(file, firstRows(file, *header), separation, header->fields.size());
        if (best && (header->rank < best->rank || (header->rank == best->rank && misfits >= fewest)))
            continue;
        fewest = misfits;
        best = std::move(header);
    }
    return best;
}

std::optional<TextLine> firstLine(TableFile const& file)
{
    TextLines lines(file.text);
    for (TextLine line; lines.next(line);)
        if (!trimmed(file.textOf(line)).empty())
            return line;
    return {};
}

// Whether a line consists of numbers, decimal commas allowed; it then has at least three.
bool isOfNumbers(TableFile const& file, TextLine const& line, Separation separation)
{
    std::size_t count = 0;
    RowCells cells(file.textOf(line), separation);
    for (Cell cell; cells.next(cell); ++count)
        if (parseNumber(cell.text).form == NumberForm::none)
            return false;
    return count >= 3;
}

std::optional<Separation> separationOfNumbers(TableFile const& file, TextLine const& line)
{
    for (Separation const separation : separations)
        if (isOfNumbers(file, line, separation))
            return separation;
    return {};
}

void read(TableFile& file, Header const& header)
{
    DataTable table;
    table.separation = header.separation;
    table.fields = header.fields;
    table.place = {header.line.number, 1};
    Records records(file.text, header.separation, header.line);
    TextLine row;
    if (!header.isMissing)
        records.next(row);
    table.lastLine = header.line.number;
    while (records.next(row))
        if (!trimmed(file.textOf(row)).empty()) {
            takeRow(file, row, table);
            table.lastLine = row.number;
        }
    file.tables.push_back(std::move(table));
}

void readWithoutHeader(TableFile& file, TextLine const& line, ColorSpace space)
{
    auto const separation = separationOfNumbers(file, line);
    if (!separation) {
        file.faults.add({line.number, 1},
                        "the first line is no header of a table but begins with " +
                            excerpt(trimmed(file.textOf(line))) +
                            ": let it name the columns, such as CMYK_C CMYK_M CMYK_Y CMYK_K or RGB_R RGB_G RGB_B");
        return;
    }
    if (space == undefined) {
        file.faults.add({line.number, 1},
                        "the first line holds numbers and no names of columns: begin with a line such "
                        "as RGB_R RGB_G RGB_B, or say --space CMYK or --space RGB");
        return;
    }
    Header header{line, *separation, {}, 0, true};
    for (std::string& name : plainColumnNames(space))
        header.fields.push_back({std::move(name), line.offset});
    file.notes.push_back("without a header line; the columns are taken as " + std::string(colorspace_names[space]));
    read(file, header);
}

} // namespace

void readSeparatedValues(TableFile& file, ColorSpace space)
{
    file.kind = TableKind::separatedValues;
    auto const first = firstLine(file);
    if (!first) {
        file.faults.add({}, "is empty: a table has a line that names the columns, and a line for each patch");
        return;
    }
    auto const header = chooseHeader(file);
    if (!header) {
        readWithoutHeader(file, *first, space);
        return;
    }
    if (header->line.number > first->number)
        file.notes.push_back("the lines above the header in line " + std::to_string(header->line.number) +
                             " are left out");
    read(file, *header);
}
