// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "patchset/FillDistance.h"

#include "support/PlainPrinter.h"

#include <gtest/gtest.h>

#include <cmath>

// The mean squared distance from a corner of the cube is 1; the distance of random points from it is 0.9606 of the side
// on average (Robbins' constant for a corner), and 1.732 at most.
TEST(FillDistanceTest, MeasuresDeviceDistances)
{
    auto const fill = fillDistancesOf(plainPrinter(RGB), 400, {plainPrinter(RGB).colorOf({0, 0, 0, 0})});
    EXPECT_NEAR(fill.device.mean, 96.06, 0.7);
    EXPECT_LE(fill.device.largest, 173.3);
    EXPECT_GE(fill.device.largest, 160);
    EXPECT_GT(fill.device.nearlyLargest, fill.device.mean);
    EXPECT_LT(fill.device.nearlyLargest, fill.device.largest);
}

TEST(FillDistanceTest, MeasuresColours)
{
    // All colours are 50, 3, 4: each is 5 away from the neutral patch.
    Printer const dull(RGB, [](float const*, float* labs, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            labs[3 * i] = 50;
            labs[3 * i + 1] = 3;
            labs[3 * i + 2] = 4;
        }
    });
    auto const fill = fillDistancesOf(dull, 400, {{{0, 0, 0, 0}, {{50, 0, 0}}}});
    EXPECT_DOUBLE_EQ(fill.deltaE.mean, 5);
    EXPECT_DOUBLE_EQ(fill.deltaE.nearlyLargest, 5);
    EXPECT_DOUBLE_EQ(fill.deltaE.largest, 5);
}

// Within 100 % of ink, no value is farther from the paper than one full ink.
TEST(FillDistanceTest, StaysWithinTheInkLimit)
{
    auto const fill = fillDistancesOf(plainPrinter(CMYK), 100, {plainPrinter(CMYK).colorOf({0, 0, 0, 0})});
    EXPECT_LE(fill.device.largest, 100);
}

TEST(FillDistanceTest, AnotherSeedMeasuresOtherColours)
{
    std::vector<PrinterColor> const patches{plainPrinter(RGB).colorOf({50, 50, 50, 0})};
    EXPECT_NE(fillDistancesOf(plainPrinter(RGB), 400, patches, 1).device.mean,
              fillDistancesOf(plainPrinter(RGB), 400, patches, 2).device.mean);
}
