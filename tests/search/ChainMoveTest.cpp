// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChainMove.h"

#include "search/OrderTasks.h"

#include <gtest/gtest.h>

namespace
{

constexpr std::int64_t muchWork = 1000000;

std::vector<int> sorted(std::vector<int> numbers)
{
    std::ranges::sort(numbers);
    return numbers;
}

} // namespace

TEST(ChainMove, SolvesAConflictByASwapOfPlacesThatDoNotTouch)
{
    // 62 stands between 10 and 35; 90, between 30 and 5, can change places with it only together with others.
    OrderTask const task = taskOf({2, 3}, {grey(10), grey(62), grey(35), grey(30), grey(90), grey(5)});
    PairDifference const difference(task);
    ColumnOrder order{3, {0, 1, 2, 3, 4, 5}};
    PlaceLine line(difference, order, {{0, 3}, {3, 3}});
    line.forbidBelow(50 * 50);
    ASSERT_EQ(line.countConflicts(), 1) << "62 and 35";
    ChainMove chain(line);
    RandomNumbers random(1);
    std::int64_t work = muchWork;
    for (int i = 0; i < 50 && line.countConflicts() > 0; ++i)
        chain.apply(line.getConflicts().front(), random, work);
    EXPECT_EQ(line.countConflicts(), 0);
    EXPECT_LT(work, muchWork);
    line.writeTo(order);
    EXPECT_GE(smallestDifference(order, difference), 50 * 50);
}

TEST(ChainMove, NeverMakesMoreConflicts)
{
    std::mt19937 generator(1);
    for (int i = 0; i < 60; ++i) {
        OrderTask const task = randomTask({4, 9}, generator);
        PairDifference const difference(task);
        ColumnOrder order{9, std::vector<int>(36)};
        std::iota(order.patchAt.begin(), order.patchAt.end(), 0);
        PlaceLine line(difference, order, {{0, 9}, {9, 9}, {20, 5}, {27, 9}});
        if (i % 2 == 0)
            line.forbidBelow(60 * 60);
        else
            line.forbidAlikeInLightness(20 * 20);
        ChainMove chain(line);
        RandomNumbers random(static_cast<std::uint64_t>(i));
        std::int64_t work = muchWork;
        for (int step = 0; step < 40 && line.countConflicts() > 0; ++step) {
            int const before = line.countConflicts();
            chain.apply(line.getConflicts().back(), random, work);
            ASSERT_LE(line.countConflicts(), before);
        }
        line.writeTo(order);
        std::vector<int> all(36);
        std::iota(all.begin(), all.end(), 0);
        EXPECT_EQ(sorted(order.patchAt), all);
    }
}

TEST(ChainMove, MakesNoPairThatIsNotAllowed)
{
    std::mt19937 generator(2);
    for (int i = 0; i < 40; ++i) {
        OrderTask const task = randomTask({3, 8}, generator);
        PairDifference const difference(task);
        ColumnOrder order{8, std::vector<int>(24)};
        std::iota(order.patchAt.begin(), order.patchAt.end(), 0);
        float const smallest = smallestDifference(order, difference);
        PlaceLine line(difference, order, {{0, 8}, {8, 8}, {16, 8}});
        line.forbidAlikeInLightness(smallest);
        ChainMove chain(line);
        RandomNumbers random(3);
        std::int64_t work = muchWork;
        for (int step = 0; step < 40 && line.countConflicts() > 0; ++step)
            chain.apply(line.getConflicts().front(), random, work);
        line.writeTo(order);
        EXPECT_GE(smallestDifference(order, difference), smallest);
    }
}
