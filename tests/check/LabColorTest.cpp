// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LabColor.h"

#include <gtest/gtest.h>

namespace
{

struct Pair
{
    LabColor first;
    LabColor second;
    double difference;
};

// Test data for implementations of the formula: Sharma, Wu, Dalal, Color Research and Application 30 (2005), table 1.
constexpr Pair pairs[] = {
    {{50, 2.6772, -79.7751}, {50, 0, -82.7485}, 2.0425},
    {{50, -1, 2}, {50, 0, 0}, 2.3669},
    {{50, 2.49, -0.001}, {50, -2.49, 0.0011}, 7.2195},
    {{50, 2.5, 0}, {50, 0, -2.5}, 4.3065},
    {{50, 2.5, 0}, {73, 25, -18}, 27.1492},
    {{60.2574, -34.0099, 36.2677}, {60.4626, -34.1751, 39.4387}, 1.2644},
    {{22.7233, 20.0904, -46.6940}, {23.0331, 14.9730, -42.5619}, 2.0373},
    {{90.8027, -2.0831, 1.4410}, {91.1528, -1.6435, 0.0447}, 1.4441},
    {{2.0776, 0.0795, -1.1350}, {0.9033, -0.0636, -0.5514}, 0.9082},
};

TEST(LabColor, GivesThePublishedDifferencesOf2000)
{
    for (Pair const& pair : pairs) {
        EXPECT_NEAR(deltaE2000(pair.first, pair.second), pair.difference, 5e-5);
        EXPECT_NEAR(deltaE2000(pair.second, pair.first), pair.difference, 5e-5);
    }
}

TEST(LabColor, DiffersBySquaresIn1976)
{
    EXPECT_DOUBLE_EQ(deltaE76({50, 3, 4}, {50, 0, 0}), 5);
    EXPECT_DOUBLE_EQ(squaredDifference({50, 1, 2}, {52, 0, 0}), 9);
}

TEST(LabColor, OfTheWhitePointIs100)
{
    LabColor const white = labOfXyz({0.9642, 1, 0.8249});
    EXPECT_NEAR(white[0], 100, 1e-12);
    EXPECT_NEAR(white[1], 0, 1e-12);
    EXPECT_NEAR(white[2], 0, 1e-12);
}

// Y of 1/8 has the cube root 1/2: L* is 116/2 - 16. Below 216/24389, L* is 24389/27 times Y.
TEST(LabColor, FollowsTheCubeRootAndTheStraightPart)
{
    EXPECT_NEAR(labOfXyz({0.9642 / 8, 0.125, 0.8249 / 8})[0], 42, 1e-12);
    EXPECT_NEAR(labOfXyz({0, 0.001, 0})[0], 24389.0 / 27000, 1e-12);
}

} // namespace
