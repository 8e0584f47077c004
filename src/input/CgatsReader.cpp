// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CgatsReader.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

// Why not the colour library's reader, tried in version 2.14: it reads a stream of words, so that the sample number of
// the next row becomes the black of a row with an empty cell, without an error. It glues words such as 3A or 0,5 to the
// word before. It writes numbers and names anew: 1.10 becomes 1.1. It refuses a missing or wrong count, a byte order
// mark, and more than 32,766 rows. It opens any file that the table tells it to include, and 256 tables crash it.

namespace
{

constexpr std::size_t largestTableCount = 1000;
constexpr std::size_t largestFieldTotal = 200'000;
constexpr std::size_t largestKeywordCount = 10'000;

enum class Marker { none, beginFormat, endFormat, beginData, endData };

constexpr std::pair<std::string_view, Marker> markers[] = {{"BEGIN_DATA_FORMAT", Marker::beginFormat},
                                                           {"END_DATA_FORMAT", Marker::endFormat},
                                                           {"BEGIN_DATA", Marker::beginData},
                                                           {"END_DATA", Marker::endData}};

constexpr std::string_view identifierStarts[] = {"CGATS.", "IT8.", "ISO28178", "IS12642", "ECI2002"};
constexpr std::string_view identifiers[] = {"CGATS", "CTI1", "CTI2", "CTI3", "CAL", "SPECT"};

bool isSeparator(char c)
{
    return isBlank(c) || c == ',' || c == ';' || c == '"';
}

std::string_view firstWord(std::string_view line)
{
    while (!line.empty() && isSeparator(line[0]))
        line.remove_prefix(1);
    return line.substr(0, static_cast<std::size_t>(std::find_if(line.begin(), line.end(), isSeparator) - line.begin()));
}

// What follows a marker on its line; empty where only separators do.
std::string_view behind(std::string_view line, std::string_view word)
{
    std::string_view const rest = line.substr(static_cast<std::size_t>(word.data() + word.size() - line.data()));
    return std::all_of(rest.begin(), rest.end(), isSeparator) ? std::string_view() : rest;
}

Marker markerOf(std::string_view word)
{
    if (word.size() < 8)
        return Marker::none;
    for (auto const& [name, marker] : markers)
        if (isSameWord(word, name))
            return marker;
    return Marker::none;
}

bool isIdentifier(std::string_view word)
{
    auto const isSame = [&](std::string_view identifier) { return isSameWord(word, identifier); };
    auto const isStart = [&](std::string_view start) { return isSameWord(word.substr(0, start.size()), start); };
    return std::any_of(std::begin(identifiers), std::end(identifiers), isSame) ||
           std::any_of(std::begin(identifierStarts), std::end(identifierStarts), isStart);
}

// A line up to a # that follows a blank and does not stand in quotes.
std::string_view withoutComment(std::string_view line)
{
    if (line.find('#') == std::string_view::npos)
        return line;
    for (std::size_t i = 0; i < line.size(); ++i) {
        bool const isFirst = i == 0 || isBlank(line[i - 1]);
        if (line[i] == '#' && isFirst)
            return line.substr(0, i);
        if (line[i] == '"' && isFirst)
            if (std::size_t const length = quotedLength(line.substr(i)))
                i += length - 1;
    }
    return line;
}

// A spreadsheet that saves with commas adds some to every line.
std::string_view withoutSeparators(std::string_view text)
{
    std::size_t const first = text.find_first_not_of(" \t,;");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t,;") + 1 - first);
}

std::string_view withoutQuotes(std::string_view text)
{
    if (text.size() < 2 || text.front() != '"' || text.back() != '"')
        return text;
    return text.substr(1, text.size() - 2);
}

class CgatsReader
{
public:
    CgatsReader(TableFile& target, TextLine start, std::size_t end)
        : file(target), lines(std::string_view(file.text).substr(0, end), start)
    {
    }

    void read();

private:
    void readLine(TextLine const& line);
    void readHeaderLine(TextLine const& line, std::string_view word);
    void addKeyword(TextLine const& line);
    void addFields(std::string_view names);
    void inheritFields();
    void beginFormat();
    void beginData(TextLine const& line, std::string_view word);
    void addRow(TextLine const& line);
    void endData(std::uint32_t lastLine);
    void chooseSeparation();
    void compareCount(char const* keyword, std::size_t count, char const* noun);
    TextLine part(TextLine const& line, std::string_view text) const;
    TextLine rowOf(TextLine const& line, Separation separation) const;

    enum class State { header, format, data };

