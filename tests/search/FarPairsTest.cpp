// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "FarPairs.h"

#include "search/OrderTasks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

// All patches of a task, and its paper.
std::vector<int> allOf(OrderTask const& task)
{
    std::vector<int> all(task.colors.size() + 1);
    std::iota(all.begin(), all.end(), 0);
    return all;
}

} // namespace

TEST(FarPairs, AreThoseAtTheThresholdAndAbove)
{
    OrderTask const task = taskOf({1, 2}, {grey(40), grey(50)});
    FarPairs pairs{PairDifference(task), allOf(task)};
    pairs.renew(100);
    EXPECT_TRUE(pairs.areFar(0, 1));
    EXPECT_TRUE(pairs.areFar(1, 0));
    pairs.renew(std::nextafter(100.0f, 200.0f));
    EXPECT_FALSE(pairs.areFar(0, 1));
    EXPECT_TRUE(pairs.areFar(0, 2)) << "the paper";
}

TEST(FarPairs, CanAskForLightnessBesides)
{
    OrderTask const task = taskOf({1, 3}, {{{50, 0, 0}}, {{54, 60, 0}}, {{55, 60, 0}}});
    FarPairs pairs{PairDifference(task), allOf(task)};
    pairs.renew(400, 25);
    EXPECT_FALSE(pairs.areFar(0, 1));
    EXPECT_TRUE(pairs.areFar(0, 2));
}

TEST(FarPairs, NeverHoldAPatchAndItself)
{
    OrderTask const task = taskOf({1, 2}, {grey(40), grey(40)});
    FarPairs pairs{PairDifference(task), allOf(task)};
    pairs.renew(0);
    EXPECT_FALSE(pairs.areFar(1, 1));
    EXPECT_TRUE(pairs.areFar(0, 1));
}

TEST(FarPairs, HoldPairsThatNobodyAsksAbout)
{
    OrderTask task = taskOf({1, 3}, {grey(40), grey(40), grey(40)});
    task.takesPart = {true, false, false};
    FarPairs pairs{PairDifference(task), allOf(task)};
    pairs.renew(100);
    EXPECT_TRUE(pairs.areFar(1, 2));
    EXPECT_FALSE(pairs.areFar(0, 1));
    EXPECT_FALSE(pairs.areFar(0, 2));
}

TEST(FarPairs, AgreeWithTheDifferenceOfEachPair)
{
    std::mt19937 generator(1);
    OrderTask task = randomTask({7, 20}, generator);
    task.colors[3].values[2] = std::numeric_limits<float>::quiet_NaN();
    task.takesPart[5] = task.takesPart[100] = false;
    PairDifference const difference(task);
    FarPairs pairs(difference, allOf(task));
    for (float const threshold : {0.0f, 1.0f, 900.0f, 2500.0f, 20000.0f}) {
        pairs.renew(threshold);
        for (int i = 0; i <= 140; ++i)
            for (int j = 0; j <= 140; ++j)
                ASSERT_EQ(pairs.areFar(i, j), i != j && difference(i, j) >= threshold) << i << ' ' << j;
    }
}
