// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// How patches are fitted onto chart pages.

#include "ChartLayout.h"

#include "ChartChecks.h"
#include "support/CapturedOutput.h"
#include "support/TestChart.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

// A layout computed by hand.
struct Example
{
    MeasurementLayoutPreset device;
    PageLayoutPreset paper;
    RealSize patch;
    float gap;
    int entries;
    int pages;
    IntSize pageGrid;
    IntSize grid;
};

void expectExample(Example const& example)
{
    SCOPED_TRACE(testing::Message() << measurementlayout_strings[example.device] << ", "
                                    << pagelayoutpreset_strings[example.paper] << ", " << example.patch.width << " x "
                                    << example.patch.height << " mm, gap " << example.gap << ", " << example.entries
                                    << " entries");
    GrowingArray<ColorEntry> entries = greyEntries(example.entries);
    ChartLayout chart = chartOf(entries, instrument(example.device), paper(example.paper), example.patch);
    EXPECT_EQ(errorsOf([&] { chart.computeLayout(example.gap, 0); }), "");
    EXPECT_EQ(chart.getChartPagesSize(), (IntSize{example.pages, 1}));
    EXPECT_EQ(chart.getChartPagesCount(), example.pages);
    ASSERT_EQ(chart.getChartPages()->getCount(), static_cast<unsigned long long>(example.pages));
    EXPECT_EQ((IntSize{chart.getPatchesX(), chart.getPatchesY()}), example.grid);
    EXPECT_EQ(example.grid.width, example.pages * example.pageGrid.width);
    for (int i = 0; i < example.pages; ++i)
        EXPECT_EQ(pageOf(chart, static_cast<unsigned>(i)).getCoordRect(),
                  (IntRect{i * example.pageGrid.width, 0, example.pageGrid.width, example.pageGrid.height}));
    expectSound(chart);
}

// Starts with a page's whole room. Each step takes the largest of four smaller neighbouring grids that holds all
// entries.
IntSize tightestGrid(IntSize room, int pages, int entries)
{
    IntSize size = room;
    for (;;) {
        IntSize best{0, 0};
        for (IntSize const candidate :
             {IntSize{std::min(size.width + 1, room.width), std::max(size.height - 1, 1)},
              IntSize{std::max(size.width - 1, 1), std::min(size.height + 1, room.height)},
              IntSize{std::max(size.width - 1, 1), size.height}, IntSize{size.width, std::max(size.height - 1, 1)}}) {
            int const cells = candidate.width * candidate.height;
            if (cells * pages >= entries && cells < size.width * size.height && cells > best.width * best.height)
                best = candidate;
        }
        if (best.width == 0)
            return size;
        size = best;
    }
}

} // namespace

TEST(ChartFit, ChartsOfTheStandardRulerFitOnPaper)
{
    // A4: 182 x 250 mm for patches; 3 pages of 13 columns would hold 975.
    expectExample({standardRuler, a4Portrait, {10, 10}, 0, 1000, 3, {14, 25}, {42, 25}});
    expectExample({standardRuler, a4Portrait, {10, 10}, 1, 1000, 3, {16, 22}, {48, 22}});
    // 259 x 173 mm.
    expectExample({standardRuler, a4Landscape, {10, 10}, 0, 1000, 3, {20, 17}, {60, 17}});
    // 269 mm, and of 373 mm in y what lies below the ruler's end: 257 - 6.5 mm. Just full, and one more.
    expectExample({standardRuler, a3Portrait, {10, 10}, 0, 1000, 2, {20, 25}, {40, 25}});
    expectExample({standardRuler, a3Portrait, {10, 10}, 0, 1001, 2, {21, 25}, {42, 25}});
    // 188 x 232 mm.
    expectExample({standardRuler, letterPortrait, {10, 10}, 0, 500, 2, {11, 23}, {22, 23}});
    // 36 x 58 mm and 67 x 27 mm.
    expectExample({standardRuler, creditCardPortrait, {10, 10}, 0, 100, 7, {3, 5}, {21, 5}});
    expectExample({standardRuler, creditCardLandscape, {10, 10}, 0, 24, 2, {6, 2}, {12, 2}});
}

