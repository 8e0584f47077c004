// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartLayout.h"

#include "support/CapturedOutput.h"
#include "support/GeometryValues.h"
#include "support/LiteralArrangement.h"
#include "support/TestChart.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

constexpr RealSize smallPatch{1, 1};

// Makes the text of one channel.
using Channel = std::function<std::string(std::mt19937&)>;

Channel wholeNumbers(int last)
{
    return [last](std::mt19937& random) { return std::to_string(std::uniform_int_distribution(0, last)(random)); };
}

Channel steps(std::vector<std::string> const& levels)
{
    return [levels](std::mt19937& random) {
        return levels[std::uniform_int_distribution<std::size_t>(0, levels.size() - 1)(random)];
    };
}

GrowingArray<ColorEntry> randomEntries(ColorSpace colorSpace, int count, Channel const& channel, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<std::string> lines;
    for (int i = 0; i < count; ++i) {
        std::string line;
        for (int j = 0; j < colorspace_nof_channels[colorSpace]; ++j)
            line += channel(random) + ' ';
        lines.push_back(line);
    }
    return entriesOf(colorSpace, lines);
}

// A ruler chart whose pages have room for the given columns and rows, and with gaps along the scan for the same.
ChartLayout scanChart(Array<ColorEntry>& entries, IntSize room, double gap = 0)
{
    return chartOf(entries, instrument(longRuler), rulerSheetFor(room, {1, 1 + gap}), smallPatch);
}

bool isShown(ChartLayout const& chart, IntPos position)
{
    for (ChartPage const& page : *chart.getChartPages())
        if (page.isVisible(position))
            return true;
    return false;
}

// Sees to it that the things of the program and those of the literal arrangement go together one to one.
template <typename Ours, typename Theirs>
class Pairing
{
public:
    bool pair(Ours const* ours, Theirs const* theirs)
    {
        auto const there = forwards.emplace(ours, theirs).first->second;
        auto const back = backwards.emplace(theirs, ours).first->second;
        return there == theirs && back == ours;
    }

private:
    std::map<Ours const*, Theirs const*> forwards;
    std::map<Theirs const*, Ours const*> backwards;
};

class Comparison
{
public:
    Comparison(ChartLayout const& ours, LiteralArrangement const& theirs) : chart(ours), literal(theirs) {}

    // Stops at the first cell that differs.
    void expectSame()
    {
        entries.pair(&ColorEntry::whitePatch, &literal.paper());
        for (int y = 0; y < chart.getPatchesY(); ++y)
            for (int x = 0; x < chart.getPatchesX(); ++x)
                ASSERT_TRUE(entries.pair(chart.getColorEntry({x, y}), &literal.at(x, y))) << x << ", " << y;
        for (int y = 0; y < chart.getPatchesY(); ++y)
            for (int x = 0; x < chart.getPatchesX(); ++x) {
                SCOPED_TRACE(testing::Message() << "column " << x << ", row " << y);
                expectSameEntry(*chart.getColorEntry({x, y}), literal.at(x, y));
                if (testing::Test::HasFailure())
                    return;
            }
    }

private:
    void expectSameEntry(ColorEntry const& ours, LiteralArrangement::Entry const& theirs)
    {
        Array<ColorEntry> const& input = *chart.getOriginalEntries();
        bool const isInput = &ours >= input.begin() && &ours < input.end();
        EXPECT_EQ(isInput ? &ours - input.begin() : -1, theirs.source);
        EXPECT_EQ(ours.getStatus(), theirs.status);
        EXPECT_EQ(ours.getIndex(), theirs.index);
        EXPECT_EQ(ours.getHeapPosition(), theirs.heapPosition);
        if (theirs.status == Data || theirs.status == Filler) {
            EXPECT_EQ(std::bit_cast<std::uint32_t>(ours.getKey()), std::bit_cast<std::uint32_t>(theirs.key));
        }
        for (RelativePosition const side : {Above, Right, Below, Left}) {
            SCOPED_TRACE(testing::Message() << "side " << side);
            ASSERT_NE(ours.getGap(side), nullptr);
            expectSameGap(*ours.getGap(side), *theirs.gaps[side]);
            EXPECT_TRUE(entries.pair(ours.getNeighbor(side), theirs.neighbour(side)));
        }
    }

