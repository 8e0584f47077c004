// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CandidateKernel.h"

#include <immintrin.h>

namespace
{

struct AVX2
{
    using Lanes = __m256i;
    static constexpr int width = 8;

    static Lanes load(std::uint32_t const* words) { return _mm256_load_si256(reinterpret_cast<Lanes const*>(words)); }
    static Lanes spread(std::int32_t value) { return _mm256_set1_epi32(value); }
    static Lanes addProducts(Lanes sum, Lanes a, Lanes b) { return _mm256_add_epi32(sum, _mm256_madd_epi16(a, b)); }
    static std::uint32_t negatives(Lanes lanes)
    {
        return static_cast<std::uint32_t>(_mm256_movemask_ps(_mm256_castsi256_ps(lanes)));
    }
};

} // namespace

Candidates findCandidates8(FixedCells const& cells, WantedSwap const& swap, std::uint16_t* farCells, int from)
{
    return CandidateKernel<AVX2>::find(cells, swap, farCells, from);
}
