// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Finding.h"
#include "StripSearch.h"

#include <vector>

/// Names what an explanation says about sheets, columns and the whole table.
std::vector<Finding> stripFindings(ChartReference const& chart, StripExplanation const& explanation);

/// 1 less the probability that odds are wrong, rounded down to six decimals.
///
/// \param logOdds  natural logarithm
double certaintyOf(double logOdds);
