// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColorGap.h"

#include "support/TestChart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <span>

using testing::ElementsAre;

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

std::span<double const, 4> colorOf(ColorGap const& gap)
{
    return std::span<double const, 4>(gap.getOutColor(), 4);
}

// A grey of an RGB level. Level 118 has an L* of 49.64, level 119 has 50.04.
ColorEntry grey(double level)
{
    std::string const text = std::to_string(level);
    return entryOf(RGB, text + " " + text + " " + text);
}

ColorGap gapBetween(ColorEntry& first, ColorEntry& second)
{
    ColorGap gap;
    gap.setSides(&first, &second);
    return gap;
}

} // namespace

TEST(ColorGap, SidesHaveTheirNumbers)
{
    EXPECT_EQ(Above, 0);
    EXPECT_EQ(Right, 1);
    EXPECT_EQ(Below, 2);
    EXPECT_EQ(Left, 3);
}

TEST(ColorGap, KnowsItsSidesAndWhetherTheScanCrossesIt)
{
    ColorEntry first;
    ColorEntry second;
    ColorGap gap = gapBetween(first, second);
    EXPECT_EQ(gap.getFirst(), &first);
    EXPECT_EQ(gap.getSecond(), &second);
    gap.setFirst(&second);
    gap.setSecond(&first);
    EXPECT_EQ(gap.getFirst(), &second);
    EXPECT_EQ(gap.getSecond(), &first);
    gap.setAcrossScan(true);
    EXPECT_TRUE(gap.isAcrossScan());
    gap.setAcrossScan(false);
    EXPECT_FALSE(gap.isAcrossScan());
}

TEST(ColorGap, ComputesTheSquaredDifferenceOfItsSides)
{
    ColorEntry dark = grey(50);
    ColorEntry light = grey(200);
    ColorGap gap = gapBetween(dark, light);
    gap.compute();
    EXPECT_EQ(gap.getSqDe(), ColorEntry::computeSqDe(dark.getLab(), light.getLab()));
    EXPECT_GT(gap.getSqDe(), 1000);
    gap.setSecond(&dark);
    EXPECT_GT(gap.getSqDe(), 1000) << "the difference follows with the next computation";
    gap.compute();
    EXPECT_EQ(gap.getSqDe(), 0);
}

TEST(ColorGap, UsesPaperForAMissingSide)
{
    ColorEntry dark = grey(50);
    float const toPaper = ColorEntry::computeSqDe(dark.getLab(), ColorEntry::whitePatch.getLab());
    ColorGap gap;
    gap.setSides(nullptr, &dark);
    gap.compute();
    EXPECT_EQ(gap.getSqDe(), toPaper);
    gap.setSides(&dark, nullptr);
    gap.compute();
    EXPECT_EQ(gap.getSqDe(), toPaper);
    gap.setSides(nullptr, nullptr);
    gap.compute();
    EXPECT_EQ(gap.getSqDe(), 0);
}

TEST(ColorGap, IsBlackBetweenLightCmykPatchesAndBlankBetweenDarkOnes)
{
    ColorEntry dark = grey(118);
    ColorEntry light = grey(119);
    ColorGap between = gapBetween(light, light);
    between.computeOutColor(CMYK);
    EXPECT_THAT(colorOf(between), ElementsAre(0, 0, 0, 1));
    between.setSides(&dark, &dark);
    between.computeOutColor(CMYK);
    EXPECT_THAT(colorOf(between), ElementsAre(0, 0, 0, 0));
}

TEST(ColorGap, IsBlackBetweenOtherLightPatchesAndWhiteBetweenDarkOnes)
{
    ColorEntry dark = grey(118);
    ColorEntry light = grey(119);
    for (ColorSpace const colorSpace : {RGB, undefined}) {
        ColorGap gap = gapBetween(dark, dark);
        gap.computeOutColor(colorSpace);
        EXPECT_THAT(colorOf(gap).first<3>(), ElementsAre(1, 1, 1));
        gap.setSides(&light, &light);
        gap.computeOutColor(colorSpace);
        EXPECT_THAT(colorOf(gap).first<3>(), ElementsAre(0, 0, 0));
    }
}

TEST(ColorGap, KeepsTheFourthChannelInRgb)
{
    ColorEntry light = grey(200);
    ColorGap gap = gapBetween(light, light);
    gap.computeOutColor(CMYK);
    gap.computeOutColor(RGB);
    EXPECT_THAT(colorOf(gap), ElementsAre(0, 0, 0, 1));
}

TEST(ColorGap, DecidesByTheMeanLightness)
{
    ColorEntry dark = grey(60); // L* 25.3
    ColorEntry middle = grey(119);
    ColorEntry light = grey(190); // L* 76.9
    ColorGap gap = gapBetween(dark, light);
    gap.computeOutColor(CMYK);
    EXPECT_EQ(gap.getOutColor()[3], 1);
    gap.setSides(&middle, &dark);
    gap.computeOutColor(CMYK);
    EXPECT_EQ(gap.getOutColor()[3], 0);
}

TEST(ColorGap, UsesPapersLightnessForAMissingSide)
{
    // Paper's L* is about 95. With L* 10 the mean is 52, with L* 0 it is 47.
    ColorEntry black = grey(0);
    ColorEntry dark = grey(27);
    ColorGap gap;
    for (ColorEntry* const side : {&black, &dark}) {
        gap.setSides(nullptr, side);
        gap.computeOutColor(CMYK);
        EXPECT_EQ(gap.getOutColor()[3], side == &dark ? 1 : 0);
        gap.setSides(side, nullptr);
        gap.computeOutColor(CMYK);
        EXPECT_EQ(gap.getOutColor()[3], side == &dark ? 1 : 0);
    }
}

TEST(ColorGap, IsBlackFromAMeanLightnessOf50On)
{
    // For each dark grey, find a light grey that gives a mean of exactly 50.
    int found = 0;
    for (int level = 80; level < 119; ++level) {
        ColorEntry dark = grey(level);
        double low = 118;
        double high = 255;
        for (int i = 0; i < 60; ++i) {
            double const middle = (low + high) / 2;
            (grey(middle).getLab()[0] + dark.getLab()[0] < 100.0F ? low : high) = middle;
        }
        ColorEntry light = grey(high);
        if (light.getLab()[0] + dark.getLab()[0] != 100.0F)
            continue;
        ++found;
        ColorGap gap = gapBetween(dark, light);
        gap.computeOutColor(CMYK);
        EXPECT_EQ(gap.getOutColor()[3], 1);
        gap.computeOutColor(RGB);
        EXPECT_EQ(gap.getOutColor()[0], 0);

        // The next darker colour in single precision.
        ColorEntry darker = grey(low);
        ASSERT_LT(darker.getLab()[0] + dark.getLab()[0], 100.0F);
        gap.setSides(&dark, &darker);
        gap.computeOutColor(CMYK);
        EXPECT_EQ(gap.getOutColor()[3], 0);
    }
    EXPECT_GT(found, 0);
}
