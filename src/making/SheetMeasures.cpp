// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SheetMeasures.h"

#include <charconv>
#include <cmath>
#include <vector>

namespace
{

constexpr double millimetresPerPoint = 25.4 / 72;

// The numbers at the start of a text, with any words between them, at most so many.
std::vector<double> numbersIn(std::string_view text, std::size_t most)
{
    std::vector<double> numbers;
    while (!text.empty() && numbers.size() < most) {
        std::size_t const start = text.find_first_not_of(" \r\n");
        if (start == std::string_view::npos)
            break;
        text.remove_prefix(start);
        std::string_view const word = text.substr(0, text.find_first_of(" \r\n"));
        double number = 0;
        auto const [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
        if (error == std::errc() && end == word.data() + word.size() && std::isfinite(number))
            numbers.push_back(number);
        text.remove_prefix(word.size());
    }
    return numbers;
}

// Takes the next path off the text: a rectangle.
std::optional<RealRect> takeRectangle(std::string_view& text)
{
    std::size_t const start = text.find("newpath ");
    if (start == std::string_view::npos)
        return std::nullopt;
    text.remove_prefix(start);
    std::size_t const end = text.find("fill");
    if (end == std::string_view::npos)
        return std::nullopt;
    auto const n = numbersIn(text.substr(0, end), 10);
    text.remove_prefix(end);
    if (n.size() != 10)
        return std::nullopt;
    return RealRect{n[0], n[1], n[4] - n[0], n[5] - n[1]};
}

} // namespace

std::optional<SheetMeasures> sheetMeasures(std::string_view eps)
{
    constexpr std::string_view box = "%%BoundingBox: ";
    std::size_t const start = eps.find(box);
    if (!eps.starts_with("%!PS-Adobe") || start == std::string_view::npos)
        return std::nullopt;
    auto const corners = numbersIn(eps.substr(start + box.size()), 4);
    auto const bar = takeRectangle(eps);
    // The second cross stands at the upper left corner, its upright bar after its level one.
    takeRectangle(eps);
    takeRectangle(eps);
    auto const cross = takeRectangle(eps);
    if (corners.size() != 4 || !bar || !cross)
        return std::nullopt;
    constexpr double crossOffset = 0.25; // from the block's corner
    double const bottom = bar->y + bar->height;
    double const top = cross->y + cross->height / 2 - crossOffset;
    return SheetMeasures{{corners[2] * millimetresPerPoint, corners[3] * millimetresPerPoint},
                         {bar->x, bottom, bar->width, top - bottom}};
}
