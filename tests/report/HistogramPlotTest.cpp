// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "report/HistogramPlot.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace
{

class HistogramPlotTest : public testing::Test
{
protected:
    // The plot by a template that shows only some markers.
    std::string plotted(std::string const& markers, std::vector<HistogramLine> const& lines = {}, double weakBelow = 0)
    {
        folder.write("plot.html", markers);
        PageTemplate const page("plot.html");
        fillHistogram(page.values(), {10, {2, 0, 4}}, {"id", "title", "caption", "description", "unit"}, lines,
                      weakBelow);
        return page.expand(folder.path().string()).value_or("none");
    }

    TemporaryFolder folder;
};

} // namespace

TEST_F(HistogramPlotTest, NamesEachBarsRangeAndCount)
{
    EXPECT_EQ(plotted("{{#BAR}}{{FROM}}-{{TO}}: {{COUNT}};{{/BAR}}"), "0-10: 2;10-20: 0;20-30: 4;");
}

// The plot is 660 wide from 48 on and 196 high down to 236: three bars of 220 with 1 free at each side.
TEST_F(HistogramPlotTest, BarsAreAsHighAsTheirCounts)
{
    EXPECT_EQ(plotted("{{#BAR}}{{X}} {{W}} {{Y}} {{H}};{{/BAR}}"), "49 218 138 98;269 218 236 0;489 218 40 196;");
}

TEST_F(HistogramPlotTest, BarsBelowTheLimitAreWeak)
{
    EXPECT_EQ(plotted("{{#BAR}}{{#WEAK}}weak{{/WEAK}};{{/BAR}}", {}, 20), "weak;weak;;");
    EXPECT_EQ(plotted("{{#BAR}}{{#WEAK}}weak{{/WEAK}};{{/BAR}}", {}, 19), "weak;;;");
}

TEST_F(HistogramPlotTest, LinesStandAtTheirValuesAndOnlyInThePlot)
{
    EXPECT_EQ(plotted("{{#LINE}}{{X}} {{TEXT}};{{/LINE}}", {{15, "middle"}, {31, "outside"}}), "378 middle;");
}
