// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Lab.h"

#include <gtest/gtest.h>

TEST(Lab, SquaredDeltaEAddsTheSquaresOfTheThreeDifferences)
{
    constexpr Lab dark{{50, 10, -20}};
    constexpr Lab light{{53, 14, -8}};
    EXPECT_EQ(squaredDeltaE(dark, dark), 0);
    EXPECT_EQ(squaredDeltaE(dark, light), 9 + 16 + 144);
    EXPECT_EQ(squaredDeltaE(light, dark), 9 + 16 + 144);
}

TEST(Lab, SquaredDeltaEAddsLightnessAndAFirst)
{
    // 2^-24 + 2^-24 counts beside 1; a single 2^-24 is rounded away.
    constexpr Lab origin{{0, 0, 0}};
    EXPECT_EQ(squaredDeltaE({{0x1p-12F, 0x1p-12F, 1}}, origin), 1 + 0x1p-23F);
    EXPECT_EQ(squaredDeltaE({{1, 0x1p-12F, 0x1p-12F}}, origin), 1);
    EXPECT_EQ(squaredDeltaE({{0x1p-12F, 1, 0x1p-12F}}, origin), 1);
}

TEST(Lab, SquaredLightnessDifferenceIgnoresHueAndChroma)
{
    EXPECT_EQ(squaredLightnessDifference({{50, 10, -20}}, {{53, -80, 90}}), 9);
    EXPECT_EQ(squaredLightnessDifference({{53, -80, 90}}, {{50, 10, -20}}), 9);
}
