// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "CellHeap.h"
#include "OrderTask.h"
#include "PartnerFinder.h"
#include "PatchColors.h"

#include <cstdint>
#include <vector>

/// A fast local search. It makes neighbours along the scan differ more, one swap at a time.
class OrderSearch
{
public:
    explicit OrderSearch(OrderTask const& task);

    /// Swaps patches until no swap helps. Each round takes the patch with the smallest difference to a neighbour along
    /// the scan. It swaps this patch with the first partner, in the order of the cells, for which all four new pairs
    /// differ by more than that difference and by 5 or more in lightness.
    ///
    /// \return the smallest squared delta E along the scan, paper included; 0 when no patch takes part
    float run();

    /// The index in the task of the patch that is now at a place of the grid.
    int getPatchAt(IntPos position) const { return patchAt[static_cast<std::size_t>(colors.cellAt(position))]; }

    /// The position in the heap of the patch at a place of the grid; 0 when the patch does not take part.
    unsigned long long getHeapPosition(IntPos position) const { return heap.getPosition(colors.cellAt(position)); }

private:
    // The bits of a squared delta E. It is never negative, so its bits compare like the number itself, and faster.
    using KeyBits = CellHeap::Key;

    void renewDifferenceBelow(int cell);
    KeyBits keyAt(int cell) const;
    void swapPatches(int cell, int other);
    void renewKey(int cell);
    void renewKeysAround(int cell, bool beside);

    IntSize grid;
    PatchColors colors;
    PartnerFinder partners;
    int rowLength;
    std::vector<KeyBits> differencesAbove;
    std::vector<int> patchAt;
    CellHeap heap;
};
