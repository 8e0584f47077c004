// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Assignment.h"
#include "ChartReference.h"
#include "Finding.h"
#include "Measurement.h"

#include <cstddef>
#include <string>
#include <vector>

/// A row of one of the files.
struct RowPlace
{
    static constexpr std::size_t none = Assignment::nothing;

    std::size_t file = none;
    std::size_t row = 0;
};

/// One measurement of the chart: the readings of its patches, from one file or from several.
struct PairedMeasurement
{
    std::vector<std::size_t> files; // indices
    Readings readings;              // one for each patch of the chart
    std::vector<RowPlace> rows;     // where each reading comes from
    std::vector<bool> isImpossible; // whether a row is there whose values no colour can have
    std::vector<Finding> findings;  // extra and impossible readings, and an order told by device values
};

/// The measurements in a list of files, or why they are none of the chart.
struct Pairing
{
    std::vector<PairedMeasurement> measurements;
    std::string fault; // "FILE:LINE: text"; empty where there are measurements
};

/// Finds each row's patch: by its place, else by its id, else by its device values. Rows with device values must have
/// those of their patch. Where all places contradict them, the device values count.
///
/// Files whose rows have different places are parts of one measurement, for instance one file a sheet. A file that has
/// places of an earlier one begins another measurement.
Pairing pairMeasurements(ChartReference const& chart, std::vector<Measurement> const& files);
