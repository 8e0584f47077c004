// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PatchColors.h"

#include <cstdint>

// A first look at the candidates for a swap, for sources that are each compiled for another instruction set. Nothing
// here but what bears an instruction set in its name: of an inline function that they share, the linker could keep the
// one that cannot run everywhere.

/// Which lightness difference lets the instrument find the edge, whatever the difference in hue and chroma.
constexpr int leastLightnessDifference = 5;

/// From which colour a candidate has to keep its distance. With c the candidate and x the colour, in fixed point,
/// (x * x - (c - x) * (c - x)) / 2 is c * x - c * c / 2, which grows as c comes nearer.
struct DistantColor
{
    std::int32_t lightnessAndA;
    /// b*, and what the candidate's half square counts for.
    std::int32_t bAndWeight;
    /// What candidates that are far enough stay below, negated.
    std::int32_t negatedLimit;
};

/// A swap looked for: the patch, and those that the other one comes between.
struct WantedSwap
{
    DistantColor patch;
    DistantColor above;
    DistantColor below;
};

/// The cells to look at, in blocks of FixedColors.
struct FixedCells
{
    FixedColors const* blocks;
    int count;
    /// How many make a row: the neighbours above and below stand so many before and after.
    int inARow;
};

/// Cells of a block that may be fit for the swap, a bit each, the first one's the lowest.
struct Candidates
{
    int block;
    std::uint32_t bits;
};

/// Looks from a block on for cells that may be fit. None that is fit is missed; those found are to be looked at
/// exactly.
///
/// \param farCells  which cells' colours may be far enough from the patch, a bit each, block after block: what is asked
///                  for a candidate's neighbour above is asked for another's below. Left from one look to the next;
///                  room for all blocks and those of a row more.
/// \return the first block that has some; no bits and the number of blocks where there is none
using CandidateSearch = Candidates (*)(FixedCells const& cells, WantedSwap const& swap, std::uint16_t* farCells,
                                       int from);

// An instruction set offers numbers of 32 bits side by side (Lanes, as many as its width), loads words of pairs,
// spreads one over all lanes, adds the products of two words' pairs to a sum, and tells which lanes are negative.
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

    // Few blocks come as far as this, but among them are many that only this keeps from an exact look.
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

        // Negative for the cells whose lightness may differ enough. Rounding takes up to a unit off a difference.
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
