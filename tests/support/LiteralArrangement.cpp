// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/LiteralArrangement.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace
{

using Entry = LiteralArrangement::Entry;

constexpr std::array sides{Above, Right, Below, Left};

float squaredDeltaE(Entry const& p, Entry const& q)
{
    float const lightness = (p.lab[0] - q.lab[0]) * (p.lab[0] - q.lab[0]);
    float const redness = (p.lab[1] - q.lab[1]) * (p.lab[1] - q.lab[1]);
    float const yellowness = (p.lab[2] - q.lab[2]) * (p.lab[2] - q.lab[2]);
    return lightness + redness + yellowness;
}

float squaredLightnessDifference(Entry const& p, Entry const& q)
{
    return (p.lab[0] - q.lab[0]) * (p.lab[0] - q.lab[0]);
}

} // namespace

Entry* Entry::neighbour(RelativePosition side) const
{
    Gap const& gap = *gaps[side];
    return side == Above || side == Left ? gap.first : gap.second;
}

LiteralArrangement::LiteralArrangement(Array<ColorEntry> const& input, IntSize patchGrid, ColorSpace space)
    : grid(patchGrid), colorSpace(space)
{
    ColorEntry::getWhite(white.lab.data());
    for (unsigned long long i = 0; i < input.getCount(); ++i) {
        Entry entry;
        entry.source = static_cast<int>(i);
        entry.status = input[i].getStatus();
        std::copy_n(input[i].getLab(), 3, entry.lab.begin());
        data.push_back(entry);
    }
}

float LiteralArrangement::fillPatches(int seed, std::function<bool(IntPos)> const& isVisible)
{
    place(isVisible);
    shuffle(seed);

    gaps.assign(static_cast<std::size_t>((grid.height + 1) * grid.width + (grid.width + 1) * grid.height), Gap());
    gapPool.clear();
    for (Gap& gap : gaps)
        gapPool.push_back(&gap);
    freeGaps = gapPool.size();
    for (int x = grid.width - 1; x >= 0; --x)
        for (int y = grid.height - 1; y >= 0; --y) {
            renewGaps(x, y);
            recompute(*patches[cell(x, y)]);
        }

    heap.assign(1, Record());
    for (Entry* const entry : patches)
        if (entry->status != Hidden && entry->status != Invalid)
            insert(entry);

    Entry* worst = heap[1].entry;
    swaps = 0;
    while (heap[1].key < 100000.0F) {
        auto const accepted = std::find_if(patches.begin(), patches.end(),
                                           [&](Entry const* candidate) { return isAccepted(*worst, *candidate); });
        if (accepted == patches.end())
            break;
        swap(*worst, **accepted);
        ++swaps;
        worst = heap[1].entry;
    }

    for (Gap& gap : gaps)
        computeOutColor(gap);
    return std::sqrt(worst->key);
}

LiteralArrangement::Entry* LiteralArrangement::entryAt(int x, int y) const
{
    bool const inside = x >= 0 && x < grid.width && y >= 0 && y < grid.height;
    return inside ? patches[cell(x, y)] : nullptr;
}

LiteralArrangement::Entry* LiteralArrangement::newWhite(EntryStatus status)
{
    Entry& entry = whites[--freeWhites];
    entry.status = status;
    entry.lab = white.lab;
    return &entry;
}

void LiteralArrangement::place(std::function<bool(IntPos)> const& isVisible)
{
    patches.assign(static_cast<std::size_t>(grid.width * grid.height), nullptr);
    whites.assign(patches.size() - data.size(), Entry());
    freeWhites = whites.size();
    std::size_t placed = 0;
    for (int x = grid.width - 1; x >= 0; --x)
        for (int y = grid.height - 1; y >= 0; --y) {
            Entry*& patch = patches[cell(x, y)];
            if (!isVisible({x, y}))
                patch = newWhite(Hidden);
            else if (placed < data.size())
                patch = &data[placed++];
            else
                patch = newWhite(Filler);
            patch->gaps.fill(nullptr);
        }
}

void LiteralArrangement::shuffle(int seed)
{
    srand(static_cast<unsigned>(seed));
    std::size_t const n = patches.size();
    for (std::size_t i = 0; i < n; ++i) {
        double const drawn = static_cast<double>(n) * rand() / 2147483647.0;
        std::swap(patches[i], patches[std::min(static_cast<std::size_t>(drawn), n - 1)]);
    }
    for (std::size_t i = 0; i < n; ++i)
        patches[i]->index = static_cast<int>(i);
}

void LiteralArrangement::renewGaps(int x, int y)
{
    Entry* const entry = entryAt(x, y);
    attach(entry, Above, entryAt(x, y - 1), Below);
    attach(entry, Right, entryAt(x + 1, y), Left);
    attach(entry, Below, entryAt(x, y + 1), Above);
    attach(entry, Left, entryAt(x - 1, y), Right);
}