    void expectSameGap(ColorGap const& ours, LiteralArrangement::Gap const& theirs)
    {
        EXPECT_TRUE(gaps.pair(&ours, &theirs)) << "not shared with the same neighbour";
        EXPECT_TRUE(entries.pair(ours.getFirst(), theirs.first));
        EXPECT_TRUE(entries.pair(ours.getSecond(), theirs.second));
        EXPECT_EQ(ours.isAcrossScan(), theirs.acrossScan);
        EXPECT_EQ(std::bit_cast<std::uint32_t>(ours.getSqDe()), std::bit_cast<std::uint32_t>(theirs.squaredDeltaE));
        EXPECT_TRUE(std::equal(theirs.outColor.begin(), theirs.outColor.end(), ours.getOutColor()));
    }

    ChartLayout const& chart;
    LiteralArrangement const& literal;
    Pairing<ColorEntry, LiteralArrangement::Entry> entries;
    Pairing<ColorGap, LiteralArrangement::Gap> gaps;
};

// What the literal arrangement made of a chart.
struct Outcome
{
    float result;
    int swaps;
};

Outcome expectSameAsLiteral(ChartLayout const& chart, float result, int seed)
{
    LiteralArrangement literal(*chart.getOriginalEntries(), {chart.getPatchesX(), chart.getPatchesY()},
                               chart.getColorSpace());
    float const expected = literal.fillPatches(seed, [&](IntPos position) { return isShown(chart, position); });
    EXPECT_EQ(std::bit_cast<std::uint32_t>(result), std::bit_cast<std::uint32_t>(expected))
        << result << ' ' << expected;
    Comparison(chart, literal).expectSame();
    return {expected, literal.getSwaps()};
}

// Computes a chart and compares it.
Outcome arrange(Array<ColorEntry>& entries, IntSize room, int seed = 0, double gap = 0)
{
    ChartLayout chart = scanChart(entries, room, gap);
    float result = 0;
    EXPECT_EQ(errorsOf([&] { result = chart.computeLayout(static_cast<float>(gap), seed); }), "");
    return expectSameAsLiteral(chart, result, seed);
}

float deltaE(ColorEntry const& p, ColorEntry const& q)
{
    return std::sqrt(ColorEntry::computeSqDe(p.getLab(), q.getLab()));
}

int countStatus(ChartLayout const& chart, int status)
{
    int count = 0;
    for (int x = 0; x < chart.getPatchesX(); ++x)
        for (int y = 0; y < chart.getPatchesY(); ++y)
            count += chart.getColorEntry({x, y})->getStatus() == status;
    return count;
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

// The order of a full grid that is only shuffled: entries stand column after column from the last cell on, then every
// cell of the grid, row after row, changes places with one drawn from all.
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

// 121 entries on 3 pages of 5 x 10: 4 columns a page would be one cell short.
ChartLayout threePages(Array<ColorEntry>& entries)
{
    ChartLayout chart = scanChart(entries, {6, 10});
    chart.computeLayout(0, 0);
    EXPECT_EQ(chart.getChartPagesCount(), 3);
    EXPECT_EQ(chart.getPatchesX(), 15);
    EXPECT_EQ(chart.getPatchesY(), 10);
    return chart;
}

// Leaves the last column of a page unprinted.
void lastColumnOff(ChartLayout& chart, unsigned page)
{
    (*(*chart.getChartPages())[page].getOutputPages())[0].reduceCoordWidth(1);
}

constexpr IntSize rooms[] = {{1, 1}, {1, 2}, {2, 1}, {7, 1}, {40, 1}, {3, 2}, {4, 5}, {10, 10}, {12, 25}, {5, 100}};

// Compares charts of many shapes, seeds and gaps, three of each.
//
// \return how many swaps they took in all: too few would show nothing
int expectAgreement(ColorSpace colorSpace, Channel const& channel, std::vector<int> const& counts)
{
    int swaps = 0;
    unsigned run = 0;
    for (int const count : counts)
        for (IntSize const room : rooms) {
            // Enough pages for the chart, but not hundreds of them.
            if (room.width * room.height * 8 < count || room.width * room.height > 8 * count)
                continue;
            for (int repetition = 0; repetition < 3; ++repetition) {
                SCOPED_TRACE(testing::Message()
                             << count << " entries, " << room.width << " x " << room.height << ", chart " << run);
                GrowingArray<ColorEntry> entries = randomEntries(colorSpace, count, channel, run);
                swaps += arrange(entries, room, static_cast<int>(run % 5), run % 4 == 0 ? 1 : 0).swaps;
                if (testing::Test::HasFailure())
                    return swaps;
                ++run;
            }
        }
    return swaps;
}

std::vector<int> const smallCounts{1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 13, 16, 17, 24, 25, 31, 40, 50, 63, 64, 65, 80, 99};
std::vector<int> const mediumCounts{128, 150, 200, 255, 301, 400, 513};

} // namespace

