// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartCheck.h"
#include "Measurement.h"
#include "SourceTable.h"

#include <optional>
#include <string>
#include <vector>

/// A measurement with what is certain put right.
struct RepairedMeasurement
{
    std::string text;                 // CGATS
    std::vector<std::string> changes; // one line each: what was put right
    std::vector<std::string> missing; // patches without a reading
    std::vector<std::string> left;    // findings that are not certain enough
    std::string fault;                // why nothing can be written
};

/// Writes the readings at the places of the patches that they show, each row with the measured columns of the file as
/// they are written there. Patches without a reading have no row.
///
/// \param source  gives the rows in this table's order, with its ids; without it they stand in the chart's order
RepairedMeasurement repairMeasurement(ChartReference const& chart, std::vector<Measurement> const& files,
                                      PairedMeasurement const& measurement, MeasurementCheck const& check,
                                      std::optional<SourceTable> const& source);
