// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ScanSearch.h"

#include "ColorEntry.h"
#include "PartnerScan.h"

#include <bit>
#include <cstdlib>
#include <numeric>
#include <utility>

namespace
{

Lab labOf(ColorEntry const& entry)
{
    float const* lab = entry.getLab();
    return {{lab[0], lab[1], lab[2]}};
}

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

} // namespace

ScanSearch::ScanSearch(Array<ColorEntry*> const& patches, IntSize grid)
    : columns(grid.width), cells(grid.width * grid.height), colors(grid, labOf(ColorEntry::whitePatch)),
      isArranged(at(cells)), patchAt(at(cells)), heapPositions(at(cells))
{
    for (int cell = 0; cell < cells; ++cell) {
        ColorEntry const& entry = *patches[cell];
        colors.set(cell, labOf(entry));
        isArranged[at(cell)] = entry.getStatus() == Data || entry.getStatus() == Filler;
    }
    std::iota(patchAt.begin(), patchAt.end(), 0);
    cellOf = patchAt;
}

ScanSearch::KeyBits ScanSearch::keyAt(int cell) const
{
    float const* patch = colors.at(cell).values;
    float key = ColorEntry::furthestKey;
    for (int const neighbour : {cell - columns, cell + columns}) {
        float const difference = ColorEntry::computeSqDe(patch, colors.at(neighbour).values);
        if (difference < key)
            key = difference;
    }
    return std::bit_cast<KeyBits>(key);
}

void ScanSearch::swapPatches(int cell, int other)
{
    colors.swap(cell, other);
    std::swap(patchAt[at(cell)], patchAt[at(other)]);
    cellOf[at(patchAt[at(cell)])] = cell;
    cellOf[at(patchAt[at(other)])] = other;
}

void ScanSearch::renewKey(int cell)
{
    std::size_t const patch = at(patchAt[at(cell)]);
    if (isArranged[patch])
        heap.updateKey(heapPositions[patch], keyAt(cell));
}

// The order decides which of two equal keys comes to the top, and so the result: above, right, below, left, itself.
// A patch beside the cell has the same neighbours along the scan as before, unless it belongs to the other cell of the
// swap.
void ScanSearch::renewKeysAround(int cell, bool beside)
{
    int const column = cell % columns;
    if (cell >= columns)
        renewKey(cell - columns);
    if (beside && column + 1 < columns)
        renewKey(cell + 1);
    if (cell + columns < cells)
        renewKey(cell + columns);
    if (beside && column > 0)
        renewKey(cell - 1);
    renewKey(cell);
}

float ScanSearch::run()
{
    heap.init(static_cast<unsigned long long>(cells));
    for (int cell = 0; cell < cells; ++cell)
        if (isArranged[at(cell)])
            heap.insert(keyAt(cell), cell, &heapPositions[at(cell)]);

    while (true) {
        auto const top = heap.getTop();
        float const key = std::bit_cast<float>(top.key);
        // A worst patch that far from its neighbours would pass every test against itself: nothing is left to search.
        if (heap.getSize() == 0 || !(key < ColorEntry::furthestKey))
            return key;
        int const worst = cellOf[at(top.value)];
        int const partner = findPartner(colors, worst, key);
        if (partner < 0)
            return key;
        swapPatches(worst, partner);
        int const distance = std::abs(worst - partner);
        bool const beside = distance == 1 || std::abs(distance - columns) == 1;
        renewKeysAround(partner, beside);
        renewKeysAround(worst, beside);
    }
}
