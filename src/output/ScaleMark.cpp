// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ScaleMark.h"

#include <algorithm>
#include <vector>

namespace
{

// Between a mark and everything else, mm.
constexpr double clearance = 2;

bool fits(RealRect const& strip, RealSize size)
{
    return strip.width >= size.width && strip.height >= size.height;
}

// The four strips of a sheet beside what is taken, each as long as the sheet.
struct Strips
{
    RealRect below;
    RealRect above;
    RealRect left;
    RealRect right;
};

Strips stripsBeside(RealRect const& all, RealRect const& taken)
{
    double const right = all.x + all.width;
    double const top = all.y + all.height;
    double const takenLeft = std::min(taken.x - clearance, right);
    double const takenRight = std::max(taken.x + taken.width + clearance, all.x);
    double const takenBottom = std::min(taken.y - clearance, top);
    double const takenTop = std::max(taken.y + taken.height + clearance, all.y);
    return {
        {all.x, all.y, all.width, takenBottom - all.y},
        {all.x, takenTop, all.width, top - takenTop},
        {all.x, all.y, takenLeft - all.x, all.height},
        {takenRight, all.y, right - takenRight, all.height},
    };
}

std::optional<RealRect> firstFit(std::vector<RealRect> const& strips, RealSize size)
{
    auto const found =
        std::find_if(strips.begin(), strips.end(), [size](RealRect const& strip) { return fits(strip, size); });
    return found != strips.end() ? std::optional(*found) : std::nullopt;
}

bool isClear(RealRect const& strip, RealRect const& mark)
{
    return strip.x >= mark.x + mark.width + clearance || mark.x >= strip.x + strip.width + clearance ||
           strip.y >= mark.y + mark.height + clearance || mark.y >= strip.y + strip.height + clearance;
}

// What is left of a strip beside a mark that may lie in it.
std::vector<RealRect> without(RealRect const& strip, RealRect const& mark)
{
    if (isClear(strip, mark))
        return {strip};
    auto const [below, above, left, right] = stripsBeside(strip, mark);
    return {right, above, below, left};
}

} // namespace

ScaleMark findScaleMark(RealRect printable, RealRect taken)
{
    auto const [below, above, left, right] = stripsBeside(printable, taken);
    ScaleMark mark;
    RealRect acrossBox;
    if (auto const strip = firstFit({below, above, right, left}, scaleMark::acrossSize)) {
        mark.across = {strip->x, strip->y};
        acrossBox = {strip->x, strip->y, scaleMark::acrossSize.width, scaleMark::acrossSize.height};
    }
    std::vector<RealRect> free;
    for (RealRect const& strip : {right, left, above, below}) {
        auto const pieces = mark.across ? without(strip, acrossBox) : std::vector{strip};
        free.insert(free.end(), pieces.begin(), pieces.end());
    }
    if (auto const strip = firstFit(free, scaleMark::upSize))
        mark.up = {strip->x, strip->y};
    return mark;
}