    TableFile& file;
    TextLines lines;
    State state = State::header;
    DataTable table;
    bool hasFormat = false;
    Separation formatSeparation = Separation::blanks;
    std::vector<TextLine> sample; // the first rows, until the separation is chosen
    bool isChosen = false;
    std::size_t fieldTotal = 0; // of all tables
    bool isTooMany = false;
    std::uint32_t lastLine = 0;
};

TextLine CgatsReader::part(TextLine const& line, std::string_view text) const
{
    return {static_cast<std::uint32_t>(text.data() - file.text.data()), static_cast<std::uint32_t>(text.size()),
            line.number};
}

// Spreadsheets put a whole line into quotes, and double those within: "ORIGINATOR  ""Committee X""".
void CgatsReader::addKeyword(TextLine const& line)
{
    if (table.keywords.size() >= largestKeywordCount)
        return;
    std::string_view text = trimmed(withoutComment(file.textOf(line)));
    std::string unquoted;
    if (text.starts_with('"') && quotedLength(text) == text.size()) {
        unquoted = Cell{text.substr(1, text.size() - 2), true}.content();
        if (unquoted.find('"') != std::string::npos)
            table.warnings.add({line.number, 1},
                               "a spreadsheet has put this line into quotes and doubled those within: "
                               "read without; make sure that it changed nothing else");
        text = unquoted;
    }
    std::string_view const name = firstWord(text);
    if (name.empty())
        return;
    std::string_view const value = text.substr(static_cast<std::size_t>(name.data() + name.size() - text.data()));
    table.keywords.push_back({std::string(name), std::string(withoutQuotes(withoutSeparators(value))), line.number});
}

// Adds the names on a line, and ends the format where its end stands on the same line.
void CgatsReader::addFields(std::string_view names)
{
    if (names.empty())
        return;
    if (names.find('\t') != std::string_view::npos)
        formatSeparation = Separation::tab;
    else if (names.find(';') != std::string_view::npos)
        formatSeparation = Separation::semicolon;
    else if (names.find(',') != std::string_view::npos)
        formatSeparation = Separation::comma;
    RowCells cells(names, formatSeparation);
    for (Cell cell; cells.next(cell) && table.fields.size() <= DataTable::largestFieldCount;) {
        if (markerOf(cell.text) == Marker::endFormat) {
            state = State::header;
            break;
        }
        table.fields.push_back({cell.content(), static_cast<std::uint32_t>(cell.text.data() - file.text.data())});
    }
    while (!table.fields.empty() && table.fields.back().name.empty())
        table.fields.pop_back();
}

void CgatsReader::beginFormat()
{
    state = State::format;
    hasFormat = true;
    formatSeparation = Separation::blanks;
    table.fields.clear();
}

void CgatsReader::inheritFields()
{
    if (hasFormat || file.tables.empty())
        return;
    table.fields = file.tables.back().fields;
    formatSeparation = file.tables.back().separation;
    if (table.identifier.empty())
        table.identifier = file.tables.back().identifier;
}

void CgatsReader::beginData(TextLine const& line, std::string_view word)
{
    inheritFields();
    state = State::data;
    isChosen = false;
    sample.clear();
    table.place = file.placeOf(word, line);
    std::string_view const rest = behind(file.textOf(line), word);
    if (!rest.empty())
        addRow(part(line, rest));
}

// Rows of a spreadsheet are parted by single tabs, those of the standard by blanks of any kind. Both are tried.
void CgatsReader::chooseSeparation()
{
    isChosen = true;
    bool const hasTabbedRows = std::any_of(sample.begin(), sample.end(), [&](TextLine const& row) {
        return file.textOf(row).find('\t') != std::string_view::npos;
    });
    std::vector<Separation> candidates;
    if (formatSeparation != Separation::blanks)
        candidates.push_back(formatSeparation);
    candidates.push_back(Separation::blanks);
    if (hasTabbedRows && formatSeparation != Separation::tab)
        candidates.push_back(Separation::tab);

    std::vector<Field> const named = table.fields;
    std::size_t fewest = sample.size() + 1;
    for (Separation const candidate : candidates) {
        std::vector<Field> fields = named;
        std::vector<TextLine> rows = sample;
        // A nameless column is a place between two tabs, and nothing between blanks.
        if (candidate == Separation::blanks)
            std::erase_if(fields, [](Field const& field) { return field.name.empty(); });
        for (TextLine& row : rows)
            row = rowOf(row, candidate);
        std::size_t const misfits = countMisfits(file, rows, candidate, fields.size());
        if (misfits >= fewest)
            continue;
        fewest = misfits;
        table.separation = candidate;
        table.fields = std::move(fields);
        if (misfits == 0)
            break;
    }
    for (TextLine const& row : sample)
        addRow(row);
    sample.clear();
}

void CgatsReader::addRow(TextLine const& line)
{
    if (table.fields.empty()) {
        ++table.unreadRows;
        return;
    }
    if (!isChosen) {
        sample.push_back(line);
        if (sample.size() == sampleSize)
            chooseSeparation();
        return;
    }
    takeRow(file, rowOf(line, table.separation), table);
}

// A # after a tab begins a cell, and only after a blank a comment.
TextLine CgatsReader::rowOf(TextLine const& line, Separation separation) const
{
    return separation == Separation::blanks ? part(line, withoutComment(file.textOf(line))) : line;
}

void CgatsReader::compareCount(char const* keyword, std::size_t count, char const* noun)
{
    Keyword const* const declared = table.findKeyword(keyword);
    if (declared == nullptr)
        return;
    std::string const& value = declared->value;
    std::size_t number = 0;
    auto const [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    bool const isNumber = error == std::errc() && end == value.data() + value.size();
    if (isNumber && number == count)
        return;
    table.warnings.add({declared->line, 0}, std::string(keyword) + " says " + excerpt(value) + ", but the table has " +
                                                counted(count, noun) + "; make sure that nothing is missing");
}

void CgatsReader::endData(std::uint32_t line)
{
    if (!isChosen)
        chooseSeparation();
    table.lastLine = line;
    auto const namedFields = static_cast<std::size_t>(std::count_if(
        table.fields.begin(), table.fields.end(), [](Field const& field) { return !field.name.empty(); }));
    compareCount("NUMBER_OF_FIELDS", namedFields, "field");
    compareCount("NUMBER_OF_SETS", table.rows.size() + table.unreadRows, "row");
    fieldTotal += table.fields.size();
    if (file.tables.size() < largestTableCount && fieldTotal <= largestFieldTotal)
        file.tables.push_back(std::move(table));
    else
        isTooMany = true;
    table = {};
    state = State::header;
    hasFormat = false;
}

void CgatsReader::readHeaderLine(TextLine const& line, std::string_view word)
{
    bool const isFirst = table.identifier.empty() && table.keywords.empty();
    std::string_view const text = trimmed(file.textOf(line));
    if (isIdentifier(word) || (isFirst && file.tables.empty() && text.find_first_of(" \t") == std::string_view::npos))
        table.identifier = word;
    else
        addKeyword(line);
}

void CgatsReader::readLine(TextLine const& line)
{
    std::string_view const text = file.textOf(line);
    std::string_view const word = firstWord(text);
    if (word.empty() && state != State::data)
        return;
    if (trimmed(text).starts_with('#'))
        return;
    Marker const marker = markerOf(word);
    if (state == State::data) {
        if (marker == Marker::none || marker == Marker::endFormat) {
            if (!trimmed(text).empty())
                addRow(line);
            return;
        }
        if (marker != Marker::endData)
            table.warnings.add({line.number, 1}, "END_DATA is missing before this line; make sure that no row is");
        endData(line.number);
    }
    switch (marker) {
    case Marker::beginFormat:
        beginFormat();
        addFields(behind(text, word));
        break;
    case Marker::endFormat:
    case Marker::endData:
        state = State::header;
        break;
    case Marker::beginData:
        beginData(line, word);
        break;
    case Marker::none:
        bool const isCount = isSameWord(word, "NUMBER_OF_SETS") || isSameWord(word, "NUMBER_OF_FIELDS");
        if (state == State::format && !isCount) {
            addFields(withoutComment(text));
        } else {
            state = State::header;
            readHeaderLine(line, word);
        }
        break;
    }
}

void CgatsReader::read()
{
    for (TextLine line; lines.next(line) && !isTooMany;) {
        readLine(line);
        lastLine = line.number;
        if (table.fields.size() > DataTable::largestFieldCount) {
            file.faults.add({line.number, 0},
                            "a table with more than 20000 columns; a table of patches has a few dozen");
            file.tables.clear();
            return;
        }
    }
    if (state == State::data) {
        table.warnings.add({lastLine, 0}, "END_DATA is missing at the end of the file; make sure that no row is");
        endData(lastLine);
    }
    if (isTooMany) {
        file.faults.add({lastLine, 0},
                        "too many tables, or columns in them: keep the table with the patches and remove the others");
        file.tables.clear();
    } else if (file.tables.empty()) {
        file.faults.add({lastLine, 0}, "the file ends without BEGIN_DATA; make sure that it is whole");
    }
}

} // namespace

bool isCgats(std::string_view text)
{
    TextLines lines(text);
    for (TextLine line; lines.next(line);) {
        Marker const marker = markerOf(firstWord(text.substr(line.offset, line.length)));
        if (marker == Marker::beginData || marker == Marker::beginFormat)
            return true;
    }
    return false;
}

void readCgats(TableFile& file, TextLine start, std::size_t end)
{
    CgatsReader(file, start, end).read();
}
