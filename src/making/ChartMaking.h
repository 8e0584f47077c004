// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "layout/ChartLayout.h"

/// The delta E that an instrument needs between patches without a gap.
inline constexpr float deltaEWithoutGaps = 18;

/// The gap between patches that differ less, mm.
inline constexpr float gapBetweenPatches = 1;

/// When a chart gets gaps: where its patches differ too little along the scan, never, or always.
enum class GapRule { automatic, never, always };

/// What came of computing a chart.
struct MadeChart
{
    float smallestDeltaE = 0; ///< along the scan, as the chart is made; 100 when nothing is scanned along y
    float withoutGaps = 0;    ///< the same without gaps; with GapRule::always, that with gaps
    bool hasGaps = false;     ///< whether the chart got gaps
};

/// Whether the instrument scans along y, so that neighbours along the scan have to differ.
bool isScanned(ChartLayout const& chart);

/// Whether a chart with this smallest delta E along the scan needs gaps.
bool needsGaps(ChartLayout const& chart, float smallestDeltaE);

/// Computes a chart without gaps and then, where the rule says so, with gaps. A chart that is not scanned has none.
///
/// \param gap  between patches, mm
MadeChart makeChart(ChartLayout& chart, GapRule rule = GapRule::automatic, float gap = gapBetweenPatches);
