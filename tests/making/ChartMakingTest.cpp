// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartMaking.h"

#include "support/GeometryValues.h"
#include "support/RandomChart.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

using testing::Contains;
using testing::Ge;
using testing::Lt;

enum class Kind { grey, distinct, alternating };

struct Case
{
    char const* name;
    Kind kind;
    ColorSpace colorSpace;
    int count;
    MeasurementLayoutPreset device;
    PageLayoutPreset paper;
    double patch; ///< mm
};

void PrintTo(Case const& chart, std::ostream* stream)
{
    *stream << chart.name;
}

Case const cases[] = {
    {"spots", Kind::distinct, RGB, 120, tableSpot, a4Portrait, 8},
    {"greys on the table", Kind::grey, RGB, 90, tableScan, a4Portrait, 8},
    {"greys on many cards", Kind::grey, RGB, 90, standardRuler, creditCardPortrait, 8},
    {"grid of inks", Kind::distinct, CMYK, 160, longRuler, a4Landscape, 8},
    {"grid of lights", Kind::distinct, RGB, 200, standardRuler, letterPortrait, 9},
    {"black and grey", Kind::alternating, RGB, 60, standardRuler, a4Portrait, 8},
    {"no room", Kind::grey, RGB, 10, tableScan, creditCardLandscape, 60},
    {"no patches", Kind::grey, RGB, 0, longRuler, a4Portrait, 8},
};

GrowingArray<ColorEntry> entriesOf(Case const& chart)
{
    if (chart.kind == Kind::grey)
        return greyEntries(chart.count);
    if (chart.kind == Kind::distinct)
        return distinctEntries(chart.colorSpace, chart.count);
    GrowingArray<ColorEntry> entries;
    for (int i = 0; i < chart.count; ++i)
        entries.add(entryOf(RGB, i % 2 == 0 ? "0 0 0" : "128 128 128"));
    return entries;
}

// A chart with entries of its own, so that nothing of another chart's arrangement is seen.
class OwnChart
{
public:
    explicit OwnChart(Case const& chosen)
        : entries(entriesOf(chosen)),
          layout(chartOf(entries, instrument(chosen.device), paper(chosen.paper), {chosen.patch, chosen.patch}))
    {
        layout.setColorSpace(chosen.colorSpace);
    }

    // Which entry of the table stands on each cell, row after row; -1 for white ones.
    std::vector<std::ptrdiff_t> order() const
    {
        std::vector<std::ptrdiff_t> numbers;
        for (ColorEntry const* entry : cells()) {
            bool const isOfTable = entry >= entries.begin() && entry < entries.end();
            numbers.push_back(isOfTable ? entry - entries.begin() : -1);
        }
        return numbers;
    }

    // What each cell says about itself: status, key and its gaps' differences.
    std::vector<float> numbers() const
    {
        std::vector<float> all;
        for (ColorEntry const* entry : cells()) {
            all.push_back(static_cast<float>(entry->getStatus()));
            for (RelativePosition const side : {Above, Right, Below, Left})
                all.push_back(entry->getGap(side) ? entry->getGap(side)->getSqDe() : -1);
        }
        return all;
    }

    std::vector<ColorGap const*> gaps() const
    {
        std::vector<ColorGap const*> all;
        for (ColorEntry const* entry : cells())
            for (RelativePosition const side : {Above, Right, Below, Left})
                all.push_back(entry->getGap(side));
        return all;
    }

private:
    std::vector<ColorEntry const*> cells() const
    {
        std::vector<ColorEntry const*> all;
        for (int y = 0; y < layout.getPatchesY(); ++y)
            for (int x = 0; x < layout.getPatchesX(); ++x)
                all.push_back(layout.getColorEntry({x, y}));
        return all;
    }

    GrowingArray<ColorEntry> entries;

public:
    ChartLayout layout;
};

void expectSame(OwnChart const& made, OwnChart const& byHand)
{
    EXPECT_EQ(made.layout.getPatchesX(), byHand.layout.getPatchesX());
    EXPECT_EQ(made.layout.getPatchesY(), byHand.layout.getPatchesY());
    EXPECT_EQ(made.layout.countOutputPages(), byHand.layout.countOutputPages());
    EXPECT_EQ(made.layout.getMeasurementLayout().getGap(), byHand.layout.getMeasurementLayout().getGap());
    EXPECT_EQ(made.order(), byHand.order());
    EXPECT_EQ(made.numbers(), byHand.numbers());
}

class MadeCharts : public testing::TestWithParam<Case>
{
};

Case const& greys = cases[1];

} // namespace

