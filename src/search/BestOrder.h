// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "OrderTask.h"

#include <functional>
#include <vector>

struct BestOrderSettings
{
    /// How much work the search does, 1 or more. Twice the effort takes about twice the time. More effort never gives a
    /// smaller smallest difference.
    int effort = 1;

    /// Columns of a sheet, from the left: repeats of a colour go to different sheets. 0 for a chart on one sheet.
    int columnsPerSheet = 0;

    /// Called now and then with the smallest difference reached so far and with what no order exceeds, both squared
    /// delta E. May be empty.
    std::function<void(float smallest, float bound)> progress;
};

struct BestOrder
{
    std::vector<int> patchAt;  ///< for each cell of the grid, row after row, the index in the task of its patch
    float smallest = 0;        ///< squared delta E along the scan, paper included; 0 when no patch takes part
    float bound = 0;           ///< squared delta E that no order of these patches exceeds
    bool isBoundLoose = false; ///< whether the chart was too large for the tighter bound
};

/// Searches the order whose neighbours along the scan differ most. It is never below that of OrderSearch. The result
/// depends on the task, the effort and the columns of a sheet alone.
BestOrder findBestOrder(OrderTask const& task, BestOrderSettings const& settings);
