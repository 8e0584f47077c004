// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LiteralArrangement.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace
{

constexpr RelativePosition sides[] = {Above, Right, Below, Left};

constexpr float furthestKey = 100000.0f;
constexpr float leastSquaredLightnessDifference = 25.0f;

// A chart's patches and an entry's gaps are nobody's to change from outside, but here they must be. In an explicit
// instantiation the language lets private members be named.
template <auto patches, auto gaps>
struct Opened
{
    friend Array<ColorEntry*>& patchesOf(ChartLayout& chart) { return chart.*patches; }
    friend ColorGap** gapsOf(ColorEntry* entry) { return entry->*gaps; }
};
Array<ColorEntry*>& patchesOf(ChartLayout& chart);
ColorGap** gapsOf(ColorEntry* entry);
template struct Opened<&ChartLayout::patches, &ColorEntry::gaps>;

bool isFurtherThan(float key, ColorEntry const* patch, ColorEntry const* neighbour)
{
    return ColorEntry::computeSqDe(patch->getLab(), neighbour->getLab()) > key &&
           ColorEntry::computeSqDLStar(patch->getLab(), neighbour->getLab()) >= leastSquaredLightnessDifference;
}

} // namespace

LiteralArrangement::LiteralArrangement(ChartLayout const& laidOut)
    : entries(*laidOut.getOriginalEntries()), chart(laidOut), patches(patchesOf(chart))
{
    entries.decouple();
}

float LiteralArrangement::fillPatches(int seed)
{
    place();
    shuffle(seed);
    renewGaps();
    fillHeap();
    ColorEntry* worst = heap.getTop().value;
    while (worst->getKey() < furthestKey) {
        ColorEntry* const partner = findPartner(worst);
        if (!partner)
            break;
        swap(worst, partner);
        renewKeysAround(worst);
        renewKeysAround(partner);
        worst = heap.getTop().value;
    }
    for (ColorGap& gap : gapPool.getObjects())
        gap.computeOutColor(chart.getColorSpace());
    return std::sqrt(worst->getKey());
}

void LiteralArrangement::place()
{
    unsigned long long const cells =
        static_cast<unsigned long long>(chart.getPatchesX()) * static_cast<unsigned long long>(chart.getPatchesY());
    patches.init(cells);
    entryPool.init(cells - entries.getCount());
    unsigned long long placed = 0;
    for (int x = chart.getPatchesX() - 1; x >= 0; --x)
        for (int y = chart.getPatchesY() - 1; y >= 0; --y) {
            bool const isShown = isVisible({x, y});
            ColorEntry* entry = nullptr;
            if (isShown && placed < entries.getCount()) {
                entry = &entries[placed++];
            } else {
                entry = entryPool.suck();
                entry->initAsWhite(chart.getColorSpace(), !isShown);
            }
            entry->initGaps();
            patches[chart.getPatchesX() * y + x] = entry;
        }
}

bool LiteralArrangement::isVisible(IntPos position) const
{
    Array<ChartPage> const& pages = *chart.getChartPages();
    return std::any_of(pages.begin(), pages.end(), [position](ChartPage const& p) { return p.isVisible(position); });
}

void LiteralArrangement::shuffle(int seed)
{
    srand(static_cast<unsigned>(seed));
    patches.shuffle();
    int index = 0;
    for (ColorEntry* const entry : patches)
        entry->setIndex(index++);
}

void LiteralArrangement::renewGaps()
{
    auto const columns = static_cast<unsigned long long>(chart.getPatchesX());
    auto const rows = static_cast<unsigned long long>(chart.getPatchesY());
    gapPool.init((rows + 1) * columns + (columns + 1) * rows);
    for (int x = chart.getPatchesX() - 1; x >= 0; --x)
        for (int y = chart.getPatchesY() - 1; y >= 0; --y) {
            ColorEntry* const entry = chart.getColorEntry({x, y});
            entry->renewGaps(&gapPool, {x, y}, &chart);
            entry->recomputeDe(true, false);
        }
}

void LiteralArrangement::fillHeap()
{
    heap.init(patches.getCount());
    for (ColorEntry* const entry : patches)
        if (entry->getStatus() != Hidden && entry->getStatus() != Invalid)
            heap.insert(entry->getKey(), entry, entry->getHeapBackPointer());
}

// The first entry with which the worst one can change places; null when there is none.
ColorEntry* LiteralArrangement::findPartner(ColorEntry const* worst) const
{
    float const key = worst->getKey();
    for (ColorEntry* const candidate : patches)
        if (isFurtherThan(key, worst, candidate->getNeighbor(Above)) &&
            isFurtherThan(key, worst, candidate->getNeighbor(Below)) &&
            isFurtherThan(key, candidate, worst->getNeighbor(Above)) &&
            isFurtherThan(key, candidate, worst->getNeighbor(Below)))
            return candidate;
    return nullptr;
}

void LiteralArrangement::swap(ColorEntry* worst, ColorEntry* partner)
{
    int const place = worst->getIndex();
    worst->setIndex(partner->getIndex());
    partner->setIndex(place);
    patches[worst->getIndex()] = worst;
    patches[partner->getIndex()] = partner;
    std::swap_ranges(gapsOf(worst), gapsOf(worst) + 4, gapsOf(partner));
    for (ColorEntry* const entry : {worst, partner}) {
        entry->getGap(Above)->setSecond(entry);
        entry->getGap(Right)->setFirst(entry);
        entry->getGap(Below)->setFirst(entry);
        entry->getGap(Left)->setSecond(entry);
    }
    for (ColorEntry* const entry : {worst, partner})
        for (RelativePosition const side : sides)
            entry->getGap(side)->compute();
}

void LiteralArrangement::renewKeysAround(ColorEntry* entry)
{
    for (RelativePosition const side : sides)
        renewKey(entry->getNeighbor(side));
    renewKey(entry);
}

void LiteralArrangement::renewKey(ColorEntry* entry)
{
    entry->recomputeDe(true, false);
    entry->reenterHeap(&heap);
}
