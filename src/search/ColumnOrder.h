// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PairDifference.h"
#include "lib/Geometry.h"

#include <cstddef>
#include <vector>

/// An order of a task's patches, column after column.
struct ColumnOrder
{
    int height = 0;           ///< patches in a column
    std::vector<int> patchAt; ///< from the first row of the first column to the last row of the last

    int countColumns() const { return static_cast<int>(patchAt.size()) / height; }

    /// The patch at a cell.
    int operator[](int cell) const { return patchAt[static_cast<std::size_t>(cell)]; }
    int& operator[](int cell) { return patchAt[static_cast<std::size_t>(cell)]; }

    /// The neighbours of a cell along the scan, which may be the paper.
    int before(int cell, int paper) const { return cell % height == 0 ? paper : (*this)[cell - 1]; }
    int after(int cell, int paper) const { return (cell + 1) % height == 0 ? paper : (*this)[cell + 1]; }
};

/// The smallest squared delta E along the scan, paper included.
inline float smallestDifference(ColumnOrder const& order, PairDifference const& difference)
{
    float smallest = furthestSquaredDeltaE;
    for (int cell = 0; cell < static_cast<int>(order.patchAt.size()); ++cell) {
        float const toNext = difference(order[cell], order.after(cell, difference.paper()));
        smallest = toNext < smallest ? toNext : smallest;
        float const toLast = difference(order[cell], order.before(cell, difference.paper()));
        smallest = toLast < smallest ? toLast : smallest;
    }
    return smallest;
}
