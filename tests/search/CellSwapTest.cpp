// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CellSwap.h"

#include "search/OrderTasks.h"

#include <gtest/gtest.h>

namespace
{

// Columns 10 60 20 and 30 80 40; paper is 95. The smallest difference is 40.
class CellSwapOfGreys : public testing::Test
{
public:
    OrderTask task = taskOf({2, 3}, {grey(10), grey(60), grey(20), grey(30), grey(80), grey(40)});
    PairDifference difference{task};
    ColumnOrder order{3, {0, 1, 2, 3, 4, 5}};
};

} // namespace

TEST_F(CellSwapOfGreys, SwapsPatchesIfTheSmallestDifferenceIsKept)
{
    CellSwap cells(difference, order, 30 * 30);
    EXPECT_TRUE(cells.tryToSwap(0, 3)) << "30 is 30 from 60";
    EXPECT_EQ(order.patchAt, (std::vector<int>{3, 1, 2, 0, 4, 5}));
}

TEST_F(CellSwapOfGreys, RefusesASmallerSmallestDifference)
{
    CellSwap cells(difference, order, 40 * 40);
    EXPECT_FALSE(cells.tryToSwap(1, 4)) << "60 would stand beside 30";
    EXPECT_FALSE(cells.tryToSwap(0, 1)) << "60 would stand beside the paper";
    EXPECT_EQ(order.patchAt, (std::vector<int>{0, 1, 2, 3, 4, 5}));
}

TEST_F(CellSwapOfGreys, RefusesMorePairsThatAreAlikeInLightness)
{
    // 80 and a red of 78 in different columns; 20 and 78 differ by 90 in delta E.
    task.colors[2] = {{78, 90, 0}};
    CellSwap cells(difference, order, 15 * 15);
    EXPECT_FALSE(cells.tryToSwap(2, 5)) << "78 would stand beside 80";
    EXPECT_FALSE(cells.tryToSwap(2, 3));
    EXPECT_TRUE(cells.tryToSwap(2, 0));
}

TEST_F(CellSwapOfGreys, LeavesPatchesThatDoNotTakePart)
{
    task.takesPart[3] = false;
    CellSwap cells(difference, order, 0);
    EXPECT_FALSE(cells.tryToSwap(0, 3));
    EXPECT_FALSE(cells.tryToSwap(3, 0));
    EXPECT_TRUE(cells.tryToSwap(0, 2));
    EXPECT_FALSE(cells.canMoveColumns());
}

TEST_F(CellSwapOfGreys, TurnsAndSwapsColumns)
{
    CellSwap cells(difference, order, 0);
    EXPECT_TRUE(cells.canMoveColumns());
    cells.turnColumn(1);
    EXPECT_EQ(order.patchAt, (std::vector<int>{0, 1, 2, 5, 4, 3}));
    cells.swapColumns(0, 1);
    EXPECT_EQ(order.patchAt, (std::vector<int>{5, 4, 3, 0, 1, 2}));
}
