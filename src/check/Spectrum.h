// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <vector>

/// A band of a reflectance spectrum.
struct SpectralBand
{
    double wavelength = 0;  // nm
    double reflectance = 0; // 1 for the perfect white
};

/// Tristimulus values for the illuminant D50 and the observer of 2 degrees, Y of the perfect white 1.
///
/// X = sum(R S x) / sum(S y), and so on, over 380 to 780 nm in steps of 10 nm. R is the reflectance, linear between the
/// bands and constant beyond them. S is the illuminant D50, and x, y, z are the colour matching functions of the CIE
/// 1931 standard observer (CIE 15:2004, tables T.1 and T.4). The result is divided by the white's tristimulus values
/// and multiplied by those of ICC profiles, so that the perfect white has L* 100, a* 0, b* 0.
///
/// \param bands  in the order of their wavelengths; at least one
std::array<double, 3> xyzOfSpectrum(std::vector<SpectralBand> const& bands);
