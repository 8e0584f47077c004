// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Printer.h"

#include <cstdint>
#include <vector>

/// Distances to the nearest patch.
struct FillDistance
{
    double mean = 0;
    double nearlyLargest = 0; ///< that of 99 % of all
    double largest = 0;
};

/// How far the colours of a printer are from the nearest patch.
struct FillDistances
{
    FillDistance deltaE; ///< in CIELAB
    FillDistance device; ///< percent of the channels
};

/// Measures the fill distances from 20,000 random device values, uniform within the ink limit.
///
/// \param inkLimit  percent; only for CMYK
/// \param patches   at least one
/// \param seed      of the random values
FillDistances fillDistancesOf(Printer const& printer, double inkLimit, std::vector<PrinterColor> const& patches,
                              std::uint64_t seed = 0);
