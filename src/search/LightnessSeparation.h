// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ColumnOrder.h"
#include "PairDifference.h"
#include "RandomNumbers.h"

#include <cstdint>

/// Moves patches so that fewer neighbours along the scan differ by less than 5 in lightness. No new pair falls below a
/// squared delta E.
///
/// \param leastDifference  squared delta E that all pairs of the order have at least
/// \param work             how many words of 64 pairs may be looked at, about
void separateInLightness(ColumnOrder& order, PairDifference const& difference, float leastDifference,
                         RandomNumbers& random, std::int64_t work);
