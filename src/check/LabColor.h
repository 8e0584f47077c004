// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>

/// CIELAB for D50 and 2 degrees: L*, a*, b*.
using LabColor = std::array<double, 3>;

/// CIE 1976 delta E*ab, squared.
inline double squaredDifference(LabColor const& p, LabColor const& q)
{
    double const lightness = p[0] - q[0];
    double const a = p[1] - q[1];
    double const b = p[2] - q[2];
    return lightness * lightness + a * a + b * b;
}

/// CIE 1976 delta E*ab.
double deltaE76(LabColor const& p, LabColor const& q);

/// CIE delta E 2000 with all parametric factors 1 (ISO/CIE 11664-6).
double deltaE2000(LabColor const& p, LabColor const& q);

/// CIELAB of tristimulus values for the white point D50 of ICC profiles, 0.9642 1 0.8249 (ISO/CIE 11664-4).
///
/// \param xyz  Y of the perfect white is 1
LabColor labOfXyz(std::array<double, 3> const& xyz);
