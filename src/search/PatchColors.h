// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "color/Lab.h"
#include "lib/Geometry.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// The colours of as many cells as the widest instructions look at, in fixed point: for each cell a word of two 16-bit
/// numbers for L* and a*, and one for b* and half the square of the colour's distance from black. Two such numbers are
/// what an instruction multiplies and adds in one go.
struct alignas(64) FixedColors
{
    static constexpr int count = 16;

    /// Units in 1 of L*, a* or b*.
    static constexpr int unit = 64;

    /// Squared units in 1 of half the square.
    static constexpr int squareUnit = 4096;

    std::uint32_t lightnessAndA[count];
    std::uint32_t bAndSquare[count];
};

/// The colours of a patch grid, row after row, with a row of bare paper before the first and after the last: whoever
/// stands above or below a cell stands one row before or after it. Rows are as long as it takes for each to begin with
/// FixedColors of its own; what fills them up differs from no colour.
class PatchColors
{
public:
    /// The cells have no colour yet: they differ from none.
    PatchColors(IntSize grid, Lab const& paper);

    int cellAt(IntPos position) const { return position.y * rowLength + position.x; }

    /// Cells from one row to the next.
    int getRowLength() const { return rowLength; }

    /// Cells of all rows, but for those of paper.
    int getCells() const { return cells; }

    /// The colour at a cell; those of the row before the first and after the last are paper.
    Lab const& at(int cell) const { return colors[indexOf(cell)]; }

    void set(int cell, Lab const& color);
    void swap(int cell, int other);

    /// Whether all colours have a fixed-point form. Real ones have; it ends at 127, and not-a-number has none.
    bool areFixed() const { return hasFixedForm; }

    /// The fixed-point form of the first cells; those of the rows of paper stand before and after.
    FixedColors const* getFixed() const { return &fixedColors[indexOf(0) / FixedColors::count]; }

    /// The two words of the colour at a cell.
    std::uint32_t lightnessAndA(int cell) const { return blockOf(cell).lightnessAndA[laneOf(cell)]; }
    std::uint32_t bAndSquare(int cell) const { return blockOf(cell).bAndSquare[laneOf(cell)]; }

private:
    std::size_t indexOf(int cell) const { return static_cast<std::size_t>(cell + rowLength); }
    std::size_t laneOf(int cell) const { return indexOf(cell) % FixedColors::count; }
    FixedColors& blockOf(int cell) { return fixedColors[indexOf(cell) / FixedColors::count]; }
    FixedColors const& blockOf(int cell) const { return fixedColors[indexOf(cell) / FixedColors::count]; }

    int rowLength;
    int cells;
    std::vector<Lab> colors;
    std::vector<FixedColors> fixedColors;
    bool hasFixedForm = true;
};
