// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Assignment.h"
#include "ChartReference.h"

#include <cstddef>
#include <string>
#include <vector>

/// Colour differences as people report them. Zero without any.
struct DifferenceStatistics
{
    std::size_t count = 0;
    double mean76 = 0;    // delta E 1976
    double highest95 = 0; // 95 % of the differences are at most this, delta E 1976
    double largest76 = 0;
    double mean2000 = 0; // the same in delta E 2000
    double highest95of2000 = 0;
    double largest2000 = 0;
};

/// A pair of colours.
struct ColorPair
{
    LabColor first{};
    LabColor second{};
};

DifferenceStatistics statisticsOf(std::vector<ColorPair> const& pairs);

/// Each reading of device values that were printed several times, beside the mean of these readings.
std::vector<ColorPair> repeatsOf(ChartReference const& chart, Readings const& readings);

/// Two measurements of one chart.
struct MeasurementComparison
{
    std::size_t first = 0; // indices of measurements
    std::size_t second = 0;
    DifferenceStatistics differences;
    std::vector<std::string> columns; // those that differ much more than the others
};

MeasurementComparison compareMeasurements(ChartReference const& chart, Readings const& first, Readings const& second);
