// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "NumberText.h"

#include <charconv>
#include <iterator>

std::string fixedNumber(double number, int decimals)
{
    // The longest double has 309 digits before the point.
    char text[400];
    auto const [end, error] = std::to_chars(text, std::end(text), number, std::chars_format::fixed, decimals);
    return error == std::errc() ? std::string(text, end) : "";
}

std::string shortNumber(double number, int decimals)
{
    std::string text = fixedNumber(number, decimals);
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.')
            text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

std::string groupedNumber(long long number)
{
    std::string text = std::to_string(number);
    for (std::size_t place = text.size(); place > 3 && text[place - 4] != '-'; place -= 3)
        text.insert(place - 3, 1, ',');
    return text;
}

std::string countOf(long long count, std::string const& one, std::string const& many)
{
    return groupedNumber(count) + " " + (count == 1 ? one : many);
}

std::string countOf(long long count, std::string const& one)
{
    return countOf(count, one, one + "s");
}
