// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CandidateKernel.h"

#include <immintrin.h>

namespace
{

struct AVX512
{
    using Lanes = __m512i;
    static constexpr int width = 16;

    static Lanes load(std::uint32_t const* words) { return _mm512_load_si512(words); }
    static Lanes spread(std::int32_t value) { return _mm512_set1_epi32(value); }
    static Lanes addProducts(Lanes sum, Lanes a, Lanes b) { return _mm512_dpwssd_epi32(sum, a, b); }
    static std::uint32_t negatives(Lanes lanes) { return _mm512_movepi32_mask(lanes); }
};

} // namespace

Candidates findCandidates16(FixedCells const& cells, WantedSwap const& swap, std::uint16_t* farCells, int from)
{
    return CandidateKernel<AVX512>::find(cells, swap, farCells, from);
}
