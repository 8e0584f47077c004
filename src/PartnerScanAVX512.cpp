// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PartnerScanKernel.h"

// Compiled for processors with AVX512, and called only there.
int findPartner16(ColorRows const& rows, PoorPlace const& place)
{
    return Wide<Floats16, Masks16>::findPartner(rows, place);
}
