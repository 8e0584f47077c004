// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "color/ColorEntry.h"
#include "lib/ColorSpace.h"

/// The boundary between two neighbouring patches, or between a patch and the paper at the grid's edge.
class ColorGap
{
public:
    /// Sets the patches at its sides.
    ///
    /// \param lower   the patch at the lower y, or at the lower x; null counts as paper white
    /// \param higher  the other patch
    void setSides(ColorEntry* lower, ColorEntry* higher)
    {
        first = lower;
        second = higher;
    }
    void setFirst(ColorEntry* entry) { first = entry; }
    void setSecond(ColorEntry* entry) { second = entry; }
    ColorEntry* getFirst() const { return first; }
    ColorEntry* getSecond() const { return second; }

    /// Whether the scan crosses the boundary: true between y and y + 1.
    void setAcrossScan(bool crossed) { acrossScan = crossed; }
    bool isAcrossScan() const { return acrossScan; }

    /// Computes the squared delta E of the two sides.
    void compute();

    /// The squared delta E that compute() found last.
    float getSqDe() const { return squaredDeltaE; }

    /// Chooses the colour to print in the gap: black if the mean L* of the two sides is 50 or more, unprinted white
    /// otherwise. The fourth channel of an RGB gap does not change.
    void computeOutColor(ColorSpace colorSpace);

    /// The gap's colour, four channel fractions from 0 to 1; RGB uses the first three.
    double* getOutColor() { return outColor; }
    double const* getOutColor() const { return outColor; }

private:
    double outColor[4] = {0, 0, 0, 0};
    ColorEntry* first = nullptr;
    ColorEntry* second = nullptr;
    float squaredDeltaE = 0;
    bool acrossScan = false;
};