void LiteralArrangement::attach(Entry* entry, RelativePosition side, Entry* neighbour, RelativePosition neighboursSide)
{
    Gap* const gap = neighbour && neighbour->gaps[neighboursSide] ? neighbour->gaps[neighboursSide] : newGap();
    Entry* const other = neighbour ? neighbour : &white;
    bool const isSecond = side == Above || side == Left;
    gap->first = isSecond ? other : entry;
    gap->second = isSecond ? entry : other;
    compute(*gap);
    gap->acrossScan = side == Above || side == Below;
    entry->gaps[side] = gap;
}

void LiteralArrangement::compute(Gap& gap)
{
    gap.squaredDeltaE = squaredDeltaE(*gap.first, *gap.second);
}

void LiteralArrangement::recompute(Entry& entry)
{
    if (entry.status != Data && entry.status != Filler)
        return;
    entry.key = 100000.0F;
    for (RelativePosition const side : {Above, Below})
        if (entry.gaps[side]->squaredDeltaE < entry.key)
            entry.key = entry.gaps[side]->squaredDeltaE;
}

bool LiteralArrangement::isAccepted(Entry const& worst, Entry const& candidate) const
{
    auto const isFar = [k = heap[1].key](Entry const& p, Entry const& q) {
        return squaredDeltaE(p, q) > k && squaredLightnessDifference(p, q) >= 25.0F;
    };
    return isFar(worst, *candidate.neighbour(Above)) && isFar(worst, *candidate.neighbour(Below)) &&
           isFar(candidate, *worst.neighbour(Above)) && isFar(candidate, *worst.neighbour(Below));
}

void LiteralArrangement::swap(Entry& worst, Entry& candidate)
{
    exchange(worst, candidate);
    std::swap(patches[static_cast<std::size_t>(worst.index)], patches[static_cast<std::size_t>(candidate.index)]);
    for (Entry* const entry : {&worst, &candidate}) {
        for (RelativePosition const side : sides)
            renew(entry->neighbour(side));
        renew(entry);
    }
}

void LiteralArrangement::exchange(Entry& worst, Entry& candidate)
{
    std::swap(worst.index, candidate.index);
    std::swap(worst.gaps, candidate.gaps);
    for (Entry* const entry : {&worst, &candidate}) {
        entry->gaps[Above]->second = entry;
        entry->gaps[Right]->first = entry;
        entry->gaps[Below]->first = entry;
        entry->gaps[Left]->second = entry;
    }
    for (Entry* const entry : {&worst, &candidate})
        for (Gap* const gap : entry->gaps)
            compute(*gap);
}

void LiteralArrangement::renew(Entry* entry)
{
    // Paper has neither a key nor gaps. Its status excludes it.
    recompute(*entry);
    if (entry->heapPosition != 0)
        updateKey(entry->heapPosition, entry->key);
}

void LiteralArrangement::computeOutColor(Gap& gap) const
{
    float const lightness = (gap.first->lab[0] + gap.second->lab[0]) * 0.5F;
    bool const isLight = lightness >= 50.0F;
    if (colorSpace == CMYK)
        gap.outColor = {0, 0, 0, isLight ? 1.0 : 0.0};
    else
        std::fill_n(gap.outColor.begin(), 3, isLight ? 0.0 : 1.0);
}

void LiteralArrangement::insert(Entry* entry)
{
    heap.emplace_back();
    put({entry->key, entry}, towardsTop(entry->key, heap.size() - 1));
}

void LiteralArrangement::updateKey(unsigned long long position, float key)
{
    Record record = heap[position];
    if (key == record.key)
        return;
    std::size_t const place = key < record.key ? towardsTop(key, position) : towardsLeaves(key, position);
    record.key = key;
    put(record, place);
}

std::size_t LiteralArrangement::towardsTop(float key, std::size_t position)
{
    while (position > 1 && heap[position / 2].key > key) {
        put(heap[position / 2], position);
        position /= 2;
    }
    return position;
}

std::size_t LiteralArrangement::towardsLeaves(float key, std::size_t position)
{
    std::size_t const size = heap.size() - 1;
    while (2 * position <= size) {
        std::size_t child = 2 * position;
        if (child + 1 <= size && heap[child + 1].key <= heap[child].key)
            child = child + 1;
        if (key <= heap[child].key)
            break;
        put(heap[child], position);
        position = child;
    }
    return position;
}

void LiteralArrangement::put(Record const& record, std::size_t position)
{
    heap[position] = record;
    heap[position].entry->heapPosition = position;
}
