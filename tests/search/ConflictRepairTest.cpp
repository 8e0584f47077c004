// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ConflictRepair.h"

#include "search/OrderTasks.h"

#include <gtest/gtest.h>

TEST(ConflictRepair, SeparatesDarkAndLightInEachColumn)
{
    // 24 dark and 24 light greys, as they come: all alike touch.
    std::vector<Lab> colors;
    for (int i = 0; i < 24; ++i)
        colors.push_back(grey(5.0f + static_cast<float>(i) / 4));
    for (int i = 0; i < 24; ++i)
        colors.push_back(grey(70.0f + static_cast<float>(i) / 4));
    OrderTask const task = taskOf({4, 12}, colors);
    PairDifference const difference(task);
    ColumnOrder order{12, std::vector<int>(48)};
    std::iota(order.patchAt.begin(), order.patchAt.end(), 0);
    PlaceLine line(difference, order, {{0, 12}, {12, 12}, {24, 12}, {36, 12}});
    line.forbidBelow(19 * 19);
    RandomNumbers random(1);
    std::int64_t work = 10'000'000;
    EXPECT_TRUE(repairConflicts(line, random, work));
    line.writeTo(order);
    EXPECT_GE(smallestDifference(order, difference), 19 * 19);
}

TEST(ConflictRepair, EndsWhenTheWorkIsDone)
{
    OrderTask const task = taskOf({1, 3}, {grey(50), grey(50), grey(50)});
    PlaceLine line(PairDifference(task), {3, {0, 1, 2}}, {{0, 3}});
    line.forbidBelow(100);
    RandomNumbers random(1);
    std::int64_t work = 10000;
    EXPECT_FALSE(repairConflicts(line, random, work));
    EXPECT_LE(work, 0);
    EXPECT_EQ(line.countConflicts(), 2);
}
