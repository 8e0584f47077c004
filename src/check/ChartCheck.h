// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartReference.h"
#include "Differences.h"
#include "Finding.h"
#include "LocalModel.h"
#include "Pairing.h"
#include "StripSearch.h"

#include <cstddef>
#include <vector>

/// The colour of bare paper on a sheet.
struct SheetPaper
{
    std::size_t readings = 0;
    LabColor mean{}; // 0 without readings
};

/// What one measurement of a chart tells.
struct MeasurementCheck
{
    std::vector<Finding> findings;
    StripExplanation explanation;

    /// The patches' readings with everything put right that was found, also what is less than certain.
    Readings corrected;

    /// What each patch should measure by the others. Empty where the readings fit the chart in no order.
    std::vector<PatchExpectation> expectations;
    std::vector<bool> isMisread; // patches

    /// Where the reading of each patch stands in the measurement as it was read, with what is certain put right:
    /// Assignment::nothing for patches that have none.
    std::vector<std::size_t> places;

    DifferenceStatistics repeats;   // readings of equal device values against their mean
    DifferenceStatistics expected;  // readings against what is expected
    std::vector<SheetPaper> papers; // sheet by sheet
    double drift = 0;               // over the whole reading, delta E (1976)
};

/// Checks a measurement against its chart.
///
/// \param orders  orders that the whole table may be in; see candidateOrders
MeasurementCheck checkMeasurement(ChartReference const& chart, PairedMeasurement const& measurement,
                                  std::vector<ReadingOrder> const& orders);
