// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartLayout.h"

#include "ChartChecks.h"
#include "support/CapturedOutput.h"
#include "support/GeometryValues.h"
#include "support/StringText.h"
#include "support/TestChart.h"

#include <gtest/gtest.h>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

} // namespace

TEST(ChartLayout, StartsAsAnEmptyA4ChartForSpotMeasurement)
{
    ChartLayout const chart;
    EXPECT_EQ(textOf(chart.getName()), "Patchloom Output File");
    EXPECT_EQ(chart.getPageLayout().getSize(), (RealSize{210, 297}));
    EXPECT_EQ(chart.getPageLayout().getContent(), (RealRect{5, 15, 200, 277}));
    EXPECT_EQ(chart.getMeasurementLayout().getPreset(), tableSpot);
    EXPECT_EQ(chart.getMeasurementLayout().getContent(), (RealRect{2, 83, 460, 320}));
    EXPECT_EQ(chart.getPatchSize(), centimetre);
    EXPECT_EQ(chart.getColorSpace(), undefined);
    EXPECT_EQ(chart.getOriginalEntries(), nullptr);
    EXPECT_FALSE(chart.getClipToContent());
    expectNothing(chart);
}

TEST(ChartLayout, KeepsItsSettings)
{
    GrowingArray<ColorEntry> entries;
    ChartLayout chart;
    chart.setName("Test <&> chart");
    chart.setPageLayout(paper(letterLandscape));
    chart.setMeasurementLayout(instrument(longRuler));
    chart.setPatchSize({6, 8});
    chart.setColorSpace(CMYK);
    chart.setOriginalEntries(&entries);
    chart.setClipToContent(true);
    EXPECT_EQ(textOf(chart.getName()), "Test <&> chart");
    EXPECT_EQ(chart.getPageLayout().getContent(), (RealRect{5, 5, 259, 206})) << "as chosen, not what is usable of it";
    EXPECT_EQ(chart.getMeasurementLayout().getPreset(), longRuler);
    EXPECT_EQ(chart.getPatchSize(), (RealSize{6, 8}));
    EXPECT_EQ(chart.getColorSpace(), CMYK);
    EXPECT_EQ(chart.getOriginalEntries(), &entries);
    EXPECT_TRUE(chart.getClipToContent());
}

TEST(ChartLayout, TheBorderForLabelsMovesWithTheGap)
{
    ChartLayout chart; // spot measurement has no gap
    EXPECT_EQ(chart.getBorderForAdditionalInfo(), (RealBorder{6, 2, 2, 16}));
    chart.setMeasurementLayout(instrument(standardRuler)); // a gap of 1 mm until the chart is computed
    EXPECT_EQ(chart.getBorderForAdditionalInfo(), (RealBorder{5, 2, 3, 16}));
    chart.computeLayout(0.5F, 0);
    EXPECT_EQ(chart.getBorderForAdditionalInfo(), (RealBorder{5.5, 2, 2.5, 16}));
    chart.computeLayout(0, 0);
    EXPECT_EQ(chart.getBorderForAdditionalInfo(), (RealBorder{6, 2, 2, 16}));
}

TEST(ChartLayout, TakesTheGapFromTheComputationOnlyWhenScanningAlongY)
{
    struct Case
    {
        MeasurementLayout device;
        RealSize gap;
    };
    for (Case const& expected :
         {Case{instrument(tableSpot), {0, 0}}, Case{instrument(tableScan), {0, 0.5}},
          Case{instrument(longRuler), {0, 0.5}}, Case{scanningAlongX(instrument(tableScan)), {0, 1}}}) {
        ChartLayout chart;
        chart.setMeasurementLayout(expected.device);
        chart.computeLayout(0.5F, 0);
        EXPECT_EQ(chart.getMeasurementLayout().getGap(), expected.gap);
    }
}

TEST(ChartLayout, EstimatesATimeThatGrowsWithTheSquareOfTheEntries)
{
    ChartLayout chart;
    EXPECT_EQ(chart.timeToCompute(), 0);
    Array<ColorEntry> entries(1000);
    chart.setOriginalEntries(&entries);
    EXPECT_EQ(chart.timeToCompute(), 0.0625F);
    entries.init(4000);
    EXPECT_EQ(chart.timeToCompute(), 1);
    entries.init(0);
    EXPECT_EQ(chart.timeToCompute(), 0);
}

