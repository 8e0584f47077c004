// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "RepeatSpread.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace
{

// More repeats than this cannot keep far apart, and comparing all takes the square of their number.
constexpr int mostRepeats = 100;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

} // namespace

RepeatSpread::RepeatSpread(PairDifference const& difference, ColumnOrder const& columnOrder, int columnsPerSheet)
    : order(columnOrder), sheetColumns(columnsPerSheet > 0 ? columnsPerSheet : std::numeric_limits<int>::max()),
      colorFrom(order.patchAt.size()), colorTo(order.patchAt.size()), cells(order.patchAt.size())
{
    for (int cell = 0; cell < difference.countPatches(); ++cell)
        renew(cell);
    auto const values = [&](int patch) { return difference.colorOf(patch).values; };
    auto const isSameColor = [&](int one, int other) {
        return std::equal(values(one), values(one) + 3, values(other));
    };
    std::vector<int> sorted;
    for (int patch = 0; patch < difference.countPatches(); ++patch)
        if (difference.takesPart(patch) &&
            std::none_of(values(patch), values(patch) + 3, [](float value) { return std::isnan(value); }))
            sorted.push_back(patch);
    std::ranges::sort(sorted, [&](int one, int other) {
        return isSameColor(one, other)
                   ? one < other
                   : std::lexicographical_compare(values(one), values(one) + 3, values(other), values(other) + 3);
    });
    for (auto from = sorted.begin(); from != sorted.end();) {
        auto const to = std::find_if(from, sorted.end(), [&](int patch) { return !isSameColor(*from, patch); });
        if (to - from > 1 && to - from <= mostRepeats) {
            int const first = static_cast<int>(repeats.size());
            repeats.insert(repeats.end(), from, to);
            for (; from != to; ++from) {
                colorFrom[at(*from)] = first;
                colorTo[at(*from)] = static_cast<int>(repeats.size());
            }
        }
        from = to;
    }
}

std::int64_t RepeatSpread::closeness(int cell, int other) const
{
    int const column = cell / order.height;
    int const otherColumn = other / order.height;
    if (column / sheetColumns != otherColumn / sheetColumns)
        return 0;
    std::int64_t const dx = column - otherColumn;
    std::int64_t const dy = cell % order.height - other % order.height;
    return (std::int64_t{1} << 20) / (dx * dx + dy * dy);
}

std::int64_t RepeatSpread::closenessOf(int patch) const
{
    std::int64_t sum = 0;
    for (int i = colorFrom[at(patch)]; i < colorTo[at(patch)]; ++i)
        if (repeats[at(i)] != patch)
            sum += closeness(cellOf(patch), cellOf(repeats[at(i)]));
    return sum;
}

std::int64_t RepeatSpread::closenessOfColumn(int column) const
{
    std::int64_t sum = 0;
    for (int row = 0; row < order.height; ++row)
        sum += closenessOf(order[column * order.height + row]);
    return sum;
}

std::int64_t RepeatSpread::closenessOfAll() const
{
    return std::accumulate(repeats.begin(), repeats.end(), std::int64_t{0},
                           [&](std::int64_t sum, int patch) { return sum + closenessOf(patch); }) /
           2;
}

void RepeatSpread::renewColumn(int column)
{
    for (int row = 0; row < order.height; ++row)
        renew(column * order.height + row);
}

namespace
{

void tryColumns(RepeatSpread& spread, CellSwap& cells, int column, int other)
{
    auto const closeness = [&] { return spread.closenessOfColumn(column) + spread.closenessOfColumn(other); };
    auto const swapColumns = [&] {
        cells.swapColumns(column, other);
        spread.renewColumn(column);
        spread.renewColumn(other);
    };
    std::int64_t const before = closeness();
    swapColumns();
    if (closeness() >= before)
        swapColumns();
}

void tryCells(RepeatSpread& spread, ColumnContrast const& contrast, float leastContrast, CellSwap& cells, int cell,
              int other)
{
    ColumnOrder const& order = cells.getOrder();
    auto const closeness = [&] { return spread.closenessOf(order[cell]) + spread.closenessOf(order[other]); };
    std::int64_t const before = closeness();
    if (!cells.tryToSwap(cell, other))
        return;
    spread.renew(cell);
    spread.renew(other);
    if (closeness() < before && contrast.isAbove(cell / order.height, leastContrast) &&
        contrast.isAbove(other / order.height, leastContrast))
        return;
    cells.swap(cell, other);
    spread.renew(cell);
    spread.renew(other);
}

} // namespace

void spreadRepeats(RepeatSpread& spread, ColumnContrast& contrast, CellSwap& cells, RandomNumbers& random, int effort)
{
    std::vector<int> const& repeats = spread.getRepeats();
    if (repeats.empty())
        return;
    ColumnOrder const& order = cells.getOrder();
    // Just below, so that what equals the smallest contrast is above.
    float const leastContrast = std::nextafter(contrast.ofAll(), -1.0f);
    int const tries = std::min(effort, 1000) * std::min(40 * static_cast<int>(repeats.size()), 20000);
    for (int i = 0; i < tries; ++i) {
        int const patch = repeats[at(random.below(static_cast<int>(repeats.size())))];
        int const cell = spread.cellOf(patch);
        int const other = random.below(static_cast<int>(order.patchAt.size()));
        if (other == cell || spread.closenessOf(patch) == 0)
            continue;
        if (cells.canMoveColumns() && cell / order.height != other / order.height && random.below(4) == 0)
            tryColumns(spread, cells, cell / order.height, other / order.height);
        else
            tryCells(spread, contrast, leastContrast, cells, cell, other);
    }
}
