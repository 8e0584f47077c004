// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PrintTable.h"

/// The most ink that coated paper takes, percent over all four.
constexpr double inkLimit = 330;

/// What a separation found.
struct Separated
{
    Cmyk device;   ///< 0 to 100 each, no more than inkLimit in all
    double deltaE; ///< distance from the wanted colour, CIE 1976
};

/// Finds inks for a colour.
///
/// A colour in gamut is met, with black taking over from the other inks as colours get darker and greyer. Of a colour
/// out of gamut the nearest printable one is taken.
///
/// \param lightnessWeight  for colours out of gamut: above 1 keeps lightness, below 1 keeps hue and chroma
Separated separate(PrintTable const& table, Lab const& wanted, double lightnessWeight);
