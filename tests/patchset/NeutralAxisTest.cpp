// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "patchset/NeutralAxis.h"

#include "color/ColorEntry.h"
#include "support/PlainPrinter.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

// The largest distance of the values' colours from the greys of the paper.
double largestError(Printer const& printer, ValueScale const& scale, std::vector<DeviceSteps> const& values)
{
    Lab const paper = printer.colorOf(printer.paper()).lab;
    float largest = 0;
    for (DeviceSteps const& value : values) {
        Lab const lab = printer.colorOf(scale.percentOf(value)).lab;
        largest = std::max(largest, squaredDeltaE(lab, greyOf(paper, lab.values[0])));
    }
    return static_cast<double>(largest);
}

class NeutralAxisTest : public testing::Test
{
protected:
    NeutralAxisTest() { ColorEntry::prepareColorConversions(); }
    ~NeutralAxisTest() override { ColorEntry::endColorConversions(); }
};

} // namespace

// The plain printer's greys have equal channels, and their mean is the lightness.
TEST_F(NeutralAxisTest, StepsOfRgbAreEvenInLightness)
{
    auto const values = neutralValues(plainPrinter(RGB), {RGB, ValueStep::eightBit}, 400, 5);
    ASSERT_EQ(values.size(), 5U);
    for (std::size_t i = 0; i < 5; ++i)
        for (std::size_t c = 0; c < 3; ++c)
            EXPECT_NEAR(values[i].channels[c], 204 - 51 * static_cast<int>(i), 1);
}

TEST_F(NeutralAxisTest, CmykHasOneAxisWithoutBlackAndOneWithIt)
{
    auto const values = neutralValues(plainPrinter(CMYK), {CMYK, ValueStep::tenth}, 400, 4);
    ASSERT_EQ(values.size(), 8U);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(values[i].channels[3], 0);
    EXPECT_EQ(values[7].channels[3], 1000);
    EXPECT_NEAR(values[3].channels[0], 1000, 2);
}

TEST_F(NeutralAxisTest, StaysWithinTheInkLimit)
{
    ValueScale const scale(CMYK, ValueStep::tenth);
    for (double const limit : {100.0, 150.0, 240.0, 300.0})
        for (DeviceSteps const& value : neutralValues(ownPrinter(CMYK), scale, limit, 12))
            EXPECT_TRUE(scale.isWithin(value, limit));
}

// Rounding to 0.1 % moves a colour by a few tenths of delta E at most.
TEST_F(NeutralAxisTest, IsNeutralThroughTheProfiles)
{
    ValueScale const cmyk(CMYK, ValueStep::tenth);
    ValueScale const rgb(RGB, ValueStep::eightBit);
    auto const ofCmyk = neutralValues(ownPrinter(CMYK), cmyk, 320, 16);
    auto const ofRgb = neutralValues(ownPrinter(RGB), rgb, 320, 16);
    EXPECT_GE(ofCmyk.size(), 28U);
    EXPECT_EQ(ofRgb.size(), 16U);
    EXPECT_LE(largestError(ownPrinter(CMYK), cmyk, ofCmyk), 2.5 * 2.5);
    EXPECT_LE(largestError(ownPrinter(RGB), rgb, ofRgb), 1);
}

TEST_F(NeutralAxisTest, LeavesOutGreysThatThePrinterCannotPrint)
{
    // Everything but the paper is red.
    Printer const red(RGB, [](float const* percents, float* labs, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            float const mean = (percents[3 * i] + percents[3 * i + 1] + percents[3 * i + 2]) / 3;
            labs[3 * i] = mean;
            labs[3 * i + 1] = 100 - mean;
            labs[3 * i + 2] = 0;
        }
    });
    EXPECT_LE(neutralValues(red, {RGB, ValueStep::eightBit}, 400, 10).size(), 10U);
    for (DeviceSteps const& value : neutralValues(red, {RGB, ValueStep::eightBit}, 400, 10))
        EXPECT_GE(value.channels[0] + value.channels[1] + value.channels[2], 3 * 250);
}
