// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "check/ChartCheck.h"
#include "check/Measurement.h"

#include <string>
#include <vector>

/// What the check of a chart's measurements gave.
struct CheckSummary
{
    ChartReference const& chart;
    std::vector<Measurement> const& files;
    std::vector<PairedMeasurement> const& measurements;
    std::vector<MeasurementCheck> const& checks;    // one for each measurement
    std::vector<MeasurementComparison> comparisons; // of the first with each other
    std::string repaired;                           // the file with the repaired measurement; empty without one
    std::vector<std::string> changes;               // in that file
    std::vector<std::string> leftAlone;             // findings that are not certain enough for it
    std::vector<std::string> missing;               // patches without a reading in that file

    std::size_t countFindings() const;
};

/// The summary for people, in lines.
std::string textOf(CheckSummary const& summary);

/// The summary as one JSON object, in valid UTF-8.
std::string jsonOf(CheckSummary const& summary);
