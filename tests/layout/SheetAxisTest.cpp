// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SheetAxis.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// A4 across: 5 mm, 190 mm and 15 mm.
constexpr SheetAxis across{210, 5, 190};

void expectAxis(SheetAxis const& axis, double sheet, double start, double extent)
{
    EXPECT_EQ(axis.sheet, sheet);
    EXPECT_EQ(axis.start, start);
    EXPECT_EQ(axis.extent, extent);
}

} // namespace

TEST(SheetAxis, TheFarMarginIsTheRestOfTheSheet)
{
    EXPECT_EQ(across.farMargin(), 15);
}

TEST(SheetAxis, ASheetKeepsItsMarginsWhenItsSizeChanges)
{
    SheetAxis axis = across;
    EXPECT_TRUE(axis.setSheet(297));
    expectAxis(axis, 297, 5, 277);
    EXPECT_TRUE(axis.setSheet(100));
    expectAxis(axis, 100, 5, 80);
    // Just the margins are left.
    EXPECT_TRUE(axis.setSheet(20));
    expectAxis(axis, 20, 5, 0);
}

TEST(SheetAxis, ASheetSmallerThanItsMarginsLosesBoth)
{
    SheetAxis axis = across;
    EXPECT_TRUE(axis.setSheet(19));
    expectAxis(axis, 19, 0, 19);
}

TEST(SheetAxis, TheFarMarginMovesTheEndOfTheArea)
{
    SheetAxis axis = across;
    EXPECT_TRUE(axis.setFarMargin(0));
    expectAxis(axis, 210, 5, 205);
    EXPECT_TRUE(axis.setFarMargin(204));
    expectAxis(axis, 210, 5, 1);
}

TEST(SheetAxis, TheNearMarginMovesTheStartOfTheArea)
{
    SheetAxis axis = across;
    EXPECT_TRUE(axis.setNearMargin(0));
    expectAxis(axis, 210, 0, 195);
    EXPECT_TRUE(axis.setNearMargin(20));
    expectAxis(axis, 210, 20, 175);
    EXPECT_EQ(axis.farMargin(), 15);
}

TEST(SheetAxis, AMarginThatLeavesNothingClearsBothMargins)
{
    SheetAxis axis = across;
    EXPECT_TRUE(axis.setFarMargin(205));
    expectAxis(axis, 210, 0, 210);
    axis = across;
    EXPECT_TRUE(axis.setNearMargin(195));
    expectAxis(axis, 210, 0, 210);
}

TEST(SheetAxis, AValueThatIsNoLengthChangesNothing)
{
    SheetAxis axis = across;
    EXPECT_FALSE(axis.setSheet(0));
    for (double const value : {-1.0, notANumber}) {
        EXPECT_FALSE(axis.setSheet(value));
        EXPECT_FALSE(axis.setFarMargin(value));
        EXPECT_FALSE(axis.setNearMargin(value));
    }
    expectAxis(axis, 210, 5, 190);
}

TEST(SheetAxis, ThePresentValueChangesNothing)
{
    SheetAxis axis = across;
    EXPECT_FALSE(axis.setSheet(210));
    EXPECT_FALSE(axis.setFarMargin(15));
    EXPECT_FALSE(axis.setNearMargin(5));
    expectAxis(axis, 210, 5, 190);
}
