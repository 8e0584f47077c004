// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "DifferenceSearch.h"

#include "search/OrderTasks.h"

#include <gtest/gtest.h>

namespace
{

ColumnOrder asTheyStand(OrderTask const& task)
{
    ColumnOrder order{task.grid.height, std::vector<int>(task.colors.size())};
    std::iota(order.patchAt.begin(), order.patchAt.end(), 0);
    return order;
}

} // namespace

TEST(DifferenceSearch, StopsAtTheBound)
{
    std::mt19937 generator(1);
    OrderTask const task = randomTask({4, 12}, generator);
    PairDifference const difference(task);
    DifferenceSearch search(difference, asTheyStand(task), 400);
    search.run(workOfOrder(48), {});
    EXPECT_GE(search.getSmallest(), 400);
    ColumnOrder const reached = search.getBest();
    search.run(workOfOrder(48), {});
    EXPECT_EQ(search.getBest().patchAt, reached.patchAt);
}

TEST(DifferenceSearch, GivesTheSameResultInParts)
{
    std::mt19937 generator(2);
    OrderTask const task = randomTask({4, 25}, generator);
    PairDifference const difference(task);
    DifferenceSearch inOne(difference, asTheyStand(task), furthestSquaredDeltaE);
    DifferenceSearch inParts(difference, asTheyStand(task), furthestSquaredDeltaE);
    std::int64_t const part = workOfOrder(100) / 4;
    inOne.run(3 * part, {});
    for (int i = 0; i < 3; ++i)
        inParts.run(part, {});
    EXPECT_EQ(inParts.getSmallest(), inOne.getSmallest());
    EXPECT_EQ(inParts.getBest().patchAt, inOne.getBest().patchAt);
}

TEST(DifferenceSearch, WorksOnChartsThatAreTooLargeForOneGroup)
{
    // The long columns are cut.
    std::mt19937 generator(3);
    for (IntSize const grid : {IntSize{217, 24}, IntSize{2, 2604}}) {
        OrderTask const task = randomTask(grid, generator);
        PairDifference const difference(task);
        DifferenceSearch search(difference, asTheyStand(task), 40 * 40);
        search.run(workOfOrder(5208) / 4, {});
        EXPECT_GE(search.getSmallest(), 40 * 40);
        EXPECT_EQ(search.getSmallest(), smallestDifference(search.getBest(), difference));
    }
}

TEST(DifferenceSearch, IsWorthWorkThatGrowsLikeTheRootOfTheCube)
{
    EXPECT_EQ(workOfOrder(1600), 8 * workOfOrder(400));
    EXPECT_NEAR(static_cast<double>(workOfOrder(80000)), 4 * static_cast<double>(workOfOrder(20000)), 4);
    EXPECT_EQ(workOfOrder(50), workOfOrder(300));
}
