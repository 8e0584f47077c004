// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "RepeatSpread.h"

#include "search/OrderTasks.h"

#include <gtest/gtest.h>

namespace
{

constexpr std::int64_t beside = 1 << 20;

// Columns of 10 90 20 and 30 10 40 and 50 10 60: grey 10 three times.
class RepeatSpreadOfGreys : public testing::Test
{
public:
    OrderTask task =
        taskOf({3, 3}, {grey(10), grey(90), grey(20), grey(30), grey(10), grey(40), grey(50), grey(10), grey(60)});
    PairDifference difference{task};
    ColumnOrder order{3, {0, 1, 2, 3, 4, 5, 6, 7, 8}};
};

} // namespace

TEST_F(RepeatSpreadOfGreys, AddsUpPairsByTheirDistance)
{
    RepeatSpread const spread(difference, order, 0);
    EXPECT_EQ(spread.getRepeats(), (std::vector<int>{0, 4, 7}));
    // Squared distances: 2 between the first two, 5, and 1.
    EXPECT_EQ(spread.closenessOf(4), beside / 2 + beside);
    EXPECT_EQ(spread.closenessOf(1), 0);
    EXPECT_EQ(spread.closenessOfAll(), beside / 2 + beside / 5 + beside);
}

TEST_F(RepeatSpreadOfGreys, CountsNothingBetweenSheets)
{
    RepeatSpread const spread(difference, order, 2);
    EXPECT_EQ(spread.closenessOfAll(), beside / 2);
}

TEST_F(RepeatSpreadOfGreys, FollowsChanges)
{
    RepeatSpread spread(difference, order, 1);
    std::swap(order[1], order[4]);
    spread.renew(1);
    spread.renew(4);
    EXPECT_EQ(spread.cellOf(4), 1);
    EXPECT_EQ(spread.closenessOfAll(), beside);
    EXPECT_EQ(spread.closenessOfColumn(0), 2 * beside);
}

TEST_F(RepeatSpreadOfGreys, LeavesOutPatchesThatDoNotTakePart)
{
    task.takesPart[7] = false;
    EXPECT_EQ(RepeatSpread(difference, order, 0).closenessOfAll(), beside / 2);
}

TEST(RepeatSpread, PutsRepeatsOnDifferentSheets)
{
    // Four sheets of a column; two colours, each twice in the same column.
    OrderTask const task = taskOf({4, 3}, {grey(10), grey(90), grey(10), grey(20), grey(80), grey(20), grey(1),
                                           grey(50), grey(3), grey(4), grey(60), grey(5)});
    PairDifference const difference(task);
    ColumnOrder order{3, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}};
    float const smallest = 30 * 30;
    CellSwap cells(difference, order, smallest);
    ColumnContrast contrast(difference, order);
    float const before = contrast.ofAll();
    RepeatSpread spread(difference, order, 1);
    ASSERT_EQ(spread.closenessOfAll(), beside / 4 * 2);
    RandomNumbers random(1);
    spreadRepeats(spread, contrast, cells, random, 10);
    EXPECT_EQ(spread.closenessOfAll(), 0);
    EXPECT_GE(smallestDifference(order, difference), smallest);
    EXPECT_GE(ColumnContrast(difference, order).ofAll(), before);
}
