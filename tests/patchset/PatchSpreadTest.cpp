// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "patchset/PatchSpread.h"

#include "support/PlainPrinter.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

std::vector<DeviceSteps> spread(ColorSpace space, std::size_t count, SpreadSettings const& settings)
{
    return spreadPatches(plainPrinter(space), {space, ValueStep::tenth}, settings, {}, {}, count);
}

std::size_t countNeutral(std::vector<DeviceSteps> const& values)
{
    ValueScale const scale(RGB, ValueStep::tenth);
    return static_cast<std::size_t>(std::count_if(values.begin(), values.end(), [&](DeviceSteps const& value) {
        Lab const lab = plainPrinter(RGB).colorOf(scale.percentOf(value)).lab;
        return squaredDeltaE(lab, {{lab.values[0], 0, 0}}) < 20 * 20;
    }));
}

} // namespace

TEST(PatchSpreadTest, SpreadsSoManyDifferentPatches)
{
    for (std::size_t const count : {0U, 1U, 2U, 30U, 200U}) {
        auto const values = spread(CMYK, count, {});
        EXPECT_EQ(values.size(), count);
        EXPECT_EQ(std::set<DeviceSteps>(values.begin(), values.end()).size(), count);
    }
}

TEST(PatchSpreadTest, StaysWithinTheInkLimit)
{
    for (DeviceSteps const& value : spread(CMYK, 200, {180, 1, 0, {}}))
        EXPECT_TRUE(ValueScale(CMYK, ValueStep::tenth).isWithin(value, 180));
}

TEST(PatchSpreadTest, UsesNoTakenValues)
{
    auto const first = spread(RGB, 50, {});
    auto const others =
        spreadPatches(plainPrinter(RGB), {RGB, ValueStep::tenth}, {}, {}, {first.begin(), first.end()}, 50);
    for (DeviceSteps const& value : others)
        EXPECT_EQ(std::count(first.begin(), first.end(), value), 0);
}

TEST(PatchSpreadTest, KeepsAwayFromFixedPatches)
{
    Printer const printer = plainPrinter(RGB);
    ValueScale const scale(RGB, ValueStep::tenth);
    PrinterColor const middle = printer.colorOf({50, 50, 50, 0});
    for (DeviceSteps const& value : spreadPatches(printer, scale, {}, {middle}, {}, 8))
        EXPECT_GT(squaredDeviceDistance(scale.percentOf(value), middle.device), 20 * 20);
}

TEST(PatchSpreadTest, IsTheSameForTheSameSeedOnly)
{
    EXPECT_EQ(spread(RGB, 60, {400, 1, 9, {}}), spread(RGB, 60, {400, 1, 9, {}}));
    EXPECT_NE(spread(RGB, 60, {400, 1, 9, {}}), spread(RGB, 60, {400, 1, 8, {}}));
}

TEST(PatchSpreadTest, IsDenserNearTheNeutralsOnRequest)
{
    auto const even = countNeutral(spread(RGB, 300, {400, 1, 0, {}}));
    auto const dense = countNeutral(spread(RGB, 300, {400, 3, 0, {}}));
    EXPECT_GE(dense, 2 * even);
}

TEST(PatchSpreadTest, ReportsItsProgress)
{
    double last = -1;
    spread(RGB, 100, {400, 1, 0, [&](double share) {
                          EXPECT_GE(share, last);
                          last = share;
                      }});
    EXPECT_GT(last, 0.9);
    EXPECT_LE(last, 1);
}
