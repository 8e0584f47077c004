// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "patchset/Printer.h"

#include "color/ColorEntry.h"
#include "support/PlainPrinter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace
{

using testing::ElementsAre;

Printer constantPrinter(float number)
{
    return {RGB, [number](float const*, float* labs, std::size_t count) {
                for (std::size_t i = 0; i < 3 * count; ++i)
                    labs[i] = number;
            }};
}

} // namespace

TEST(PrinterTest, ComputesAColour)
{
    EXPECT_THAT(plainPrinter(RGB).colorOf({90, 60, 30, 0}).lab.values, ElementsAre(60, 30, 30));
    EXPECT_THAT(plainPrinter(CMYK).colorOf({0, 0, 0, 50}).lab.values, ElementsAre(50, 0, 0));
}

TEST(PrinterTest, RoundsColoursTo256ths)
{
    EXPECT_FLOAT_EQ(constantPrinter(0.1F).colorOf({}).lab.values[0], 26.0F / 256);
}

TEST(PrinterTest, BoundsWhatADamagedProfileGives)
{
    constexpr float infinity = std::numeric_limits<float>::infinity();
    EXPECT_FLOAT_EQ(constantPrinter(infinity).colorOf({}).lab.values[0], 500);
    EXPECT_FLOAT_EQ(constantPrinter(-infinity).colorOf({}).lab.values[1], -500);
    EXPECT_FLOAT_EQ(constantPrinter(std::numeric_limits<float>::quiet_NaN()).colorOf({}).lab.values[2], 0);
}

TEST(PrinterTest, KnowsItsPaper)
{
    EXPECT_EQ(plainPrinter(CMYK).paper(), (DevicePercent{0, 0, 0, 0}));
    EXPECT_EQ(plainPrinter(RGB).paper(), (DevicePercent{100, 100, 100, 0}));
}

TEST(PrinterTest, OwnPrintersHaveTheColoursOfEntries)
{
    ColorEntry::prepareColorConversions();
    ColorEntry entry;
    GrowingArray<String> values;
    for (char const* const text : {"255", "51", "0"})
        values.add(text);
    entry.setValues(RGB, values);
    auto const color = ownPrinter(RGB).colorOf({100, 20, 0, 0});
    for (std::size_t c = 0; c < 3; ++c)
        EXPECT_NEAR(color.lab.values[c], entry.getLab()[c], 1.0 / 256);
    EXPECT_GT(ownPrinter(CMYK).colorOf({0, 0, 0, 0}).lab.values[0], 90);
    ColorEntry::endColorConversions();
}

// The tristimulus values of a grey are those of the paper times a factor: with half the distance from L* = -16, a* and
// b* are halved.
TEST(PrinterTest, GreysFollowThePaper)
{
    EXPECT_THAT(greyOf({{84, 2, -4}}, 34).values, ElementsAre(34, 1, -2));
}
