// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/// A CIELAB colour: L*, a*, b*.
struct Lab
{
    float values[3];
};

/// Larger than the squared delta E of any two colours of 8-bit or percent input.
inline constexpr float furthestSquaredDeltaE = 100000.0f;

/// Squared CIE 1976 delta E*ab. Every comparison of two patches uses this function: its single precision and its order
/// of additions decide which order of patches a search finds.
inline float squaredDeltaE(Lab const& p, Lab const& q)
{
    float const dL = p.values[0] - q.values[0];
    float const da = p.values[1] - q.values[1];
    float const db = p.values[2] - q.values[2];
    return (dL * dL + da * da) + db * db;
}

/// Squared difference in L*.
inline float squaredLightnessDifference(Lab const& p, Lab const& q)
{
    float const dL = p.values[0] - q.values[0];
    return dL * dL;
}
