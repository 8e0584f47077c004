// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PairDifference.h"
#include "lib/Geometry.h"

/// A bound for large charts. Not more than half the patches of a column, rounded up, stand without touching. So any set
/// of more patches than that for all columns has two neighbours, and no order exceeds the largest difference within the
/// set. The sets tried are the patches nearest to a colour.
///
/// \return squared delta E
float findHalfSetBound(PairDifference const& difference, IntSize grid);