TEST(ChartLayout, EstimatesTheTimeOfCountsWithSquaresBeyond32Bits)
{
    Array<ColorEntry> entries(100000);
    ChartLayout chart;
    chart.setOriginalEntries(&entries);
    EXPECT_EQ(chart.timeToCompute(), 625);
}

TEST(ChartLayout, KeepsTheUsableAreaWithinTheBorderForLabels)
{
    GrowingArray<ColorEntry> entries = greyEntries(1000);
    ChartLayout chart = chartOf(entries, instrument(standardRuler), paper(a4Portrait), centimetre);
    chart.computeLayout(0, 0);
    OutputPage const& sheet = (*pageOf(chart, 1).getOutputPages())[0];
    EXPECT_EQ(sheet.getOrigin(), (RealPos{-21, -17}));
    EXPECT_EQ(sheet.getContentRect(), (RealRect{21, 23.5, 140, 250}));
    EXPECT_EQ(sheet.getSize(), (RealSize{210, 297}));
    chart.computeLayout(1, 0);
    EXPECT_EQ((*pageOf(chart, 1).getOutputPages())[0].getOrigin(), (RealPos{-21, -18}));
    EXPECT_EQ((*pageOf(chart, 1).getOutputPages())[0].getContentRect(), (RealRect{21, 24.5, 160, 242}));
}

TEST(ChartLayout, CellsBetweenTheSheetsOfSpotMeasurementAreHidden)
{
    GrowingArray<ColorEntry> entries = greyEntries(930);
    ChartLayout chart = chartOf(entries, instrument(tableSpot), paper(a4Portrait), centimetre);
    chart.computeLayout(0, 0);
    // 36 of 39 columns are on the sheets.
    EXPECT_EQ(censusOf(chart), (Census{930, 6, 78}));
    for (int x = 0; x < 39; ++x)
        for (int y = 0; y < 26; ++y) {
            EXPECT_EQ(chart.getColorEntry({x, y})->getStatus() == Hidden, x >= 18 && x < 21);
            EXPECT_EQ(isShown(chart, {x, y}), x < 18 || x >= 21);
        }
}

TEST(ChartLayout, HasNoEntryOutsideTheGridAndReportsNothing)
{
    GrowingArray<ColorEntry> entries = greyEntries(100);
    ChartLayout chart = chartOf(entries, instrument(standardRuler), paper(a4Portrait), centimetre);
    chart.computeLayout(0, 0);
    ASSERT_EQ(chart.getPatchesX(), 4);
    ASSERT_EQ(chart.getPatchesY(), 25);
    EXPECT_EQ(errorsOf([&] {
                  for (IntPos const position : {IntPos{4, 0}, IntPos{0, 25}, IntPos{-1, 0}, IntPos{0, -1}, IntPos{}})
                      EXPECT_EQ(chart.getColorEntry(position), nullptr);
              }),
              "");
    EXPECT_NE(chart.getColorEntry({3, 24}), nullptr);
}

TEST(ChartLayout, LaysOutNothingWithoutEntries)
{
    GrowingArray<ColorEntry> none;
    for (MeasurementLayoutPreset const preset : {tableSpot, tableScan, standardRuler, longRuler})
        for (Array<ColorEntry>* const entries :
             {static_cast<Array<ColorEntry>*>(nullptr), static_cast<Array<ColorEntry>*>(&none)}) {
            ChartLayout chart;
            chart.setMeasurementLayout(instrument(preset));
            chart.setOriginalEntries(entries);
            EXPECT_EQ(errorsOf([&] { EXPECT_EQ(chart.computeLayout(0, 0), 0); }), "");
            expectNothing(chart);
        }
}

TEST(ChartLayout, ForgetsItsChartWhenTheEntriesChange)
{
    GrowingArray<ColorEntry> entries = greyEntries(100);
    for (MeasurementLayoutPreset const preset : {tableSpot, longRuler}) {
        ChartLayout chart = chartOf(entries, instrument(preset), paper(a4Portrait), centimetre);
        chart.computeLayout(0, 0);
        EXPECT_TRUE(chart.hasSomethingToOutpot());
        chart.setOriginalEntries(nullptr);
        expectNothing(chart);
        EXPECT_EQ(chart.computeLayout(0, 0), 0);
        expectNothing(chart);
        chart.setOriginalEntries(&entries);
        expectNothing(chart);
        chart.computeLayout(0, 0);
        EXPECT_TRUE(chart.hasSomethingToOutpot());
    }
}

