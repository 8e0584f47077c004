// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "HalfSetBound.h"

#include "search/OrderTasks.h"

#include <gtest/gtest.h>

TEST(HalfSetBound, IsTheExtentOfOnePatchMoreThanCanStandApart)
{
    // Three of four patches stand in a column: two of them touch. The closest three lie within 4.
    OrderTask const task = taskOf({1, 4}, {grey(10), grey(12), grey(14), grey(90)});
    EXPECT_EQ(findHalfSetBound(PairDifference(task), task.grid), 16);
}

TEST(HalfSetBound, CountsEachColumn)
{
    // Two columns of two hold two patches that do not touch: of three, two do.
    OrderTask const task = taskOf({2, 2}, {grey(10), grey(20), grey(21), grey(60)});
    EXPECT_EQ(findHalfSetBound(PairDifference(task), task.grid), 121);
}

TEST(HalfSetBound, IsNoneIfNoSetIsLargeEnough)
{
    OrderTask const task = taskOf({2, 1}, {grey(10), grey(20)});
    EXPECT_EQ(findHalfSetBound(PairDifference(task), task.grid), furthestSquaredDeltaE);
}

TEST(HalfSetBound, IsNotBelowTheOptimumOfAnyTinyChart)
{
    std::mt19937 generator(1);
    for (int i = 0; i < 500; ++i) {
        int const height = 2 + static_cast<int>(generator() % 5);
        OrderTask const task = randomTask({6 / height, height}, generator);
        EXPECT_GE(findHalfSetBound(PairDifference(task), task.grid), EveryOrder(task).getLargest());
    }
}
