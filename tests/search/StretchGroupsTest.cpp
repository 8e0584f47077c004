// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "StretchGroups.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace
{

ColumnOrder orderOf(int columns, int height)
{
    ColumnOrder order{height, std::vector<int>(static_cast<std::size_t>(columns * height))};
    std::iota(order.patchAt.begin(), order.patchAt.end(), 0);
    return order;
}

} // namespace

TEST(StretchGroups, AreOneForAChartThatIsNotLarge)
{
    RandomNumbers random(1);
    auto const groups = divideIntoGroups(orderOf(208, 25), random);
    ASSERT_EQ(groups.size(), 1U);
    ASSERT_EQ(groups[0].size(), 208U);
    EXPECT_EQ(groups[0][207].firstCell, 207 * 25);
    EXPECT_EQ(groups[0][207].length, 25);
}

TEST(StretchGroups, HoldEachColumnOfALargeChartOnce)
{
    RandomNumbers random(1);
    auto const groups = divideIntoGroups(orderOf(400, 25), random);
    EXPECT_GE(groups.size(), 4U);
    std::vector<int> firstCells;
    for (auto const& group : groups) {
        EXPECT_LE(group.size(), 104U);
        for (Stretch const& stretch : group) {
            EXPECT_EQ(stretch.length, 25);
            firstCells.push_back(stretch.firstCell);
        }
    }
    std::ranges::sort(firstCells);
    ASSERT_EQ(firstCells.size(), 400U);
    for (std::size_t i = 0; i < firstCells.size(); ++i)
        EXPECT_EQ(firstCells[i], static_cast<int>(25 * i));
}

TEST(StretchGroups, CutLongColumnsWithACellBetweenTheParts)
{
    RandomNumbers random(1);
    std::vector<int> seen(20000);
    for (auto const& group : divideIntoGroups(orderOf(2, 10000), random))
        for (Stretch const& stretch : group) {
            EXPECT_LE(stretch.length, 500);
            EXPECT_EQ(stretch.firstCell / 10000, (stretch.firstCell + stretch.length - 1) / 10000);
            for (int i = 0; i < stretch.length; ++i)
                ++seen[static_cast<std::size_t>(stretch.firstCell + i)];
        }
    EXPECT_LE(*std::ranges::max_element(seen), 1);
    for (std::size_t cell = 1; cell < seen.size(); ++cell)
        EXPECT_GE(seen[cell - 1] + seen[cell], 1) << cell;
}
