// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ColorEntry.h"
#include "Geometry.h"

#include <array>
#include <functional>
#include <vector>

/// A reference arrangement, written step by step: an object for each entry, a pointer for each gap, and a pass over all
/// entries in every round. It is slow and independent of the program. Only the colours come from the program.
class LiteralArrangement
{
public:
    struct Gap;

    struct Entry
    {
        int source = -1; ///< number of the input entry, -1 for a white one
        int status = Hidden;
        std::array<float, 3> lab{};
        float key = 0;
        std::array<Gap*, 4> gaps{};
        int index = 0;
        unsigned long long heapPosition = 0;

        /// The entry across the gap on that side.
        Entry* neighbour(RelativePosition side) const;
    };

    struct Gap
    {
        std::array<double, 4> outColor{};
        bool acrossScan = false;
        Entry* first = nullptr;
        Entry* second = nullptr;
        float squaredDeltaE = 0;
    };

    /// \param input      the entries in the order of placement; their colours are copied
    /// \param patchGrid  columns and rows, at least as many cells as entries
    LiteralArrangement(Array<ColorEntry> const& input, IntSize patchGrid, ColorSpace space);

    /// Places the entries on the cells that are visible, shuffles and improves.
    ///
    /// \return the smallest delta E along the scan
    float fillPatches(int seed, std::function<bool(IntPos)> const& isVisible);

    /// The entry on a cell of the grid.
    Entry const& at(int x, int y) const { return *patches[cell(x, y)]; }

    /// Bare paper beyond the grid's edge.
    Entry const& paper() const { return white; }

    /// How many swaps were made.
    int getSwaps() const { return swaps; }

private:
    struct Record
    {
        float key;
        Entry* entry;
    };

    std::size_t cell(int x, int y) const { return static_cast<std::size_t>(grid.width * y + x); }
    Entry* entryAt(int x, int y) const;
    Gap* newGap() { return gapPool[--freeGaps]; }
    Entry* newWhite(EntryStatus status);

    void place(std::function<bool(IntPos)> const& isVisible);
    void shuffle(int seed);
    void renewGaps(int x, int y);
    void attach(Entry* entry, RelativePosition side, Entry* neighbour, RelativePosition neighboursSide);
    static void compute(Gap& gap);
    static void recompute(Entry& entry);
    bool isAccepted(Entry const& worst, Entry const& candidate) const;
    void swap(Entry& worst, Entry& candidate);
    static void exchange(Entry& worst, Entry& candidate);
    void renew(Entry* entry);
    void computeOutColor(Gap& gap) const;

    void insert(Entry* entry);
    void updateKey(unsigned long long position, float key);
    std::size_t towardsTop(float key, std::size_t position);
    std::size_t towardsLeaves(float key, std::size_t position);
    void put(Record const& record, std::size_t position);

    IntSize grid;
    ColorSpace colorSpace;
    Entry white;
    std::vector<Entry> data;
    std::vector<Entry> whites;
    std::size_t freeWhites = 0;
    std::vector<Entry*> patches;
    std::vector<Gap> gaps;
    std::vector<Gap*> gapPool;
    std::size_t freeGaps = 0;
    std::vector<Record> heap;
    int swaps = 0;
};
