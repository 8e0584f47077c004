// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "patchset/ProbePulls.h"

#include <gtest/gtest.h>

namespace
{

PrinterColor colorAt(float lightness, float device)
{
    return {{device, 0, 0, 0}, {{lightness, 0, 0}}};
}

} // namespace

// Squared distances 1, 4 and 9 are 14 together.
TEST(ProbePullsTest, WeightsProbesByTheirSquaredDistance)
{
    auto const pulls =
        pullsInLab({colorAt(0, 0), colorAt(10, 0)}, {colorAt(1, 0), colorAt(2, 0), colorAt(13, 0)}, {1, 1, 1});
    EXPECT_DOUBLE_EQ(pulls[0].weight, 5.0 / 14);
    EXPECT_DOUBLE_EQ(pulls[1].weight, 9.0 / 14);
    EXPECT_DOUBLE_EQ(pulls[0].sum[0], (1 * 1 + 4 * 2) / 14.0);
    EXPECT_DOUBLE_EQ(pulls[1].sum[0], 9 * 3 / 14.0);
}

TEST(ProbePullsTest, TakesTheProbesOwnWeight)
{
    auto const pulls = pullsInLab({colorAt(0, 0), colorAt(10, 0)}, {colorAt(1, 0), colorAt(11, 0)}, {1, 3});
    EXPECT_DOUBLE_EQ(pulls[1].weight, 0.75);
}

TEST(ProbePullsTest, MeasuresInDeviceValuesToo)
{
    auto const pulls = pullsInDevice({colorAt(0, 0), colorAt(0, 10)}, {colorAt(50, 8)}, {1});
    EXPECT_DOUBLE_EQ(pulls[0].weight, 0);
    EXPECT_DOUBLE_EQ(pulls[1].weight, 1);
    EXPECT_DOUBLE_EQ(pulls[1].sum[0], -2);
}

TEST(ProbePullsTest, NothingPullsWhereAllProbesArePatches)
{
    EXPECT_DOUBLE_EQ(pullsInLab({colorAt(5, 0)}, {colorAt(5, 0)}, {1})[0].weight, 0);
}
