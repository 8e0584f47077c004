// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Assignment.h"
#include "ChartCheck.h"
#include "ChartReference.h"

#include <cstdint>
#include <string>
#include <vector>

/// The size of a chart in tests of checks.
struct CheckedChartSize
{
    int sheets = 1;
    int columns = 10; // on each sheet
    int rows = 12;
};

/// The target description of a chart of evenly distributed RGB values. The first patch of each sheet is white.
std::string checkedDescription(CheckedChartSize const& size, std::uint64_t seed = 1);

/// The same, read.
ChartReference checkedChart(CheckedChartSize const& size, std::uint64_t seed = 1);

/// The colours of a printer that is easy to predict: L* is 20 and up to 75 more with green above all, a* and
/// b* follow the differences of the channels. A small error stands in for noise.
Readings plainPrint(ChartReference const& chart);

/// Changes a reading.
void change(Readings& readings, std::size_t patch, LabColor const& by);

/// A measurement of all patches.
PairedMeasurement measurementOf(Readings const& readings);

/// Checks readings.
MeasurementCheck checkOf(ChartReference const& chart, Readings const& readings);

/// An explanation that says that nothing is wrong.
StripExplanation faultlessExplanation(ChartReference const& chart);

/// The patch that each reading shows.
std::vector<std::size_t> patchesOf(Assignment const& assignment);

/// The places of a column's patches in the chart's list.
std::vector<std::size_t> columnOf(ChartReference const& chart, std::string const& label);

/// A CGATS file of readings with SAMPLE_LOC and CIELAB, two decimals.
std::string measurementText(ChartReference const& chart, Readings const& readings);
