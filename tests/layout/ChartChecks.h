// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartLayout.h"
#include "support/GeometryValues.h"

#include <gtest/gtest.h>

#include <ostream>
#include <set>

inline constexpr RealSize centimetre{10, 10};

inline ChartPage const& pageOf(ChartLayout const& chart, unsigned index)
{
    return (*chart.getChartPages())[index];
}

inline bool isShown(ChartLayout const& chart, IntPos position)
{
    for (ChartPage const& page : *chart.getChartPages())
        if (page.isVisible(position))
            return true;
    return false;
}

struct Census
{
    int data = 0;
    int fillers = 0;
    int hidden = 0;
    bool operator==(Census const&) const = default;
};

inline void PrintTo(Census const& census, std::ostream* stream)
{
    *stream << census.data << " data, " << census.fillers << " fillers, " << census.hidden << " hidden";
}

inline Census censusOf(ChartLayout const& chart)
{
    Census census;
    for (int x = 0; x < chart.getPatchesX(); ++x)
        for (int y = 0; y < chart.getPatchesY(); ++y) {
            int const status = chart.getColorEntry({x, y})->getStatus();
            ++(status == Data ? census.data : status == Filler ? census.fillers : census.hidden);
        }
    return census;
}

inline void expectNothing(ChartLayout const& chart)
{
    EXPECT_FALSE(chart.hasSomethingToOutpot());
    EXPECT_EQ(chart.getChartPages()->getCount(), 0U);
    EXPECT_EQ(chart.getChartPagesSize(), (IntSize{0, 0}));
    EXPECT_EQ(chart.getChartPagesCount(), 0);
    EXPECT_EQ(chart.getPatchesX(), 0);
    EXPECT_EQ(chart.getPatchesY(), 0);
    EXPECT_EQ(chart.getColorEntry({0, 0}), nullptr);
}

/// Checks that each entry stands on the grid once, and that the sheets point at their chart pages. A chart without
/// pages must be empty.
inline void expectSound(ChartLayout const& chart)
{
    if (!chart.hasSomethingToOutpot()) {
        expectNothing(chart);
        return;
    }
    std::set<ColorEntry const*> placed;
    for (int x = 0; x < chart.getPatchesX(); ++x)
        for (int y = 0; y < chart.getPatchesY(); ++y)
            if (ColorEntry const* const entry = chart.getColorEntry({x, y}); entry->getStatus() == Data)
                placed.insert(entry);
    EXPECT_EQ(placed.size(), chart.getOriginalEntries()->getCount());
    EXPECT_EQ(static_cast<unsigned long long>(chart.getChartPagesCount()), chart.getChartPages()->getCount());
    for (ChartPage const& page : *chart.getChartPages())
        for (OutputPage const& sheet : *page.getOutputPages())
            EXPECT_EQ(sheet.getChartPage(), &page);
}
