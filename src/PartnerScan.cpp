// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PartnerScan.h"

#include "ColorEntry.h"
#include "PartnerScanKernel.h"

#include <algorithm>
#include <bit>
#include <cmath>

#ifdef PATCHLOOM_WIDE_SCANS
#include <emmintrin.h>

Candidates findCandidates8(FixedCells const& cells, WantedSwap const& swap, int from);
Candidates findCandidates16(FixedCells const& cells, WantedSwap const& swap, int from);
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
    int const row = colors.getRowLength();
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

    static Lanes load(std::uint32_t const* words) { return _mm_load_si128(reinterpret_cast<Lanes const*>(words)); }
    static Lanes spread(std::int32_t value) { return _mm_set1_epi32(value); }
    static Lanes addProducts(Lanes sum, Lanes a, Lanes b) { return _mm_add_epi32(sum, _mm_madd_epi16(a, b)); }
    static std::uint32_t negatives(Lanes lanes)
    {
        return static_cast<std::uint32_t>(_mm_movemask_ps(_mm_castsi128_ps(lanes)));
    }
};

// The square, in fixed point, of how far two rounded colours are apart at least when the exact ones differ by more than
// the key. Rounding moves each colour by up to half a unit along three axes: both by sqrt(3) / 64 in all.
int leastSquareOf(float key)
{
    constexpr float rounding = 0.03f;
    float const distance = std::max(std::sqrt(key) - rounding, 0.0f) * FixedColors::unit;
    return static_cast<int>(distance * distance);
}

// What a candidate stays below allows for the rounding of its half square too, by up to half a square unit.
DistantColor distantColor(PatchColors const& colors, int cell, int leastSquare)
{
    std::uint32_t const lightnessAndA = colors.lightnessAndA(cell);
    std::uint32_t const b = colors.bAndSquare(cell) & 0xffff;
    auto const square = [](std::uint32_t half) {
        int const value = static_cast<std::int16_t>(half);
        return value * value;
    };
    int const ownSquare = square(lightnessAndA) + square(lightnessAndA >> 16) + square(b);
    constexpr std::uint32_t weight = 0x10000u - FixedColors::squareUnit;
    return {static_cast<std::int32_t>(lightnessAndA), static_cast<std::int32_t>(weight << 16 | b),
            (leastSquare - ownSquare - FixedColors::squareUnit) / 2 - 1};
}

template <CandidateScan findCandidates>
int findPartnerBy(PatchColors const& colors, int cell, float key)
{
    if (!colors.areFixed())
        return findPartnerOneByOne(colors, cell, key);
    int const row = colors.getRowLength();
    int const leastSquare = leastSquareOf(key);
    WantedSwap const swap{distantColor(colors, cell, leastSquare), distantColor(colors, cell - row, leastSquare),
                          distantColor(colors, cell + row, leastSquare)};
    FixedCells const cells{colors.getFixed(), colors.getCells() / FixedColors::count, row / FixedColors::count};
    for (int block = 0; block < cells.count; ++block) {
        Candidates candidates = findCandidates(cells, swap, block);
        block = candidates.block;
        for (; candidates.bits != 0; candidates.bits &= candidates.bits - 1) {
            int const other = block * FixedColors::count + std::countr_zero(candidates.bits);
            if (arePartners(colors, cell, other, key))
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
        return findPartnerBy<CandidateScanWith<SSE2>::find>;
    if (width == 8 && __builtin_cpu_supports("avx2"))
        return findPartnerBy<findCandidates8>;
    if (width == 16 && __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vnni"))
        return findPartnerBy<findCandidates16>;
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
