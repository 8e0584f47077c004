// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Charts of extreme sizes and counts.

#include "ChartLayout.h"

#include "ChartChecks.h"
#include "support/CapturedOutput.h"
#include "support/TestChart.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

} // namespace

TEST(ChartLimits, ASheetFilledByTheBorderForLabelsHasNoRoom)
{
    GrowingArray<ColorEntry> entries = greyEntries(1);
    struct Case
    {
        RealRect content;
        bool hasRoom;
    };
    for (Case const& expected :
         {Case{{0, 0, 18, 100}, false}, Case{{0, 0, 17, 100}, false}, Case{{0, 0, 100, 8}, false},
          Case{{0, 0, 100, 7}, false}, Case{{0, 0, 18.5, 100}, false}, Case{{0, 0, 27.5, 100}, false},
          Case{{0, 0, 100, 17.5}, false}, Case{{0, 0, 28, 18}, true}, Case{{30, 40, 28, 18}, true}}) {
        SCOPED_TRACE(testing::PrintToString(expected.content));
        ChartLayout chart = chartOf(entries, instrument(tableSpot), sheetOf({200, 200}, expected.content), centimetre);
        EXPECT_EQ(errorsOf([&] { EXPECT_EQ(chart.computeLayout(0, 0), expected.hasRoom ? 100 : 0); }), "");
        EXPECT_EQ(chart.hasSomethingToOutpot(), expected.hasRoom);
    }
    // Tiny patches do not fit either if the border leaves no room.
    for (RealRect const& content : {RealRect{0, 0, 18, 100}, RealRect{0, 0, 100, 8}}) {
        ChartLayout chart = chartOf(entries, instrument(tableSpot), sheetOf({200, 200}, content), {0.5, 0.5});
        chart.computeLayout(0, 0);
        expectNothing(chart);
    }
}

TEST(ChartLimits, SheetsOfAnySizeGiveAConsistentChart)
{
    GrowingArray<ColorEntry> entries = greyEntries(24);
    constexpr double lengths[] = {0, -5, 1e-9, 30, 100, 5e8, 1e10, 1e300, infinity, -infinity, notANumber};
    for (MeasurementLayoutPreset const preset : {tableSpot, tableScan, standardRuler, longRuler})
        for (double const width : lengths)
            for (double const height : lengths) {
                SCOPED_TRACE(testing::Message() << measurementlayout_strings[preset] << ' ' << width << ' ' << height);
                for (PageLayout const& sheet :
                     {sheetOf({width, height}, {0, 0, width, height}), sheetOf({width, height}, {5, 15, 200, 277}),
                      sheetOf({210, 297}, {5, 15, width, height}), sheetOf({210, 297}, {width, height, 200, 277})}) {
                    ChartLayout chart = chartOf(entries, instrument(preset), sheet, centimetre);
                    EXPECT_EQ(errorsOf([&] { chart.computeLayout(0, 0); }), "");
                    expectSound(chart);
                }
            }
}

TEST(ChartLimits, PatchesAndGapsOfAnySizeGiveAConsistentChart)
{
    GrowingArray<ColorEntry> entries = greyEntries(24);
    constexpr double lengths[] = {0, -5, 1e-300, 1e-9, 1e-3, 10, 1e300, infinity, -infinity, notANumber};
    for (MeasurementLayoutPreset const preset : {tableSpot, tableScan, standardRuler, longRuler})
        for (double const width : lengths)
            for (double const height : lengths)
                for (float const gap :
                     {0.0F, 1.0F, -1.0F, 1e30F, static_cast<float>(infinity), static_cast<float>(notANumber)}) {
                    SCOPED_TRACE(testing::Message() << measurementlayout_strings[preset] << ' ' << width << ' '
                                                    << height << ", gap " << gap);
                    ChartLayout chart = chartOf(entries, instrument(preset), paper(a4Portrait), {width, height});
                    EXPECT_EQ(errorsOf([&] { chart.computeLayout(gap, 0); }), "");
                    expectSound(chart);
                }
}

