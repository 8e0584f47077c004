// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OrderSearch.h"

#include "OrderTasks.h"
#include "support/CapturedOutput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

using testing::ElementsAre;

namespace
{

// The patches of the grid, row after row.
std::vector<int> orderOf(OrderSearch const& search, IntSize grid)
{
    std::vector<int> patchAt;
    for (int y = 0; y < grid.height; ++y)
        for (int x = 0; x < grid.width; ++x)
            patchAt.push_back(search.getPatchAt({x, y}));
    return patchAt;
}

std::vector<int> unchanged(OrderTask const& task)
{
    std::vector<int> order(task.colors.size());
    std::iota(order.begin(), order.end(), 0);
    return order;
}

} // namespace

TEST(OrderSearch, SwapsPatchesUntilNoSwapHelps)
{
    // Paper is 95. 50 is next to 52 and changes places with 80: 80 52 10 50 20. 80 is next to the paper and changes
    // places with 10: 10 52 80 50 20. The smallest difference is now 80 - 52 = 28, and no other order is one swap away.
    OrderTask const task = taskOf({1, 5}, {grey(50), grey(52), grey(10), grey(80), grey(20)});
    OrderSearch search(task);
    EXPECT_EQ(search.run(), 28 * 28);
    EXPECT_THAT(orderOf(search, task.grid), ElementsAre(2, 1, 3, 0, 4));
}

TEST(OrderSearch, StartsWithTheGivenOrder)
{
    OrderTask const task = taskOf({2, 2}, {grey(10), grey(20), grey(30), grey(40)});
    EXPECT_THAT(orderOf(OrderSearch(task), task.grid), ElementsAre(0, 1, 2, 3));
}

TEST(OrderSearch, ComparesASingleRowWithThePaper)
{
    OrderTask const task = taskOf({3, 1}, {grey(50), grey(90), grey(10)});
    OrderSearch search(task);
    EXPECT_EQ(search.run(), 5 * 5);
    EXPECT_EQ(orderOf(search, task.grid), unchanged(task));
}

TEST(OrderSearch, NeverMakesPairsThatDifferByLessThanFiveInLightness)
{
    // 50 is next to 52. Beside 52, each of the last two would differ by more than 2, but only by 4 in lightness.
    OrderTask const task = taskOf({1, 5}, {grey(50), grey(52), grey(10), {{56, 100, 0}}, grey(48)});
    OrderSearch search(task);
    EXPECT_EQ(search.run(), 2 * 2);
    EXPECT_EQ(orderOf(search, task.grid), unchanged(task));
}

TEST(OrderSearch, StopsAtTheLargestKey)
{
    // 500 - 95 = 405, and 405^2 is beyond 100000.
    OrderTask const task = taskOf({1, 1}, {grey(500)});
    EXPECT_EQ(OrderSearch(task).run(), furthestSquaredDeltaE);
}

TEST(OrderSearch, ReportsAnEmptyHeapIfNoPatchTakesPart)
{
    OrderTask task = taskOf({1, 2}, {grey(50), grey(52)});
    task.takesPart.assign(2, false);
    OrderSearch search(task);
    float result = -1;
    EXPECT_EQ(errorsOf([&] { result = search.run(); }), "Heap is empty.\r");
    EXPECT_EQ(result, 0);
    EXPECT_EQ(orderOf(search, task.grid), unchanged(task));
}

TEST(OrderSearch, OnlyPatchesThatTakePartAreInTheHeap)
{
    OrderTask task = taskOf({1, 3}, {grey(50), grey(90), grey(20)});
    task.takesPart[1] = false;
    OrderSearch const search(task);
    // The keys are 40^2 = (50 - 90)^2 and 70^2 = (20 - 90)^2.
    EXPECT_EQ(search.getHeapPosition({0, 0}), 1U);
    EXPECT_EQ(search.getHeapPosition({0, 1}), 0U);
    EXPECT_EQ(search.getHeapPosition({0, 2}), 2U);
}

TEST(OrderSearch, ReturnsTheSmallestDifferenceOfItsOrder)
{
    std::mt19937 generator(1);
    for (IntSize const grid : {IntSize{1, 7}, IntSize{3, 5}, IntSize{17, 4}, IntSize{10, 20}})
        for (int i = 0; i < 20; ++i) {
            OrderTask const task = randomTask(grid, generator);
            OrderSearch search(task);
            float const result = search.run();
            std::vector<int> order = orderOf(search, grid);
            EXPECT_EQ(result, smallestAlongScan(task, order));
            EXPECT_GE(result, smallestAlongScan(task, unchanged(task)));
            std::sort(order.begin(), order.end());
            EXPECT_EQ(order, unchanged(task));
        }
}
