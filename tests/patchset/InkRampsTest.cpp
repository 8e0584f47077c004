// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "patchset/InkRamps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

ValueScale const cmyk(CMYK, ValueStep::whole);
ValueScale const rgb(RGB, ValueStep::eightBit);

} // namespace

TEST(InkRampsTest, PaperIsWithoutInk)
{
    EXPECT_EQ(paperValue(cmyk), (DeviceSteps{{0, 0, 0, 0}}));
    EXPECT_EQ(paperValue(rgb), (DeviceSteps{{255, 255, 255}}));
}

TEST(InkRampsTest, HasAllCornersButPaper)
{
    EXPECT_EQ(cornerValues(cmyk, 400).size(), 15U);
    EXPECT_EQ(cornerValues(rgb, 400).size(), 7U);
    EXPECT_EQ(cornerValues(cmyk, 400).front(), (DeviceSteps{{100, 0, 0, 0}}));
    EXPECT_EQ(cornerValues(rgb, 400).front(), (DeviceSteps{{0, 255, 255}}));
}

// Four single inks, six overprints of two.
TEST(InkRampsTest, LeavesOutCornersOverTheInkLimit)
{
    EXPECT_EQ(cornerValues(cmyk, 200).size(), 10U);
    EXPECT_EQ(cornerValues(cmyk, 100).size(), 4U);
}

TEST(InkRampsTest, RampsHaveEqualSteps)
{
    auto const ramps = rampValues(cmyk, 400, 4);
    EXPECT_EQ(ramps.size(), 40U);
    EXPECT_THAT(ramps, Contains(DeviceSteps{{0, 25, 0, 0}}));
    EXPECT_THAT(ramps, Contains(DeviceSteps{{75, 0, 75, 0}}));
    EXPECT_THAT(ramps, Contains(DeviceSteps{{0, 0, 0, 100}}));
}

TEST(InkRampsTest, RampsOfRgbStartAtThePaper)
{
    auto const ramps = rampValues(rgb, 400, 5);
    EXPECT_EQ(ramps.size(), 30U);
    EXPECT_THAT(ramps, Contains(DeviceSteps{{204, 255, 255}}));
    EXPECT_THAT(ramps, Contains(DeviceSteps{{51, 51, 255}}));
}

TEST(InkRampsTest, RampsEndAtTheInkLimit)
{
    EXPECT_THAT(rampValues(cmyk, 150, 2), Not(Contains(DeviceSteps{{100, 100, 0, 0}})));
    EXPECT_THAT(rampValues(cmyk, 150, 2), Contains(DeviceSteps{{50, 50, 0, 0}}));
}

TEST(InkRampsTest, NoStepsAreNoRamps)
{
    EXPECT_THAT(rampValues(cmyk, 400, 0), ElementsAre());
}
