// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PatchColors.h"

#include <cstdint>

// The first, fast test of the candidates for a swap. Several sources include this file, and each is compiled for
// another instruction set. Every function here is a template on the instruction set. Of a plain inline function, the
// linker would keep only one copy, perhaps one that does not run on every processor.

/// The lightness difference at which an instrument finds the edge between two patches, whatever their hue and chroma.
constexpr int leastLightnessDifference = 5;

/// A colour that a candidate must be far from. Let c be the candidate and x this colour, in fixed point. The test
/// computes c * x - c * c / 2, which is (x * x - (c - x) * (c - x)) / 2. It grows as c comes nearer.
struct DistantColor
{
    std::int32_t lightnessAndA;
    /// b*, and the factor of the candidate's half square.
    std::int32_t bAndWeight;
    /// The negated limit: a candidate that is far enough stays below the limit.
    std::int32_t negatedLimit;
};

/// The patch to be swapped, and its neighbours along the scan. The candidate comes between these neighbours.
struct WantedSwap
{
    DistantColor patch;
    DistantColor above;
    DistantColor below;
};

/// The cells to test, in blocks of FixedColors.
struct FixedCells
{
    FixedColors const* blocks;
    int count;
    /// Blocks in a row of the grid. The neighbours above and below are this many blocks before and after.
    int inARow;
};

/// Cells of a block that pass the test. Each cell has a bit; the first cell has the lowest.
struct Candidates
{
    int block;
    std::uint32_t bits;
};

/// Tests cells from a block on. It misses no cell that is fit for the swap. A cell that passes needs an exact test.
///
/// \param farCells  which cells may be far enough from the patch: a bit for each cell, block after block. A cell's bit
///                  is computed once and used twice: for the neighbour above and for the neighbour below. Keep the
///                  bits from one call to the next. There is room for all blocks and one more row.
/// \return the first block with cells that pass; no bits and the number of blocks where there is none
using CandidateSearch = Candidates (*)(FixedCells const& cells, WantedSwap const& swap, std::uint16_t* farCells,
                                       int from);

/// The tests for 8 and for 16 cells at once, for processors with AVX2 and with AVX512 and its dot products.
Candidates findCandidates8(FixedCells const& cells, WantedSwap const& swap, std::uint16_t* farCells, int from);
Candidates findCandidates16(FixedCells const& cells, WantedSwap const& swap, std::uint16_t* farCells, int from);

// An instruction set has Lanes: `width` 32-bit numbers side by side. It loads words that hold two 16-bit numbers each,
// spreads one word over all lanes, multiplies the numbers of two words in pairs and adds the products to a sum, and
// tells which lanes are negative.
template <typename InstructionSet>
class CandidateKernel
{
public:
    static Candidates find(FixedCells const& cells, WantedSwap const& swap, std::uint16_t* farCells, int from)
    {
        Probe const patch(swap.patch);
        Probe const above(swap.above);
        Probe const below(swap.below);
        int const row = cells.inARow;
        auto const isFarFromPatch = [&](Colors const& colors) { return patch.isFar(colors); };
        auto const isFarFromBoth = [&](Colors const& colors) { return above.isFar(colors) & below.isFar(colors); };
        std::uint16_t const farPaper = bitsOf(cells.blocks - row, isFarFromPatch);
        for (int i = from; i < cells.count; ++i) {
            FixedColors const* const block = cells.blocks + i;
            std::uint16_t farAbove = farPaper;
            if (i < row)
                farCells[i] = bitsOf(block, isFarFromPatch);
            else
                farAbove = farCells[i - row];
            std::uint16_t const farBelow = bitsOf(block + row, isFarFromPatch);
            farCells[i + row] = farBelow;
            std::uint32_t bits = std::uint32_t{bitsOf(block, isFarFromBoth)} & farAbove & farBelow;
            if (bits == 0)
                continue;
            bits &= differInLightness(block, row, swap);
            if (bits != 0)
                return {i, bits};
        }
        return {cells.count, 0};
    }

private:
    using Lanes = typename InstructionSet::Lanes;

    struct Colors
    {
        Lanes lightnessAndA;
        Lanes bAndSquare;
    };

    template <typename Test>
    static std::uint16_t bitsOf(FixedColors const* block, Test const& test)
    {
        std::uint32_t bits = 0;
        for (int lane = 0; lane < FixedColors::count; lane += InstructionSet::width) {
            Colors const colors{InstructionSet::load(block->lightnessAndA + lane),
                                InstructionSet::load(block->bAndSquare + lane)};
            bits |= InstructionSet::negatives(test(colors)) << lane;
        }
        return static_cast<std::uint16_t>(bits);
    }

    // Few blocks get here. This test saves many of them the exact test.
    static std::uint32_t differInLightness(FixedColors const* block, int row, WantedSwap const& swap)
    {
        LightnessProbe const patch(swap.patch);
        LightnessProbe const above(swap.above);
        LightnessProbe const below(swap.below);
        auto const fromPatch = [&](Colors const& colors) { return patch.differs(colors); };
        auto const fromBoth = [&](Colors const& colors) { return above.differs(colors) & below.differs(colors); };
        return std::uint32_t{bitsOf(block - row, fromPatch)} & bitsOf(block + row, fromPatch) & bitsOf(block, fromBoth);
    }

    struct LightnessProbe
    {
        explicit LightnessProbe(DistantColor const& color) : lightness(static_cast<std::int16_t>(color.lightnessAndA))
        {
        }

        // Negative for the cells whose lightness may differ enough. Rounding can make a difference one unit smaller.
        Lanes differs(Colors const& colors) const
        {
            constexpr int tooSmall = leastLightnessDifference * FixedColors::unit - 2;
            Lanes const plus = InstructionSet::spread(1);
            Lanes const minus = InstructionSet::spread(0xffff);
            return InstructionSet::addProducts(InstructionSet::spread(tooSmall + lightness), colors.lightnessAndA,
                                               minus) |
                   InstructionSet::addProducts(InstructionSet::spread(tooSmall - lightness), colors.lightnessAndA,
                                               plus);
        }

        int lightness;
    };

    struct Probe
    {
        explicit Probe(DistantColor const& color)
            : lightnessAndA(InstructionSet::spread(color.lightnessAndA)),
              bAndWeight(InstructionSet::spread(color.bAndWeight)),
              negatedLimit(InstructionSet::spread(color.negatedLimit))
        {
        }

        // Negative for the cells whose colours may be far enough.
        Lanes isFar(Colors const& colors) const
        {
            Lanes const sum = InstructionSet::addProducts(negatedLimit, colors.lightnessAndA, lightnessAndA);
            return InstructionSet::addProducts(sum, colors.bAndSquare, bAndWeight);
        }

        Lanes lightnessAndA;
        Lanes bAndWeight;
        Lanes negatedLimit;
    };
};
