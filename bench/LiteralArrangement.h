// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartLayout.h"

/// The arrangement as one would write it down first: an object for each entry, a pointer for each of its gaps, a look
/// at every entry in every round. It gives the same chart as ChartLayout, whose speed is measured against it.
class LiteralArrangement
{
public:
    /// \param laidOut  a chart with pages, for an instrument that scans along y; its entries are copied
    explicit LiteralArrangement(ChartLayout const& laidOut);
    LiteralArrangement(LiteralArrangement const&) = delete;
    LiteralArrangement& operator=(LiteralArrangement const&) = delete;

    /// As ChartLayout::fillPatches.
    float fillPatches(int seed);

    /// The chart with this arrangement of the copied entries.
    ChartLayout const& getChart() const { return chart; }

    /// The copied entries.
    Array<ColorEntry> const& getEntries() const { return entries; }

private:
    void place();
    bool isVisible(IntPos position) const;
    void shuffle(int seed);
    void renewGaps();
    void fillHeap();
    ColorEntry* findPartner(ColorEntry const* worst) const;
    void swap(ColorEntry* worst, ColorEntry* partner);
    void renewKeysAround(ColorEntry* entry);
    void renewKey(ColorEntry* entry);

    Array<ColorEntry> entries;
    ChartLayout chart;
    Array<ColorEntry*>& patches;
    PointerPool<ColorEntry> entryPool;
    PointerPool<ColorGap> gapPool;
    MinBackHeap<ColorEntry*, float> heap;
};
