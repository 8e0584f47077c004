// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "patchset/FarthestColors.h"

#include "search/RandomNumbers.h"
#include "support/PlainPrinter.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

PrinterColor grey(float lightness, float device)
{
    return {{device, 0, 0, 0}, {{lightness, 0, 0}}};
}

std::vector<PrinterColor> randomColors(std::size_t count, int limit)
{
    RandomNumbers random(5);
    std::vector<PrinterColor> colors(count);
    for (PrinterColor& color : colors)
        for (float& value : color.device)
            value = static_cast<float>(random.below(limit));
    plainPrinter(CMYK).computeColors(colors);
    return colors;
}

} // namespace

TEST(FarthestColorsTest, ChoosesTheFarthestColour)
{
    FarthestColors farthest({grey(0, 0), grey(40, 0), grey(70, 0)}, {1, 1, 1}, 1, DistanceRule::sum);
    farthest.add(grey(80, 0));
    EXPECT_EQ(farthest.farthest(), 0U);
    farthest.add(grey(0, 0));
    EXPECT_EQ(farthest.farthest(), 1U);
}

TEST(FarthestColorsTest, TakesTheFirstOfSeveral)
{
    FarthestColors farthest({grey(10, 0), grey(30, 0), grey(10, 0)}, {1, 1, 1}, 1, DistanceRule::sum);
    EXPECT_EQ(farthest.farthest(), 0U);
    farthest.add(grey(20, 0));
    EXPECT_EQ(farthest.farthest(), 0U);
}

// Distances 36 in CIELAB against 64 in device values, and 25 + 25 against both.
TEST(FarthestColorsTest, AddsOrComparesTheTwoDistances)
{
    std::vector<PrinterColor> const colors{grey(5, 5), grey(6, 0), grey(0, 8)};
    FarthestColors sum(colors, {1, 1, 1}, 0.5F, DistanceRule::sum);
    FarthestColors larger(colors, {1, 1, 1}, 0.5F, DistanceRule::larger);
    for (FarthestColors* const farthest : {&sum, &larger})
        farthest->add(grey(0, 0));
    EXPECT_EQ(sum.farthest(), 0U);    // 37.5, 36, 32
    EXPECT_EQ(larger.farthest(), 1U); // 25, 36, 32
}

TEST(FarthestColorsTest, MultipliesByTheWeight)
{
    FarthestColors farthest({grey(30, 0), grey(20, 0)}, {1, 3}, 1, DistanceRule::sum);
    farthest.add(grey(0, 0));
    EXPECT_EQ(farthest.farthest(), 1U); // 900 against 3 * 400
}

// The colours nearest in the two spaces can be different ones.
TEST(FarthestColorsTest, ChoosesTheSameAsASearchOfAllCandidates)
{
    for (int const limit : {4, 101}) {
        auto const colors = randomColors(1000, limit);
        FarthestColors farthest(colors, std::vector<float>(colors.size(), 1), 0.5F, DistanceRule::sum);
        std::vector<float> deltaE(colors.size(), 1e9F);
        std::vector<float> device(colors.size(), 1e9F);
        std::uint32_t next = 0;
        for (int step = 0; step < 60; ++step) {
            ASSERT_EQ(farthest.farthest(), next);
            farthest.add(colors[next]);
            std::uint32_t best = 0;
            for (std::uint32_t i = 0; i < colors.size(); ++i) {
                deltaE[i] = std::min(deltaE[i], squaredDeltaE(colors[i].lab, colors[next].lab));
                device[i] = std::min(device[i], squaredDeviceDistance(colors[i].device, colors[next].device));
                if (deltaE[i] + 0.5F * device[i] > deltaE[best] + 0.5F * device[best])
                    best = i;
            }
            next = best;
        }
    }
}
