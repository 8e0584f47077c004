// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ValueScale.h"

#include <cstddef>
#include <cstdint>
#include <set>
#include <vector>

/// Device values spread evenly over all that a printer can be sent, the edges included: the additive recurrence of the
/// generalised golden ratio (Roberts 2018), shifted by the seed. One in eight CMYK values is from the light tints.
///
/// \param scale     how the values are rounded
/// \param inkLimit  percent; only CMYK has one
/// \param count     how many are wanted. There are fewer where the limit leaves no more different ones.
/// \param leftOut   values that are not wanted
std::vector<DeviceSteps> evenDeviceValues(ValueScale const& scale, double inkLimit, std::size_t count,
                                          std::uint64_t seed, std::set<DeviceSteps> leftOut);
