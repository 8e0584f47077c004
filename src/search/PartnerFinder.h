// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "CandidateKernel.h"
#include "PatchColors.h"

#include <cstdint>
#include <vector>

/// Finds patches that can change places. The result is the same on every processor.
class PartnerFinder
{
public:
    /// Uses the widest instructions that the processor has.
    PartnerFinder() : PartnerFinder(widest()) {}

    /// Uses instructions that test `width` colours at once.
    explicit PartnerFinder(int width);

    /// Whether this processor and this build have instructions that test `width` colours at once: 16, 8, 4 or 1.
    static bool hasWidth(int width);

    /// Finds the first cell whose patch can change places with the patch at a cell. All four new pairs along the scan
    /// then differ by more than the key, and by 5 or more in lightness.
    ///
    /// \param key  squared delta E, 0 to 100,000
    /// \return the other cell; -1 where there is none
    int find(PatchColors const& colors, int cell, float key);

private:
    static int widest();

    CandidateSearch findCandidates;
    std::vector<std::uint16_t> farCells;
};
