// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartSettings.h"
#include "layout/ChartLayout.h"

#include <string>
#include <vector>

/// What was asked for and what came of it.
struct ChartSummary
{
    ChartSettings settings;
    ColorSpace colorSpace = undefined;
    std::size_t patches = 0; ///< of the table
    int fillers = 0;         ///< white patches on visible cells
    int hidden = 0;          ///< cells that no sheet shows
    int columns = 0;
    int rows = 0;
    int chartPages = 0;
    int sheets = 0;
    double gap = 0; ///< between patches along the scan, mm
    MadeChart made;
    float bound = 0; ///< what no order exceeds along the scan, delta E; 0 where it is not known
    bool isBoundLoose = false;
    std::vector<std::string> notes; ///< about the reading of the table
    std::vector<std::string> files; ///< their paths
};

/// Counts a chart's cells and sheets.
///
/// \param patches  of the table
ChartSummary summaryOf(ChartLayout const& chart, ChartSettings const& settings, MadeChart const& made,
                       std::size_t patches);

/// The summary for people, in lines.
std::string textOf(ChartSummary const& summary);

/// The summary as one JSON object, in valid UTF-8.
std::string jsonOf(ChartSummary const& summary);