TEST(ChartFit, ChartsOfTheLongRulerFitOnPaper)
{
    // A3: 269 x 373 mm, all within the ruler's 486.
    expectExample({longRuler, a3Portrait, {10, 10}, 0, 1617, 2, {22, 37}, {44, 37}});
    expectExample({longRuler, a3Portrait, {8, 8}, 0, 1617, 2, {18, 46}, {36, 46}});
    expectExample({longRuler, a3Portrait, {8, 8}, 1, 1617, 2, {20, 41}, {40, 41}});
    expectExample({longRuler, a4Portrait, {10, 10}, 0, 1000, 3, {14, 25}, {42, 25}});
    // 241 x 179 mm.
    expectExample({longRuler, letterLandscape, {7, 8}, 1, 24, 1, {2, 19}, {2, 19}});
    expectExample({longRuler, creditCardPortrait, {15, 15}, 1, 7, 2, {2, 3}, {4, 3}});
}

TEST(ChartFit, ChartsOfTheScanTableFitOnPaper)
{
    expectExample({tableScan, a4Portrait, {6, 8}, 0, 500, 1, {17, 31}, {17, 31}});
    // The table reaches 320 mm: 312 mm within the border, 293 mm within the margins.
    expectExample({tableScan, a3Portrait, {10, 10}, 0, 1000, 2, {18, 29}, {36, 29}});
    expectExample({tableScan, a3Portrait, {10, 10}, 1, 1000, 2, {20, 26}, {40, 26}});
    // 382 x 260 mm.
    expectExample({tableScan, a3Landscape, {10, 10}, 0, 897, 1, {35, 26}, {35, 26}});
}

TEST(ChartFit, ChartsOfTheSpotTableFitOnPaper)
{
    // One A4 sheet across: 259 x 192 mm. 25 x 19, 24 x 19 and 25 x 18 cells.
    expectExample({tableSpot, a4Landscape, {10, 10}, 0, 475, 1, {25, 19}, {25, 19}});
    expectExample({tableSpot, a4Landscape, {10, 10}, 0, 457, 1, {25, 19}, {25, 19}});
    expectExample({tableSpot, a4Landscape, {10, 10}, 0, 456, 1, {24, 19}, {24, 19}});
    expectExample({tableSpot, a4Landscape, {10, 10}, 0, 450, 1, {25, 18}, {25, 18}});
    expectExample({tableSpot, a4Landscape, {10, 10}, 0, 1, 1, {1, 1}, {1, 1}});
    // 269 mm, and 312 mm of the table's 320: 26 x 31 = 806.
    expectExample({tableSpot, a3Portrait, {10, 10}, 0, 1612, 2, {26, 31}, {52, 31}});
    // 382 x 279 mm; 38 x 26 and 37 x 27 are too few.
    expectExample({tableSpot, a3Landscape, {10, 10}, 0, 1000, 1, {38, 27}, {38, 27}});
    expectExample({tableSpot, a3Landscape, {10, 10}, 0, 999, 1, {37, 27}, {37, 27}});
    // Two A4 sheets across of 18 columns and 26 rows, with 3 columns between them that no sheet shows.
    expectExample({tableSpot, a4Portrait, {10, 10}, 0, 936, 1, {39, 26}, {39, 26}});
    expectExample({tableSpot, a4Portrait, {10, 10}, 0, 911, 1, {39, 26}, {39, 26}});
    expectExample({tableSpot, a4Portrait, {10, 10}, 0, 910, 1, {38, 26}, {38, 26}});
    expectExample({tableSpot, a4Portrait, {10, 10}, 0, 901, 1, {38, 26}, {38, 26}});
    expectExample({tableSpot, a4Portrait, {10, 10}, 0, 900, 1, {39, 25}, {39, 25}});
    expectExample({tableSpot, a4Portrait, {10, 10}, 0, 1872, 2, {39, 26}, {78, 26}});
}

TEST(ChartFit, PagesBecomeNarrowerWhileTheyHoldAllEntries)
{
    struct Case
    {
        int entries;
        int pages;
        IntSize grid;
    };
    // Pages of at most 10 x 30 cells lose columns first. A single column loses rows.
    for (Case const& expected :
         {Case{300, 1, {10, 30}}, Case{271, 1, {10, 30}}, Case{270, 1, {9, 30}}, Case{100, 1, {4, 30}},
          Case{301, 2, {12, 30}}, Case{300 * 2 + 1, 3, {21, 30}}, Case{31, 1, {2, 30}}, Case{30, 1, {1, 30}},
          Case{29, 1, {1, 29}}, Case{2, 1, {1, 2}}, Case{1, 1, {1, 1}}}) {
        SCOPED_TRACE(expected.entries);
        GrowingArray<ColorEntry> entries = greyEntries(expected.entries);
        ChartLayout chart = chartOf(entries, instrument(longRuler), rulerSheetFor({10, 30}, {5, 5}), {5, 5});
        chart.computeLayout(0, 0);
        EXPECT_EQ(chart.getChartPagesSize(), (IntSize{expected.pages, 1}));
        EXPECT_EQ((IntSize{chart.getPatchesX(), chart.getPatchesY()}), expected.grid);
    }
}

