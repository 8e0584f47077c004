// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PrintTable.h"

#include <gtest/gtest.h>

namespace
{

/// Linear in each ink alone, so that interpolation is exact.
Lab colourOf(Cmyk const& device)
{
    return {100 - device[0] * device[3] / 100, device[1] * device[2] / 50, device[2] - device[3]};
}

PrintTable makeTable()
{
    Axis const axis({0, 20, 50, 100});
    return PrintTable({axis, axis, Axis({0, 100}), axis}, colourOf);
}

} // namespace

TEST(PrintTable, InterpolatesEachInkLinearly)
{
    PrintTable const table = makeTable();
    PrintTable::Slopes slopes;
    for (Cmyk const& device : {Cmyk{0, 0, 0, 0}, Cmyk{100, 100, 100, 100}, Cmyk{35, 10, 75, 60}})
        for (std::size_t channel = 0; channel < 3; ++channel)
            EXPECT_NEAR(table.at(device, slopes)[channel], colourOf(device)[channel], 1e-12);
}

TEST(PrintTable, GivesTheSlopesAlongEachInk)
{
    PrintTable::Slopes slopes;
    makeTable().at({35, 10, 75, 60}, slopes);
    PrintTable::Slopes const expected{{{-0.6, 0, 0}, {0, 1.5, 0}, {0, 0.2, 1}, {-0.35, 0, -1}}};
    for (std::size_t ink = 0; ink < 4; ++ink)
        for (std::size_t channel = 0; channel < 3; ++channel)
            EXPECT_NEAR(slopes[ink][channel], expected[ink][channel], 1e-12) << ink << ' ' << channel;
}

TEST(PrintTable, HoldsItsNodesWithBlackChangingFastest)
{
    PrintTable const table = makeTable();
    ASSERT_EQ(table.getColours().size(), 4U * 4 * 2 * 4);
    EXPECT_EQ(table.getColours()[1], colourOf({0, 0, 0, 20}));
    EXPECT_EQ(table.getColours()[4], colourOf({0, 0, 100, 0}));
    EXPECT_EQ(table.getColours()[8], colourOf({0, 20, 0, 0}));
    EXPECT_EQ(table.getColours()[32], colourOf({20, 0, 0, 0}));
}
