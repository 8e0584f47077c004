// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ColumnOrder.h"
#include "PlaceLine.h"
#include "RandomNumbers.h"

#include <vector>

/// Charts with more patches are worked on in groups, so that the memory for pairs stays small.
inline constexpr int mostPatchesAtOnce = 5200;

/// Divides all columns into groups of stretches to work on one after the other. A chart of up to mostPatchesAtOnce
/// patches is one group of whole columns. The groups of a larger chart are half as large and drawn anew by each call;
/// very long columns are cut somewhere.
std::vector<std::vector<Stretch>> divideIntoGroups(ColumnOrder const& order, RandomNumbers& random);
