// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TableSummary.h"

#include "PatchImport.h"

#include <gtest/gtest.h>

namespace
{

TableSummary summaryOfText(std::string const& text)
{
    TableImport const table = importTable(text);
    EXPECT_TRUE(table.isGood());
    return summaryOf(table.patches);
}

TEST(TableSummary, CountsColoursRepeatsAndWhites)
{
    TableSummary const summary = summaryOfText("CMYK_C CMYK_M CMYK_Y CMYK_K\n"
                                               "0 0 0 0\n"
                                               "10 20 30 40\n"
                                               "0.0 0 -0 0e5\n"
                                               "1e1 20.0 30 40\n"
                                               "0 0 0 0.1\n");
    EXPECT_EQ(summary.colorSpace, CMYK);
    EXPECT_EQ(summary.patches, 5U);
    EXPECT_EQ(summary.distinctColors, 3U);
    EXPECT_EQ(summary.repeats, 2U);
    EXPECT_EQ(summary.whites, 2U);
}

TEST(TableSummary, TakesFullRgbForWhite)
{
    EXPECT_EQ(summaryOfText("RGB_R RGB_G RGB_B\n255 255 255\n0 0 0\n255 255.0 254\n").whites, 1U);
}

TEST(TableSummary, TellsTheRangeOfEachChannel)
{
    TableSummary const summary = summaryOfText("RGB_R RGB_G RGB_B\n10 5.5 3\n0 255 3\n");
    ASSERT_EQ(summary.ranges.size(), 3U);
    EXPECT_EQ(summary.ranges[0].lowest, 0);
    EXPECT_EQ(summary.ranges[0].highest, 10);
    EXPECT_EQ(summary.ranges[1].lowest, 5.5);
    EXPECT_EQ(summary.ranges[1].highest, 255);
    EXPECT_EQ(summary.ranges[2].lowest, 3);
    EXPECT_EQ(summary.ranges[2].highest, 3);
}

TEST(TableSummary, SumsInksExactly)
{
    // 3 x 99.9 + 0.3 is 300 and not above; in binary fractions it would be.
    TableSummary const summary = summaryOfText("CMYK_C CMYK_M CMYK_Y CMYK_K\n"
                                               "99.9 99.9 99.9 0.3\n"
                                               "100 100 100 0.1\n"
                                               "100 100 100 20.1\n"
                                               "100 100 100 100\n"
                                               "100 100 100 100\n");
    EXPECT_EQ(summary.largestInkSum, 400);
    EXPECT_EQ(summary.largestInkSumLine, 5U);
    EXPECT_EQ(summary.inkExcesses[0].limit, 300);
    EXPECT_EQ(summary.inkExcesses[0].patches, 4U);
    EXPECT_EQ(summary.inkExcesses[1].limit, 320);
    EXPECT_EQ(summary.inkExcesses[1].patches, 3U);
    EXPECT_EQ(summary.inkExcesses[2].limit, 400);
    EXPECT_EQ(summary.inkExcesses[2].patches, 0U);
}

TEST(TableSummary, TellsWhereTheTableStands)
{
    TableSummary const summary = summaryOfText("IT8.7/2\n"
                                               "BEGIN_DATA_FORMAT\nLAB_L LAB_A LAB_B\nEND_DATA_FORMAT\n"
                                               "BEGIN_DATA\n1 2 3\nEND_DATA\n"
                                               "BEGIN_DATA_FORMAT\nRGB_R RGB_G RGB_B\nEND_DATA_FORMAT\n"
                                               "BEGIN_DATA\n255 2 3\n\n1 2 3\nEND_DATA\n");
    EXPECT_EQ(summary.tableNumber, 2U);
    EXPECT_EQ(summary.tableCount, 2U);
    EXPECT_EQ(summary.firstLine, 12U);
    EXPECT_EQ(summary.lastLine, 14U);
}

} // namespace
