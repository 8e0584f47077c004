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

/// The outline of what a device reaches in the plane of a* and b*, by the program's profile: for each direction from
/// the middle the most chromatic colour without black ink. Counter-clockwise.
std::vector<PlanePoint> gamutOutline(ColorSpace space);
