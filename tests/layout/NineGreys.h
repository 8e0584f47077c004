// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartLayout.h"
#include "support/TestChart.h"

/// A scan chart of 3 columns and 3 rows.
struct NineGreys
{
    GrowingArray<ColorEntry> entries = entriesOf(RGB, {"0 0 0", "30 30 30", "60 60 60", "90 90 90", "120 120 120",
                                                       "150 150 150", "180 180 180", "210 210 210", "240 240 240"});
    ChartLayout chart = chartOf(entries, instrument(longRuler), rulerSheetFor({3, 3}, {1, 1}), {1, 1});

    NineGreys() { chart.computeLayout(0, 0); }
    ColorEntry& at(int x, int y) { return *chart.getColorEntry({x, y}); }
};
