// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "JoinMove.h"

#include "search/OrderTasks.h"

#include <gtest/gtest.h>

namespace
{

// Lets a move work on the first conflict of an order at a threshold, once.
ColumnOrder joinedOnce(OrderTask const& task, int columns, float threshold)
{
    PairDifference const difference(task);
    int const height = difference.countPatches() / columns;
    ColumnOrder order{height, std::vector<int>(task.colors.size())};
    std::iota(order.patchAt.begin(), order.patchAt.end(), 0);
    std::vector<Stretch> stretches;
    for (int column = 0; column < columns; ++column)
        stretches.push_back({column * height, height});
    PlaceLine line(difference, order, stretches);
    line.forbidBelow(threshold * threshold);
    RandomNumbers random(1);
    std::int64_t work = 1000;
    JoinMove(line).apply(line.getConflicts().front(), random, work);
    EXPECT_LT(work, 1000);
    int const conflicts = line.countConflicts();
    line.writeTo(order);
    PlaceLine renewed(difference, order, stretches);
    renewed.forbidBelow(threshold * threshold);
    EXPECT_EQ(conflicts, renewed.countConflicts());
    return order;
}

} // namespace

TEST(JoinMove, TurnsAPartOfAColumnRound)
{
    // 10 and 15 touch. The part from 15 to 75, turned round, puts 75 beside 10 and 15 beside 80.
    ColumnOrder const order = joinedOnce(taskOf({1, 5}, {grey(10), grey(15), grey(75), grey(80), grey(20)}), 1, 50);
    EXPECT_EQ(order.patchAt, (std::vector<int>{0, 2, 1, 3, 4}));
}

TEST(JoinMove, SwapsTheEndsOfTwoColumns)
{
    ColumnOrder const order = joinedOnce(taskOf({2, 2}, {grey(10), grey(12), grey(50), grey(51)}), 2, 30);
    EXPECT_TRUE(order.patchAt == (std::vector<int>{0, 3, 2, 1}) || order.patchAt == (std::vector<int>{0, 2, 3, 1}));
}

TEST(JoinMove, NeverMakesMoreConflicts)
{
    std::mt19937 generator(1);
    for (int i = 0; i < 60; ++i) {
        OrderTask const task = randomTask({4, 7}, generator);
        PairDifference const difference(task);
        ColumnOrder order{7, std::vector<int>(28)};
        std::iota(order.patchAt.begin(), order.patchAt.end(), 0);
        float const smallest = smallestDifference(order, difference);
        PlaceLine line(difference, order, {{0, 7}, {7, 7}, {14, 7}, {21, 7}});
        if (i % 2 == 0)
            line.forbidBelow(60 * 60);
        else
            line.forbidAlikeInLightness(smallest);
        JoinMove join(line);
        RandomNumbers random(static_cast<std::uint64_t>(i));
        std::int64_t work = 1000000;
        for (int step = 0; step < 60 && line.countConflicts() > 0; ++step) {
            int const before = line.countConflicts();
            join.apply(line.getConflicts().back(), random, work);
            ASSERT_LE(line.countConflicts(), before);
        }
        line.writeTo(order);
        if (i % 2 != 0) {
            EXPECT_GE(smallestDifference(order, difference), smallest);
        }
        std::ranges::sort(order.patchAt);
        for (int patch = 0; patch < 28; ++patch)
            EXPECT_EQ(order[patch], patch);
    }
}
