// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CellSwap.h"

#include <algorithm>
#include <utility>

CellSwap::CellSwap(PairDifference const& pairDifference, ColumnOrder& columnOrder, float smallest)
    : difference(pairDifference), order(columnOrder), leastDifference(smallest)
{
    for (int patch = 0; patch < difference.countPatches(); ++patch)
        areAllMovable = areAllMovable && difference.takesPart(patch);
}

int CellSwap::countAlike(int cell) const
{
    int const paper = difference.paper();
    return (difference.areAlikeInLightness(order[cell], order.before(cell, paper)) ? 1 : 0) +
           (difference.areAlikeInLightness(order[cell], order.after(cell, paper)) ? 1 : 0);
}

bool CellSwap::isFarEnough(int cell) const
{
    int const paper = difference.paper();
    return !(difference(order[cell], order.before(cell, paper)) < leastDifference) &&
           !(difference(order[cell], order.after(cell, paper)) < leastDifference);
}

bool CellSwap::tryToSwap(int cell, int other)
{
    if (!difference.takesPart(order[cell]) || !difference.takesPart(order[other]))
        return false;
    int const alike = countAlike(cell) + countAlike(other);
    swap(cell, other);
    if (isFarEnough(cell) && isFarEnough(other) && countAlike(cell) + countAlike(other) <= alike)
        return true;
    swap(cell, other);
    return false;
}

void CellSwap::swap(int cell, int other)
{
    std::swap(order[cell], order[other]);
}

void CellSwap::turnColumn(int column)
{
    auto const first = order.patchAt.begin() + std::ptrdiff_t{column} * order.height;
    std::reverse(first, first + order.height);
}

void CellSwap::swapColumns(int column, int other)
{
    auto const first = order.patchAt.begin() + std::ptrdiff_t{column} * order.height;
    std::swap_ranges(first, first + order.height, order.patchAt.begin() + std::ptrdiff_t{other} * order.height);
}
