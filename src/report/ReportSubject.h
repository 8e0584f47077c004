// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "layout/ChartLayout.h"

#include <optional>
#include <string>
#include <vector>

/// What a report is about: a chart that has been computed, and what the chart itself does not know.
struct ReportSubject
{
    ChartLayout const& chart;
    std::vector<std::string> devices; ///< names; more than one where the chart's files do not tell which it is
    std::string paper;                ///< its name
    std::optional<float> withoutGaps; ///< the smallest delta E along the scan before the chart got its gaps
    bool isGapRuleKnown = true;       ///< whether it is known why the chart has gaps
    float bound = 0;                  ///< delta E that no order exceeds; 0 where it is not known
    bool isBoundLoose = false;
    std::vector<std::string> notes; ///< about the reading of the table
};
