// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "report/GamutOutline.h"

#include "support/TestChart.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

// Whether the outline has a point close to a patch's colour.
bool reaches(std::vector<PlanePoint> const& outline, ColorEntry const& entry)
{
    return std::any_of(outline.begin(), outline.end(), [&entry](PlanePoint const& point) {
        return std::hypot(point.a - static_cast<double>(entry.getLab()[1]),
                          point.b - static_cast<double>(entry.getLab()[2])) < 5;
    });
}

} // namespace

TEST(GamutOutline, OfRgbReachesThePrimaries)
{
    auto const outline = gamutOutline(RGB);
    for (char const* values : {"255 0 0", "0 255 0", "0 0 255", "255 255 0", "255 0 255", "0 255 255"})
        EXPECT_TRUE(reaches(outline, entryOf(RGB, values))) << values;
}

TEST(GamutOutline, OfCmykReachesTheSolids)
{
    auto const outline = gamutOutline(CMYK);
    for (char const* values : {"100 0 0 0", "0 100 0 0", "0 0 100 0", "0 100 100 0"})
        EXPECT_TRUE(reaches(outline, entryOf(CMYK, values))) << values;
    EXPECT_FALSE(reaches(outline, entryOf(CMYK, "0 0 0 100")));
}

TEST(GamutOutline, RunsOnceAroundTheMiddle)
{
    auto const outline = gamutOutline(CMYK);
    ASSERT_GT(outline.size(), 20);
    for (std::size_t i = 1; i < outline.size(); ++i)
        EXPECT_LT(std::atan2(outline[i - 1].b, outline[i - 1].a), std::atan2(outline[i].b, outline[i].a));
}
