// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Arrangement.h"

#include "ChartLayout.h"
#include "NineGreys.h"
#include "ScanCharts.h"
#include "support/CapturedOutput.h"
#include "support/GeometryValues.h"
#include "support/TestChart.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

float deltaE(ColorEntry const& p, ColorEntry const& q)
{
    return std::sqrt(ColorEntry::computeSqDe(p.getLab(), q.getLab()));
}

// Which input entry stands on each cell, column after column; -1 for a white one.
std::vector<std::ptrdiff_t> orderOf(ChartLayout const& chart)
{
    Array<ColorEntry> const& input = *chart.getOriginalEntries();
    std::vector<std::ptrdiff_t> order;
    for (int x = 0; x < chart.getPatchesX(); ++x)
        for (int y = 0; y < chart.getPatchesY(); ++y) {
            ColorEntry const* const entry = chart.getColorEntry({x, y});
            order.push_back(entry->getStatus() == Data ? entry - input.begin() : -1);
        }
    return order;
}

// The order of a full grid after the shuffle alone. Entries are placed column after column, from the last cell on. Then
// each cell of the grid, row after row, is swapped with a random cell.
std::vector<std::ptrdiff_t> shuffledOrder(int columns, int rows, int count, unsigned seed)
{
    std::vector<std::ptrdiff_t> byRows(static_cast<std::size_t>(count));
    std::ptrdiff_t next = 0;
    for (int x = columns - 1; x >= 0; --x)
        for (int y = rows - 1; y >= 0; --y)
            byRows[static_cast<std::size_t>(columns * y + x)] = next++;
    srand(seed);
    for (std::ptrdiff_t& entry : byRows) {
        auto const drawn = static_cast<std::size_t>(count * static_cast<double>(rand()) / 2147483647.0);
        std::swap(entry, byRows[std::min(drawn, byRows.size() - 1)]);
    }
    std::vector<std::ptrdiff_t> byColumns;
    for (int x = 0; x < columns; ++x)
        for (int y = 0; y < rows; ++y)
            byColumns.push_back(byRows[static_cast<std::size_t>(columns * y + x)]);
    return byColumns;
}

} // namespace

TEST(Arrangement, PlacesEntriesByColumnsFromTheLastCellWithoutAScan)
{
    GrowingArray<ColorEntry> entries = greyEntries(5);
    ChartLayout chart =
        chartOf(entries, scanningAlongX(instrument(tableScan)), sheetOf({60, 60}, {0, 0, 60, 60}), {10, 10});
    ASSERT_EQ(chart.computeLayout(0, 0), 100.0F);
    ASSERT_EQ(chart.getPatchesX(), 4);
    ASSERT_EQ(chart.getPatchesY(), 2);
    // Entries start at (3, 1), (3, 0), (2, 1). White fills the last three cells.
    EXPECT_EQ(orderOf(chart), (std::vector<std::ptrdiff_t>{-1, -1, -1, 4, 3, 2, 1, 0}));
    EXPECT_EQ(countStatus(chart, Filler), 3);
}

TEST(Arrangement, HasNoGapsWithoutAScanAlongY)
{
    GrowingArray<ColorEntry> entries = greyEntries(40);
    for (MeasurementLayout const& device : {instrument(tableSpot), scanningAlongX(instrument(tableScan))}) {
        // The gaps of an earlier arrangement must not remain.
        ChartLayout chart = scanChart(entries, {10, 10});
        chart.computeLayout(0, 0);
        chart.setMeasurementLayout(device);
        chart.setPageLayout(paper(a4Portrait));
        EXPECT_EQ(chart.computeLayout(0, 0), 100.0F);
        for (int x = 0; x < chart.getPatchesX(); ++x)
            for (int y = 0; y < chart.getPatchesY(); ++y)
                for (RelativePosition const side : {Above, Right, Below, Left})
                    EXPECT_EQ(chart.getColorEntry({x, y})->getGap(side), nullptr);
    }
}

TEST(Arrangement, MakesNoFillersIfTheEntriesFillTheGrid)
{
    GrowingArray<ColorEntry> entries = greyEntries(40);
    ChartLayout chart = scanChart(entries, {4, 10});
    chart.computeLayout(0, 0);
    EXPECT_EQ(countStatus(chart, Data), 40);
}

