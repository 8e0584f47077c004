// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartMaking.h"

bool isScanned(ChartLayout const& chart)
{
    return chart.getMeasurementLayout().getScanDirection() == alongY;
}

bool needsGaps(ChartLayout const& chart, float smallestDeltaE)
{
    return isScanned(chart) && smallestDeltaE < deltaEWithoutGaps;
}

// The second attempt starts from seed 1. Some C libraries, such as the GNU library, give the same rand() sequence for
// seeds 0 and 1. The second attempt would then find the result of the first one, so arrangeFrom does not search again.
MadeChart makeChart(ChartLayout& chart, GapRule rule, float gap)
{
    if (rule == GapRule::always && isScanned(chart)) {
        float const smallest = chart.computeLayout(gap, 0);
        return {smallest, smallest, true};
    }
    float withoutGaps = chart.computeLayout(0, 0);
    if (needsGaps(chart, withoutGaps) && chart.hasSomethingToOutpot())
        withoutGaps = chart.arrangeFrom(1);
    bool const hasGaps = rule == GapRule::automatic && needsGaps(chart, withoutGaps);
    return {hasGaps ? chart.computeLayout(gap, 0) : withoutGaps, withoutGaps, hasGaps};
}
