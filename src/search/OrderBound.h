// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "OrderTask.h"

/// What no order of a task's patches exceeds.
struct OrderBound
{
    float squared = 0;    ///< squared delta E; no order has a smallest difference along the scan above it
    bool isLoose = false; ///< whether the chart was too large for the tighter method
};

/// Charts with more patches get a looser bound in less time and memory.
inline constexpr int mostPatchesForTightBound = 5200;

/// Finds the bound. docs/ORDER.md has the proof.
///
/// \param reached  squared delta E that some order is known to reach; a good one saves time
/// \return 0 when no patch takes part
OrderBound findOrderBound(OrderTask const& task, float reached = 0);
