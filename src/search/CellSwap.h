// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ColumnOrder.h"
#include "PairDifference.h"

/// Swaps patches of an order where that gives up nothing: neither the smallest difference, nor lightness that differs.
class CellSwap
{
public:
    /// \param pairDifference  of the task; like the order, it outlives the swaps
    /// \param columnOrder     what is changed
    /// \param smallest        squared delta E that no pair along the scan may fall below
    CellSwap(PairDifference const& pairDifference, ColumnOrder& columnOrder, float smallest);

    /// Swaps the patches of two cells unless one of them does not take part, a new pair differs by less than the
    /// smallest difference, or more pairs than before differ by less than 5 in lightness.
    ///
    /// \return whether they were swapped
    bool tryToSwap(int cell, int other);

    /// Swaps them in any case, to take a swap back.
    void swap(int cell, int other);

    /// Whether whole columns may move, since all patches take part.
    bool canMoveColumns() const { return areAllMovable; }

    /// Turns a column round. Its pairs stay the same.
    void turnColumn(int column);

    /// Lets two columns change places. Their pairs stay the same.
    void swapColumns(int column, int other);

    ColumnOrder const& getOrder() const { return order; }

private:
    int countAlike(int cell) const;
    bool isFarEnough(int cell) const;

    PairDifference const& difference;
    ColumnOrder& order;
    bool areAllMovable = true;
    float leastDifference;
};
