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
    double const takenRight = taken.x + taken.width + clearance;
    double const takenTop = taken.y + taken.height + clearance;
    return {
        {all.x, all.y, all.width, taken.y - clearance - all.y},
        {all.x, takenTop, all.width, all.y + all.height - takenTop},
        {all.x, all.y, taken.x - clearance - all.x, all.height},
        {takenRight, all.y, all.x + all.width - takenRight, all.height},
    };
}

std::optional<RealRect> firstFit(std::vector<RealRect> const& strips, RealSize size)
{
    auto const found =
        std::find_if(strips.begin(), strips.end(), [size](RealRect const& strip) { return fits(strip, size); });
    return found != strips.end() ? std::optional(*found) : std::nullopt;
}

bool overlap(RealRect const& a, RealRect const& b)
{
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

// What is left of a strip beside a mark that may lie in it.
std::vector<RealRect> without(RealRect const& strip, RealRect const& mark)
{
    if (!overlap(strip, mark))
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
