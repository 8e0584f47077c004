// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "CellSwap.h"
#include "RandomNumbers.h"

#include <vector>

/// How well the columns of an order can be told apart: when a column is read the wrong way round, shifted by a patch or
/// in place of another one, the readings differ from what was expected by some mean delta E.
class ColumnContrast
{
public:
    ColumnContrast(PairDifference const& pairDifference, ColumnOrder const& columnOrder);

    /// The smallest mean delta E of aligned patches between a column and its own reverse, between it and itself shifted
    /// by a patch, and between it and another column.
    float of(int column) const { return contrasts[static_cast<std::size_t>(column)].value; }

    /// The smallest one of all columns.
    float ofAll() const { return of(weakest()); }

    /// The first column with the smallest one.
    int weakest() const;

    /// Whether a column's contrast, worked out anew, is above some mean delta E.
    bool isAbove(int column, float value) const;

    /// Works out what changed with the patches of two columns, which may be the same.
    void renew(int column, int other);

private:
    struct Contrast
    {
        float value;
        int partner; // the column that it is told from; the column itself for its reverse or shift
    };

    float ofReverse(int column) const;
    float ofShift(int column) const;
    float ofPair(int column, int other) const;
    float deltaE(int cell, int other) const;
    void renewWhole(int column);

    PairDifference const& difference;
    ColumnOrder const& order;
    std::vector<Contrast> contrasts;
};

/// Swaps patches and turns columns round to raise the smallest contrast of all columns.
void raiseColumnContrast(ColumnContrast& contrast, CellSwap& cells, RandomNumbers& random, int effort);
