// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PatchColors.h"

#include <cstdint>

// A first look at the candidates for a swap, for sources that are each compiled for another instruction set. Nothing
// here but what bears an instruction set in its name: of an inline function that they share, the linker could keep the
// one that cannot run everywhere.

/// From which colours a candidate has to keep its distance. With c the candidate and x the colour, in fixed point,
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

/// Cells that may be fit for the swap: those from a cell on whose bits are set, the lowest first.
struct Candidates
{
    int cell;
    std::uint32_t bits;
};

/// Looks from a cell on for cells that may be fit. None that is fit is missed; those found are to be looked at exactly.
///
/// \return the first ones, no further apart than the instructions are wide; the number of cells where there are none
using CandidateScan = Candidates (*)(FixedColorRows const& rows, WantedSwap const& swap, int from);

// An instruction set offers numbers of 32 bits side by side (Lanes, as many as its width), loads words of pairs,
// spreads one over all lanes, adds the products of two words' pairs to a sum, and tells which lanes are negative.
template <typename InstructionSet>
struct CandidateScanWith
{
    using Lanes = typename InstructionSet::Lanes;

    struct Probe
    {
        explicit Probe(DistantColor const& color)
            : lightnessAndA(InstructionSet::spread(color.lightnessAndA)),
              bAndWeight(InstructionSet::spread(color.bAndWeight)),
              negatedLimit(InstructionSet::spread(color.negatedLimit))
        {
        }

        // Negative for the cells whose colours may be far enough.
        Lanes areFar(FixedColorRows const& rows, int cell) const
        {
            Lanes const sum = InstructionSet::addProducts(negatedLimit, InstructionSet::load(rows.lightnessAndA + cell),
                                                          lightnessAndA);
            return InstructionSet::addProducts(sum, InstructionSet::load(rows.bAndSquare + cell), bAndWeight);
        }

        Lanes lightnessAndA;
        Lanes bAndWeight;
        Lanes negatedLimit;
    };

    static Candidates find(FixedColorRows const& rows, WantedSwap const& swap, int from)
    {
        Probe const patch(swap.patch);
        Probe const above(swap.above);
        Probe const below(swap.below);
        for (int cell = from; cell < rows.cells; cell += InstructionSet::width) {
            Lanes const areFit = above.areFar(rows, cell) & below.areFar(rows, cell) &
                                 patch.areFar(rows, cell - rows.columns) & patch.areFar(rows, cell + rows.columns);
            if (std::uint32_t const bits = InstructionSet::negatives(areFit))
                return {cell, bits};
        }
        return {rows.cells, 0};
    }
};
