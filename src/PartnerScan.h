// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PatchColors.h"

/// Finds the first cell whose patch can change places with the one at a cell: all four new pairs along the scan differ
/// by more than the key, a squared delta E, and by 5 or more in lightness.
///
/// \return the other cell, -1 where there is none; the same on every processor
int findPartner(PatchColors const& colors, int cell, float key);

/// The same with instructions that look at so many colours at once: 16, 8, 4 or 1. Null where this processor, or this
/// build, has none.
using PartnerFinder = int (*)(PatchColors const& colors, int cell, float key);
PartnerFinder partnerFinderOf(int width);
