// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Geometry.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// A CIELAB colour: L*, a*, b*.
struct Lab
{
    float values[3];
};

/// The colours of a patch grid in fixed point, one word of two 16-bit numbers for L* and a*, one for b* and half the
/// square of the colour's distance from black: what an instruction multiplies and adds in one go. The pointers are at
/// the first cell; the row of paper before it and that after the last are readable, the latter up to 16 words further.
struct FixedColorRows
{
    std::uint32_t const* lightnessAndA;
    std::uint32_t const* bAndSquare;
    int columns;
    int cells;
};

/// The colours of a patch grid, row after row, with a row of bare paper before the first and after the last: whoever
/// stands above or below a cell stands one row before or after it.
class PatchColors
{
public:
    /// Fixed-point units in 1 of L*, a* or b*.
    static constexpr int unit = 64;

    /// Squared fixed-point units in 1 of the square's half.
    static constexpr int squareUnit = 4096;

    /// All cells are paper.
    PatchColors(IntSize grid, Lab const& paper);

    int getColumns() const { return columns; }
    int getCells() const { return cells; }

    /// The colour at a cell; those of the row before the first and after the last are paper.
    Lab const& at(int cell) const { return colors[indexOf(cell)]; }

    void set(int cell, Lab const& color);
    void swap(int cell, int other);

    /// Whether all colours have a fixed-point form. Real ones have; it ends at 127, and not-a-number has none.
    bool areFixed() const { return hasFixedForm; }
    FixedColorRows getFixedRows() const;

private:
    static constexpr std::size_t readBeyond = 16;

    std::size_t indexOf(int cell) const { return static_cast<std::size_t>(cell + columns); }

    int columns;
    int cells;
    std::vector<Lab> colors;
    std::vector<std::uint32_t> lightnessAndA;
    std::vector<std::uint32_t> bAndSquare;
    bool hasFixedForm = true;
};
