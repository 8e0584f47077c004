// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "report/DisplayColor.h"

#include "support/TestChart.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

} // namespace

TEST(DisplayColor, IsWrittenAsSixHexadecimalDigits)
{
    EXPECT_EQ(htmlColor({0, 10, 255}), "#000aff");
}

TEST(DisplayColor, ClipsWhatNoDisplayCanShow)
{
    float const fractions[] = {-0.5f, 1.5f, std::numeric_limits<float>::quiet_NaN()};
    EXPECT_EQ(htmlColor(displayColorOf(fractions)), "#00ff00");
}

TEST(DisplayColor, RoundsToTheNearestByte)
{
    float const fractions[] = {0.5f, 100.4f / 255, 100.6f / 255};
    EXPECT_EQ(displayColorOf(fractions), (DisplayColor{128, 100, 101}));
}

// There and back through the same profile.
TEST(DisplayColor, AnRgbColourComesBackAsItself)
{
    double const device[] = {1, 0.2, 0.6};
    DisplayColor const color = displayColorOf(RGB, device);
    EXPECT_NEAR(color.red, 255, 1);
    EXPECT_NEAR(color.green, 51, 1);
    EXPECT_NEAR(color.blue, 153, 1);
}

TEST(DisplayColor, ACmykColourIsThatOfAPatchWithItsValues)
{
    double const device[] = {0.4, 0.3, 0.2, 0.1};
    EXPECT_EQ(displayColorOf(CMYK, device), displayColorOf(entryOf(CMYK, "40 30 20 10").getDisplayColor()));
}
