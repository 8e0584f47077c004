// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PartnerFinder.h"

#include <bit>

#ifdef PATCHLOOM_WIDE_SEARCH
#include <emmintrin.h>
#endif

namespace
{

bool areFurther(Lab const& one, Lab const& other, float key)
{
    constexpr float leastSquaredDifference = leastLightnessDifference * leastLightnessDifference;
    return squaredDeltaE(one, other) > key && squaredLightnessDifference(one, other) >= leastSquaredDifference;
}

#ifdef PATCHLOOM_WIDE_SEARCH

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

#endif

// Null for a width without a fast test. Every cell then gets the exact test.
CandidateSearch candidateSearchOf([[maybe_unused]] int width)
{
#ifdef PATCHLOOM_WIDE_SEARCH
    if (width == 4)
        return CandidateKernel<SSE2>::find;
    if (width == 8 && __builtin_cpu_supports("avx2"))
        return findCandidates8;
    if (width == 16 && __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vnni"))
        return findCandidates16;
#endif
    return nullptr;
}

// If two exact colours differ by more than the key, their rounded colours have at least a certain distance. This is
// half the square of that distance, in fixed point. Rounding moves each colour by up to half a unit along three axes,
// and both together by less than 0.03. So a distance d, with the key as its square, becomes d - 0.03 or more, and its
// square becomes d^2 - 0.06 d or more. d is at most d^2 / 128 + 32, which needs no root.
int leastHalfSquareOf(float key)
{
    constexpr float rounding = 0.06f;
    constexpr float halfSquareUnits = 0.5f * FixedColors::unit * FixedColors::unit;
    constexpr float slope = halfSquareUnits * (1 - rounding / 128);
    constexpr float offset = halfSquareUnits * rounding * 32;
    return static_cast<int>(key * slope - offset);
}

// The limit allows for the rounding of both half squares, by up to half a unit each.
DistantColor distantColor(PatchColors const& colors, int cell, int leastHalfSquare)
{
    std::uint32_t const bAndSquare = colors.bAndSquare(cell);
    constexpr int unit = FixedColors::squareUnit;
    constexpr std::uint32_t weight = 0x10000u - unit;
    int const halfSquare = static_cast<std::int16_t>(bAndSquare >> 16) * unit;
    return {static_cast<std::int32_t>(colors.lightnessAndA(cell)),
            static_cast<std::int32_t>(weight << 16 | (bAndSquare & 0xffff)), leastHalfSquare - halfSquare - unit - 1};
}

bool arePartners(PatchColors const& colors, int cell, int other, float key)
{
    int const row = colors.getRowLength();
    return areFurther(colors.at(other), colors.at(cell - row), key) &&
           areFurther(colors.at(other), colors.at(cell + row), key) &&
           areFurther(colors.at(cell), colors.at(other - row), key) &&
           areFurther(colors.at(cell), colors.at(other + row), key);
}

int findOneByOne(PatchColors const& colors, int cell, float key)
{
    for (int other = 0; other < colors.getCells(); ++other)
        if (arePartners(colors, cell, other, key))
            return other;
    return -1;
}

} // namespace

PartnerFinder::PartnerFinder(int width) : findCandidates(candidateSearchOf(width)) {}

bool PartnerFinder::hasWidth(int width)
{
    return width == 1 || candidateSearchOf(width);
}

int PartnerFinder::widest()
{
    int width = FixedColors::count;
    while (!hasWidth(width))
        width /= 2;
    return width;
}

int PartnerFinder::find(PatchColors const& colors, int cell, float key)
{
    if (!findCandidates || !colors.areFixed())
        return findOneByOne(colors, cell, key);
    farCells.resize(static_cast<std::size_t>((colors.getCells() + colors.getRowLength()) / FixedColors::count));
    int const row = colors.getRowLength();
    // In a large chart these colours are not in the cache. They are needed only when a candidate is found.
    for (int const needed : {cell - row, cell, cell + row})
        __builtin_prefetch(&colors.at(needed));
    int const leastHalfSquare = leastHalfSquareOf(key);
    WantedSwap const swap{distantColor(colors, cell, leastHalfSquare),
                          distantColor(colors, cell - row, leastHalfSquare),
                          distantColor(colors, cell + row, leastHalfSquare)};
    FixedCells const cells{colors.getFixed(), colors.getCells() / FixedColors::count, row / FixedColors::count};
    for (int block = 0; block < cells.count; ++block) {
        Candidates candidates = findCandidates(cells, swap, farCells.data(), block);
        block = candidates.block;
        for (; candidates.bits != 0; candidates.bits &= candidates.bits - 1) {
            int const other = block * FixedColors::count + std::countr_zero(candidates.bits);
            if (arePartners(colors, cell, other, key))
                return other;
        }
    }
    return -1;
}
