// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "BestOrder.h"

#include "CellSwap.h"
#include "ColumnContrast.h"
#include "ColumnOrder.h"
#include "DifferenceSearch.h"
#include "LightnessSeparation.h"
#include "OrderBound.h"
#include "OrderSearch.h"
#include "RepeatSpread.h"

#include <algorithm>

namespace
{

constexpr int mostEffort = 1000000;

ColumnOrder fastOrder(OrderTask const& task)
{
    OrderSearch search(task);
    search.run();
    ColumnOrder order{task.grid.height, {}};
    for (int x = 0; x < task.grid.width; ++x)
        for (int y = 0; y < task.grid.height; ++y)
            order.patchAt.push_back(search.getPatchAt({x, y}));
    return order;
}

// What comes after the smallest difference, and gives up nothing of it.
void refine(ColumnOrder& order, PairDifference const& difference, float smallest, BestOrderSettings const& settings)
{
    RandomNumbers random(2);
    std::int64_t const work = workOfOrder(difference.countPatches()) / 10;
    separateInLightness(order, difference, smallest, random, work * settings.effort);

    // Comparing each column with each other one takes long where there are very many.
    constexpr std::int64_t mostComparisons = 500'000'000;
    if (std::int64_t{difference.countPatches()} * order.countColumns() > mostComparisons)
        return;
    CellSwap cells(difference, order, smallest);
    ColumnContrast contrast(difference, order);
    raiseColumnContrast(contrast, cells, random, settings.effort);
    RepeatSpread spread(difference, order, settings.columnsPerSheet);
    spreadRepeats(spread, contrast, cells, random, settings.effort);
}

std::vector<int> rowAfterRow(ColumnOrder const& order)
{
    std::vector<int> patchAt;
    for (int row = 0; row < order.height; ++row)
        for (int column = 0; column < order.countColumns(); ++column)
            patchAt.push_back(order[column * order.height + row]);
    return patchAt;
}

} // namespace

BestOrder findBestOrder(OrderTask const& task, BestOrderSettings const& givenSettings)
{
    BestOrder result;
    if (std::ranges::find(task.takesPart, true) == task.takesPart.end()) {
        for (int patch = 0; patch < static_cast<int>(task.colors.size()); ++patch)
            result.patchAt.push_back(patch);
        return result;
    }
    BestOrderSettings settings = givenSettings;
    settings.effort = std::clamp(settings.effort, 1, mostEffort);
    PairDifference const difference(task);
    ColumnOrder order = fastOrder(task);
    OrderBound const bound = findOrderBound(task, smallestDifference(order, difference));
    DifferenceSearch search(difference, std::move(order), bound.squared);
    search.run(workOfOrder(difference.countPatches()) * settings.effort, [&](float smallest) {
        if (settings.progress)
            settings.progress(smallest, bound.squared);
    });
    order = search.getBest();
    refine(order, difference, search.getSmallest(), settings);
    result.patchAt = rowAfterRow(order);
    result.smallest = smallestDifference(order, difference);
    result.bound = bound.squared;
    result.isBoundLoose = bound.isLoose;
    return result;
}
