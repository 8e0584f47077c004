// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OrderBound.h"

#include "search/OrderTasks.h"

#include <gtest/gtest.h>

TEST(OrderBound, IsTheDifferenceToThePaperWhereColumnsAreSinglePatches)
{
    EXPECT_EQ(findOrderBound(taskOf({3, 1}, {grey(5), grey(60), grey(25)})).squared, 35.0f * 35.0f);
}

TEST(OrderBound, IsNotAboveTheSecondLargestDifferenceOfAnyPatch)
{
    // Grey 10 is 85 from the paper, 40 from grey 50 and 1 from grey 9.
    EXPECT_EQ(findOrderBound(taskOf({1, 3}, {grey(50), grey(9), grey(10)})).squared, 40.0f * 40.0f);
}

TEST(OrderBound, KnowsThatEvenColumnsNeedAPartnerForEachPatchWithoutThePaper)
{
    // Three of the four are alike: with the paper, each could have a partner far away. Two of the alike must touch,
    // since the column's first two and last two patches are pairs.
    EXPECT_EQ(findOrderBound(taskOf({1, 4}, {grey(10), grey(11), grey(12), grey(90)})).squared, 4);
}

TEST(OrderBound, KnowsThatColumnsOfOddHeightHaveRoomForOneMoreOfAKind)
{
    EXPECT_EQ(findOrderBound(taskOf({1, 3}, {grey(10), grey(12), grey(90)})).squared, 78.0f * 78.0f);
}

TEST(OrderBound, IsNotBelowTheOptimumOfAnyTinyChart)
{
    std::mt19937 generator(1);
    for (int i = 0; i < 3000; ++i) {
        int const height = 1 + static_cast<int>(generator() % 7);
        int const width = 1 + static_cast<int>(generator() % static_cast<unsigned>(std::max(7 / height, 1)));
        OrderTask const task = randomTask({width, height}, generator);
        EXPECT_GE(findOrderBound(task).squared, EveryOrder(task).getLargest()) << width << " x " << height << ' ' << i;
    }
}

TEST(OrderBound, DoesNotDependOnWhatWasReached)
{
    std::mt19937 generator(2);
    for (int i = 0; i < 50; ++i) {
        OrderTask const task = randomTask({3, 8}, generator);
        float const bound = findOrderBound(task).squared;
        EXPECT_EQ(findOrderBound(task, bound / 2).squared, bound);
        EXPECT_EQ(findOrderBound(task, bound).squared, bound);
    }
}

TEST(OrderBound, IsLooseAndSaysSoAboveItsLimit)
{
    std::mt19937 generator(3);
    OrderTask const small = randomTask({10, 25}, generator);
    EXPECT_FALSE(findOrderBound(small).isLoose);
    OrderTask const large = randomTask({209, 25}, generator);
    EXPECT_TRUE(findOrderBound(large).isLoose);
    EXPECT_GE(findOrderBound(large).squared, smallestAlongScan(large, [&] {
                  std::vector<int> asItStands(large.colors.size());
                  std::iota(asItStands.begin(), asItStands.end(), 0);
                  return asItStands;
              }()));
}

TEST(OrderBound, IsZeroIfNoPatchTakesPart)
{
    EXPECT_EQ(findOrderBound({{0, 0}, {{95, 0, 0}}, {}, {}}).squared, 0);
}
