// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Assignment.h"
#include "ChartReference.h"
#include "DeviceModel.h"
#include "LabColor.h"

#include <vector>

/// How the colours change from patch to patch of the reading, besides what the device values explain.
struct ReadingTrend
{
    LabColor drift{};     // from the first patch to the last
    double chance = 0;    // standard error of the drift, delta E
    bool isSteps = false; // whether the colours change from sheet to sheet rather than steadily

    /// Where isSteps: the colours of each sheet, from the mean of all. Sheets without readings have 0.
    std::vector<LabColor> offsets;
    std::vector<std::size_t> counts; // readings of each sheet
};

/// Compares two explanations of what a model's drift stands for: a steady drift over the whole reading, and an offset
/// of each sheet, as on another paper. The one with the smaller sum of squares is taken.
ReadingTrend trendOf(ChartReference const& chart, Readings const& readings, DeviceModel const& model);
