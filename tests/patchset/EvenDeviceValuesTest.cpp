// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "patchset/EvenDeviceValues.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

std::vector<DeviceSteps> valuesOf(ColorSpace space, std::size_t count, double limit = 300, std::uint64_t seed = 1)
{
    return evenDeviceValues({space, ValueStep::tenth}, limit, count, seed, {});
}

} // namespace

TEST(EvenDeviceValuesTest, GivesSoManyDifferentValues)
{
    for (ColorSpace const space : {CMYK, RGB}) {
        auto const values = valuesOf(space, 5000);
        EXPECT_EQ(values.size(), 5000U);
        EXPECT_EQ(std::set<DeviceSteps>(values.begin(), values.end()).size(), 5000U);
    }
}

TEST(EvenDeviceValuesTest, StaysWithinTheInkLimit)
{
    ValueScale const scale(CMYK, ValueStep::tenth);
    for (DeviceSteps const& value : valuesOf(CMYK, 5000, 150))
        ASSERT_TRUE(scale.isWithin(value, 150));
}

TEST(EvenDeviceValuesTest, LeavesValuesOut)
{
    auto const first = valuesOf(RGB, 100);
    auto const others = evenDeviceValues({RGB, ValueStep::tenth}, 300, 100, 1, {first.begin(), first.end()});
    for (DeviceSteps const& value : others)
        EXPECT_EQ(std::count(first.begin(), first.end(), value), 0);
}

TEST(EvenDeviceValuesTest, GivesOtherValuesForAnotherSeed)
{
    EXPECT_EQ(valuesOf(CMYK, 50, 300, 3), valuesOf(CMYK, 50, 300, 3));
    EXPECT_NE(valuesOf(CMYK, 50, 300, 3), valuesOf(CMYK, 50, 300, 4));
}

// Even numbers fill each of 8 x 8 x 8 boxes with 8000 / 512 = 15.6 values; random ones would leave some with 4.
TEST(EvenDeviceValuesTest, FillsAllBoxesOfRgbAlike)
{
    std::vector<int> boxes(512);
    for (DeviceSteps const& value : valuesOf(RGB, 8000)) {
        std::size_t box = 0;
        for (std::size_t c = 0; c < 3; ++c)
            box = 8 * box + std::min<std::size_t>(value.channels[c] * 8U / 2550U, 7);
        ++boxes[box];
    }
    EXPECT_GE(*std::min_element(boxes.begin(), boxes.end()), 8);
}

TEST(EvenDeviceValuesTest, ReachesTheEnds)
{
    auto const values = valuesOf(RGB, 1000);
    EXPECT_TRUE(std::any_of(values.begin(), values.end(), [](DeviceSteps const& v) { return v.channels[0] == 0; }));
    EXPECT_TRUE(std::any_of(values.begin(), values.end(), [](DeviceSteps const& v) { return v.channels[1] == 2550; }));
}

TEST(EvenDeviceValuesTest, GivesLightTints)
{
    auto const values = valuesOf(CMYK, 8000);
    auto const light = std::count_if(values.begin(), values.end(), [](DeviceSteps const& v) {
        return *std::max_element(v.channels.begin(), v.channels.end()) < 200;
    });
    // A fifth of each channel is 0.0016 of all values, 13 of these. The squared ones add about 1000 * 0.447^4 = 40.
    EXPECT_GE(light, 30);
}
