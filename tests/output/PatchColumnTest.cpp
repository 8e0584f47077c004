// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PatchColumn.h"

#include "support/TestChart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

// A scan chart of 2 columns and 3 rows, with one white patch.
struct Chart
{
    GrowingArray<ColorEntry> entries = greyEntries(5);
    ChartLayout layout = chartOf(entries, instrument(longRuler), rulerSheetFor({2, 3}, {1, 1}), {1, 1});

    Chart() { layout.computeLayout(0, 0); }
    ColorEntry const* at(int x, int y) const { return layout.getColorEntry({x, y}); }
};

} // namespace

TEST(PatchColumn, HoldsTheEntriesOfAColumnInTheirOrder)
{
    Chart const chart;
    ASSERT_NE(chart.at(1, 2), nullptr);
    EXPECT_THAT(columnOf(chart.layout, {0, 0}, 3), ElementsAre(chart.at(0, 0), chart.at(0, 1), chart.at(0, 2)));
    EXPECT_THAT(columnOf(chart.layout, {1, 1}, 2), ElementsAre(chart.at(1, 1), chart.at(1, 2)));
}

TEST(PatchColumn, HasNoEntriesOutsideTheGrid)
{
    Chart const chart;
    EXPECT_THAT(columnOf(chart.layout, {1, 2}, 3), ElementsAre(chart.at(1, 2), nullptr, nullptr));
    EXPECT_THAT(columnOf(chart.layout, {1, -1}, 2), ElementsAre(nullptr, chart.at(1, 0)));
    EXPECT_THAT(columnOf(chart.layout, {2, 0}, 1), ElementsAre(nullptr));
    EXPECT_THAT(columnOf(ChartLayout(), {0, 0}, 1), ElementsAre(nullptr));
}

TEST(PatchColumn, IsEmptyForNoRows)
{
    Chart const chart;
    EXPECT_THAT(columnOf(chart.layout, {0, 0}, 0), IsEmpty());
    EXPECT_THAT(columnOf(chart.layout, {0, 0}, -1), IsEmpty());
}
