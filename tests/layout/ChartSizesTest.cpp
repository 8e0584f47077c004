// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Papers, margins, patches and counts far beyond those in use. Each computation ends soon. It gives the chart of the
// layout's rules, or none.

#include "ChartLayout.h"
#include "support/CapturedOutput.h"
#include "support/ChartCase.h"
#include "support/ChartProperties.h"
#include "support/GeometryValues.h"
#include "support/TargetTable.h"
#include "support/TemporaryFolder.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>

#include <limits>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

constexpr MeasurementLayoutPreset instruments[] = {tableSpot, tableScan, standardRuler, longRuler};

constexpr RealSize centimetre{10, 10};

PageLayout paperWithMargins(RealSize size, double top, double right, double bottom, double left)
{
    return sheetOf(size, {left, bottom, size.width - left - right, size.height - top - bottom});
}

PageLayout paperWithoutMargins(RealSize size)
{
    return paperWithMargins(size, 0, 0, 0, 0);
}

// The chart's grid; 0 x 0 if there is no room for one.
IntSize gridOf(MeasurementLayoutPreset preset, PageLayout const& sheet, RealSize patch, int count)
{
    GrowingArray<ColorEntry> entries = greyEntries(count);
    ChartLayout chart = chartOf(entries, instrument(preset), sheet, patch);
    std::string const errors = errorsOf([&] { EXPECT_EQ(faultIn(chart, chart.computeLayout(0, 0)), ""); });
    EXPECT_EQ(errors, "");
    return {chart.getPatchesX(), chart.getPatchesY()};
}

} // namespace

TEST(ChartSizes, PaperSmallerThanItsLabelsHasNoRoom)
{
    for (MeasurementLayoutPreset const preset : instruments)
        for (double const length : {0.0, 1e-300, 1e-9, 1.0, 7.9, -1.0, -1e9, -infinity, notANumber})
            for (RealSize const size : {RealSize{length, length}, RealSize{length, 297}, RealSize{210, length}}) {
                SCOPED_TRACE(testing::Message() << measurementlayout_strings[preset] << testing::PrintToString(size));
                for (double const patch : {1e-9, 6.0, 10.0})
                    EXPECT_EQ(gridOf(preset, paperWithoutMargins(size), {patch, patch}, 24), (IntSize{0, 0}));
            }
}

TEST(ChartSizes, HugePaperIsCutToTheTable)
{
    // 460 x 320 mm less 18 x 8 mm for labels: 44 x 31 patches, or 44 x 29 with 19 mm for the scan's ends.
    for (double const length : {1e4, 1e9, 1e300, infinity}) {
        PageLayout const sheet = paperWithoutMargins({length, length});
        EXPECT_EQ(gridOf(tableScan, sheet, centimetre, 44 * 29), (IntSize{44, 29})) << length;
        EXPECT_EQ(gridOf(tableScan, sheet, centimetre, 60), (IntSize{3, 29})) << length;
        // The place of the first infinite sheet is not a number.
        bool const hasEnd = length < infinity;
        EXPECT_EQ(gridOf(tableSpot, sheet, centimetre, 44 * 31), (hasEnd ? IntSize{44, 31} : IntSize{0, 0})) << length;
        EXPECT_EQ(gridOf(tableSpot, sheet, centimetre, 1), (hasEnd ? IntSize{1, 1} : IntSize{0, 0})) << length;
    }
}

TEST(ChartSizes, HugePaperIsCutToTheRulerInYAndNeedsACountableWidth)
{
    // The rulers' 257 and 486 mm, less 6.5 mm below. 1e7 mm hold 999,998 columns; 1e9 mm hold 99,999,998, and with
    // their rows more patches than 32 bits count.
    for (double const height : {1e4, 1e9}) {
        EXPECT_EQ(gridOf(standardRuler, paperWithoutMargins({1e7, height}), centimetre, 60), (IntSize{3, 25}));
        EXPECT_EQ(gridOf(longRuler, paperWithoutMargins({1e7, height}), centimetre, 60), (IntSize{2, 47}));
        for (double const width : {1e9, 1e300, infinity}) {
            EXPECT_EQ(gridOf(standardRuler, paperWithoutMargins({width, height}), centimetre, 60), (IntSize{0, 0}));
            EXPECT_EQ(gridOf(longRuler, paperWithoutMargins({width, height}), centimetre, 60), (IntSize{0, 0}));
        }
    }
    // The part beyond a ruler is subtracted from the height. If the height is so large that the ruler is lost by
    // rounding, nothing is left.
    for (double const height : {1e300, infinity})
        for (MeasurementLayoutPreset const preset : {standardRuler, longRuler})
            EXPECT_EQ(gridOf(preset, paperWithoutMargins({297, height}), centimetre, 60), (IntSize{0, 0})) << height;
}

