// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Arrangement.h"

#include "search/BestOrder.h"
#include "search/OrderSearch.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

void Arrangement::clear()
{
    for (ColorEntry& entry : entries) {
        if (entry.getArrangement() != this)
            continue;
        entry.initGaps();
        *entry.getHeapBackPointer() = 0;
        entry.setArrangement(nullptr);
    }
    entries.init(0);
    placed.init(0);
    start.init(0);
    patches.init(0);
    grid = {0, 0};
}

void Arrangement::init(IntSize newGrid, Array<ColorEntry> const& data)
{
    // The next placement renews the links of the same entries, so they need not be removed first.
    bool const isSame = data.begin() == entries.begin() && data.getCount() == entries.getCount();
    if (!isSame) {
        clear();
        entries = data;
    }
    bool const isTaken = std::any_of(entries.begin(), entries.end(), [this](ColorEntry const& entry) {
        return entry.getArrangement() && entry.getArrangement() != this;
    });
    if (isTaken)
        entries.decouple();
    grid = newGrid;
    auto const cells = static_cast<std::uint64_t>(grid.width) * static_cast<std::uint64_t>(grid.height);
    placed.init(cells);
    start.init(0);
    patches = placed;
    whites.init(cells - std::min<std::uint64_t>(cells, entries.getCount()));
}

int Arrangement::place(std::vector<bool> const& visible, ColorSpace colorSpace)
{
    auto const count = static_cast<int>(entries.getCount());
    ColorEntry filler;
    ColorEntry hidden;
    filler.initAsWhite(colorSpace, false);
    hidden.initAsWhite(colorSpace, true);
    int done = 0;
    for (int x = grid.width - 1; x >= 0; --x) {
        for (int y = grid.height - 1; y >= 0; --y) {
            int const cell = grid.width * y + x;
            bool const isVisible = visible[static_cast<std::size_t>(cell)];
            ColorEntry* entry = nullptr;
            if (isVisible && done < count) {
                entry = &entries[done++];
                entry->setArrangement(this);
            } else {
                entry = whites.suck();
                *entry = isVisible ? filler : hidden;
            }
            entry->initGaps();
            placed[cell] = entry;
        }
    }
    for (int i = done; i < count; ++i)
        entries[i].initGaps();
    return done;
}

OrderTask Arrangement::taskFrom(Array<ColorEntry*> const& order) const
{
    OrderTask task{grid, ColorEntry::whitePatch.getColor(), {}, {}};
    task.colors.reserve(order.getCount());
    task.takesPart.reserve(order.getCount());
    for (ColorEntry const* entry : order) {
        task.colors.push_back(entry->getColor());
        task.takesPart.push_back(entry->isArranged());
    }
    return task;
}

float Arrangement::order(unsigned seed, ColorSpace colorSpace, OrderMethod const& method, int columnsPerSheet)
{
    Array<ColorEntry*> shuffled = placed;
    shuffled.decouple();
    if (method.kind != OrderMethod::given) {
        std::srand(seed);
        shuffled.shuffle();
    }
    if (std::equal(shuffled.begin(), shuffled.end(), start.begin(), start.end()))
        return smallest;
    for (ColorEntry* entry : start)
        entry->initGaps();
    start = shuffled;

    patches.init(start.getCount());
    if (method.kind == OrderMethod::best)
        searchBest(taskFrom(start), method, columnsPerSheet);
    else if (method.kind == OrderMethod::given)
        keepOrder();
    else
        searchFast(taskFrom(start));
    link();
    if (method.kind == OrderMethod::given)
        smallest = smallestKey();
    for (ColorGap& gap : gaps.getObjects())
        gap.computeOutColor(colorSpace);
    return smallest;
}

void Arrangement::searchFast(OrderTask const& task)
{
    OrderSearch search(task);
    smallest = search.run();
    bound = 0;
    for (int y = 0; y < grid.height; ++y)
        for (int x = 0; x < grid.width; ++x) {
            ColorEntry* const entry = start[search.getPatchAt({x, y})];
            patches[y * grid.width + x] = entry;
            *entry->getHeapBackPointer() = search.getHeapPosition({x, y});
        }
}

void Arrangement::searchBest(OrderTask const& task, OrderMethod const& method, int columnsPerSheet)
{
    BestOrder const order = findBestOrder(task, {method.effort, columnsPerSheet, method.progress});
    smallest = order.smallest;
    bound = order.bound;
    hasLooseBound = order.isBoundLoose;
    for (std::size_t cell = 0; cell < order.patchAt.size(); ++cell) {
        patches[cell] = start[order.patchAt[cell]];
        *patches[cell]->getHeapBackPointer() = 0;
    }
}

void Arrangement::keepOrder()
{
    bound = 0;
    std::copy(start.begin(), start.end(), patches.begin());
    for (ColorEntry* const entry : patches)
        *entry->getHeapBackPointer() = 0;
}

float Arrangement::smallestKey() const
{
    float key = ColorEntry::furthestKey;
    for (ColorEntry const* const entry : patches)
        if (entry->isArranged())
            key = std::min(key, entry->getKey());
    return key;
}

// Gives the entries their places, gaps and keys.
void Arrangement::link()
{
    auto const columns = static_cast<std::uint64_t>(grid.width);
    auto const rows = static_cast<std::uint64_t>(grid.height);
    gaps.init((rows + 1) * columns + (columns + 1) * rows);
    // The gap to the left is shared with a neighbour that lies anywhere in memory: prefetch it some rows ahead.
    constexpr int rowsAhead = 6;
    for (int x = grid.width - 1; x >= 0; --x)
        for (int y = grid.height - 1; y >= 0; --y) {
            ColorEntry::prefetch(at({x - 1, y - rowsAhead}));
            ColorEntry& entry = *at({x, y});
            entry.setIndex(y * grid.width + x);
            entry.renewGaps(&gaps, {at({x, y - 1}), at({x + 1, y}), at({x, y + 1}), at({x - 1, y})});
            entry.recomputeDe(true, false);
        }
}
