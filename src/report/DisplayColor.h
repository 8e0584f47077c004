// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "color/Lab.h"
#include "lib/ColorSpace.h"

#include <string>

/// A colour of a page: red, green and blue, 0 to 255.
struct DisplayColor
{
    unsigned char red = 0;
    unsigned char green = 0;
    unsigned char blue = 0;

    bool operator==(DisplayColor const&) const = default;
};

/// From fractions; those outside 0 to 1 are clipped.
DisplayColor displayColorOf(float const* fractions);

/// Shows a colour by the program's profile for displays.
DisplayColor displayColorOf(Lab const& lab);

/// Shows a device colour by the program's profiles.
///
/// \param device  a fraction for each channel, from 0 to 1
DisplayColor displayColorOf(ColorSpace space, double const* device);

/// "#0a1b2c"
std::string htmlColor(DisplayColor color);
