// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "color/Lab.h"
#include "lib/Geometry.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// The colours of as many cells as the widest instruction takes, in fixed point. Each cell has two words, and each word
/// holds two 16-bit numbers: L* and a*; b* and half the squared distance from black. One instruction multiplies the
/// numbers of two words in pairs and adds the products.
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

/// The colours of a patch grid, row after row. A row of bare paper stands before the first row and another after the
/// last, so that every cell has a neighbour above and below. Rows are padded to whole blocks of FixedColors. Padding
/// cells never match.
class PatchColors
{
public:
    /// The cells have no colour yet: they never match.
    PatchColors(IntSize grid, Lab const& paper);

    int cellAt(IntPos position) const { return position.y * rowLength + position.x; }

    /// Cells from one row to the next.
    int getRowLength() const { return rowLength; }

    /// Cells of all rows, without the rows of paper.
    int getCells() const { return cells; }

    /// The colour at a cell. The row before the first and the row after the last are paper.
    Lab const& at(int cell) const { return colors[indexOf(cell)]; }

    void set(int cell, Lab const& color);
    void swap(int cell, int other);

    /// Whether all colours have a fixed-point form. Colours with a value beyond 127, or with not-a-number, have none.
    bool areFixed() const { return hasFixedForm; }

    /// The fixed-point form of the first cells. The rows of paper stand before and after.
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
