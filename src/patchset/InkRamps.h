// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ValueScale.h"

#include <vector>

/// The unprinted paper.
DeviceSteps paperValue(ValueScale const& scale);

/// All inks full or empty but for the paper, single inks first, as far as the ink limit allows. The inks of RGB are
/// what its channels leave out: cyan is 0 255 255.
///
/// \param inkLimit  percent; only for CMYK
std::vector<DeviceSteps> cornerValues(ValueScale const& scale, double inkLimit);

/// Ramps from the paper to each single ink and to each overprint of two inks, in equal steps. The full inks are
/// included.
///
/// \param steps  of each ramp
std::vector<DeviceSteps> rampValues(ValueScale const& scale, double inkLimit, int steps);
