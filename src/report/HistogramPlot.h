// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartFigures.h"
#include "PageTemplate.h"

#include <string>
#include <vector>

/// A value that a histogram marks by a line.
struct HistogramLine
{
    double value = 0;
    std::string text;
};

/// What a histogram says besides its bars.
struct HistogramTexts
{
    std::string id; ///< that is the plot's alone in the page
    std::string title;
    std::string caption;
    std::string description; ///< what the plot shows, for those who do not see it
    std::string unit;
};

/// Fills the template histogram.html.
///
/// \param weakBelow  bars that end at or below this value are drawn as weak
void fillHistogram(TemplateValues values, Histogram const& histogram, HistogramTexts const& texts,
                   std::vector<HistogramLine> const& lines = {}, double weakBelow = 0);
