// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PlaceLine.h"

#include "search/OrderTasks.h"

#include <gtest/gtest.h>

namespace
{

// Two columns of three: 10 60 20 and 30 90 40, with paper of 95 around.
class PlaceLineOfGreys : public testing::Test
{
public:
    OrderTask task = taskOf({2, 3}, {grey(10), grey(60), grey(20), grey(30), grey(90), grey(40)});
    PairDifference difference{task};
    ColumnOrder order{3, {0, 1, 2, 3, 4, 5}};
};

} // namespace

TEST_F(PlaceLineOfGreys, PutsPaperAroundEachColumn)
{
    PlaceLine const line(difference, order, {{0, 3}, {3, 3}});
    ASSERT_EQ(line.countPlaces(), 10);
    EXPECT_EQ(line[0].patch, 6);
    EXPECT_EQ(line[4].patch, 6);
    EXPECT_EQ(line[5].patch, 6);
    EXPECT_EQ(line[6].patch, 3);
    EXPECT_FALSE(line[4].isMovable);
    EXPECT_TRUE(line[6].isMovable);
    EXPECT_EQ(line.getColumnHeight(), 3);
}

TEST_F(PlaceLineOfGreys, PutsTheNeighboursAroundAPartOfAColumn)
{
    PlaceLine line(difference, order, {{1, 1}});
    line.forbidBelow(45 * 45);
    ASSERT_EQ(line.countPlaces(), 3);
    EXPECT_FALSE(line[0].isMovable);
    EXPECT_EQ(line.countConflicts(), 1) << "60 and 20, but not 10 and 60";
    EXPECT_TRUE(line.isInConflict(1));
    EXPECT_EQ(line.getColumnHeight(), 0);
}

TEST_F(PlaceLineOfGreys, KnowsItsConflicts)
{
    PlaceLine line(difference, order, {{0, 3}, {3, 3}});
    line.forbidBelow(51 * 51);
    // 10-60, 60-20 and 90-40; 60 is no neighbour of paper, and 40 is 55 from it.
    EXPECT_EQ(line.countConflicts(), 3);
    line.forbidBelow(50 * 50);
    EXPECT_EQ(line.getConflicts(), std::vector<int>{2});
    // 60 and 90 change places.
    line.put(2, 4);
    line.put(7, 1);
    for (int const place : {1, 2, 6, 7})
        line.renewConflict(place);
    EXPECT_EQ(line.countConflicts(), 2) << "30-60 and 60-40";
    EXPECT_EQ(line.countConflictsOf(1, 7), 2);
    EXPECT_EQ(line.placeOf(4), 2);
    line.writeTo(order);
    EXPECT_EQ(order.patchAt, (std::vector<int>{0, 4, 2, 3, 1, 5}));
}

TEST_F(PlaceLineOfGreys, AllowsPairsInConflictAboveTheDifferenceOnly)
{
    task.colors[1] = {{12, 80, 0}};
    PlaceLine line(difference, order, {{0, 3}, {3, 3}});
    line.forbidAlikeInLightness(20 * 20);
    EXPECT_TRUE(line.isInConflict(1)) << "10 and 12";
    EXPECT_TRUE(line.areAllowed(0, 1));
    EXPECT_FALSE(line.areAllowed(0, 2)) << "10 and 20";
    EXPECT_TRUE(line.isAllowedAt(1, 2));
    EXPECT_FALSE(line.isAllowedAt(2, 2)) << "beside itself";
}

TEST_F(PlaceLineOfGreys, PinsPatchesThatDoNotTakePart)
{
    task.takesPart[4] = false;
    PlaceLine const line(difference, order, {{0, 3}, {3, 3}});
    EXPECT_FALSE(line[7].isMovable);
    EXPECT_EQ(line.getMovablePatches(), std::vector<FarPairs::Word>{0b101111});
    EXPECT_EQ(line.getColumnHeight(), 0);
}
