// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartReference.h"

#include "support/CheckedChart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;

// A description of rows such as "1\tA1\tN\t0\t0\t0".
std::string described(std::string const& head, std::string const& rows)
{
    return "<targetdescription>\n" + head +
           "\n<targetdefinition>\nIS12642\nBEGIN_DATA_FORMAT\nSAMPLE_ID\tSAMPLE_LOC\tCONTROL\tRGB_R\tRGB_G\tRGB_B\n"
           "END_DATA_FORMAT\nBEGIN_DATA\n" +
           rows + "END_DATA\n</targetdefinition>\n</targetdescription>\n";
}

TEST(ChartReference, HasPatchesInTheOrderOfColumnsAndRows)
{
    ChartReference const chart =
        readReference(
            described("", "1\tB1\tN\t0\t0\t0\n2\tB2\tI\t255\t255\t255\n3\tA1\tN\t255\t0\t51\n4\tA2\tN\t1\t2\t3\n"))
            .chart;
    ASSERT_EQ(chart.patches.size(), 4U);
    EXPECT_EQ(chart.patches[0].label, "A1");
    EXPECT_EQ(chart.patches[0].id, "3");
    EXPECT_THAT(chart.patches[0].device, ElementsAre(1, 0, 0.2, 0));
    EXPECT_TRUE(chart.patches[3].isFiller);
    EXPECT_TRUE(chart.isWhite(3));
    EXPECT_FALSE(chart.isWhite(0));
    ASSERT_EQ(chart.strips.size(), 2U);
    EXPECT_EQ(chart.strips[1].label, "B");
    EXPECT_EQ(chart.rowOf(3), 1U);
    EXPECT_EQ(chart.findLabel("B1"), 2U);
    EXPECT_EQ(chart.findLabel("C1"), std::nullopt);
}

TEST(ChartReference, DividesColumnsByPages)
{
    ChartReference const chart = checkedChart({3, 4, 5});
    EXPECT_EQ(chart.sheetCount, 3U);
    EXPECT_EQ(chart.strips.size(), 12U);
    EXPECT_EQ(chart.stripsOf(1)[0], 4U);
    EXPECT_EQ(chart.stripsOf(1)[1], 8U);
    EXPECT_EQ(chart.name, "Checked");
}

// A page of two sheets side by side: no sheet shows column B.
TEST(ChartReference, DividesAPageWhereNoSheetShowsAColumn)
{
    ChartReference const chart = readReference(described("<pages>1</pages><columns>3</columns><rows>2</rows>",
                                                         "1\tA1\tN\t1\t2\t3\n2\tA2\tN\t4\t5\t6\n"
                                                         "3\tB1\tI\t255\t255\t255\n4\tB2\tI\t255\t255\t255\n"
                                                         "5\tC1\tN\t7\t8\t9\n6\tC2\tI\t255\t255\t255\n"))
                                     .chart;
    EXPECT_EQ(chart.sheetCount, 2U);
    ASSERT_EQ(chart.strips.size(), 2U);
    EXPECT_EQ(chart.strips[1].label, "C");
    EXPECT_TRUE(chart.isHidden("B1"));
    EXPECT_TRUE(chart.isHidden("B2"));
    EXPECT_FALSE(chart.isHidden("C1"));
}

TEST(ChartReference, KnowsColumnsBeyondTheAlphabet)
{
    ChartReference const chart = checkedChart({1, 54, 1});
    EXPECT_EQ(chart.strips[26].label, "a");
    EXPECT_EQ(chart.strips[52].label, "AA");
    EXPECT_EQ(chart.strips[53].label, "AB");
}

struct BadDescription
{
    char const* text;
    char const* fault;
};

TEST(ChartReference, SaysWhatIsWrong)
{
    BadDescription const bad[] = {
        {"CGATS.17\nBEGIN_DATA_FORMAT\nA\nEND_DATA_FORMAT\nBEGIN_DATA\n1\nEND_DATA\n", "no target description"},
        {"<targetdescription>\n", "without <targetdefinition>"},
        {"", ""},
    };
    for (BadDescription const& description : bad)
        EXPECT_THAT(readReference(description.text).fault, HasSubstr(description.fault));
    EXPECT_THAT(readReference(described("", "1\tA1\tN\t1\t2\t3\n2\tA1\tN\t1\t2\t3\n")).fault, HasSubstr("\"A1\""));
    EXPECT_THAT(readReference(described("", "1\t11\tN\t1\t2\t3\n")).fault, HasSubstr("\"11\""));
    EXPECT_THAT(readReference(described("", "1\tA0\tN\t1\t2\t3\n")).fault, HasSubstr("\"A0\""));
    EXPECT_THAT(readReference(described("", "1\tA99999999999999999999\tN\t1\t2\t3\n")).fault, HasSubstr("no place"));
    EXPECT_THAT(readReference(described("", "1\tA1\tN\t1\tx\t3\n")).fault, HasSubstr("\"x\""));
    EXPECT_THAT(readReference(described("", "")).fault, HasSubstr("no patches"));
    EXPECT_THAT(readReference(checkedDescription({1, 1001, 100})).fault, HasSubstr("more than 100000 patches"));
}

} // namespace
