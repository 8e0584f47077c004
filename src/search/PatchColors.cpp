// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PatchColors.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace
{

// With larger values, a sum of three products would not fit into 32 bits.
constexpr float largestFixed = 127;

bool isFixable(Lab const& color)
{
    return std::all_of(std::begin(color.values), std::end(color.values),
                       [](float value) { return std::abs(value) <= largestFixed; });
}

// Rounds to the nearest unit. The offset keeps the number positive, so that the cast rounds down.
int fixed(float value)
{
    constexpr int offset = 1 << 14;
    return static_cast<int>(value * FixedColors::unit + (offset + 0.5f)) - offset;
}

std::uint32_t wordOf(int low, int high)
{
    return static_cast<std::uint16_t>(low) | static_cast<std::uint32_t>(high) << 16;
}

// Padding cells pass no test. A comparison with not-a-number is false. In fixed point, a half square far below that of
// any colour makes the cell look near to every colour.
constexpr Lab noColor{{std::numeric_limits<float>::quiet_NaN(), 0, 0}};
constexpr int noSquare = -32768;

int wholeBlocks(int cells)
{
    return (cells + FixedColors::count - 1) / FixedColors::count * FixedColors::count;
}

} // namespace

PatchColors::PatchColors(IntSize grid, Lab const& paper)
    : rowLength(wholeBlocks(grid.width)), cells(rowLength * grid.height), colors(indexOf(cells + rowLength), noColor),
      fixedColors(colors.size() / FixedColors::count)
{
    for (FixedColors& block : fixedColors)
        std::fill(std::begin(block.bAndSquare), std::end(block.bAndSquare), wordOf(0, noSquare));
    for (int const row : {-1, grid.height})
        for (int x = 0; x < grid.width; ++x)
            set(cellAt({x, row}), paper);
}

void PatchColors::set(int cell, Lab const& color)
{
    colors[indexOf(cell)] = color;
    if (!isFixable(color)) {
        hasFixedForm = false;
        return;
    }
    int const L = fixed(color.values[0]);
    int const a = fixed(color.values[1]);
    int const b = fixed(color.values[2]);
    constexpr int unit = FixedColors::squareUnit;
    blockOf(cell).lightnessAndA[laneOf(cell)] = wordOf(L, a);
    blockOf(cell).bAndSquare[laneOf(cell)] = wordOf(b, (L * L + a * a + b * b + unit) / (2 * unit));
}

void PatchColors::swap(int cell, int other)
{
    std::swap(colors[indexOf(cell)], colors[indexOf(other)]);
    std::swap(blockOf(cell).lightnessAndA[laneOf(cell)], blockOf(other).lightnessAndA[laneOf(other)]);
    std::swap(blockOf(cell).bAndSquare[laneOf(cell)], blockOf(other).bAndSquare[laneOf(other)]);
}
