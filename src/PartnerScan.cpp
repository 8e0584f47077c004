// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PartnerScan.h"

#include "ColorEntry.h"
#include "PartnerScanKernel.h"

#include <bit>
#include <cmath>

#ifdef PATCHLOOM_WIDE_SCANS
#include <emmintrin.h>

Candidates findCandidates8(FixedColorRows const& rows, WantedSwap const& swap, int from);
Candidates findCandidates16(FixedColorRows const& rows, WantedSwap const& swap, int from);
#endif

namespace
{

// A lightness difference of 5 lets the instrument find the edge, whatever the difference in hue and chroma.
bool areFurther(Lab const& one, Lab const& other, float key)
{
    return ColorEntry::computeSqDe(one.values, other.values) > key &&
           ColorEntry::computeSqDLStar(one.values, other.values) >= 25.0f;
}

bool arePartners(PatchColors const& colors, int cell, int other, float key)
{
    int const row = colors.getColumns();
    return areFurther(colors.at(other), colors.at(cell - row), key) &&
           areFurther(colors.at(other), colors.at(cell + row), key) &&
           areFurther(colors.at(cell), colors.at(other - row), key) &&
           areFurther(colors.at(cell), colors.at(other + row), key);
}

int findPartnerOneByOne(PatchColors const& colors, int cell, float key)
{
    for (int other = 0; other < colors.getCells(); ++other)
        if (arePartners(colors, cell, other, key))
            return other;
    return -1;
}

#ifdef PATCHLOOM_WIDE_SCANS

struct SSE2
{
    using Lanes = __m128i;
    static constexpr int width = 4;

    static Lanes load(std::uint32_t const* words) { return _mm_loadu_si128(reinterpret_cast<Lanes const*>(words)); }
    static Lanes spread(std::int32_t value) { return _mm_set1_epi32(value); }
    static Lanes addProducts(Lanes sum, Lanes a, Lanes b) { return _mm_add_epi32(sum, _mm_madd_epi16(a, b)); }
    static std::uint32_t negatives(Lanes lanes)
    {
        return static_cast<std::uint32_t>(_mm_movemask_ps(_mm_castsi128_ps(lanes)));
    }
};

// Rounding to fixed point moves each of two colours by up to half a unit along three axes, sqrt(3) / 64 in all, and
// its half square by up to half of its unit.
DistantColor distantColor(FixedColorRows const& rows, int cell, float key)
{
    constexpr double rounding = 0.03;
    std::uint32_t const lightnessAndA = rows.lightnessAndA[cell];
    std::uint32_t const b = rows.bAndSquare[cell] & 0xffff;
    auto const square = [](std::uint32_t half) {
        double const value = static_cast<std::int16_t>(half);
        return value * value;
    };
    double const distance = std::fmax(std::sqrt(static_cast<double>(key)) - rounding, 0) * PatchColors::unit;
    double const limit = (square(lightnessAndA) + square(lightnessAndA >> 16) + square(b) - distance * distance +
                          PatchColors::squareUnit) /
                         2;
    constexpr std::uint32_t weight = 0x10000u - PatchColors::squareUnit;
    return {static_cast<std::int32_t>(lightnessAndA), static_cast<std::int32_t>(weight << 16 | b),
            -static_cast<std::int32_t>(std::floor(limit)) - 1};
}

template <CandidateScan findCandidates, int width>
int findPartnerBy(PatchColors const& colors, int cell, float key)
{
    if (!colors.areFixed())
        return findPartnerOneByOne(colors, cell, key);
    FixedColorRows const rows = colors.getFixedRows();
    WantedSwap const swap{distantColor(rows, cell, key), distantColor(rows, cell - rows.columns, key),
                          distantColor(rows, cell + rows.columns, key)};
    for (int from = 0; from < rows.cells; from += width) {
        Candidates candidates = findCandidates(rows, swap, from);
        from = candidates.cell;
        for (; candidates.bits != 0; candidates.bits &= candidates.bits - 1) {
            int const other = from + std::countr_zero(candidates.bits);
            if (other < rows.cells && arePartners(colors, cell, other, key))
                return other;
        }
    }
    return -1;
}

#endif

} // namespace

PartnerFinder partnerFinderOf(int width)
{
    if (width == 1)
        return findPartnerOneByOne;
#ifdef PATCHLOOM_WIDE_SCANS
    if (width == 4)
        return findPartnerBy<CandidateScanWith<SSE2>::find, 4>;
    if (width == 8 && __builtin_cpu_supports("avx2"))
        return findPartnerBy<findCandidates8, 8>;
    if (width == 16 && __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vnni"))
        return findPartnerBy<findCandidates16, 16>;
#endif
    return nullptr;
}

int findPartner(PatchColors const& colors, int cell, float key)
{
    static PartnerFinder const widest = [] {
        PartnerFinder finder = nullptr;
        for (int width = 16; !finder; width /= 2)
            finder = partnerFinderOf(width);
        return finder;
    }();
    return widest(colors, cell, key);
}
