// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "CellSwap.h"
#include "ColumnContrast.h"
#include "RandomNumbers.h"

#include <cstdint>
#include <vector>

/// How close the repeats of a colour stand on the sheets of an order.
class RepeatSpread
{
public:
    /// \param pairDifference   of the task
    /// \param columnOrder      of its patches
    /// \param columnsPerSheet  columns of a sheet, from the left; 0 for a single sheet
    RepeatSpread(PairDifference const& pairDifference, ColumnOrder const& columnOrder, int columnsPerSheet);

    /// The sum over all pairs of repeats on the same sheet: 2^20 through the square of their distance in cells.
    std::int64_t closenessOfAll() const;

    /// A patch's part in it, 0 when its colour is not repeated.
    std::int64_t closenessOf(int patch) const;

    /// The same for all patches of a column, one after the other.
    std::int64_t closenessOfColumn(int column) const;

    /// The patches whose colour is repeated.
    std::vector<int> const& getRepeats() const { return repeats; }

    int cellOf(int patch) const { return cells[static_cast<std::size_t>(patch)]; }

    /// Has to be called for each cell whose patch changed.
    void renew(int cell) { cells[static_cast<std::size_t>(order[cell])] = cell; }

    void renewColumn(int column);

private:
    std::int64_t closeness(int cell, int other) const;

    ColumnOrder const& order;
    int sheetColumns;
    std::vector<int> repeats; // colour after colour
    std::vector<int>
        colorFrom; // for each patch, the range in the repeats of its colour; empty where it is not repeated
    std::vector<int> colorTo;
    std::vector<int> cells;
};

/// Swaps patches, and columns, to move repeats of a colour away from each other. No column's contrast falls below the
/// smallest one at the start.
void spreadRepeats(RepeatSpread& spread, ColumnContrast& contrast, CellSwap& cells, RandomNumbers& random, int effort);
