// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LightnessSeparation.h"

#include "DifferenceSearch.h"
#include "search/OrderTasks.h"

#include <gtest/gtest.h>

namespace
{

int countAlikePairs(ColumnOrder const& order, PairDifference const& difference)
{
    int count = 0;
    for (int cell = 0; cell < difference.countPatches(); ++cell) {
        count += difference.areAlikeInLightness(order[cell], order.after(cell, difference.paper())) ? 1 : 0;
        if (cell % order.height == 0)
            count += difference.areAlikeInLightness(order[cell], difference.paper()) ? 1 : 0;
    }
    return count;
}

} // namespace

TEST(LightnessSeparation, LeavesFewPairsAlikeAndGivesUpNoDifference)
{
    std::mt19937 generator(1);
    OrderTask const task = randomTask({6, 24}, generator);
    PairDifference const difference(task);
    ColumnOrder start{24, std::vector<int>(144)};
    std::iota(start.patchAt.begin(), start.patchAt.end(), 0);
    DifferenceSearch search(difference, start, 40 * 40);
    search.run(workOfOrder(144), {});
    ColumnOrder order = search.getBest();
    int const before = countAlikePairs(order, difference);
    RandomNumbers random(1);
    separateInLightness(order, difference, search.getSmallest(), random, workOfOrder(144));
    EXPECT_GE(before, 5);
    EXPECT_LE(countAlikePairs(order, difference), before / 5);
    EXPECT_GE(smallestDifference(order, difference), search.getSmallest());
}
