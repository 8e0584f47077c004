// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SpreadsheetDamage.h"

#include <algorithm>
#include <cstddef>

namespace
{

constexpr std::string_view months[] = {"jan", "feb", "mar", "apr", "may", "jun", "jul", "aug", "sep", "oct", "nov",
                                       "dec", "mrz", "mai", "okt", "dez", "ene", "abr", "ago", "dic", "fev"};

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// The first three letters in lower case, if they are the first letters of the text.
bool hasMonth(std::string_view cell)
{
    auto const first = std::find_if(cell.begin(), cell.end(), isLetter);
    std::string_view const word = cell.substr(static_cast<std::size_t>(first - cell.begin()));
    if (word.size() < 3)
        return false;
    return std::any_of(std::begin(months), std::end(months), [&](std::string_view month) {
        return std::equal(month.begin(), month.end(), word.begin(), [](char m, char c) { return m == (c | 0x20); });
    });
}

std::size_t countOf(std::string_view cell, char c)
{
    return static_cast<std::size_t>(std::count(cell.begin(), cell.end(), c));
}

// 01-Feb, 2. Jan, Jan 55, 2023-05-10, 10.05.2023, 5/10/2023, 10/5
bool isDate(std::string_view cell)
{
    if (cell.size() > 30 || std::none_of(cell.begin(), cell.end(), isDigit))
        return false;
    if (hasMonth(cell))
        return true;
    bool const isOfDigits =
        isDigit(cell.front()) && cell.find_first_not_of("0123456789-/.: ") == std::string_view::npos;
    return isOfDigits && (countOf(cell, '.') == 2 || countOf(cell, '-') == 2 || countOf(cell, '/') > 0);
}

// 1,234.5 or 1.234,5
bool hasGroups(std::string_view cell)
{
    bool const isOfDigits = cell.find_first_not_of("0123456789.,'") == std::string_view::npos;
    return isOfDigits && std::any_of(cell.begin(), cell.end(), isDigit) &&
           countOf(cell, '.') + countOf(cell, ',') + countOf(cell, '\'') > 1;
}

} // namespace

std::string_view spreadsheetDamageIn(std::string_view cell)
{
    if (cell.empty())
        return {};
    if (cell.find_first_not_of('#') == std::string_view::npos)
        return "a number hidden by a narrow column";
    if (cell.starts_with('#') && (cell.ends_with('!') || cell.ends_with('?') || cell.ends_with("/A")))
        return "an error value";
    if (cell.starts_with('=') && cell.size() > 1)
        return "a formula";
    if (isDate(cell))
        return "a date";
    return hasGroups(cell) ? "grouped digits" : std::string_view();
}
