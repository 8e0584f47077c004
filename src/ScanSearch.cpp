// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ScanSearch.h"

#include "ColorEntry.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace
{

// The key of a patch without a nearer neighbour. A worst patch that far from its neighbours passes every test against
// itself, so there is nothing left to search.
constexpr float furthestKey = 100000.0f;

// A lightness difference of 5 lets the instrument find the edge, whatever the difference in hue and chroma.
constexpr float leastSquaredLightnessDifference = 25.0f;

} // namespace

ScanSearch::ScanSearch(Array<ColorEntry*> const& patches, IntSize grid)
    : columns(grid.width), cells(grid.width * grid.height)
{
    auto const labOf = [](ColorEntry const& entry) {
        float const* lab = entry.getLab();
        return Lab{{lab[0], lab[1], lab[2]}};
    };
    std::size_t const count = static_cast<std::size_t>(cells);
    colors.assign(count + 2 * static_cast<std::size_t>(columns), labOf(ColorEntry::whitePatch));
    isArranged.resize(count);
    for (int cell = 0; cell < cells; ++cell) {
        ColorEntry const& entry = *patches[cell];
        colors[static_cast<std::size_t>(cell + columns)] = labOf(entry);
        isArranged[static_cast<std::size_t>(cell)] = entry.getStatus() == Data || entry.getStatus() == Filler;
    }
    patchAt.resize(count);
    std::iota(patchAt.begin(), patchAt.end(), 0);
    cellOf = patchAt;
    heapPositions.assign(count, 0);
}

bool ScanSearch::isFurtherThan(float key, Lab const& patch, Lab const& neighbour)
{
    return ColorEntry::computeSqDe(patch.values, neighbour.values) > key &&
           ColorEntry::computeSqDLStar(patch.values, neighbour.values) >= leastSquaredLightnessDifference;
}

float ScanSearch::keyAt(int cell) const
{
    float key = furthestKey;
    for (Lab const* neighbour : {&colorAbove(cell), &colorBelow(cell)}) {
        float const difference = ColorEntry::computeSqDe(colorAt(cell).values, neighbour->values);
        if (difference < key)
            key = difference;
    }
    return key;
}

// The first cell whose patch can change places with the worst one; -1 when there is none.
int ScanSearch::findPartner(int worst, float key) const
{
    Lab const patch = colorAt(worst);
    Lab const above = colorAbove(worst);
    Lab const below = colorBelow(worst);
    for (int cell = 0; cell < cells; ++cell)
        if (isFurtherThan(key, patch, colorAbove(cell)) && isFurtherThan(key, patch, colorBelow(cell)) &&
            isFurtherThan(key, colorAt(cell), above) && isFurtherThan(key, colorAt(cell), below))
            return cell;
    return -1;
}

void ScanSearch::swapPatches(int cell, int other)
{
    auto const at = [](int i) { return static_cast<std::size_t>(i); };
    std::swap(colors[at(cell + columns)], colors[at(other + columns)]);
    std::swap(patchAt[at(cell)], patchAt[at(other)]);
    cellOf[at(patchAt[at(cell)])] = cell;
    cellOf[at(patchAt[at(other)])] = other;
}

void ScanSearch::renewKey(int cell)
{
    std::size_t const patch = static_cast<std::size_t>(patchAt[static_cast<std::size_t>(cell)]);
    if (isArranged[patch])
        heap.updateKey(heapPositions[patch], keyAt(cell));
}

// The order decides which of two equal keys comes to the top, and so the result: above, right, below, left, itself.
void ScanSearch::renewKeysAround(int cell)
{
    int const column = cell % columns;
    if (cell >= columns)
        renewKey(cell - columns);
    if (column + 1 < columns)
        renewKey(cell + 1);
    if (cell + columns < cells)
        renewKey(cell + columns);
    if (column > 0)
        renewKey(cell - 1);
    renewKey(cell);
}

float ScanSearch::run()
{
    heap.init(static_cast<unsigned long long>(cells));
    for (int cell = 0; cell < cells; ++cell)
        if (isArranged[static_cast<std::size_t>(cell)])
            heap.insert(keyAt(cell), cell, &heapPositions[static_cast<std::size_t>(cell)]);

    while (true) {
        auto const top = heap.getTop();
        if (heap.getSize() == 0 || !(top.key < furthestKey))
            return top.key;
        int const worst = cellOf[static_cast<std::size_t>(top.value)];
        int const partner = findPartner(worst, top.key);
        if (partner < 0)
            return top.key;
        swapPatches(worst, partner);
        renewKeysAround(partner);
        renewKeysAround(worst);
    }
}
