// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColumnNames.h"

#include <algorithm>
#include <initializer_list>
#include <map>
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
constexpr std::string_view measuredNames[] = {"XYZX",  "XYZY", "XYZZ",       "LABL",        "LABA",       "LABB",
                                              "LABC",  "LABH", "XYYX",       "XYYY",        "DRED",       "DGREEN",
                                              "DBLUE", "DVIS", "SPECTRALNM", "SPECTRALDEC", "SPECTRALPCT"};
constexpr std::string_view bandStarts[] = {"SPECTRALNM", "SPECTRAL", "NM", "SPEC"};

// No word that is known is longer.
constexpr std::size_t longestName = 40;

std::string comparable(std::string_view name)
{
    std::string word;
    for (char const c : name.substr(0, longestName))
        if (c != '_' && !isBlank(c))
            word += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    return word;
}

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
                columns.emplace_back(comparable(fields[i].name), i);
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

// 7CLR1 gives 7 and the ink 1; PC7A gives 7 and the ink 10. None for other names.
struct NumberedInk
{
    int inks = 0;
    int ink = 0;
    std::string family;
};

std::optional<int> hexadecimal(std::string_view digits)
{
    constexpr std::string_view values = "0123456789ABCDEF";
    if (digits.size() != 1 || values.find(digits[0]) == std::string_view::npos)
        return {};
    return static_cast<int>(values.find(digits[0]));
}

std::optional<NumberedInk> numberedInk(std::string_view name)
{
    std::size_t const middle = name.find("CLR");
    if (middle == 1 || middle == 2) {
        std::string_view const inks = name.substr(0, middle);
        std::string_view const ink = name.substr(middle + 3);
        if (isNumber(inks) && isNumber(ink) && ink.size() <= 2)
            return NumberedInk{std::stoi(std::string(inks)), std::stoi(std::string(ink)), std::string(inks) + "CLR"};
    }
    if (name.starts_with("PC") && name.size() == 4) {
        auto const inks = hexadecimal(name.substr(2, 1));
        auto const ink = hexadecimal(name.substr(3, 1));
        if (inks && ink)
            return NumberedInk{*inks, *ink, std::string(name.substr(0, 3))};
    }
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

void findSpelling(Spelling const& spelling, Columns const& columns, ColumnNames& names)
{
    DeviceColumns found;
    std::optional<std::size_t> anyFound;
    std::string_view anyName;
    std::string_view missing;
    std::size_t const count = spelling.space == CMYK ? 4 : 3;
    for (std::size_t i = 0; i < count; ++i) {
        auto const column = columns.find(spelling.names[i]);
        if (!column) {
            missing = missing.empty() ? spelling.names[i] : missing;
            continue;
        }
        found.columns[i] = *column;
        anyFound = column;
        anyName = spelling.names[i];
    }
    auto const underscored = [](std::string_view name) {
        return std::string(name.substr(0, name.size() - 1)) + "_" + name.back();
    };
    if (!missing.empty()) {
        if (anyFound && spelling.isTelling)
            names.incompleteSpaces.push_back({underscored(anyName), underscored(missing), *anyFound});
        return;
    }
    auto& space = spelling.space == CMYK ? names.cmyk : names.rgb;
    if (space)
        return;
    space = found;
    for (std::size_t i = 0; i < count; ++i)
        if (columns.isRepeated(spelling.names[i])) {
            names.repeated.emplace_back(spelling.isTelling ? underscored(spelling.names[i])
                                                           : std::string(spelling.names[i]));
            names.repeatedColumn = found.columns[i];
        }
}

void findNumberedInks(Columns const& columns, ColumnNames& names)
{
    std::map<std::string, std::map<int, std::size_t>> families;
    std::map<std::string, int> inkCounts;
    for (auto const& [name, column] : columns.all())
        if (auto const ink = numberedInk(name)) {
            families[ink->family].emplace(ink->ink, column);
            inkCounts[ink->family] = ink->inks;
        }
    for (auto const& [family, inks] : families) {
        int const count = inkCounts[family];
        bool const isComplete = inks.contains(1) && inks.contains(2) && inks.contains(3) && inks.contains(4);
        if (count != 4) {
            names.foreignSpaces.push_back({inksNamed(static_cast<std::size_t>(count), family), inks.begin()->second});
        } else if (!isComplete) {
            int missing = 1;
            while (inks.contains(missing))
                ++missing;
            names.incompleteSpaces.push_back({family, family + "_" + std::to_string(missing), inks.begin()->second});
        } else if (!names.cmyk) {
            names.cmyk = DeviceColumns{{inks.at(1), inks.at(2), inks.at(3), inks.at(4)}, true};
        }
    }
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
