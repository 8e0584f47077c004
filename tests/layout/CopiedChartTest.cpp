// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartLayout.h"

#include "lib/OvFile.h"
#include "support/StringText.h"
#include "support/TemporaryFolder.h"
#include "support/TestChart.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

// Near greys: the search finds no 18 delta E, so that the gaps of the two layouts differ.
GrowingArray<ColorEntry> manyGreys()
{
    return greyEntries(60);
}

ChartLayout rulerChart(Array<ColorEntry>& entries)
{
    return chartOf(entries, instrument(longRuler), paper(a4Portrait), {8, 8});
}

std::string sheetOf(ChartLayout const& chart)
{
    TemporaryFolder const folder;
    chart.writeOutputImagesEPS(folder.pathWithSlash());
    return textOf(RFile::readContents(folder.pathOf(textOf(chart.getName()) + "_001.eps")));
}

std::vector<ColorEntry*> entriesOf(ChartLayout const& chart)
{
    std::vector<ColorEntry*> entries;
    for (int y = 0; y < chart.getPatchesY(); ++y)
        for (int x = 0; x < chart.getPatchesX(); ++x)
            entries.push_back(chart.getColorEntry({x, y}));
    return entries;
}

std::vector<ColorGap*> gapsOf(ChartLayout const& chart)
{
    std::vector<ColorGap*> gaps;
    for (ColorEntry const* entry : entriesOf(chart))
        for (RelativePosition const side : {Above, Right, Below, Left})
            gaps.push_back(entry->getGap(side));
    return gaps;
}

} // namespace

TEST(CopiedChart, DoesNotChangeTheOriginalsSheetsWhenComputed)
{
    GrowingArray<ColorEntry> entries = manyGreys();
    ChartLayout chart = rulerChart(entries);
    chart.computeLayout(1, 0);
    std::string const before = sheetOf(chart);
    ASSERT_NE(before, "");
    {
        ChartLayout copy = chart;
        copy.computeLayout(0, 2);
        EXPECT_EQ(sheetOf(chart), before);
    }
    EXPECT_EQ(sheetOf(chart), before);
}

TEST(CopiedChart, DoesNotChangeTheOriginalsGapsAndEntriesWhenComputed)
{
    GrowingArray<ColorEntry> entries = manyGreys();
    ChartLayout chart = rulerChart(entries);
    chart.computeLayout(1, 0);
    auto const before = entriesOf(chart);
    auto const gaps = gapsOf(chart);
    auto copy = std::make_unique<ChartLayout>(chart);
    copy->computeLayout(1, 2);
    EXPECT_EQ(entriesOf(chart), before);
    EXPECT_EQ(gapsOf(chart), gaps);
    copy.reset();
    EXPECT_EQ(entriesOf(chart), before);
    EXPECT_EQ(gapsOf(chart), gaps);
}

TEST(CopiedChart, IsTheSameChartAfterTheSameComputation)
{
    GrowingArray<ColorEntry> entries = manyGreys();
    ChartLayout chart = rulerChart(entries);
    float const result = chart.computeLayout(1, 0);
    ChartLayout copy = chart;
    EXPECT_EQ(copy.computeLayout(1, 0), result);
    EXPECT_EQ(sheetOf(copy), sheetOf(chart));
}

TEST(CopiedChart, ShowsTheOriginalsArrangementUntilItIsComputed)
{
    GrowingArray<ColorEntry> entries = manyGreys();
    ChartLayout chart = rulerChart(entries);
    chart.computeLayout(1, 0);
    ChartLayout const copy = chart;
    EXPECT_EQ(entriesOf(copy), entriesOf(chart));
}

TEST(CopiedChart, KeepsItsSheetsWhenTheOriginalIsComputedAgain)
{
    GrowingArray<ColorEntry> entries = manyGreys();
    ChartLayout chart = rulerChart(entries);
    chart.computeLayout(1, 0);
    ChartLayout const copy = chart;
    std::string const before = sheetOf(copy);
    chart.setPatchSize({12, 12});
    chart.computeLayout(0, 2);
    EXPECT_EQ(sheetOf(copy), before);
}

TEST(CopiedChart, OutlivesTheOriginal)
{
    GrowingArray<ColorEntry> entries = manyGreys();
    auto chart = std::make_unique<ChartLayout>(rulerChart(entries));
    chart->computeLayout(1, 0);
    std::string const before = sheetOf(*chart);
    ChartLayout const copy = *chart;
    chart.reset();
    EXPECT_EQ(sheetOf(copy), before);
}

TEST(CopiedChart, TwoChartsOfOneTableDoNotDisturbEachOther)
{
    GrowingArray<ColorEntry> entries = manyGreys();
    ChartLayout first = rulerChart(entries);
    first.computeLayout(1, 0);
    std::string const before = sheetOf(first);
    {
        ChartLayout second = rulerChart(entries);
        second.computeLayout(1, 2);
        EXPECT_EQ(sheetOf(first), before);
    }
    EXPECT_EQ(sheetOf(first), before);
}
