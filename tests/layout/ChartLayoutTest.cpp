// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartLayout.h"

#include "support/CapturedOutput.h"
#include "support/GeometryValues.h"
#include "support/StringText.h"
#include "support/TestChart.h"

#include <gtest/gtest.h>

#include <ctime>
#include <limits>
#include <set>
#include <string>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

constexpr RealSize centimetre{10, 10};

ChartPage const& pageOf(ChartLayout const& chart, unsigned index)
{
    return (*chart.getChartPages())[index];
}

bool isShown(ChartLayout const& chart, IntPos position)
{
    for (ChartPage const& page : *chart.getChartPages())
        if (page.isVisible(position))
            return true;
    return false;
}

struct Census
{
    int data = 0;
    int fillers = 0;
    int hidden = 0;
    bool operator==(Census const&) const = default;
};

void PrintTo(Census const& census, std::ostream* stream)
{
    *stream << census.data << " data, " << census.fillers << " fillers, " << census.hidden << " hidden";
}

Census censusOf(ChartLayout const& chart)
{
    Census census;
    for (int x = 0; x < chart.getPatchesX(); ++x)
        for (int y = 0; y < chart.getPatchesY(); ++y) {
            int const status = chart.getColorEntry({x, y})->getStatus();
            ++(status == Data ? census.data : status == Filler ? census.fillers : census.hidden);
        }
    return census;
}

void expectNothing(ChartLayout const& chart)
{
    EXPECT_FALSE(chart.hasSomethingToOutpot());
    EXPECT_EQ(chart.getChartPages()->getCount(), 0U);
    EXPECT_EQ(chart.getChartPagesSize(), (IntSize{0, 0}));
    EXPECT_EQ(chart.getChartPagesCount(), 0);
    EXPECT_EQ(chart.getPatchesX(), 0);
    EXPECT_EQ(chart.getPatchesY(), 0);
    EXPECT_EQ(chart.getColorEntry({0, 0}), nullptr);
}

// All entries on the grid, each once, and chart pages that are theirs; or nothing at all.
void expectSound(ChartLayout const& chart)
{
    if (!chart.hasSomethingToOutpot()) {
        expectNothing(chart);
        return;
    }
    std::set<ColorEntry const*> placed;
    for (int x = 0; x < chart.getPatchesX(); ++x)
        for (int y = 0; y < chart.getPatchesY(); ++y)
            if (ColorEntry const* const entry = chart.getColorEntry({x, y}); entry->getStatus() == Data)
                placed.insert(entry);
    EXPECT_EQ(placed.size(), chart.getOriginalEntries()->getCount());
    EXPECT_EQ(static_cast<unsigned long long>(chart.getChartPagesCount()), chart.getChartPages()->getCount());
    for (ChartPage const& page : *chart.getChartPages())
        for (OutputPage const& sheet : *page.getOutputPages())
            EXPECT_EQ(sheet.getChartPage(), &page);
}

// A layout worked out by hand.
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

// From a page's whole room on, the largest smaller grid of four neighbours that holds all entries, again and again.
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

TEST(ChartLayout, MakesRoomForLabelsAroundThePatchesThatMovesWithTheGap)
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

TEST(ChartLayout, EstimatesTheTimeOfMoreEntriesThanHave32BitSquares)
{
    Array<ColorEntry> entries(100000);
    ChartLayout chart;
    chart.setOriginalEntries(&entries);
    EXPECT_EQ(chart.timeToCompute(), 625);
}

TEST(ChartLayout, FitsTheStandardRulersChartsOnPaper)
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

TEST(ChartLayout, FitsTheLongRulersChartsOnPaper)
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

TEST(ChartLayout, FitsTheScanTablesChartsOnPaper)
{
    expectExample({tableScan, a4Portrait, {6, 8}, 0, 500, 1, {17, 31}, {17, 31}});
    // The table reaches 320 mm: 312 mm within the border, 293 mm within the margins.
    expectExample({tableScan, a3Portrait, {10, 10}, 0, 1000, 2, {18, 29}, {36, 29}});
    expectExample({tableScan, a3Portrait, {10, 10}, 1, 1000, 2, {20, 26}, {40, 26}});
    // 382 x 260 mm.
    expectExample({tableScan, a3Landscape, {10, 10}, 0, 897, 1, {35, 26}, {35, 26}});
}

TEST(ChartLayout, FitsTheSpotTablesChartsOnPaper)
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

