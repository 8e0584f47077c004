// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PartnerScanKernel.h"

// Compiled for processors with AVX2, and called only there.
int findPartner8(ColorRows const& rows, PoorPlace const& place)
{
    return Wide<Floats8, Masks8>::findPartner(rows, place);
}