TEST(Arrangement, OfSmallChartsIsTheLiteralOne)
{
    EXPECT_GT(expectAgreement(RGB, wholeNumbers(255), smallCounts), 100);
    EXPECT_GT(expectAgreement(CMYK, wholeNumbers(100), smallCounts), 100);
}

TEST(Arrangement, OfMediumChartsIsTheLiteralOne)
{
    EXPECT_GT(expectAgreement(RGB, wholeNumbers(255), mediumCounts), 1000);
    EXPECT_GT(expectAgreement(CMYK, wholeNumbers(100), mediumCounts), 1000);
}

TEST(Arrangement, OfChartsFullOfEqualKeysIsTheLiteralOne)
{
    // 8 to 81 different colours, many times each: how the heap decides between equal keys tells in the order.
    EXPECT_GT(expectAgreement(RGB, steps({"0", "255"}), smallCounts), 100);
    EXPECT_GT(expectAgreement(RGB, steps({"0", "128", "255"}), mediumCounts), 1000);
    EXPECT_GT(expectAgreement(CMYK, steps({"0", "100"}), smallCounts), 100);
    EXPECT_GT(expectAgreement(CMYK, steps({"0", "50", "100"}), mediumCounts), 1000);
}

TEST(Arrangement, OfChartsOfOneColourIsTheLiteralOne)
{
    for (char const* const level : {"0", "90"}) {
        EXPECT_EQ(expectAgreement(RGB, steps({level}), {1, 2, 3, 7, 20, 64}), 0);
        expectAgreement(CMYK, steps({level}), {1, 2, 3, 7, 20, 64, 301});
    }
}

TEST(Arrangement, OfGreyChartsIsTheLiteralOne)
{
    for (int const count : {9, 52, 200}) {
        GrowingArray<ColorEntry> entries = greyEntries(count);
        arrange(entries, {4, 20});
    }
}

TEST(Arrangement, Of16BitValuesBeyondTheKeysCeilingEndsAndIsTheLiteralOne)
{
    expectAgreement(RGB, wholeNumbers(65535), smallCounts);
    expectAgreement(RGB, wholeNumbers(65535), {128, 301, 513});
    EXPECT_GT(expectAgreement(RGB, steps({"0", "255", "30000", "65535"}), smallCounts), 100);
}

TEST(Arrangement, OfValuesThatAreNoNumbersEndsAndIsTheLiteralOne)
{
    EXPECT_GT(expectAgreement(RGB, steps({"nan", "0", "128", "255"}), smallCounts), 100);
    expectAgreement(RGB, steps({"inf", "-1e400", "0", "200"}), smallCounts);
    expectAgreement(CMYK, steps({"nan", "inf", "0", "100"}), smallCounts);
}

TEST(Arrangement, OfAFullSizeChartIsTheLiteralOneForEverySeedAndGap)
{
    GrowingArray<ColorEntry> entries = randomEntries(CMYK, 1500, steps({"0", "20", "40", "70", "100"}), 7);
    for (int const seed : {0, 1, 2, 12345, -1}) {
        SCOPED_TRACE(seed);
        arrange(entries, {20, 30}, seed);
    }
    arrange(entries, {20, 30}, 0, 1);
    arrange(entries, {60, 30}, 0, 0.5);
}

TEST(Arrangement, OfAFullSizeRgbChartIsTheLiteralOne)
{
    GrowingArray<ColorEntry> entries = randomEntries(RGB, 1499, wholeNumbers(255), 8);
    Outcome const outcome = arrange(entries, {21, 29});
    EXPECT_GT(outcome.swaps, 100) << "too easy to show anything";
    EXPECT_GT(outcome.result, 18);
}

TEST(Arrangement, WithPositionsThatNoSheetShowsIsTheLiteralOne)
{
    for (int const seed : {0, 2, 3, 4, 5, 6}) {
        SCOPED_TRACE(seed);
        GrowingArray<ColorEntry> entries = randomEntries(RGB, 121, wholeNumbers(255), 30);
        ChartLayout chart = threePages(entries);
        lastColumnOff(chart, 0);
        lastColumnOff(chart, 2);
        float const result = chart.fillPatches(seed);
        EXPECT_EQ(countStatus(chart, Hidden), 20);
        EXPECT_EQ(countStatus(chart, Filler), 9);
        expectSameAsLiteral(chart, result, seed);
    }
}

