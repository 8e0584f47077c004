// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColumnContrast.h"

#include "search/OrderTasks.h"

#include <gtest/gtest.h>

namespace
{

ColumnOrder asTheyStand(OrderTask const& task, int height)
{
    ColumnOrder order{height, std::vector<int>(task.colors.size())};
    std::iota(order.patchAt.begin(), order.patchAt.end(), 0);
    return order;
}

} // namespace

TEST(ColumnContrast, IsTheMeanDifferenceToTheColumnTurnedRound)
{
    // 10 40 70 20: turned round 20 70 40 10, differences 10 30 30 10. Shifted: 30 30 50.
    OrderTask const task = taskOf({1, 4}, {grey(10), grey(40), grey(70), grey(20)});
    ColumnOrder const order = asTheyStand(task, 4);
    EXPECT_EQ(ColumnContrast(PairDifference(task), order).ofAll(), 20);
}

TEST(ColumnContrast, IsTheMeanDifferenceToTheColumnShiftedByOne)
{
    // Shifted: 6 and 54. Turned round: 60 0 60 would be more.
    OrderTask const task = taskOf({1, 3}, {grey(10), grey(16), grey(70)});
    ColumnOrder const order = asTheyStand(task, 3);
    EXPECT_EQ(ColumnContrast(PairDifference(task), order).ofAll(), 30);
}

TEST(ColumnContrast, IsTheMeanDifferenceToAnotherColumn)
{
    OrderTask const task = taskOf({3, 2}, {grey(10), grey(70), grey(60), grey(0), grey(14), grey(64)});
    PairDifference const difference(task);
    ColumnOrder const order = asTheyStand(task, 2);
    ColumnContrast const contrast(difference, order);
    EXPECT_EQ(contrast.of(0), 5) << "differences of 4 and 6 to the third column";
    EXPECT_EQ(contrast.of(1), 55) << "46 and 64 to the third column, 60 turned round and shifted";
    EXPECT_EQ(contrast.weakest(), 0);
    EXPECT_TRUE(contrast.isAbove(1, 54));
    EXPECT_FALSE(contrast.isAbove(1, 55));
}

TEST(ColumnContrast, FollowsChanges)
{
    std::mt19937 generator(1);
    OrderTask const task = randomTask({6, 5}, generator);
    PairDifference const difference(task);
    ColumnOrder order = asTheyStand(task, 5);
    ColumnContrast contrast(difference, order);
    for (int i = 0; i < 100; ++i) {
        int const cell = static_cast<int>(generator() % 30);
        int const other = static_cast<int>(generator() % 30);
        std::swap(order[cell], order[other]);
        contrast.renew(cell / 5, other / 5);
        ColumnContrast const anew(difference, order);
        for (int column = 0; column < 6; ++column)
            ASSERT_EQ(contrast.of(column), anew.of(column));
    }
}

TEST(ColumnContrast, IsRaisedWithoutGivingUpTheSmallestDifference)
{
    // Two columns alike, and each its own reverse.
    OrderTask const task = taskOf(
        {2, 5}, {grey(10), grey(60), grey(12), grey(62), grey(14), grey(11), grey(61), grey(13), grey(63), grey(15)});
    PairDifference const difference(task);
    ColumnOrder order = asTheyStand(task, 5);
    float const smallest = 30 * 30;
    ColumnContrast contrast(difference, order);
    float const before = contrast.ofAll();
    CellSwap cells(difference, order, smallest);
    RandomNumbers random(1);
    raiseColumnContrast(contrast, cells, random, 1);
    EXPECT_GT(contrast.ofAll(), before);
    EXPECT_GE(smallestDifference(order, difference), smallest);
    EXPECT_EQ(contrast.ofAll(), ColumnContrast(difference, order).ofAll());
}
