// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartFigures.h"
#include "ReportSubject.h"

#include <string>
#include <vector>

// The sentences of a chart's report.

/// A difference with two decimals. One below 18 does not look like 18.
std::string deltaText(float deltaE);

/// The same rounded down, for a difference beside its bound.
std::string flooredDeltaText(float deltaE);

/// "GB+ Scan", or "GB+ Scan or VT-30 Standard Ruler".
std::string deviceText(ReportSubject const& subject);

/// How the instrument measures: "sweeps along the columns".
std::string scanText(ChartLayout const& chart);

/// "210 × 297 mm", in the chart's own words: "no gaps", "gaps of 1 mm along the scan".
std::string sizeText(RealSize size);
std::string gapText(ChartLayout const& chart);

/// Why the chart has gaps, or has none.
///
/// \param smallest  delta E along the scan
std::string gapReason(ReportSubject const& subject, float smallest);

/// Why the chart has as many sheets as it has, and what one more column would need.
std::vector<std::string> sheetReasons(ReportSubject const& subject, CellCounts const& cells);

/// The sum of inks in words.
///
/// \param sums  from the least on, at least one
std::string inkText(std::vector<double> const& sums);

/// How often colours repeat, and whether their repeats lie on different sheets.
std::string repeatText(ChartLayout const& chart, std::vector<RepeatGroup> const& groups);

/// The number of the sheet that shows a cell; 0 for none.
int sheetNumberOf(ChartLayout const& chart, IntPos cell);

/// The steps of printing and of measuring the chart.
std::vector<std::string> printSteps(ReportSubject const& subject);
std::vector<std::string> measureSteps(ReportSubject const& subject);