TEST(Arrangement, OfAChartArrangedAgainIsTheLiteralOne)
{
    GrowingArray<ColorEntry> entries = randomEntries(RGB, 121, wholeNumbers(255), 30);
    ChartLayout chart = scanChart(entries, {6, 10});
    chart.computeLayout(0, 2);
    chart.setMeasurementLayout(instrument(tableSpot));
    chart.computeLayout(0, 0);
    chart.setMeasurementLayout(instrument(longRuler));
    expectSameAsLiteral(chart, chart.computeLayout(0, 3), 3);
    expectSameAsLiteral(chart, chart.computeLayout(1, 3), 3);
    expectSameAsLiteral(chart, chart.fillPatches(4), 4);
}

TEST(Arrangement, PlacesEntriesColumnAfterColumnFromTheLastCellWhereNothingIsScanned)
{
    GrowingArray<ColorEntry> entries = greyEntries(5);
    ChartLayout chart =
        chartOf(entries, scanningAlongX(instrument(tableScan)), sheetOf({60, 60}, {0, 0, 60, 60}), {10, 10});
    ASSERT_EQ(chart.computeLayout(0, 0), 100.0F);
    ASSERT_EQ(chart.getPatchesX(), 4);
    ASSERT_EQ(chart.getPatchesY(), 2);
    // From (3, 1), (3, 0), (2, 1) on; the three cells left are filled up with white.
    EXPECT_EQ(orderOf(chart), (std::vector<std::ptrdiff_t>{-1, -1, -1, 4, 3, 2, 1, 0}));
    EXPECT_EQ(countStatus(chart, Filler), 3);
}

TEST(Arrangement, LeavesTheGapsOutWhereNothingIsScannedAlongY)
{
    GrowingArray<ColorEntry> entries = greyEntries(40);
    for (MeasurementLayout const& device : {instrument(tableSpot), scanningAlongX(instrument(tableScan))}) {
        // The gaps of an earlier arrangement do not stay behind.
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

TEST(Arrangement, MakesNoFillersWhereThereAreAsManyCellsAsEntries)
{
    GrowingArray<ColorEntry> entries = greyEntries(40);
    ChartLayout chart = scanChart(entries, {4, 10});
    chart.computeLayout(0, 0);
    EXPECT_EQ(countStatus(chart, Data), 40);
}

TEST(Arrangement, FillsUpWithWhiteThatTakesPartLikeData)
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

TEST(Arrangement, OfASingleRowGivesTheSmallestDifferenceFromPaperAndSwapsNothing)
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

TEST(Arrangement, OfASinglePatchGivesItsDifferenceFromPaper)
{
    GrowingArray<ColorEntry> entries = entriesOf(CMYK, {"0 100 100 0"});
    ChartLayout chart = scanChart(entries, {10, 10});
    EXPECT_EQ(chart.computeLayout(0, 0), deltaE(entries[0], ColorEntry::whitePatch));
    EXPECT_EQ(chart.getPatchesX(), 1);
    EXPECT_EQ(chart.getPatchesY(), 1);
    for (RelativePosition const side : {Above, Right, Below, Left})
        EXPECT_EQ(chart.getColorEntry({0, 0})->getNeighbor(side), &ColorEntry::whitePatch);
}

TEST(Arrangement, IsTheSameForTheSameSeedAndAnotherForAnother)
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

TEST(Arrangement, NeverSwapsPatchesThatAreTooNearInLightness)
{
    // A red and a green of almost one lightness lie far apart in colour, and each next to its like is as bad as can
    // be; but a difference of lightness of 5 is asked for.
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

TEST(Arrangement, ReturnsTheSmallestDifferenceThatAScanMeets)
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

TEST(Arrangement, StopsAtTheKeysCeilingWhenEveryPairIsFurtherApart)
{
    GrowingArray<ColorEntry> entries = entriesOf(RGB, {"65535 65535 65535"});
    ChartLayout chart = scanChart(entries, {10, 10});
    EXPECT_EQ(chart.computeLayout(0, 0), std::sqrt(100000.0F));
}

TEST(Arrangement, LinksEveryPatchWithItsNeighboursOnTheGrid)
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

TEST(Arrangement, ReportsPatchesThatFindNoPlaceAndGoesOn)
{
    // 121 entries and 29 whites for 120 visible cells and 30 others.
    GrowingArray<ColorEntry> entries = randomEntries(RGB, 121, wholeNumbers(255), 30);
    ChartLayout chart = threePages(entries);
    for (unsigned const page : {0U, 1U, 2U})
        lastColumnOff(chart, page);
    EXPECT_EQ(errorsOf([&] { chart.fillPatches(0); }), "Pool is empty!\rNot all patches placed.\n\r");
}

TEST(Arrangement, WithoutAnyVisibleCellReportsItsEmptyHeapAndGivesNought)
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
