// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ColorSpace.h"

#include <array>
#include <string>
#include <vector>

/// Colours of device values through the program's profiles, with separate transforms in double precision.
class ProfileColours
{
public:
    using Lab = std::array<double, 3>;

    /// \param colorSpace  CMYK or RGB
    explicit ProfileColours(ColorSpace colorSpace);
    ~ProfileColours();
    ProfileColours(ProfileColours const&) = delete;
    ProfileColours& operator=(ProfileColours const&) = delete;

    /// The colour of a patch from the texts of its values.
    Lab of(std::vector<std::string> const& values) const;

    /// Unprinted paper, whatever the colour space.
    Lab const& ofPaper() const { return paper; }

private:
    void* transform;
    double scale;
    Lab paper;
};

/// CIE 1976 delta E.
double deltaE(ProfileColours::Lab const& p, ProfileColours::Lab const& q);
