// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "CellHeap.h"
#include "PartnerFinder.h"
#include "PatchColors.h"
#include "lib/Geometry.h"
#include "lib/OvArray.h"

#include <cstdint>
#include <vector>

class ColorEntry;

/// Local search for an order of patches in which those that follow each other along the scan differ as much as it can
/// arrange. It works on the colours alone.
class OrderSearch
{
public:
    /// \param patches  one entry for each grid cell, row after row; none is null
    /// \param grid     columns and rows
    OrderSearch(Array<ColorEntry*> const& patches, IntSize grid);

    /// Swaps the worst patch for the first one, in the order of the cells, with which both come to differ more than
    /// it did from their neighbours along the scan and by 5 or more in lightness, until there is none.
    ///
    /// \return the smallest squared delta E along the scan, paper edges included; 0 when no patch takes part
    float run();

    /// Which patch of the array given is now in a place of the grid.
    int getPatchAt(IntPos position) const { return patchAt[static_cast<std::size_t>(colors.cellAt(position))]; }

    /// The number in the heap of the patch in a place of the grid, 0 when it does not take part.
    unsigned long long getHeapPosition(IntPos position) const { return heap.getPosition(colors.cellAt(position)); }

private:
    // The bits of a squared delta E that is at most the furthest key: none is negative, so bits are in the same order
    // as what they stand for, and compared faster.
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
