// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "color/ColorEntry.h"
#include "lib/ColorSpace.h"

/// The boundary between two neighbouring patches, or between a patch and the paper at the grid's edge.
class ColorGap
{
public:
    /// Names the patches at its sides.
    ///
    /// \param lower   the one at the lower y, or at the lower x; null counts as paper white
    /// \param higher  the other one
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

    /// Works out the squared delta E of the two sides.
    void compute();

    /// Squared delta E of the two sides as last computed.
    float getSqDe() const { return squaredDeltaE; }

    /// Picks the colour to print in the gap: black between light patches, unprinted white between dark ones, by
    /// whether the mean lightness reaches 50. An RGB gap's fourth channel is left as it was.
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
