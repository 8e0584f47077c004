// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColorGap.h"

#include <algorithm>

namespace
{

float const* labOf(ColorEntry const* side)
{
    return side ? side->getLab() : ColorEntry::whitePatch.getLab();
}

} // namespace

void ColorGap::compute()
{
    squaredDeltaE = ColorEntry::computeSqDe(labOf(first), labOf(second));
}

void ColorGap::computeOutColor(ColorSpace colorSpace)
{
    float const meanLightness = (labOf(first)[0] + labOf(second)[0]) * 0.5f;
    bool const isLight = meanLightness >= 50.0f;
    if (colorSpace == CMYK) {
        std::fill_n(outColor, 3, 0.0);
        outColor[3] = static_cast<double>(isLight);
    } else {
        std::fill_n(outColor, 3, static_cast<double>(!isLight));
    }
}

void ColorEntry::renewGaps(PointerPool<ColorGap>* pool, Neighbors const& neighbors)
{
    renewGap<Above>(pool, neighbors.above);
    renewGap<Right>(pool, neighbors.right);
    renewGap<Below>(pool, neighbors.below);
    renewGap<Left>(pool, neighbors.left);
}

template <RelativePosition side>
void ColorEntry::renewGap(PointerPool<ColorGap>* pool, ColorEntry* neighbor)
{
    constexpr bool isAlongScan = side == Above || side == Below;
    constexpr bool isSecond = side == Above || side == Left;
    constexpr int seenFromNeighbor = (side + 2) % 4;

    ColorGap* gap = neighbor ? neighbor->gaps[seenFromNeighbor] : nullptr;
    if (!gap)
        gap = pool->suck();
    if (!neighbor)
        neighbor = &whitePatch;
    gap->setSides(isSecond ? neighbor : this, isSecond ? this : neighbor);
    gap->compute();
    gap->setAcrossScan(isAlongScan);
    gaps[side] = gap;
}

void ColorEntry::recomputeDe(bool along, bool across)
{
    if (!isArranged())
        return;
    key = furthestKey;
    for (RelativePosition position : {Above, Right, Below, Left}) {
        bool const counts = position == Above || position == Below ? along : across;
        if (counts && gaps[position] && gaps[position]->getSqDe() < key)
            key = gaps[position]->getSqDe();
    }
}

ColorGap* ColorEntry::getGap(RelativePosition position) const
{
    return gaps[position >= Above && position <= Left ? position : Above];
}

ColorEntry* ColorEntry::getNeighbor(RelativePosition position) const
{
    ColorGap const* gap = getGap(position);
    if (!gap)
        return &whitePatch;
    bool const isSecond = position == Right || position == Below;
    return isSecond ? gap->getSecond() : gap->getFirst();
}