TEST(ChartFit, PagesScannedAlongXStandAboveEachOtherAndLoseRows)
{
    // 260 x 264 mm for patches of 10 x 10 mm with the preset's gap of 1 mm in y: 26 x 24 cells.
    PageLayout const sheet = sheetOf({300, 300}, {0, 0, 18 + 260, 8 + 264});
    struct Case
    {
        int entries;
        int pages;
        IntSize pageGrid;
    };
    for (Case const& expected : {Case{624, 1, {26, 24}}, Case{598, 1, {26, 23}}, Case{3, 1, {26, 1}},
                                 Case{625, 2, {26, 13}}, Case{1300, 3, {26, 17}}}) {
        SCOPED_TRACE(expected.entries);
        GrowingArray<ColorEntry> entries = greyEntries(expected.entries);
        ChartLayout chart = chartOf(entries, scanningAlongX(instrument(tableScan)), sheet, centimetre);
        EXPECT_EQ(chart.computeLayout(0, 0), 100.0F);
        EXPECT_EQ(chart.getChartPagesSize(), (IntSize{1, expected.pages}));
        EXPECT_EQ((IntSize{chart.getPatchesX(), chart.getPatchesY()}),
                  (IntSize{expected.pageGrid.width, expected.pages * expected.pageGrid.height}));
        for (int i = 0; i < expected.pages; ++i) {
            ChartPage const& page = pageOf(chart, static_cast<unsigned>(i));
            EXPECT_EQ(page.getOrigin(), (RealPos{0, i * 320.0}));
            EXPECT_EQ(page.getCoordRect(),
                      (IntRect{0, i * expected.pageGrid.height, expected.pageGrid.width, expected.pageGrid.height}));
        }
        expectSound(chart);
    }
}

TEST(ChartFit, ScannedPagesStandSideBySideWith20MillimetresBetweenThem)
{
    GrowingArray<ColorEntry> entries = greyEntries(1000);
    ChartLayout chart = chartOf(entries, instrument(standardRuler), paper(a4Portrait), centimetre);
    chart.computeLayout(0, 0);
    ASSERT_EQ(chart.getChartPagesCount(), 3);
    EXPECT_EQ(pageOf(chart, 0).getOrigin(), (RealPos{0, 0}));
    EXPECT_EQ(pageOf(chart, 1).getOrigin(), (RealPos{230, 0}));
    EXPECT_EQ(pageOf(chart, 2).getOrigin(), (RealPos{460, 0}));
}

TEST(ChartFit, SpotPagesStandSideBySideWith20MillimetresBetweenThem)
{
    GrowingArray<ColorEntry> entries = greyEntries(2000);
    ChartLayout chart = chartOf(entries, instrument(tableSpot), paper(a4Portrait), centimetre);
    chart.computeLayout(0, 0);
    ASSERT_EQ(chart.getChartPagesCount(), 3);
    EXPECT_EQ(pageOf(chart, 0).getOrigin(), (RealPos{0, 0}));
    EXPECT_EQ(pageOf(chart, 1).getOrigin(), (RealPos{440, 0}));
    EXPECT_EQ(pageOf(chart, 2).getOrigin(), (RealPos{880, 0}));
    EXPECT_EQ(pageOf(chart, 1).getPagesSize(), (IntSize{2, 1}));
}

