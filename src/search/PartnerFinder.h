// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "CandidateKernel.h"
#include "PatchColors.h"

#include <cstdint>
#include <vector>

/// Finds patches that can change places. What it finds is the same on every processor.
class PartnerFinder
{
public:
    /// \param patchColors  those of the chart, which may change between two searches; they outlive the scan
    explicit PartnerFinder(PatchColors const& patchColors) : PartnerFinder(patchColors, widest()) {}

    /// The same with instructions that look at so many colours at once.
    PartnerFinder(PatchColors const& patchColors, int width);

    /// Whether this processor, and this build, have instructions that look at so many colours at once: 16, 8, 4 or 1.
    static bool hasWidth(int width);

    /// Finds the first cell whose patch can change places with the one at a cell: all four new pairs along the scan
    /// differ by more than the key, a squared delta E from 0 to 100,000, and by 5 or more in lightness.
    ///
    /// \return the other cell, -1 where there is none
    int find(int cell, float key);

private:
    static int widest();

    int findOneByOne(int cell, float key) const;
    bool arePartners(int cell, int other, float key) const;

    PatchColors const& colors;
    CandidateSearch findCandidates;
    std::vector<std::uint16_t> farCells;
};
