// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColumnNames.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <map>
#include <system_error>
#include <utility>

namespace
{

// A column's comparable name and its index.
using NamedColumn = std::pair<std::string, std::size_t>;

// Names of one spelling for the columns of a colour space.
struct Spelling
{
    ColorSpace space;
    std::array<std::string_view, 4> names; // the last is empty for RGB
    bool isTelling;                        // one of them alone says that the others are missing
};

constexpr Spelling spellings[] = {
    {CMYK, {"CMYKC", "CMYKM", "CMYKY", "CMYKK"}, true},
    {CMYK, {"CYAN", "MAGENTA", "YELLOW", "BLACK"}, false},
    {CMYK, {"C", "M", "Y", "K"}, false},
    {RGB, {"RGBR", "RGBG", "RGBB", ""}, true},
    {RGB, {"RED", "GREEN", "BLUE", ""}, false},
    {RGB, {"R", "G", "B", ""}, false},
};

constexpr std::string_view idNames[] = {"SAMPLEID", "SAMPLE", "ID", "SAMPLENO", "INDEX"};
constexpr std::string_view nameNames[] = {"SAMPLENAME", "NAME", "STRING"};
constexpr std::string_view locationNames[] = {"SAMPLELOC", "SAMPLELOCATION"};
constexpr std::string_view controlNames[] = {"CONTROL"};
constexpr std::string_view measuredNames[] = {
    "XYZX", "XYZY", "XYZZ",   "LABL",  "LABA", "LABB",       "LABC",        "LABH",        "XYYX",
    "XYYY", "DRED", "DGREEN", "DBLUE", "DVIS", "SPECTRALNM", "SPECTRALDEC", "SPECTRALPCT", "COLORVALUES"};
constexpr std::string_view bandStarts[] = {"SPECTRALNM", "SPECTRAL", "NM", "SPEC"};

bool isNumber(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool isBand(std::string_view name)
{
    auto const startsBand = [&](std::string_view start) {
        return name.starts_with(start) && isNumber(name.substr(start.size()));
    };
    return std::any_of(std::begin(bandStarts), std::end(bandStarts), startsBand) ||
           (name.ends_with("NM") && isNumber(name.substr(0, name.size() - 2)));
}

// The columns of a table by name, in the order of the names.
class Columns
{
public:
    explicit Columns(std::vector<Field> const& fields)
    {
        for (std::size_t i = 0; i < fields.size(); ++i)
            if (!fields[i].name.empty())
                columns.emplace_back(comparableName(fields[i].name), i);
        std::sort(columns.begin(), columns.end());
    }

    std::optional<std::size_t> find(std::string_view name) const
    {
        auto const found = first(name);
        if (found == columns.end() || found->first != name)
            return {};
        return found->second;
    }

    template <std::size_t count>
    std::optional<std::size_t> findAny(std::string_view const (&names)[count]) const
    {
        for (std::string_view const name : names)
            if (auto const column = find(name))
                return column;
        return {};
    }

    bool isRepeated(std::string_view name) const
    {
        auto const found = first(name);
        return found != columns.end() && found->first == name && found + 1 != columns.end() &&
               (found + 1)->first == name;
    }

    std::vector<NamedColumn> const& all() const { return columns; }

private:
    std::vector<NamedColumn>::const_iterator first(std::string_view name) const
    {
        return std::lower_bound(columns.begin(), columns.end(), name,
                                [](NamedColumn const& column, std::string_view value) { return column.first < value; });
    }

    std::vector<NamedColumn> columns;
};

// 7CLR1 is ink 1 of 7, PC7A is ink 10 of 7. Other names have no inks.
struct NumberedInk
{
    int inks = 0;
    int ink = 0;
    std::string family;
};

int numberOf(std::string_view digits, int base)
{
    int number = 0;
    auto const [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
    return error == std::errc() && end == digits.data() + digits.size() ? number : 0;
}

NumberedInk numberedInk(std::string_view name)
{
    constexpr std::string_view letters = "CLR";
    std::size_t const middle = name.find(letters);
    if (middle == 1 || middle == 2)
        return {numberOf(name.substr(0, middle), 10), numberOf(name.substr(middle + letters.size()), 10),
                std::string(name.substr(0, middle + letters.size()))};
    if (name.starts_with("PC") && name.size() == 4)
        return {numberOf(name.substr(2, 1), 16), numberOf(name.substr(3, 1), 16), std::string(name.substr(0, 3))};
    return {};
}

// CMYKOG_C has the ink letters CMYKOG and is of the ink C.
std::string_view inkLetters(std::string_view name)
{
    if (name.size() < 2)
        return {};
    std::string_view const letters = name.substr(0, name.size() - 1);
    bool const areInks = letters.find_first_not_of("CMYKORGBVWN") == std::string_view::npos;
    return areInks && letters.find(name.back()) != std::string_view::npos ? letters : std::string_view();
}

std::string inksNamed(std::size_t count, std::string const& family)
{
    constexpr char const* numbers[] = {"no",    "one",   "two",  "three", "four",   "five",   "six",
                                       "seven", "eight", "nine", "ten",   "eleven", "twelve", "thirteen"};
    std::string const number = count < std::size(numbers) ? numbers[count] : std::to_string(count);
    return number + (count == 1 ? " ink (" : " inks (") + family + ")";
}

// CMYKC as it is usually written, CMYK_C.
std::string usualSpelling(Spelling const& spelling, std::size_t channel)
{
    std::string name(spelling.names[channel]);
    if (spelling.isTelling)
        name.insert(name.size() - 1, 1, '_');
    return name;
}

void findSpelling(Spelling const& spelling, Columns const& columns, ColumnNames& names)
{
    DeviceColumns device;
    std::vector<std::size_t> found; // channels
    std::vector<std::size_t> missing;
    std::size_t const count = spelling.space == CMYK ? 4 : 3;
    for (std::size_t channel = 0; channel < count; ++channel) {
        auto const column = columns.find(spelling.names[channel]);
        device.columns[channel] = column.value_or(0);
        (column ? found : missing).push_back(channel);
    }
    if (!missing.empty()) {
        if (!found.empty() && spelling.isTelling)
            names.incompleteSpaces.push_back({usualSpelling(spelling, found.back()),
                                              usualSpelling(spelling, missing.front()), device.columns[found.back()]});
        return;
    }
    auto& space = spelling.space == CMYK ? names.cmyk : names.rgb;
    if (space)
        return;
    space = device;
    for (std::size_t const channel : found)
        if (columns.isRepeated(spelling.names[channel])) {
            names.repeated.push_back(usualSpelling(spelling, channel));
            names.repeatedColumn = device.columns[channel];
        }
}

// The columns of a family such as 7CLR, by the number of their ink.
struct InkFamily
{
    int inks = 0;
    std::map<int, std::size_t> columns;
};

void addInkFamily(std::string const& name, InkFamily const& family, ColumnNames& names)
{
    std::size_t const column = family.columns.begin()->second;
    if (family.inks != 4) {
        names.foreignSpaces.push_back({inksNamed(static_cast<std::size_t>(family.inks), name), column});
        return;
    }
    DeviceColumns device{{}, true};
    for (int ink = 1; ink <= 4; ++ink) {
        auto const found = family.columns.find(ink);
        if (found == family.columns.end()) {
            names.incompleteSpaces.push_back({name, name + "_" + std::to_string(ink), column});
            return;
        }
        device.columns[static_cast<std::size_t>(ink - 1)] = found->second;
    }
    if (!names.cmyk)
        names.cmyk = device;
}

void findNumberedInks(Columns const& columns, ColumnNames& names)
{
    std::map<std::string, InkFamily> families;
    for (auto const& [name, column] : columns.all()) {
        NumberedInk const ink = numberedInk(name);
        if (ink.inks == 0 || ink.ink == 0)
            continue;
        InkFamily& family = families[ink.family];
        family.inks = ink.inks;
        family.columns.emplace(ink.ink, column);
    }
    for (auto const& [name, family] : families)
        addInkFamily(name, family, names);
}

void findLetteredInks(Columns const& columns, ColumnNames& names)
{
    std::map<std::string, std::vector<NamedColumn>> families;
    for (NamedColumn const& column : columns.all())
        if (std::string_view const letters = inkLetters(column.first); !letters.empty())
            families[std::string(letters)].push_back(column);
    for (auto const& [letters, found] : families) {
        if (letters == "CMYK" || letters == "RGB" || found.size() != letters.size() || letters.size() < 2)
            continue;
        names.foreignSpaces.push_back(
            {letters == "CMY" ? letters : inksNamed(letters.size(), letters), found.front().second});
    }
    for (char const* gray : {"GRAYW", "GRAYK", "GREYW", "GREYK"})
        if (auto const column = columns.find(gray))
            names.foreignSpaces.push_back({"gray", *column});
}

} // namespace

std::string comparableName(std::string_view name)
{
    // No word that is known is longer.
    constexpr std::size_t longestName = 40;
    std::string word;
    for (char const c : name.substr(0, longestName))
        if (c != '_' && !isBlank(c))
            word += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    return word;
}

ColumnNames::ColumnNames(std::vector<Field> const& fields)
{
    Columns const columns(fields);
    for (Spelling const& spelling : spellings)
        findSpelling(spelling, columns, *this);
    findNumberedInks(columns, *this);
    findLetteredInks(columns, *this);
    id = columns.findAny(idNames);
    name = columns.findAny(nameNames);
    location = columns.findAny(locationNames);
    control = columns.findAny(controlNames);
    hasMeasurements = columns.findAny(measuredNames).has_value() ||
                      std::any_of(columns.all().begin(), columns.all().end(),
                                  [](NamedColumn const& column) { return isBand(column.first); });
}