TEST(ChartSizes, PatchesLargerThanThePaperHaveNoRoom)
{
    for (MeasurementLayoutPreset const preset : instruments)
        for (RealSize const patch : {RealSize{183, 10}, RealSize{10, 270}, RealSize{211, 298}, RealSize{1e9, 1e9},
                                     RealSize{infinity, 10}, RealSize{10, infinity}}) {
            SCOPED_TRACE(testing::Message() << measurementlayout_strings[preset] << testing::PrintToString(patch));
            EXPECT_EQ(gridOf(preset, paper(a4Portrait), patch, 24), (IntSize{0, 0}));
        }
    // A patch that just fits: 200 x 277 mm, less 18 x 8 mm.
    EXPECT_EQ(gridOf(tableSpot, paper(a4Portrait), {182, 269}, 1), (IntSize{1, 1}));
    EXPECT_EQ(gridOf(tableScan, paper(a4Portrait), {182, 250}, 1), (IntSize{1, 1}));
}

TEST(ChartSizes, PatchesWithoutAPositiveSizeHaveNoRoom)
{
    for (MeasurementLayoutPreset const preset : instruments)
        for (double const length : {0.0, -1.0, -infinity, notANumber, 1e-300})
            for (RealSize const patch : {RealSize{length, length}, RealSize{length, 10}, RealSize{10, length}})
                EXPECT_EQ(gridOf(preset, paper(a4Portrait), patch, 24), (IntSize{0, 0})) << length;
}

TEST(ChartSizes, OverlappingMarginsLeaveNoRoom)
{
    for (MeasurementLayoutPreset const preset : instruments)
        for (PageLayout const& sheet :
             {paperWithMargins({210, 297}, 0, 110, 0, 110), paperWithMargins({210, 297}, 150, 0, 150, 0),
              paperWithMargins({210, 297}, 1e9, 1e9, 1e9, 1e9), paperWithMargins({210, 297}, 0, 0, 0, 210),
              paperWithMargins({210, 297}, 297, 0, 0, 0), paperWithMargins({210, 297}, infinity, 0, infinity, 0),
              paperWithMargins({infinity, infinity}, infinity, infinity, infinity, infinity)})
            EXPECT_EQ(gridOf(preset, sheet, centimetre, 24), (IntSize{0, 0}))
                << testing::PrintToString(sheet.getContent());
}

TEST(ChartSizes, ACreditCardHoldsASinglePatch)
{
    for (MeasurementLayoutPreset const preset : instruments)
        EXPECT_EQ(gridOf(preset, paper(creditCardPortrait), centimetre, 1), (IntSize{1, 1}));
}

TEST(ChartSizes, CreditCardsHoldAHundredThousandPatchesForSpotMeasurement)
{
    // 8 x 3 cards on the table, 36 x 77 mm of each for patches: 23 columns and 21 rows in all, so 207 charts would hold
    // 99,981. Their columns end at 41 and their rows at 24, those between the cards included.
    GrowingArray<ColorEntry> entries = greyEntries(100'000);
    ChartLayout chart = chartOf(entries, instrument(tableSpot), paper(creditCardPortrait), centimetre);
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(faultIn(chart, chart.computeLayout(0, 0)), ""); }), "");
    EXPECT_EQ(chart.getChartPagesSize(), (IntSize{208, 1}));
    EXPECT_EQ((IntSize{chart.getPatchesX(), chart.getPatchesY()}), (IntSize{208 * 41, 24}));
    EXPECT_EQ(chart.countOutputPages(), 208 * 24);

    TemporaryFolder const folder;
    chart.writeOutputFile(folder.pathOf("chart"));
    std::vector<TargetPatch> const table = readTargetTable(folder.path() / "chart");
    EXPECT_EQ(table.size(), 208u * 41 * 24);
    EXPECT_EQ(std::count_if(table.begin(), table.end(), [](TargetPatch const& patch) { return patch.control == "N"; }),
              100'000);
}

TEST(ChartSizes, CreditCardsHoldAHundredThousandPatchesForScanning)
{
    // 36 x 58 mm a card: 3 columns of 5 patches, so 6666 cards would hold 99,990.
    EXPECT_EQ(gridOf(tableScan, paper(creditCardPortrait), centimetre, 100'000), (IntSize{6667 * 3, 5}));
}

TEST(ChartSizes, LabelsOfCellsBeyond32BitsAreDefined)
{
    constexpr int least = std::numeric_limits<int>::min();
    constexpr int largest = std::numeric_limits<int>::max();
    OutputPage sheet;
    EXPECT_LT(sheet.getMaxXCoord(), 0);
    EXPECT_LT(sheet.getMaxYCoord(), 0);
    sheet.reduceCoordWidth(1);
    sheet.shiftCoords({largest, least});
    EXPECT_FALSE(ChartLayout().getColorEntry({largest, least}));

    // Labels far outside a grid of 3 x 2 continue to count from its corner.
    GrowingArray<ColorEntry> entries = greyEntries(6);
    ChartLayout chart = chartOf(entries, instrument(longRuler), rulerSheetFor({3, 2}, centimetre), centimetre);
    chart.computeLayout(0, 0);
    EXPECT_EQ(chart.getCoordinateYString(least), "2147483650");
    EXPECT_EQ(chart.getCoordinateYString(largest), "-2147483645");
    EXPECT_EQ(chart.getCoordinateXString(largest), "");
    EXPECT_EQ(chart.getCoordinateXString(least).getCount(), 6u);
}
