// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Finding.h"
#include "StripSearch.h"

#include <cstddef>
#include <vector>

/// For each patch of the chart, the place in the measurement where its reading stands; Assignment::nothing for none.
using ReadingPlaces = std::vector<std::size_t>;

/// Puts right what an explanation says.
///
/// \param onlyCertain  leaves columns alone whose finding has an error probability above one in a million, or whose
///                     shift may begin at another row
ReadingPlaces correctedPlaces(ChartReference const& chart, StripExplanation const& explanation, bool onlyCertain);
