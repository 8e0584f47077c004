// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PatchColors.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{

// What keeps sums of three products within 32 bits.
constexpr float largestFixed = 127;

bool isFixable(Lab const& color)
{
    return std::all_of(std::begin(color.values), std::end(color.values),
                       [](float value) { return std::abs(value) <= largestFixed; });
}

int fixed(float value)
{
    return static_cast<int>(std::lround(value * PatchColors::unit));
}

std::uint32_t wordOf(int low, int high)
{
    return static_cast<std::uint16_t>(low) | static_cast<std::uint32_t>(high) << 16;
}

} // namespace

PatchColors::PatchColors(IntSize grid, Lab const& paper)
    : columns(grid.width), cells(grid.width * grid.height),
      colors(static_cast<std::size_t>(cells + 2 * columns), paper), lightnessAndA(colors.size() + readBeyond),
      bAndSquare(colors.size() + readBeyond)
{
    set(-columns, paper);
    std::fill(lightnessAndA.begin(), lightnessAndA.end(), lightnessAndA.front());
    std::fill(bAndSquare.begin(), bAndSquare.end(), bAndSquare.front());
}

void PatchColors::set(int cell, Lab const& color)
{
    std::size_t const i = indexOf(cell);
    colors[i] = color;
    if (!isFixable(color)) {
        hasFixedForm = false;
        return;
    }
    int const L = fixed(color.values[0]);
    int const a = fixed(color.values[1]);
    int const b = fixed(color.values[2]);
    lightnessAndA[i] = wordOf(L, a);
    bAndSquare[i] = wordOf(b, (L * L + a * a + b * b + squareUnit) / (2 * squareUnit));
}

void PatchColors::swap(int cell, int other)
{
    std::size_t const i = indexOf(cell);
    std::size_t const j = indexOf(other);
    std::swap(colors[i], colors[j]);
    std::swap(lightnessAndA[i], lightnessAndA[j]);
    std::swap(bAndSquare[i], bAndSquare[j]);
}

FixedColorRows PatchColors::getFixedRows() const
{
    std::size_t const first = indexOf(0);
    return {lightnessAndA.data() + first, bAndSquare.data() + first, columns, cells};
}
