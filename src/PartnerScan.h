// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PatchColors.h"

/// A patch that is to change places: its colour, those that it has for neighbours along the scan, and the squared delta
/// E that both patches of a swap must come to exceed.
struct PoorPlace
{
    Lab patch;
    Lab above;
    Lab below;
    float key;
};

/// Finds the first cell whose patch can change places with the one at the poor place: all four new pairs along the scan
/// differ by more than the key, and by 5 or more in lightness.
///
/// \return the cell, -1 where there is none; the same on every processor
int findPartner(ColorRows const& rows, PoorPlace const& place);

/// The same with instructions of a certain width, in colours; null where this processor, or this build, has none.
using PartnerFinder = int (*)(ColorRows const& rows, PoorPlace const& place);
PartnerFinder partnerFinderOf(int width);
