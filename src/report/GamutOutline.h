// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/ColorSpace.h"

#include <vector>

/// A point of the plane of a* and b*.
struct PlanePoint
{
    double a = 0;
    double b = 0;
};

/// The outline of what a device reaches in the plane of a* and b*, by the program's profile, counter-clockwise. It is
/// the convex hull of the surface of the device's colours without black ink.
std::vector<PlanePoint> gamutOutline(ColorSpace space);

/// The convex hull of points, counter-clockwise from the leftmost point.
std::vector<PlanePoint> convexHull(std::vector<PlanePoint> points);
