// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "report/ColorPlots.h"

#include "support/RulerChart.h"
#include "support/TemporaryFolder.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdio>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

using testing::HasSubstr;

class ColorPlotsTest : public testing::Test
{
protected:
    using Fill = void (*)(TemplateValues, ChartLayout const&);

    // The plot by a template that shows only some markers.
    std::string plotted(Fill fill, ChartLayout const& chart, std::string const& markers)
    {
        folder.write("plot.html", markers);
        PageTemplate const page("plot.html");
        fill(page.values(), chart);
        return page.expand(folder.path().string()).value_or("none");
    }

    TemporaryFolder folder;
    RulerChart const one{entriesOf(RGB, {"255 0 0"}), {1, 1}};
};

} // namespace

// The plane is 600 wide. The outline of RGB reaches 98 in a* and -108 in b*: the plane ends at 120.
TEST_F(ColorPlotsTest, APatchLiesAtItsPlaceInThePlane)
{
    float const* const lab = one.layout.getColorEntry({0, 0})->getLab();
    double x = 0;
    double y = 0;
    ASSERT_EQ(std::sscanf(plotted(fillPlane, one.layout, "{{#DOT}}{{X}} {{Y}};{{/DOT}}").c_str(), "%lf %lf;", &x, &y),
              2);
    EXPECT_NEAR(x, 300 + 300 * static_cast<double>(lab[1]) / 120, 0.06);
    EXPECT_NEAR(y, 300 - 300 * static_cast<double>(lab[2]) / 120, 0.06);
}

// L* runs over 688 from 16 on.
TEST_F(ColorPlotsTest, APatchLiesAtItsLightness)
{
    float const* const lab = one.layout.getColorEntry({0, 0})->getLab();
    double x = 0;
    ASSERT_EQ(std::sscanf(plotted(fillLightness, one.layout, "{{#DOT}}{{X}};{{/DOT}}").c_str(), "%lf;", &x), 1);
    EXPECT_NEAR(x, 16 + 688 * static_cast<double>(lab[0]) / 100, 0.06);
}

TEST_F(ColorPlotsTest, DotsHaveTheColoursOfTheirPatches)
{
    EXPECT_EQ(plotted(fillPlane, one.layout, "{{#DOT}}{{FILL}}{{/DOT}}").substr(0, 3), "#ff");
}

TEST_F(ColorPlotsTest, AreDescribedInWords)
{
    EXPECT_THAT(plotted(fillPlane, one.layout, "{{DESCRIPTION}}"), HasSubstr("1 patch, a* from "));
    EXPECT_THAT(plotted(fillLightness, one.layout, "{{DESCRIPTION}}"), HasSubstr("1 patch, L* from "));
}