TEST(Arrangement, WhiteFillersTakePartLikeData)
{
    for (auto const& [colorSpace, zero, white] :
         {std::tuple(RGB, "0 0 0", "255"), std::tuple(CMYK, "100 100 100 100", "0")}) {
        GrowingArray<ColorEntry> entries = entriesOf(colorSpace, std::vector<std::string>(37, zero));
        ChartLayout chart = scanChart(entries, {4, 10});
        chart.computeLayout(0, 0);
        ASSERT_EQ(countStatus(chart, Filler), 3);
        float paperLab[3];
        ColorEntry::getWhite(paperLab);
        for (int x = 0; x < 4; ++x)
            for (int y = 0; y < 10; ++y) {
                ColorEntry const& entry = *chart.getColorEntry({x, y});
                if (entry.getStatus() != Filler)
                    continue;
                EXPECT_GT(entry.getHeapPosition(), 0U);
                EXPECT_EQ(entry.getColorSpace(), colorSpace);
                EXPECT_TRUE(std::equal(paperLab, paperLab + 3, entry.getLab()));
                ASSERT_EQ(entry.getValues().getCount(),
                          static_cast<unsigned long long>(colorspace_nof_channels[colorSpace]));
                for (String const& value : entry.getValues())
                    EXPECT_TRUE(value == white);
            }
    }
}

TEST(Arrangement, ASingleRowGivesTheSmallestDifferenceFromPaperWithoutSwaps)
{
    GrowingArray<ColorEntry> entries = randomEntries(RGB, 60, wholeNumbers(255), 5);
    ChartLayout chart = scanChart(entries, {60, 1});
    float const result = chart.computeLayout(0, 0);
    float smallest = 1000;
    for (ColorEntry const& entry : entries)
        smallest = std::min(smallest, deltaE(entry, ColorEntry::whitePatch));
    EXPECT_EQ(result, smallest);
    EXPECT_EQ(orderOf(chart), shuffledOrder(60, 1, 60, 0));
}

TEST(Arrangement, ASinglePatchGivesItsDifferenceFromPaper)
{
    GrowingArray<ColorEntry> entries = entriesOf(CMYK, {"0 100 100 0"});
    ChartLayout chart = scanChart(entries, {10, 10});
    EXPECT_EQ(chart.computeLayout(0, 0), deltaE(entries[0], ColorEntry::whitePatch));
    EXPECT_EQ(chart.getPatchesX(), 1);
    EXPECT_EQ(chart.getPatchesY(), 1);
    for (RelativePosition const side : {Above, Right, Below, Left})
        EXPECT_EQ(chart.getColorEntry({0, 0})->getNeighbor(side), &ColorEntry::whitePatch);
}

TEST(Arrangement, TheSeedDecidesTheOrder)
{
    GrowingArray<ColorEntry> entries = randomEntries(RGB, 200, wholeNumbers(255), 6);
    ChartLayout chart = scanChart(entries, {10, 20});
    float const result = chart.computeLayout(0, 0);
    auto const order = orderOf(chart);
    chart.computeLayout(0, 2);
    EXPECT_NE(orderOf(chart), order);
    EXPECT_EQ(chart.computeLayout(0, 0), result);
    EXPECT_EQ(orderOf(chart), order);
}

TEST(Arrangement, NeverSwapsPatchesThatAreTooCloseInLightness)
{
    // A red and a green differ much in colour, but by less than 5 in lightness. So they are never swapped, although
    // equal neighbours have a difference of 0.
    GrowingArray<ColorEntry> entries = entriesOf(RGB, {"255 0 0", "0 146 0"});
    ASSERT_LT(std::abs(entries[0].getLab()[0] - entries[1].getLab()[0]), 4.9F);
    ASSERT_GT(deltaE(entries[0], entries[1]), 100);
    for (int i = 2; i < 40; ++i)
        entries.add(entryOf(RGB, i % 2 == 0 ? "255 0 0" : "0 146 0"));
    ChartLayout chart = scanChart(entries, {1, 40});
    EXPECT_EQ(chart.computeLayout(0, 0), 0);
    EXPECT_EQ(orderOf(chart), shuffledOrder(1, 40, 40, 0));
}

TEST(Arrangement, SwapsPatchesThatAreFarEnoughApartInLightness)
{
    GrowingArray<ColorEntry> entries;
    for (int i = 0; i < 39; ++i)
        entries.add(entryOf(RGB, std::array{"255 0 0", "0 255 0", "0 0 255"}[static_cast<std::size_t>(i % 3)]));
    ChartLayout chart = scanChart(entries, {1, 39});
    EXPECT_GT(chart.computeLayout(0, 0), 18);
    EXPECT_NE(orderOf(chart), shuffledOrder(1, 39, 39, 0));
}