TEST(ChartLimits, AGridThat32BitsCannotCountHasNoRoom)
{
    GrowingArray<ColorEntry> entries = greyEntries(24);
    // 1e9 columns of 25 rows; 182e9 columns.
    for (auto const& [width, patch] : {std::pair(1e10, 10.0), std::pair(182.0, 1e-9), std::pair(1e300, 10.0)}) {
        ChartLayout chart =
            chartOf(entries, instrument(longRuler), sheetOf({width, 297}, {0, 0, width, 277}), {patch, 10});
        EXPECT_EQ(chart.computeLayout(0, 0), 0);
        expectNothing(chart);
    }
}

TEST(ChartLimits, TheWidestGridThat32BitsCanCountIsNarrowed)
{
    // Two billion columns of one row: 24 stay.
    GrowingArray<ColorEntry> entries = greyEntries(24);
    ChartLayout chart =
        chartOf(entries, instrument(longRuler), sheetOf({2e10 + 20, 40}, {0, 0, 2e10 + 20, 8 + 19 + 11}), centimetre);
    chart.computeLayout(0, 0);
    EXPECT_EQ((IntSize{chart.getPatchesX(), chart.getPatchesY()}), (IntSize{24, 1}));
    expectSound(chart);
}

TEST(ChartLimits, OverlappingSheetsWithColumnsOrRowsBeyond32BitsHaveNoRoom)
{
    GrowingArray<ColorEntry> entries = greyEntries(24);
    // 46 sheets across, each with 909 million columns that overlap its neighbours. The same with 32 sheets up.
    ChartLayout wide = chartOf(entries, instrument(tableSpot), sheetOf({10, 297}, {0, 0, 200, 277}), {2e-7, 10});
    EXPECT_EQ(wide.computeLayout(0, 0), 0);
    expectNothing(wide);
    ChartLayout high = chartOf(entries, instrument(tableSpot), sheetOf({210, 10}, {0, 0, 200, 277}), {10, 2e-7});
    EXPECT_EQ(high.computeLayout(0, 0), 0);
    expectNothing(high);
}

TEST(ChartLimits, AGridOfMoreCellsThanAnyonePrintsHasNoRoom)
{
    // 2 x 2 sheets, 230 x 160 mm apart, with a patch in the corner of each.
    struct Case
    {
        double patch;
        int entries;
        IntSize grid;
    };
    for (Case const& example :
         {Case{0.25, 4, {921, 641}}, Case{0.0625, 4, {0, 0}}, Case{0.0625, 2, {3681, 1}}, Case{0.0625, 1, {1, 1}}}) {
        SCOPED_TRACE(testing::Message() << example.patch << " mm, " << example.entries << " entries");
        GrowingArray<ColorEntry> entries = greyEntries(example.entries);
        ChartLayout chart =
            chartOf(entries, instrument(tableSpot), sheetOf({230, 160}, {0, 0, 18 + example.patch, 8 + example.patch}),
                    {example.patch, example.patch});
        EXPECT_EQ(errorsOf([&] { chart.computeLayout(0, 0); }), "");
        EXPECT_EQ((IntSize{chart.getPatchesX(), chart.getPatchesY()}), example.grid);
        EXPECT_EQ(chart.hasSomethingToOutpot(), example.grid.width > 0);
        if (!chart.hasSomethingToOutpot())
            expectNothing(chart);
    }
}

TEST(ChartLimits, MoreSheetsThanAnyonePrintsHaveNoRoom)
{
    // A chart page has 19 x 22 sheets, and a patch on the first sheet only. No other sheet has room for a whole cell.
    for (int const count : {10, 2600}) {
        GrowingArray<ColorEntry> entries = greyEntries(count);
        ChartLayout chart =
            chartOf(entries, instrument(tableSpot), sheetOf({24.1, 14.01}, {0, 0, 24.1, 14.01}), {6, 6});
        EXPECT_EQ(errorsOf([&] { chart.computeLayout(0, 0); }), "");
        // 2600 x 418 sheets are more than 2^20.
        EXPECT_EQ(chart.getChartPagesCount(), count == 10 ? 10 : 0);
        EXPECT_EQ(chart.countOutputPages(), count == 10 ? 10 : 0);
        expectSound(chart);
    }
}
