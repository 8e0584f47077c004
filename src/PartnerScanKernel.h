// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PatchColors.h"

#include <cstdint>

// A first look at the candidates for a swap, for sources that are each compiled for another instruction set. Nothing
// here but what bears an instruction set in its name: of an inline function that they share, the linker could keep the
// one that cannot run everywhere.

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
/// \param farCells  which cells' colours may be far enough from the patch, a bit each, block after block from the row
///                  of paper before the first row on: what is asked for a candidate's neighbour above is asked for
///                  another's below. Those of the paper are given; the others are left from one look to the next.
/// \return the first block that has some; no bits and the number of blocks where there is none
using CandidateScan = Candidates (*)(FixedCells const& cells, WantedSwap const& swap, std::uint16_t* farCells,
                                     int from);

// An instruction set offers numbers of 32 bits side by side (Lanes, as many as its width), loads words of pairs,
// spreads one over all lanes, adds the products of two words' pairs to a sum, and tells which lanes are negative.
template <typename InstructionSet>
class CandidateScanWith
{
public:
    static Candidates find(FixedCells const& cells, WantedSwap const& swap, std::uint16_t* farCells, int from)
    {
        Probe const patch(swap.patch);
        Probe const above(swap.above);
        Probe const below(swap.below);
        int const row = cells.inARow;
        for (int i = from; i < cells.count; ++i) {
            FixedColors const* const block = cells.blocks + i;
            if (i < row)
                farCells[row + i] = bitsOf(block, [&](Colors const& colors) { return patch.areFar(colors); });
            std::uint16_t const farBelow =
                bitsOf(block + row, [&](Colors const& colors) { return patch.areFar(colors); });
            farCells[row + i + row] = farBelow;
            std::uint32_t const bits =
                bitsOf(block, [&](Colors const& colors) { return above.areFar(colors) & below.areFar(colors); }) &
                farBelow & farCells[i];
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

    struct Probe
    {
        explicit Probe(DistantColor const& color)
            : lightnessAndA(InstructionSet::spread(color.lightnessAndA)),
              bAndWeight(InstructionSet::spread(color.bAndWeight)),
              negatedLimit(InstructionSet::spread(color.negatedLimit))
        {
        }

        // Negative for the cells whose colours may be far enough.
        Lanes areFar(Colors const& colors) const
        {
            Lanes const sum = InstructionSet::addProducts(negatedLimit, colors.lightnessAndA, lightnessAndA);
            return InstructionSet::addProducts(sum, colors.bAndSquare, bAndWeight);
        }

        Lanes lightnessAndA;
        Lanes bAndWeight;
        Lanes negatedLimit;
    };
};
