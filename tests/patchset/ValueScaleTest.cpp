// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "patchset/ValueScale.h"

#include <gtest/gtest.h>

#include <limits>

TEST(ValueScaleTest, WritesCmykInTenthsOfAPercent)
{
    ValueScale const scale(CMYK, ValueStep::tenth);
    EXPECT_EQ(scale.largest(), 1000);
    EXPECT_EQ(scale.textOf(0), "0");
    EXPECT_EQ(scale.textOf(405), "40.5");
    EXPECT_EQ(scale.textOf(400), "40");
    EXPECT_EQ(scale.textOf(1000), "100");
}

TEST(ValueScaleTest, WritesRgbFromZeroTo255)
{
    EXPECT_EQ(ValueScale(RGB, ValueStep::eightBit).textOf(128), "128");
    EXPECT_EQ(ValueScale(RGB, ValueStep::whole).largest(), 255);
    EXPECT_EQ(ValueScale(RGB, ValueStep::tenth).textOf(1275), "127.5");
}

// 128 of 255 are 50.196 %, 1 is 0.392 %.
TEST(ValueScaleTest, WritesThePercentagesOfEightBits)
{
    ValueScale const scale(CMYK, ValueStep::eightBit);
    EXPECT_EQ(scale.textOf(128), "50.2");
    EXPECT_EQ(scale.textOf(1), "0.39");
    EXPECT_EQ(scale.textOf(255), "100");
}

TEST(ValueScaleTest, PutsBlanksBetweenTheChannels)
{
    EXPECT_EQ(ValueScale(CMYK, ValueStep::whole).textOf(DeviceSteps{{1, 20, 0, 100}}), "1 20 0 100");
    EXPECT_EQ(ValueScale(RGB, ValueStep::whole).textOf(DeviceSteps{{1, 20, 0, 0}}), "1 20 0");
}

TEST(ValueScaleTest, FindsTheNearestValue)
{
    ValueScale const scale(CMYK, ValueStep::whole);
    EXPECT_EQ(scale.nearest({12.4F, 12.6F, -3, 140}), (DeviceSteps{{12, 13, 0, 100}}));
}

TEST(ValueScaleTest, TakesNotANumberForZero)
{
    float const nothing = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(ValueScale(CMYK, ValueStep::whole).nearestWithin({nothing, 50, nothing, 0}, 300),
              (DeviceSteps{{0, 50, 0, 0}}));
}

TEST(ValueScaleTest, GivesThePercentagesBack)
{
    EXPECT_EQ(ValueScale(CMYK, ValueStep::tenth).percentOf({{405, 0, 1000, 10}}), (DevicePercent{40.5F, 0, 100, 1}));
    EXPECT_EQ(ValueScale(RGB, ValueStep::eightBit).percentOf({{255, 51, 0, 0}}), (DevicePercent{100, 20, 0, 0}));
}

TEST(ValueScaleTest, ScalesInksDownToTheLimit)
{
    ValueScale const scale(CMYK, ValueStep::whole);
    EXPECT_EQ(scale.nearestWithin({100, 100, 100, 100}, 200), (DeviceSteps{{50, 50, 50, 50}}));
    EXPECT_EQ(scale.nearestWithin({10, 20, 30, 40}, 200), (DeviceSteps{{10, 20, 30, 40}}));
}

// 33.3 each would be 99.9, 66.6 and 33.3 rounded: the sum as written decides.
TEST(ValueScaleTest, NeverRoundsUpOverTheLimit)
{
    for (ValueStep const step : {ValueStep::whole, ValueStep::tenth, ValueStep::eightBit}) {
        ValueScale const scale(CMYK, step);
        for (int limit = 100; limit <= 400; limit += 7)
            for (float ink = 25; ink <= 100; ink += 0.75F) {
                DeviceSteps const steps = scale.nearestWithin({ink, 100, ink / 2, ink / 3}, limit);
                int hundredths = 0;
                for (int const value : steps.channels)
                    hundredths += scale.hundredthsOf(value);
                ASSERT_LE(hundredths, 100 * limit);
            }
    }
}

TEST(ValueScaleTest, TellsWhetherInksAreWithinTheLimit)
{
    ValueScale const scale(CMYK, ValueStep::tenth);
    EXPECT_TRUE(scale.isWithin({{1000, 1000, 1000, 0}}, 300));
    EXPECT_FALSE(scale.isWithin({{1000, 1000, 1000, 1}}, 300));
    EXPECT_TRUE(ValueScale(RGB, ValueStep::whole).isWithin({{255, 255, 255, 0}}, 100));
}
