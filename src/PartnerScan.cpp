// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PartnerScan.h"

#include "PartnerScanKernel.h"

#ifdef PATCHLOOM_WIDE_SCANS
int findPartner8(ColorRows const& rows, PoorPlace const& place);
int findPartner16(ColorRows const& rows, PoorPlace const& place);
#endif

PartnerFinder partnerFinderOf(int width)
{
    if (width == 4)
        return Wide<Floats4, Masks4>::findPartner;
#ifdef PATCHLOOM_WIDE_SCANS
    if (width == 8 && __builtin_cpu_supports("avx2"))
        return findPartner8;
    if (width == 16 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") &&
        __builtin_cpu_supports("avx512dq"))
        return findPartner16;
#endif
    return nullptr;
}

int findPartner(ColorRows const& rows, PoorPlace const& place)
{
    static PartnerFinder const widest = [] {
        PartnerFinder finder = nullptr;
        for (int width = 16; !finder; width /= 2)
            finder = partnerFinderOf(width);
        return finder;
    }();
    return widest(rows, place);
}
