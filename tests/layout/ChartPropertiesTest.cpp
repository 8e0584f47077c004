// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Properties of every chart's layout, checked over thousands of settings.

#include "support/ChartProperties.h"
#include "support/CapturedOutput.h"
#include "support/GeometryValues.h"
#include "support/RandomChart.h"
#include "support/TestChart.h"

#include <gtest/gtest.h>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

constexpr unsigned howMany = 4000;

// Checks charts of all kinds of settings. A failure names the settings.
template <typename Look>
void forEachChart(Look look)
{
    for (unsigned number = 0; number < howMany; ++number) {
        RandomSettings const settings(number);
        SCOPED_TRACE(testing::Message() << number << ": " << testing::PrintToString(settings));
        look(RandomChart(settings));
    }
}

int ceilingOf(int dividend, int divisor)
{
    return (dividend + divisor - 1) / divisor;
}

} // namespace

TEST(AnyChart, HasEachPatchOnceAndConsistentCountsAndLabels)
{
    forEachChart([](RandomChart const& chart) { EXPECT_EQ(faultIn(chart.layout, chart.result), ""); });
}

TEST(AnyChart, PlacesEveryPatchWithoutAReport)
{
    EXPECT_EQ(errorsOf([] { forEachChart([](RandomChart const&) {}); }), "");
}

TEST(AnyChart, HasPagesIfThereIsRoomForAPatch)
{
    int charts = 0;
    forEachChart([&](RandomChart const& chart) {
        Room const room = roomOf(chart.settings);
        bool const hasRoom = chart.settings.entries > 0 && room.grid.width > 0 && room.grid.height > 0;
        EXPECT_EQ(chart.layout.hasSomethingToOutpot(), hasRoom);
        charts += hasRoom ? 1 : 0;
    });
    EXPECT_GT(charts, howMany / 4);
    EXPECT_LT(charts, howMany * 3 / 4);
}

TEST(AnyChart, HasTheFewestPagesThatHoldItsPatches)
{
    forEachChart([](RandomChart const& chart) {
        if (!chart.layout.hasSomethingToOutpot())
            return;
        Room const room = roomOf(chart.settings);
        int const pages = ceilingOf(chart.settings.entries, room.grid.width * room.grid.height);
        EXPECT_EQ(chart.layout.getChartPagesCount(), pages);
        for (ChartPage const& page : *chart.layout.getChartPages())
            EXPECT_EQ(page.getPagesSize(), room.sheets);
    });
}

TEST(AnyChart, HasTheSmallestGridThatHoldsThePatchesOfAScan)
{
    forEachChart([](RandomChart const& chart) {
        ScanDirection const direction = chart.settings.instrument.getScanDirection();
        if (!chart.layout.hasSomethingToOutpot() || direction == none)
            return;
        // Every column is needed. With one column, every row is needed. Along x, only rows count.
        IntSize grid = roomOf(chart.settings).grid;
        int const pages = chart.layout.getChartPagesCount();
        int const count = chart.settings.entries;
        if (direction == alongY)
            grid.width = ceilingOf(count, pages * grid.height);
        if (direction == alongX || grid.width == 1)
            grid.height = ceilingOf(count, pages * grid.width);
        for (ChartPage const& page : *chart.layout.getChartPages())
            EXPECT_EQ((IntSize{page.getCoordRect().width, page.getCoordRect().height}), grid);
    });
}