TEST(Arrangement, ReturnsTheSmallestDifferenceAlongTheScan)
{
    GrowingArray<ColorEntry> entries = randomEntries(CMYK, 190, wholeNumbers(100), 9);
    ChartLayout chart = scanChart(entries, {10, 20});
    float const result = chart.computeLayout(0, 0);
    float smallest = 1000;
    for (int x = 0; x < chart.getPatchesX(); ++x)
        for (int y = -1; y < chart.getPatchesY(); ++y) {
            ColorEntry const* const here = chart.getColorEntry({x, y});
            ColorEntry const* const next = chart.getColorEntry({x, y + 1});
            smallest = std::min(smallest,
                                deltaE(here ? *here : ColorEntry::whitePatch, next ? *next : ColorEntry::whitePatch));
        }
    EXPECT_EQ(result, smallest);
}

TEST(Arrangement, StopsAtTheLargestKeyIfEveryPairIsFurtherApart)
{
    GrowingArray<ColorEntry> entries = entriesOf(RGB, {"65535 65535 65535"});
    ChartLayout chart = scanChart(entries, {10, 10});
    EXPECT_EQ(chart.computeLayout(0, 0), std::sqrt(100000.0F));
}

TEST(Arrangement, LinksEveryPatchToItsNeighboursOnTheGrid)
{
    GrowingArray<ColorEntry> entries = randomEntries(RGB, 77, wholeNumbers(255), 3);
    ChartLayout chart = scanChart(entries, {8, 10});
    chart.computeLayout(0, 0);
    auto const at = [&](int x, int y) {
        ColorEntry* const entry = chart.getColorEntry({x, y});
        return entry ? entry : &ColorEntry::whitePatch;
    };
    for (int x = 0; x < 8; ++x)
        for (int y = 0; y < 10; ++y) {
            ColorEntry const& entry = *chart.getColorEntry({x, y});
            EXPECT_EQ(entry.getIndex(), 8 * y + x);
            EXPECT_EQ(entry.getNeighbor(Above), at(x, y - 1));
            EXPECT_EQ(entry.getNeighbor(Right), at(x + 1, y));
            EXPECT_EQ(entry.getNeighbor(Below), at(x, y + 1));
            EXPECT_EQ(entry.getNeighbor(Left), at(x - 1, y));
        }
}

TEST(Arrangement, ReportsPatchesWithoutAPlaceAndContinues)
{
    // 121 entries and 29 whites for 120 visible cells and 30 others.
    GrowingArray<ColorEntry> entries = randomEntries(RGB, 121, wholeNumbers(255), 30);
    ChartLayout chart = threePages(entries);
    for (unsigned const page : {0U, 1U, 2U})
        lastColumnOff(chart, page);
    EXPECT_EQ(errorsOf([&] { chart.fillPatches(0); }), "Pool is empty!\rNot all patches placed.\n\r");
}

TEST(Arrangement, ReportsAnEmptyHeapAndReturnsZeroWithoutVisibleCells)
{
    GrowingArray<ColorEntry> entries = entriesOf(RGB, {"0 0 0"});
    ChartLayout chart = scanChart(entries, {1, 1});
    chart.computeLayout(0, 0);
    lastColumnOff(chart, 0);
    float result = -1;
    EXPECT_EQ(errorsOf([&] { result = chart.fillPatches(0); }),
              "Pool is empty!\rNot all patches placed.\n\rHeap is empty.\r");
    EXPECT_EQ(result, 0);
}

TEST(Arrangement, PlacesNothingInAnUnknownDirection)
{
    GrowingArray<ColorEntry> entries = greyEntries(12);
    for (MeasurementLayoutPreset const preset : {longRuler, tableSpot}) {
        ChartLayout chart = chartOf(entries, instrument(preset), paper(a4Portrait), {10, 10});
        chart.setDirection(static_cast<ChartDirection>(1));
        EXPECT_EQ(errorsOf([&] { chart.computeLayout(0, 0); }), "Not all patches placed.\n\r");
        for (int x = 0; x < chart.getPatchesX(); ++x)
            for (int y = 0; y < chart.getPatchesY(); ++y)
                EXPECT_EQ(chart.getColorEntry({x, y}), nullptr);
    }
}

TEST(Arrangement, UnlinksItsEntriesWhenItEnds)
{
    GrowingArray<ColorEntry> entries = greyEntries(60);
    {
        ChartLayout chart = scanChart(entries, {6, 10});
        chart.computeLayout(1, 0);
        ASSERT_NE(entries[0].getGap(Above), nullptr);
        ASSERT_NE(entries[0].getArrangement(), nullptr);
    }
    for (ColorEntry const& entry : entries) {
        EXPECT_EQ(entry.getArrangement(), nullptr);
        EXPECT_EQ(entry.getHeapPosition(), 0U);
        for (RelativePosition const side : {Above, Right, Below, Left})
            EXPECT_EQ(entry.getGap(side), nullptr);
    }
}

