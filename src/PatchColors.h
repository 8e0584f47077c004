// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Geometry.h"

#include <cstddef>
#include <utility>
#include <vector>

/// A CIELAB colour: L*, a*, b*.
struct Lab
{
    float values[3];
};

/// Where the colours of a patch grid lie in memory.
struct ColorRows
{
    /// L*, a* and b*, from the row of paper before the first row on; readable up to 16 values past the paper after the
    /// last row.
    float const* channels[3];
    int columns;
    int cells;
};

/// The colours of a patch grid, row after row, with a row of bare paper before the first and after the last: whoever
/// stands above or below a cell stands one row before or after it. Each channel lies by itself, so that many cells can
/// be looked at with one instruction.
class PatchColors
{
public:
    PatchColors(IntSize grid, Lab const& paper) : columns(grid.width), cells(grid.width * grid.height)
    {
        for (std::size_t i = 0; i < 3; ++i)
            channels[i].assign(static_cast<std::size_t>(cells + 2 * columns + padding), paper.values[i]);
    }

    /// The colour at a cell; those of the row before the first and after the last are paper.
    Lab at(int cell) const
    {
        std::size_t const i = indexOf(cell);
        return {{channels[0][i], channels[1][i], channels[2][i]}};
    }

    void set(int cell, Lab const& color)
    {
        for (std::size_t i = 0; i < 3; ++i)
            channels[i][indexOf(cell)] = color.values[i];
    }

    void swap(int cell, int other)
    {
        for (std::vector<float>& channel : channels)
            std::swap(channel[indexOf(cell)], channel[indexOf(other)]);
    }

    ColorRows getRows() const { return {{channels[0].data(), channels[1].data(), channels[2].data()}, columns, cells}; }

private:
    static constexpr int padding = 16;

    std::size_t indexOf(int cell) const { return static_cast<std::size_t>(cell + columns); }

    int columns;
    int cells;
    std::vector<float> channels[3];
};
