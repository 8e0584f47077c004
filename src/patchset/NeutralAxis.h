// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Printer.h"

#include <vector>

/// Device values of the grey axis, in even steps of lightness from below the paper down to the darkest grey, found
/// through the printer's colours. RGB has one axis. CMYK has two: of three inks, and of four with more and more black.
/// A step that the printer cannot print within 2 delta E is left out.
///
/// \param scale     how the values are rounded
/// \param inkLimit  percent; only for CMYK
/// \param steps     of each axis
std::vector<DeviceSteps> neutralValues(Printer const& printer, ValueScale const& scale, double inkLimit, int steps);