TEST(Arrangement, ArrangesTheEntriesThemselvesIfNoOtherArrangementHasThem)
{
    GrowingArray<ColorEntry> entries = greyEntries(60);
    ChartLayout chart = scanChart(entries, {6, 10});
    {
        ChartLayout const earlier = [&] {
            ChartLayout other = scanChart(entries, {6, 10});
            other.computeLayout(0, 0);
            return other;
        }();
    }
    chart.computeLayout(0, 0);
    int own = 0;
    for (int x = 0; x < chart.getPatchesX(); ++x)
        for (int y = 0; y < chart.getPatchesY(); ++y) {
            ColorEntry const* const entry = chart.getColorEntry({x, y});
            own += entry >= entries.begin() && entry < entries.end();
        }
    EXPECT_EQ(own, 60);
}

TEST(Arrangement, PlacesDataOnVisibleCellsAndWhiteOnTheOthers)
{
    GrowingArray<ColorEntry> entries = greyEntries(2);
    Arrangement arrangement;
    arrangement.init({2, 2}, entries);
    EXPECT_EQ(arrangement.at({0, 0}), nullptr);
    // Row after row: only the last cell is hidden.
    EXPECT_EQ(arrangement.place({true, true, true, false}, RGB), 2);
    EXPECT_EQ(arrangement.at({1, 1})->getStatus(), Hidden);
    EXPECT_EQ(arrangement.at({1, 0}), &entries[0]);
    EXPECT_EQ(arrangement.at({0, 1}), &entries[1]);
    EXPECT_EQ(arrangement.at({0, 0})->getStatus(), Filler);
    for (IntPos const outside : {IntPos{2, 0}, IntPos{0, 2}, IntPos{-1, 0}, IntPos{0, -1}})
        EXPECT_EQ(arrangement.at(outside), nullptr);
}

TEST(Arrangement, IsEmptyAndItsEntriesAreFreeOnceItIsCleared)
{
    GrowingArray<ColorEntry> entries = greyEntries(4);
    Arrangement arrangement;
    arrangement.init({2, 2}, entries);
    arrangement.place(std::vector<bool>(4, true), RGB);
    arrangement.order(0, RGB);
    ASSERT_EQ(entries[0].getArrangement(), &arrangement);
    ASSERT_NE(entries[0].getGap(Above), nullptr);
    arrangement.clear();
    EXPECT_EQ(arrangement.at({0, 0}), nullptr);
    EXPECT_EQ(entries[0].getArrangement(), nullptr);
    EXPECT_EQ(entries[0].getGap(Above), nullptr);
    EXPECT_EQ(entries[0].getHeapPosition(), 0U);
}

TEST(Arrangement, CopiesEntriesThatStandInAnotherArrangement)
{
    GrowingArray<ColorEntry> entries = greyEntries(4);
    std::vector<bool> const visible(4, true);
    Arrangement first;
    first.init({2, 2}, entries);
    first.place(visible, RGB);
    Arrangement second;
    second.init({2, 2}, entries);
    second.place(visible, RGB);
    for (IntPos const position : {IntPos{0, 0}, IntPos{1, 0}, IntPos{0, 1}, IntPos{1, 1}}) {
        EXPECT_NE(second.at(position), first.at(position));
        EXPECT_EQ(first.at(position)->getArrangement(), &first);
        EXPECT_EQ(second.at(position)->getArrangement(), &second);
        EXPECT_TRUE(second.at(position)->getValues()[0] == first.at(position)->getValues()[0]);
    }
}

// Labels and columns count from the last cell.
TEST(Arrangement, AGivenOrderIsThatOfTheEntries)
{
    NineGreys greys;
    greys.chart.setOrderMethod({OrderMethod::given, 1, {}});
    greys.chart.computeLayout(0, 0);
    EXPECT_EQ(orderOf(greys.chart), (std::vector<std::ptrdiff_t>{8, 7, 6, 5, 4, 3, 2, 1, 0}));
}

TEST(Arrangement, AGivenOrderHasItsOwnSmallestDifference)
{
    NineGreys greys;
    greys.chart.setOrderMethod({OrderMethod::given, 1, {}});
    float const result = greys.chart.computeLayout(0, 0);
    float smallest = 1000;
    for (int x = 0; x < 3; ++x)
        for (int y = -1; y < 3; ++y) {
            ColorEntry const& first = y < 0 ? ColorEntry::whitePatch : greys.at(x, y);
            smallest = std::min(smallest, deltaE(first, y < 2 ? greys.at(x, y + 1) : ColorEntry::whitePatch));
        }
    EXPECT_EQ(result, smallest);
    EXPECT_EQ(greys.chart.getOrderBound(), 0);
}
