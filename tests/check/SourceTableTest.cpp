// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SourceTable.h"

#include "input/PatchImport.h"
#include "support/CheckedChart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::ElementsAre;
using testing::StartsWith;

// White and a filler in column A, red and green in column B, red and white in column C.
ChartReference smallChart()
{
    return readReference("<targetdescription>\n<targetdefinition>\nIS12642\nBEGIN_DATA_FORMAT\nSAMPLE_ID\tSAMPLE_LOC\t"
                         "CONTROL\tRGB_R\tRGB_G\tRGB_B\nEND_DATA_FORMAT\nBEGIN_DATA\n1\tA1\tN\t255\t255\t255\n"
                         "2\tA2\tI\t255\t255\t255\n3\tB1\tN\t255\t0\t0\n4\tB2\tN\t0\t255\t0\n5\tC1\tN\t255\t0\t0\n"
                         "6\tC2\tN\t255\t255\t255\nEND_DATA\n</targetdefinition>\n</targetdescription>\n")
        .chart;
}

SourceTable sourceOf(std::string const& rows, std::string const& fields = "RGB_R RGB_G RGB_B")
{
    TableImport const import =
        importTable("CGATS.17\nBEGIN_DATA_FORMAT\n" + fields + "\nEND_DATA_FORMAT\nBEGIN_DATA\n" + rows + "END_DATA\n",
                    {DeviceScale::eightBit, RGB, 0, false});
    EXPECT_TRUE(import.isGood());
    return findSourceTable(smallChart(), import.patches);
}

TEST(SourceTable, FindsEqualRowsInTheOrderOfTheChart)
{
    SourceTable const table = sourceOf("0 255 0\n255 0 0\n255 255 255\n255 0 0\n255 255 255\n");
    EXPECT_EQ(table.fault, "");
    EXPECT_THAT(table.patches, ElementsAre(3, 2, 0, 4, 5));
}

TEST(SourceTable, NumbersItsRowsWhereTheyHaveNoIds)
{
    SourceTable const table = sourceOf("0 255 0\n255 0 0\n");
    EXPECT_THAT(table.ids, ElementsAre("1", "2"));
    EXPECT_THAT(table.names, ElementsAre("", ""));
}

TEST(SourceTable, KeepsTheIdsAndNamesOfItsRows)
{
    SourceTable const table =
        sourceOf("g7 Grass 0 255 0\nr1 Rose 255 0 0\n", "SAMPLE_ID SAMPLE_NAME RGB_R RGB_G RGB_B");
    EXPECT_THAT(table.ids, ElementsAre("g7", "r1"));
    EXPECT_THAT(table.names, ElementsAre("Grass", "Rose"));
}

// The chart has three whites, but one of them only fills it up. The rows begin at line 6.
TEST(SourceTable, HasARowTooManyOfOneColour)
{
    SourceTable const table = sourceOf("255 255 255\n255 255 255\n255 255 255\n");
    EXPECT_THAT(table.fault, StartsWith("line 8: these device values are not on the chart, or not so often"));
}

// Rows green, white, red, white, red: patches 3, 0, 2, 5, 4. Place 1 is the filler's.
TEST(SourceTable, GivesTwoOrdersThatPassOverFillers)
{
    SourceTable const table = sourceOf("0 255 0\n255 255 255\n255 0 0\n255 255 255\n255 0 0\n");
    ASSERT_THAT(table.patches, ElementsAre(3, 0, 2, 5, 4));
    auto const orders = ordersOf(smallChart(), table);
    ASSERT_EQ(orders.size(), 2U);
    EXPECT_THAT(patchesOf(orders[0].assignment), ElementsAre(3, 1, 0, 2, 5, 4));
    EXPECT_THAT(patchesOf(orders[1].assignment), ElementsAre(2, 1, 3, 0, 5, 4));
}

} // namespace
