// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "patchset/PatchCentring.h"

#include "support/PlainPrinter.h"

#include <gtest/gtest.h>

namespace
{

// RGB patches in whole percent of 255 steps, with their colours.
SpreadPatches patchesOf(Printer const& printer, ValueScale const& scale, std::vector<DeviceSteps> const& steps,
                        std::size_t fixed)
{
    SpreadPatches patches{{}, fixed, {steps.begin() + static_cast<std::ptrdiff_t>(fixed), steps.end()}, {}};
    for (DeviceSteps const& step : steps) {
        patches.colors.push_back({scale.percentOf(step), {}});
        patches.taken.insert(step);
    }
    printer.computeColors(patches.colors);
    return patches;
}

std::vector<PrinterColor> colorsOf(Printer const& printer, std::vector<DevicePercent> const& devices)
{
    std::vector<PrinterColor> colors;
    for (DevicePercent const& device : devices)
        colors.push_back({device, {}});
    printer.computeColors(colors);
    return colors;
}

class PatchCentringTest : public testing::Test
{
protected:
    void centre(SpreadPatches& patches, std::vector<DevicePercent> const& probes) const
    {
        auto const colors = colorsOf(printer, probes);
        std::vector<float> const weights(colors.size(), 1);
        centrePatches(patches, {printer, scale, 400, 1, colors, weights});
    }

    Printer const printer = plainPrinter(RGB);
    ValueScale const scale{RGB, ValueStep::eightBit};
};

} // namespace

// The patch is at 30.196 %, the probes are 10.196 and 29.804 away in each channel. Weighted by their squares, the mean
// move is 25.61 %, to 55.81 % or 142.3 of 255. The plain printer is linear: both spaces say the same.
TEST_F(PatchCentringTest, MovesAPatchToTheWeightedMeanOfItsProbes)
{
    SpreadPatches patches = patchesOf(printer, scale, {{{77, 77, 77}}}, 0);
    centre(patches, {{20, 20, 20, 0}, {60, 60, 60, 0}});
    EXPECT_EQ(patches.steps[0], (DeviceSteps{{142, 142, 142}}));
    EXPECT_EQ(patches.taken, (std::set<DeviceSteps>{patches.steps[0]}));
    EXPECT_EQ(patches.colors[0].device, scale.percentOf(patches.steps[0]));
}

TEST_F(PatchCentringTest, LeavesAPatchInTheMiddle)
{
    SpreadPatches patches = patchesOf(printer, scale, {{{102, 102, 102}}}, 0);
    centre(patches, {{20, 20, 20, 0}, {60, 60, 60, 0}});
    EXPECT_EQ(patches.steps[0], (DeviceSteps{{102, 102, 102}}));
}

TEST_F(PatchCentringTest, LeavesFixedPatches)
{
    SpreadPatches patches = patchesOf(printer, scale, {{{0, 0, 0}}, {{255, 255, 255}}}, 1);
    centre(patches, {{10, 10, 10, 0}, {80, 80, 80, 0}});
    EXPECT_EQ(patches.colors[0].device, (DevicePercent{0, 0, 0, 0}));
    EXPECT_NEAR(patches.colors[1].device[0], 80, 0.3);
}

TEST_F(PatchCentringTest, LeavesAPatchThatNothingIsNearestTo)
{
    SpreadPatches patches = patchesOf(printer, scale, {{{0, 0, 0}}, {{255, 255, 255}}}, 0);
    centre(patches, {{10, 10, 10, 0}});
    EXPECT_EQ(patches.steps[1], (DeviceSteps{{255, 255, 255}}));
}

// The fixed patch has the values that the other is pulled to.
TEST_F(PatchCentringTest, NeverGivesTwoPatchesTheSameValues)
{
    SpreadPatches patches = patchesOf(printer, scale, {{{200, 200, 200}}}, 0);
    patches.taken.insert({{204, 204, 204}});
    centre(patches, {{80, 80, 80, 0}});
    EXPECT_EQ(patches.steps[0], (DeviceSteps{{200, 200, 200}}));
    EXPECT_EQ(patches.taken.size(), 2U);
}
