// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "layout/ChartLayout.h"

/// The delta E that an instrument needs between patches without a gap.
inline constexpr float deltaEWithoutGaps = 18;

/// The gap between patches that differ by less, mm.
inline constexpr float gapBetweenPatches = 1;

/// When a chart gets gaps: if its patches differ too little along the scan, never, or always.
enum class GapRule { automatic, never, always };

/// The result of computing a chart.
struct MadeChart
{
    float smallestDeltaE = 0; ///< along the scan of the finished chart; 100 when nothing is scanned along y
    float withoutGaps = 0;    ///< the same without gaps; with GapRule::always, the value with gaps
    bool hasGaps = false;     ///< whether the chart got gaps
};

/// Whether the instrument scans along y. Then neighbours along the scan must differ.
bool isScanned(ChartLayout const& chart);

/// Whether a chart with this smallest delta E along the scan needs gaps.
bool needsGaps(ChartLayout const& chart, float smallestDeltaE);

/// Computes a chart without gaps, and then with gaps if the rule says so. A chart that is not scanned gets no gaps.
///
/// \param gap  between patches, mm
MadeChart makeChart(ChartLayout& chart, GapRule rule = GapRule::automatic, float gap = gapBetweenPatches);
