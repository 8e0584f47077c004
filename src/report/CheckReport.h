// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ReportPage.h"
#include "check/ChartCheck.h"

#include <string>

/// What the page about a measurement is about.
struct CheckSubject
{
    ChartReference const& chart;
    PairedMeasurement const& measurement;
    MeasurementCheck const& check;
    std::string files; // the measurement's files, for the summary
};

/// Makes the page about a measurement: findings, each sheet with measured beside expected colours, statistics. A chart
/// of more than 100,000 patches gets none.
PageText checkReport(CheckSubject const& subject);