TEST(ChartLayout, NarrowsThePagesWhileTheyHoldAllEntries)
{
    struct Case
    {
        int entries;
        int pages;
        IntSize grid;
    };
    // Pages of at most 10 x 30 cells: first to fewer columns, and from a single column on to fewer rows.
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

TEST(ChartLayout, StacksPagesThatAreScannedAlongXAndLowersThem)
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

TEST(ChartLayout, SetsScannedPagesSideBySideASheetAnd20MillimetresApart)
{
    GrowingArray<ColorEntry> entries = greyEntries(1000);
    ChartLayout chart = chartOf(entries, instrument(standardRuler), paper(a4Portrait), centimetre);
    chart.computeLayout(0, 0);
    ASSERT_EQ(chart.getChartPagesCount(), 3);
    EXPECT_EQ(pageOf(chart, 0).getOrigin(), (RealPos{0, 0}));
    EXPECT_EQ(pageOf(chart, 1).getOrigin(), (RealPos{230, 0}));
    EXPECT_EQ(pageOf(chart, 2).getOrigin(), (RealPos{460, 0}));
}

TEST(ChartLayout, SetsSpotPagesSideBySideAllTheirSheetsAnd20MillimetresApart)
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

TEST(ChartLayout, SearchesTheTightestGridOfSpotMeasurement)
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

TEST(ChartLayout, SearchesTheTightestGridAmongGridsMuchLongerThanBroad)
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

TEST(ChartLayout, ShortensGridsOfAnyLengthInAMoment)
{
    struct Case
    {
        RealSize patch;
        IntSize grid; // of 24 entries
    };
    // A column of 2.1 billion patches, two of a billion; likewise rows.
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

TEST(ChartLayout, HidesWhatLiesBetweenTheSheetsOfSpotMeasurement)
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

TEST(ChartLayout, HasNoEntryOutsideTheGridAndSaysNothing)
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

TEST(ChartLayout, WithoutEntriesLaysOutNothing)
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

TEST(ChartLayout, ForgetsItsChartWhenThereIsNoRoomAnyMore)
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

TEST(ChartLayout, HasNoRoomOnASheetThatTheBorderForLabelsTakesUp)
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
    // Patches narrower than what the border leaves of nothing do not fit either.
    for (RealRect const& content : {RealRect{0, 0, 18, 100}, RealRect{0, 0, 100, 8}}) {
        ChartLayout chart = chartOf(entries, instrument(tableSpot), sheetOf({200, 200}, content), {0.5, 0.5});
        chart.computeLayout(0, 0);
        expectNothing(chart);
    }
}

TEST(ChartLayout, IsSoundOnSheetsOfAnySize)
{
    GrowingArray<ColorEntry> entries = greyEntries(24);
    constexpr double lengths[] = {0, -5, 1e-9, 30, 100, 5e8, 1e10, 1e300, infinity, -infinity, nan};
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

TEST(ChartLayout, IsSoundWithPatchesAndGapsOfAnySize)
{
    GrowingArray<ColorEntry> entries = greyEntries(24);
    constexpr double lengths[] = {0, -5, 1e-300, 1e-9, 1e-3, 10, 1e300, infinity, -infinity, nan};
    for (MeasurementLayoutPreset const preset : {tableSpot, tableScan, standardRuler, longRuler})
        for (double const width : lengths)
            for (double const height : lengths)
                for (float const gap :
                     {0.0F, 1.0F, -1.0F, 1e30F, static_cast<float>(infinity), static_cast<float>(nan)}) {
                    SCOPED_TRACE(testing::Message() << measurementlayout_strings[preset] << ' ' << width << ' '
                                                    << height << ", gap " << gap);
                    ChartLayout chart = chartOf(entries, instrument(preset), paper(a4Portrait), {width, height});
                    EXPECT_EQ(errorsOf([&] { chart.computeLayout(gap, 0); }), "");
                    expectSound(chart);
                }
}

TEST(ChartLayout, HasNoRoomOnAGridThat32BitsCannotHold)
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

TEST(ChartLayout, NarrowsTheWidestGridThat32BitsHold)
{
    // Two billion columns of one row: 24 stay.
    GrowingArray<ColorEntry> entries = greyEntries(24);
    ChartLayout chart =
        chartOf(entries, instrument(longRuler), sheetOf({2e10 + 20, 40}, {0, 0, 2e10 + 20, 8 + 19 + 11}), centimetre);
    chart.computeLayout(0, 0);
    EXPECT_EQ((IntSize{chart.getPatchesX(), chart.getPatchesY()}), (IntSize{24, 1}));
    expectSound(chart);
}

TEST(ChartLayout, HasNoRoomWhereOverlappingSheetsShowMoreColumnsOrRowsThan32BitsCount)
{
    GrowingArray<ColorEntry> entries = greyEntries(24);
    // 46 sheets across, each with 909 million columns over its neighbours; 32 sheets up, likewise.
    ChartLayout wide = chartOf(entries, instrument(tableSpot), sheetOf({10, 297}, {0, 0, 200, 277}), {2e-7, 10});
    EXPECT_EQ(wide.computeLayout(0, 0), 0);
    expectNothing(wide);
    ChartLayout high = chartOf(entries, instrument(tableSpot), sheetOf({210, 10}, {0, 0, 200, 277}), {10, 2e-7});
    EXPECT_EQ(high.computeLayout(0, 0), 0);
    expectNothing(high);
}

TEST(ChartLayout, HasNoRoomOnAGridOfMoreCellsThanAnyonePrints)
{
    // A patch in the corner of each of 2 x 2 sheets, which are 230 x 160 mm apart.
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

TEST(ChartLayout, HasNoRoomOnMoreSheetsThanAnyonePrints)
{
    // 19 x 22 sheets a chart page, and a patch on the first of them only: no other holds a whole cell of the grid.
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

TEST(ChartLayout, SearchesAmongTinySpotPatchesInAMoment)
{
    // 1820 x 2610 cells a sheet, two sheets across.
    GrowingArray<ColorEntry> entries = greyEntries(24);
    ChartLayout chart = chartOf(entries, instrument(tableSpot), paper(a4Portrait), {0.1, 0.1});
    EXPECT_EQ(chart.computeLayout(0, 0), 100.0F);
    EXPECT_EQ(censusOf(chart), (Census{24, 0, 0}));
}

TEST(ChartLayout, HasSheetsThatPointAtItsChartPages)
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

TEST(ChartLayout, StaysAsItIsWhenACopyIsComputedAnew)
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

TEST(ChartLayout, OutlivesTheLayoutThatItWasCopiedFrom)
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