TEST(ChartLayout, ForgetsItsChartWhenItsEntriesAreGone)
{
    GrowingArray<ColorEntry> entries = greyEntries(100);
    for (MeasurementLayoutPreset const preset : {tableSpot, longRuler}) {
        GrowingArray<ColorEntry> changing = entries;
        ChartLayout chart = chartOf(changing, instrument(preset), paper(a4Portrait), centimetre);
        chart.computeLayout(0, 0);
        changing.init(1);
        EXPECT_EQ(chart.computeLayout(0, 0), 0);
        expectNothing(chart);
    }
}

TEST(ChartLayout, ForgetsItsChartWhenItNoLongerFits)
{
    GrowingArray<ColorEntry> entries = greyEntries(100);
    for (MeasurementLayoutPreset const preset : {tableSpot, tableScan, standardRuler, longRuler}) {
        ChartLayout chart = chartOf(entries, instrument(preset), paper(a4Portrait), centimetre);
        chart.computeLayout(0, 0);
        EXPECT_TRUE(chart.hasSomethingToOutpot());
        chart.setPatchSize({500, 10});
        EXPECT_EQ(errorsOf([&] { EXPECT_EQ(chart.computeLayout(0, 0), 0); }), "");
        expectNothing(chart);
    }
}

TEST(ChartLayout, SheetsPointAtTheirChartPages)
{
    GrowingArray<ColorEntry> entries = greyEntries(1000);
    for (MeasurementLayoutPreset const preset : {tableSpot, standardRuler}) {
        ChartLayout chart = chartOf(entries, instrument(preset), paper(a4Portrait), centimetre);
        chart.computeLayout(0, 0);
        ASSERT_GT(chart.getChartPagesCount(), 1);
        ChartLayout const copy = chart;
        expectSound(chart);
        expectSound(copy);
    }
}

TEST(ChartLayout, DoesNotChangeWhenACopyIsComputed)
{
    GrowingArray<ColorEntry> entries = greyEntries(1000);
    for (MeasurementLayoutPreset const preset : {tableSpot, standardRuler}) {
        ChartLayout chart = chartOf(entries, instrument(preset), paper(a4Portrait), centimetre);
        chart.computeLayout(0, 0);
        Census const census = censusOf(chart);
        IntRect const block = pageOf(chart, 1).getCoordRect();
        ColorEntry const* const corner = chart.getColorEntry({0, 0});
        ChartLayout copy = chart;
        EXPECT_EQ(copy.getColorEntry({0, 0}), corner);
        EXPECT_EQ(censusOf(copy), census);
        copy.setPatchSize({20, 20});
        copy.setName("another");
        copy.computeLayout(0, 2);
        copy.setOriginalEntries(nullptr);
        EXPECT_EQ(chart.getPatchSize(), centimetre);
        EXPECT_EQ(textOf(chart.getName()), "Patchloom Output File");
        EXPECT_EQ(chart.getColorEntry({0, 0}), corner);
        EXPECT_EQ(censusOf(chart), census);
        EXPECT_EQ(pageOf(chart, 1).getCoordRect(), block);
        expectSound(chart);
    }
}

TEST(ChartLayout, ACopyOutlivesItsOriginal)
{
    GrowingArray<ColorEntry> entries = greyEntries(930);
    ChartLayout copy;
    {
        ChartLayout chart = chartOf(entries, instrument(longRuler), paper(a4Portrait), centimetre);
        chart.computeLayout(0, 0);
        copy = chart;
    }
    expectSound(copy);
    for (int x = 0; x < copy.getPatchesX(); ++x)
        for (int y = 0; y < copy.getPatchesY(); ++y)
            EXPECT_EQ(copy.getColorEntry({x, y})->getNeighbor(Right),
                      x + 1 < copy.getPatchesX() ? copy.getColorEntry({x + 1, y}) : &ColorEntry::whitePatch);
}