TEST(ChartFit, SpotMeasurementGetsTheTightestGrid)
{
    struct Case
    {
        PageLayoutPreset paper;
        IntSize room; // columns and rows that the sheets of a chart page show
    };
    for (Case const& tiled :
         {Case{a4Landscape, {25, 19}}, Case{a3Landscape, {38, 27}}, Case{a3Portrait, {26, 31}},
          Case{a4Portrait, {36, 26}}, Case{letterPortrait, {36, 25}}, Case{creditCardPortrait, {23, 21}}})
        for (int const count : {1,   2,   3,   5,   7,   10,  24,  30,  97,   100,  200,  333,
                                400, 474, 480, 500, 700, 805, 898, 937, 1000, 1025, 1500, 1617}) {
            SCOPED_TRACE(testing::Message() << pagelayoutpreset_strings[tiled.paper] << ", " << count << " entries");
            GrowingArray<ColorEntry> entries = greyEntries(count);
            ChartLayout chart = chartOf(entries, instrument(tableSpot), paper(tiled.paper), centimetre);
            EXPECT_EQ(errorsOf([&] { EXPECT_EQ(chart.computeLayout(0, 0), 100.0F); }), "");
            int const cells = tiled.room.width * tiled.room.height;
            int const pages = (count + cells - 1) / cells;
            IntSize const size = tightestGrid(tiled.room, pages, count);
            ASSERT_EQ(chart.getChartPagesSize(), (IntSize{pages, 1}));
            EXPECT_EQ(pageOf(chart, 0).getUsableCoordRect(), (IntRect{0, 0, size.width, size.height}));
            EXPECT_EQ(chart.getPatchesX(), pages * pageOf(chart, 0).getCoordRect().width);
            EXPECT_EQ(chart.getPatchesY(), pageOf(chart, 0).getCoordRect().height);
            int const visible = pages * size.width * size.height;
            EXPECT_EQ(censusOf(chart),
                      (Census{count, visible - count, chart.getPatchesX() * chart.getPatchesY() - visible}));
            expectSound(chart);
        }
}

TEST(ChartFit, SpotMeasurementGetsTheTightestGridAmongLongNarrowGrids)
{
    struct Case
    {
        RealSize patch;
        IntSize room; // on one sheet with 442 x 312 mm for patches
    };
    for (Case const& tiled : {Case{{300, 3}, {1, 104}}, Case{{200, 3}, {2, 104}}, Case{{100, 10}, {4, 31}},
                              Case{{4, 300}, {110, 1}}, Case{{4, 150}, {110, 2}}, Case{{9, 50}, {49, 6}},
                              Case{{60, 24}, {7, 13}}, Case{{63, 26}, {7, 12}}, Case{{34, 52}, {13, 6}}})
        for (int const pages : {1, 2})
            for (int onPage = 1; onPage <= tiled.room.width * tiled.room.height; onPage += onPage / 5 + 1) {
                int const count = (pages - 1) * tiled.room.width * tiled.room.height + onPage;
                SCOPED_TRACE(testing::Message() << testing::PrintToString(tiled.room) << ", " << count << " entries");
                GrowingArray<ColorEntry> entries = greyEntries(count);
                ChartLayout chart =
                    chartOf(entries, instrument(tableSpot), sheetOf({600, 500}, {0, 0, 600, 500}), tiled.patch);
                chart.computeLayout(0, 0);
                ASSERT_EQ(chart.getChartPagesSize(), (IntSize{pages, 1}));
                EXPECT_EQ(pageOf(chart, 0).getUsableCoordRect().width, tightestGrid(tiled.room, pages, count).width);
                EXPECT_EQ(pageOf(chart, 0).getUsableCoordRect().height, tightestGrid(tiled.room, pages, count).height);
            }
}

TEST(ChartFit, GridsOfAnyLengthAreShortenedWithinASecond)
{
    struct Case
    {
        RealSize patch;
        IntSize grid; // of 24 entries
    };
    // One column of 2.1 billion patches, or two columns of a billion. The same for rows.
    GrowingArray<ColorEntry> entries = greyEntries(24);
    for (Case const& tiny : {Case{{300, 1.5e-7}, {1, 24}}, Case{{200, 3.1e-7}, {2, 12}}, Case{{2.1e-7, 300}, {24, 1}},
                             Case{{4.4e-7, 150}, {12, 2}}}) {
        SCOPED_TRACE(testing::PrintToString(tiny.patch));
        ChartLayout chart = chartOf(entries, instrument(tableSpot), sheetOf({600, 500}, {0, 0, 600, 500}), tiny.patch);
        std::clock_t const start = std::clock();
        EXPECT_EQ(chart.computeLayout(0, 0), 100.0F);
        EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC);
        EXPECT_EQ((IntSize{chart.getPatchesX(), chart.getPatchesY()}), tiny.grid);
    }
}

TEST(ChartFit, TinySpotPatchesGetASmallGrid)
{
    // 1820 x 2610 cells a sheet, two sheets across.
    GrowingArray<ColorEntry> entries = greyEntries(24);
    ChartLayout chart = chartOf(entries, instrument(tableSpot), paper(a4Portrait), {0.1, 0.1});
    EXPECT_EQ(chart.computeLayout(0, 0), 100.0F);
    EXPECT_EQ(censusOf(chart), (Census{24, 0, 0}));
}
