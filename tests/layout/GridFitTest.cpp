// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "GridFit.h"

#include "support/GeometryValues.h"

#include <gtest/gtest.h>

TEST(GridFit, CapacityIsColumnsTimesRowsTimesPages)
{
    EXPECT_EQ(capacity({4, 5}, 3), 60);
    EXPECT_EQ(capacity({100'000, 100'000}, 2), 20'000'000'000);
}

TEST(GridFit, AGridWithACellHasRoom)
{
    EXPECT_TRUE(hasRoom({1, 1}));
    EXPECT_FALSE(hasRoom({0, 5}));
    EXPECT_FALSE(hasRoom({5, 0}));
    EXPECT_FALSE(hasRoom({-2, -3}));
}

TEST(GridFit, AGridBeyond32BitsHasNoRoom)
{
    // 46340^2 = 2147395600 and 46340 * 46342 = 2147488280; the limit is 2147483647.
    EXPECT_TRUE(hasRoom({46340, 46340}));
    EXPECT_FALSE(hasRoom({46340, 46342}));
}

TEST(GridFit, AScanAlongYLosesColumns)
{
    EXPECT_EQ(shrunkForScan({10, 30}, 300, 1, alongY), (IntSize{10, 30}));
    EXPECT_EQ(shrunkForScan({10, 30}, 270, 1, alongY), (IntSize{9, 30}));
    EXPECT_EQ(shrunkForScan({10, 30}, 269, 1, alongY), (IntSize{9, 30}));
    EXPECT_EQ(shrunkForScan({10, 30}, 301, 2, alongY), (IntSize{6, 30}));
}

TEST(GridFit, AScanAlongYLosesRowsOnlyFromASingleColumn)
{
    EXPECT_EQ(shrunkForScan({10, 30}, 31, 1, alongY), (IntSize{2, 30}));
    EXPECT_EQ(shrunkForScan({10, 30}, 29, 1, alongY), (IntSize{1, 29}));
    EXPECT_EQ(shrunkForScan({10, 30}, 1, 1, alongY), (IntSize{1, 1}));
}

TEST(GridFit, AScanAlongXLosesRowsOnly)
{
    EXPECT_EQ(shrunkForScan({26, 24}, 598, 1, alongX), (IntSize{26, 23}));
    EXPECT_EQ(shrunkForScan({26, 24}, 3, 1, alongX), (IntSize{26, 1}));
    EXPECT_EQ(shrunkForScan({26, 24}, 625, 2, alongX), (IntSize{26, 13}));
}

TEST(GridFit, SpotsKeepAGridIfEveryNeighbourIsTooSmall)
{
    EXPECT_EQ(shrunkForSpots({3, 3}, 9, 1), (IntSize{3, 3}));
    EXPECT_EQ(shrunkForSpots({3, 3}, 7, 1), (IntSize{3, 3}));
}

TEST(GridFit, SpotsTakeTheNeighbourThatLosesTheLeast)
{
    // 3 x 3, then 3 x 2; for four patches then 2 x 2.
    EXPECT_EQ(shrunkForSpots({3, 3}, 6, 1), (IntSize{3, 2}));
    EXPECT_EQ(shrunkForSpots({3, 3}, 5, 1), (IntSize{3, 2}));
    EXPECT_EQ(shrunkForSpots({3, 3}, 4, 1), (IntSize{2, 2}));
    EXPECT_EQ(shrunkForSpots({3, 3}, 1, 1), (IntSize{1, 1}));
}

TEST(GridFit, SpotsOnSeveralPagesShareThePatches)
{
    EXPECT_EQ(shrunkForSpots({3, 3}, 8, 2), (IntSize{2, 2}));
    EXPECT_EQ(shrunkForSpots({3, 3}, 13, 2), (IntSize{3, 3}));
}

TEST(GridFit, SpotsShortenVeryLongGridsAtOnce)
{
    EXPECT_EQ(shrunkForSpots({1, 2'000'000'000}, 24, 1), (IntSize{1, 24}));
    EXPECT_EQ(shrunkForSpots({2'000'000'000, 1}, 24, 1), (IntSize{24, 1}));
}
