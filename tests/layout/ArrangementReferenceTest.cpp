// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Arrangements compared with the slow reference arrangement.

#include "ChartLayout.h"

#include "ChartChecks.h"
#include "ScanCharts.h"
#include "support/CapturedOutput.h"
#include "support/LiteralArrangement.h"
#include "support/TestChart.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

// Checks that the program's objects and those of the reference match one to one.
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

// The result of the reference.
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

constexpr IntSize rooms[] = {{1, 1}, {1, 2}, {2, 1}, {7, 1}, {40, 1}, {3, 2}, {4, 5}, {10, 10}, {12, 25}, {5, 100}};

// Compares charts of many shapes, seeds and gaps, three of each.
//
// \return the number of all swaps: too few would prove nothing
int expectAgreement(ColorSpace colorSpace, Channel const& channel, std::vector<int> const& counts)
{
    int swaps = 0;
    unsigned run = 0;
    for (int const count : counts)
        for (IntSize const room : rooms) {
            // Enough pages for the chart, but not hundreds.
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

TEST(Arrangement, SmallChartsAgreeWithTheReference)
{
    EXPECT_GT(expectAgreement(RGB, wholeNumbers(255), smallCounts), 100);
    EXPECT_GT(expectAgreement(CMYK, wholeNumbers(100), smallCounts), 100);
}

TEST(Arrangement, MediumChartsAgreeWithTheReference)
{
    EXPECT_GT(expectAgreement(RGB, wholeNumbers(255), mediumCounts), 1000);
    EXPECT_GT(expectAgreement(CMYK, wholeNumbers(100), mediumCounts), 1000);
}

TEST(Arrangement, ChartsFullOfEqualKeysAgreeWithTheReference)
{
    // 8 to 81 different colours, each many times. The order shows how the heap decides between equal keys.
    EXPECT_GT(expectAgreement(RGB, steps({"0", "255"}), smallCounts), 100);
    EXPECT_GT(expectAgreement(RGB, steps({"0", "128", "255"}), mediumCounts), 1000);
    EXPECT_GT(expectAgreement(CMYK, steps({"0", "100"}), smallCounts), 100);
    EXPECT_GT(expectAgreement(CMYK, steps({"0", "50", "100"}), mediumCounts), 1000);
}

TEST(Arrangement, ChartsOfOneColourAgreeWithTheReference)
{
    for (char const* const level : {"0", "90"}) {
        EXPECT_EQ(expectAgreement(RGB, steps({level}), {1, 2, 3, 7, 20, 64}), 0);
        expectAgreement(CMYK, steps({level}), {1, 2, 3, 7, 20, 64, 301});
    }
}

TEST(Arrangement, GreyChartsAgreeWithTheReference)
{
    for (int const count : {9, 52, 200}) {
        GrowingArray<ColorEntry> entries = greyEntries(count);
        arrange(entries, {4, 20});
    }
}

TEST(Arrangement, ValuesOf16BitsBeyondTheLargestKeyAgreeWithTheReference)
{
    expectAgreement(RGB, wholeNumbers(65535), smallCounts);
    expectAgreement(RGB, wholeNumbers(65535), {128, 301, 513});
    EXPECT_GT(expectAgreement(RGB, steps({"0", "255", "30000", "65535"}), smallCounts), 100);
}

TEST(Arrangement, ValuesThatAreNoNumbersAgreeWithTheReference)
{
    EXPECT_GT(expectAgreement(RGB, steps({"nan", "0", "128", "255"}), smallCounts), 100);
    expectAgreement(RGB, steps({"inf", "-1e400", "0", "200"}), smallCounts);
    expectAgreement(CMYK, steps({"nan", "inf", "0", "100"}), smallCounts);
}

TEST(Arrangement, AFullSizeChartAgreesWithTheReferenceForEverySeedAndGap)
{
    GrowingArray<ColorEntry> entries = randomEntries(CMYK, 1500, steps({"0", "20", "40", "70", "100"}), 7);
    for (int const seed : {0, 1, 2, 12345, -1}) {
        SCOPED_TRACE(seed);
        arrange(entries, {20, 30}, seed);
    }
    arrange(entries, {20, 30}, 0, 1);
    arrange(entries, {60, 30}, 0, 0.5);
}

TEST(Arrangement, AFullSizeRgbChartAgreesWithTheReference)
{
    GrowingArray<ColorEntry> entries = randomEntries(RGB, 1499, wholeNumbers(255), 8);
    Outcome const outcome = arrange(entries, {21, 29});
    EXPECT_GT(outcome.swaps, 100) << "too easy to show anything";
    EXPECT_GT(outcome.result, 18);
}

TEST(Arrangement, AChartWithHiddenCellsAgreesWithTheReference)
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

TEST(Arrangement, AChartArrangedAgainAgreesWithTheReference)
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
