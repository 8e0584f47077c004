// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "report/ChartFigures.h"

#include "support/RulerChart.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

double differenceOf(float const* p, float const* q)
{
    return std::sqrt(std::pow(p[0] - q[0], 2) + std::pow(p[1] - q[1], 2) + std::pow(p[2] - q[2], 2));
}

// Six greys on one sheet of two columns and three rows.
class ChartFiguresTest : public testing::Test
{
protected:
    RulerChart chart{greyEntries(6), {2, 3}};
    ChartLayout const& layout = chart.layout;
};

} // namespace

TEST_F(ChartFiguresTest, AColumnHasOnePairMoreThanPatches)
{
    EXPECT_THAT(scanPairs(layout), SizeIs(2 * 4));
}

TEST_F(ChartFiguresTest, PairsAreSortedAndHoldTheirDifferences)
{
    auto const pairs = scanPairs(layout);
    EXPECT_TRUE(std::is_sorted(pairs.begin(), pairs.end(),
                               [](ScanPair const& p, ScanPair const& q) { return p.deltaE < q.deltaE; }));
    for (ScanPair const& pair : pairs) {
        auto const labAt = [this](IntPos cell) {
            return (isPaper(cell) ? &ColorEntry::whitePatch : layout.getColorEntry(cell))->getLab();
        };
        EXPECT_NEAR(pair.deltaE, differenceOf(labAt(pair.first), labAt(pair.second)), 1e-3);
    }
}

TEST_F(ChartFiguresTest, TheFirstPairIsTheSmallestDifferenceOfTheChart)
{
    EXPECT_FLOAT_EQ(scanPairs(layout).front().deltaE, ChartLayout(layout).computeLayout(0, 0));
}

TEST_F(ChartFiguresTest, AChartThatIsNotScannedHasNoPairs)
{
    auto entries = greyEntries(6);
    ChartLayout spots = chartOf(entries, instrument(tableSpot), paper(a4Portrait), {10, 10});
    spots.computeLayout(0, 0);
    EXPECT_THAT(scanPairs(spots), IsEmpty());
}

TEST(ChartFigures, APercentileIsAValueByNearestRank)
{
    std::vector<ScanPair> pairs;
    for (int i = 1; i <= 40; ++i)
        pairs.push_back({{}, {}, static_cast<float>(i)});
    EXPECT_EQ(percentileOf(pairs, 0.05), 2);
    EXPECT_EQ(percentileOf(pairs, 0.06), 3);
    EXPECT_EQ(percentileOf(pairs, 0.5), 20);
    EXPECT_EQ(percentileOf(pairs, 0), 1);
    EXPECT_EQ(percentileOf(pairs, 1), 40);
}

TEST_F(ChartFiguresTest, NeighboursAreThePatchesAboveAndBelowOrThePaper)
{
    ScanNeighbors const top = neighborsOf(layout, chart.sheet(), {1, 2});
    EXPECT_TRUE(isPaper(top.before));
    EXPECT_EQ(top.after.y, 1);
    EXPECT_NEAR(top.deltaEAfter,
                differenceOf(layout.getColorEntry({1, 2})->getLab(), layout.getColorEntry({1, 1})->getLab()), 1e-3);
    ScanNeighbors const bottom = neighborsOf(layout, chart.sheet(), {1, 0});
    EXPECT_EQ(bottom.before.y, 1);
    EXPECT_TRUE(isPaper(bottom.after));
}

TEST(ChartFigures, CountsPatchesAndFillers)
{
    RulerChart const chart(greyEntries(5), {2, 3});
    CellCounts const counts = countCells(chart.layout);
    EXPECT_EQ(counts.patches, 5);
    EXPECT_EQ(counts.fillers, 1);
    EXPECT_EQ(counts.hidden, 0);
    EXPECT_EQ(counts.all(), 6);
}

TEST(ChartFigures, RepeatsAreTheSameNumbersHoweverTheyAreWritten)
{
    RulerChart const chart(entriesOf(RGB, {"0 10 20", "0.0 1e1 20", "0 10 21", "255 255 255"}), {2, 2});
    auto const groups = repeatsOf(chart.layout);
    ASSERT_THAT(groups, SizeIs(1));
    EXPECT_THAT(groups.front(), SizeIs(2));
    for (IntPos const cell : groups.front())
        EXPECT_EQ(chart.layout.getColorEntry(cell)->getRealValue(1), 10);
}

TEST(ChartFigures, FillersAreNoRepeats)
{
    RulerChart const chart(entriesOf(RGB, {"255 255 255", "0 0 0", "10 10 10"}), {2, 2});
    EXPECT_THAT(repeatsOf(chart.layout), IsEmpty());
}

TEST(ChartFigures, InksAreSummedInPercent)
{
    RulerChart const chart(entriesOf(CMYK, {"100 90 80 70", "0 0 0 0", "10 20.5 0 0"}), {1, 3});
    EXPECT_THAT(inkSums(chart.layout), ElementsAre(0, 30.5, 340));
    RulerChart const other(greyEntries(3), {1, 3});
    EXPECT_THAT(inkSums(other.layout), IsEmpty());
}

TEST(ChartFigures, CellsOfTheTableComeInTheOrderOfReading)
{
    RulerChart const chart(greyEntries(4), {2, 2});
    std::vector<std::pair<int, int>> places;
    for (IntPos const cell : tableCells(chart.layout))
        places.emplace_back(cell.x, cell.y);
    EXPECT_THAT(places, ElementsAre(std::pair(1, 1), std::pair(1, 0), std::pair(0, 1), std::pair(0, 0)));
}

TEST(Histogram, TakesTheSmallestStepWithFewEnoughBars)
{
    EXPECT_EQ(histogramOf({0, 9.5}, 10).step, 1);
    EXPECT_EQ(histogramOf({0, 10}, 10).step, 2);
    EXPECT_EQ(histogramOf({0, 21}, 10).step, 2.5);
    EXPECT_EQ(histogramOf({0, 49}, 10).step, 5);
    EXPECT_EQ(histogramOf({0, 99}, 10).step, 10);
    EXPECT_EQ(histogramOf({0, 100}, 10).step, 20);
}

TEST(Histogram, CountsAValueAtABordersRight)
{
    EXPECT_THAT(histogramOf({0, 0.9, 1, 2.5, 2.5}, 10).counts, ElementsAre(2, 1, 2));
}

TEST(Histogram, OfNothingHasOneEmptyBar)
{
    EXPECT_THAT(histogramOf({}, 10).counts, ElementsAre(0));
}
