// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartLayout.h"
#include "support/TestChart.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <random>
#include <string>
#include <vector>

/// Makes the text of one channel.
using Channel = std::function<std::string(std::mt19937&)>;

inline Channel wholeNumbers(int last)
{
    return [last](std::mt19937& random) { return std::to_string(std::uniform_int_distribution(0, last)(random)); };
}

inline Channel steps(std::vector<std::string> const& levels)
{
    return [levels](std::mt19937& random) {
        return levels[std::uniform_int_distribution<std::size_t>(0, levels.size() - 1)(random)];
    };
}

inline GrowingArray<ColorEntry> randomEntries(ColorSpace colorSpace, int count, Channel const& channel, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<std::string> lines;
    for (int i = 0; i < count; ++i) {
        std::string line;
        for (int j = 0; j < colorspace_nof_channels[colorSpace]; ++j)
            line += channel(random) + ' ';
        lines.push_back(line);
    }
    return entriesOf(colorSpace, lines);
}

/// A ruler chart whose pages have room for the given columns and rows, including the gaps along the scan.
inline ChartLayout scanChart(Array<ColorEntry>& entries, IntSize room, double gap = 0)
{
    return chartOf(entries, instrument(longRuler), rulerSheetFor(room, {1, 1 + gap}), {1, 1});
}

inline int countStatus(ChartLayout const& chart, int status)
{
    int count = 0;
    for (int x = 0; x < chart.getPatchesX(); ++x)
        for (int y = 0; y < chart.getPatchesY(); ++y)
            count += chart.getColorEntry({x, y})->getStatus() == status;
    return count;
}

/// 121 entries on 3 pages of 5 x 10: 4 columns a page would be one cell short.
inline ChartLayout threePages(Array<ColorEntry>& entries)
{
    ChartLayout chart = scanChart(entries, {6, 10});
    chart.computeLayout(0, 0);
    EXPECT_EQ(chart.getChartPagesCount(), 3);
    EXPECT_EQ(chart.getPatchesX(), 15);
    EXPECT_EQ(chart.getPatchesY(), 10);
    return chart;
}

/// Leaves the last column of a page unprinted.
inline void lastColumnOff(ChartLayout& chart, unsigned page)
{
    (*(*chart.getChartPages())[page].getOutputPages())[0].reduceCoordWidth(1);
}