TEST_P(MadeCharts, AreThoseOfThreeAttemptsWrittenOut)
{
    OwnChart made(GetParam());
    MadeChart const result = makeChart(made.layout);

    OwnChart byHand(GetParam());
    bool const scans = byHand.layout.getMeasurementLayout().getScanDirection() == alongY;
    float smallest = byHand.layout.computeLayout(0, 0);
    if (scans && smallest < 18)
        smallest = byHand.layout.computeLayout(0, 1);
    float const withoutGaps = smallest;
    bool const hasGaps = scans && smallest < 18;
    if (hasGaps)
        smallest = byHand.layout.computeLayout(1, 0);

    expectSame(made, byHand);
    EXPECT_EQ(result.smallestDeltaE, smallest);
    EXPECT_EQ(result.withoutGaps, withoutGaps);
    EXPECT_EQ(result.hasGaps, hasGaps);
}

TEST_P(MadeCharts, HaveNoGapsWhereTheRuleIsNever)
{
    OwnChart made(GetParam());
    MadeChart const result = makeChart(made.layout, GapRule::never);

    OwnChart byHand(GetParam());
    float smallest = byHand.layout.computeLayout(0, 0);
    if (byHand.layout.getMeasurementLayout().getScanDirection() == alongY && smallest < 18)
        smallest = byHand.layout.computeLayout(0, 1);

    expectSame(made, byHand);
    EXPECT_EQ(result.smallestDeltaE, smallest);
    EXPECT_EQ(result.withoutGaps, smallest);
    EXPECT_FALSE(result.hasGaps);
}

TEST_P(MadeCharts, HaveGapsWhereTheRuleIsAlwaysAndTheInstrumentScans)
{
    OwnChart made(GetParam());
    MadeChart const result = makeChart(made.layout, GapRule::always, 1.5F);

    OwnChart byHand(GetParam());
    bool const scans = byHand.layout.getMeasurementLayout().getScanDirection() == alongY;
    float const smallest = byHand.layout.computeLayout(scans ? 1.5F : 0, 0);

    expectSame(made, byHand);
    EXPECT_EQ(result.smallestDeltaE, smallest);
    EXPECT_EQ(result.hasGaps, scans);
}

INSTANTIATE_TEST_SUITE_P(, MadeCharts, testing::ValuesIn(cases), [](auto const& test) {
    std::string name = test.param.name;
    std::erase(name, ' ');
    return name;
});

TEST(ChartMaking, HasCasesOnBothSidesOfTheRule)
{
    std::vector<float> differences;
    for (Case const& chart : cases) {
        OwnChart made(chart);
        if (chart.device != tableSpot && chart.count > 0)
            differences.push_back(makeChart(made.layout).withoutGaps);
    }
    EXPECT_THAT(differences, Contains(Lt(18.0F)));
    EXPECT_THAT(differences, Contains(Ge(18.0F)));
}

TEST(ChartMaking, TakesTheGapThatItIsGiven)
{
    OwnChart made(greys);
    EXPECT_TRUE(makeChart(made.layout, GapRule::automatic, 2.5F).hasGaps);
    EXPECT_EQ(made.layout.getMeasurementLayout().getGap(), (RealSize{0, 2.5}));
}

TEST(ChartMaking, DoesNotSearchAgainFromTheSameShuffle)
{
    // The GNU C library's rand() gives one sequence for the seeds 0 and 1. A new search would make new gaps.
    OwnChart chart(greys);
    float const first = chart.layout.computeLayout(0, 0);
    std::vector<ColorGap const*> const gaps = chart.gaps();
    EXPECT_EQ(chart.layout.arrangeFrom(1), first);
    EXPECT_EQ(chart.gaps(), gaps);
}

TEST(ChartMaking, SearchesAgainFromAnotherShuffle)
{
    OwnChart chart(greys);
    chart.layout.computeLayout(0, 0);
    std::vector<std::ptrdiff_t> const first = chart.order();
    float const again = chart.layout.arrangeFrom(7);
    EXPECT_NE(chart.order(), first);

    OwnChart other(greys);
    EXPECT_EQ(other.layout.computeLayout(0, 7), again);
    expectSame(chart, other);
}

TEST(ChartMaking, NeedsGapsBelow18DeltaEOnly)
{
    OwnChart const scanned(greys);
    EXPECT_TRUE(needsGaps(scanned.layout, 17.99F));
    EXPECT_FALSE(needsGaps(scanned.layout, 18));
    OwnChart const spots(cases[0]);
    EXPECT_FALSE(needsGaps(spots.layout, 0));
}
