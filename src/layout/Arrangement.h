// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ColorGap.h"
#include "OrderMethod.h"
#include "color/ColorEntry.h"
#include "lib/ColorSpace.h"
#include "lib/Geometry.h"
#include "lib/OvArray.h"
#include "lib/OvPointerPool.h"
#include "search/OrderTask.h"

#include <vector>

/// Assigns an entry to each cell of a chart's patch grid. It owns the white patches and the gaps, and keeps the input's
/// entries alive. An entry has gaps and a place in one arrangement only. Entries that stand in another arrangement are
/// copied, and this arrangement owns the copies. When it ends, it unlinks its entries.
class Arrangement
{
public:
    Arrangement() = default;
    Arrangement(Arrangement const&) = delete;
    Arrangement& operator=(Arrangement const&) = delete;
    ~Arrangement() { clear(); }

    /// Leaves the grid empty.
    void clear();

    /// Makes a grid without entries, with room for the white patches that fill the cells besides the data.
    void init(IntSize newGrid, Array<ColorEntry> const& data);

    /// Puts an entry on every cell. It starts at the last column's last row. Data entries go to the visible cells
    /// first. White patches fill the other cells.
    ///
    /// \param visible  which cells a sheet shows, row after row
    /// \return how many data entries are placed
    int place(std::vector<bool> const& visible, ColorSpace colorSpace);

    /// Shuffles the placed entries with rand() and a seed. Only the given order is not shuffled. Then it searches for
    /// an order in which neighbours along the scan differ, and gives the entries their places, gaps and keys. Nothing
    /// changes when the shuffle gives the same start as last time: the search would find the same order.
    ///
    /// \param columnsPerSheet  columns of the grid that a sheet shows
    /// \return the smallest squared delta E along the scan
    float order(unsigned seed, ColorSpace colorSpace, OrderMethod const& method = {}, int columnsPerSheet = 0);

    /// No order of the patches has a larger smallest squared delta E along the scan than this bound. The second
    /// function tells whether the bound is looser than it could be. Only the search for the best order computes the
    /// bound. Otherwise it is 0.
    float getBound() const { return bound; }
    bool isBoundLoose() const { return hasLooseBound; }

    /// The entry on a cell; null outside the grid and where no entry was placed.
    ColorEntry* at(IntPos position) const
    {
        bool const isInGrid = position.x >= 0 && position.x < grid.width && position.y >= 0 && position.y < grid.height;
        return isInGrid ? patches[position.y * grid.width + position.x] : nullptr;
    }

private:
    OrderTask taskFrom(Array<ColorEntry*> const& order) const;
    void searchFast(OrderTask const& task);
    void searchBest(OrderTask const& task, OrderMethod const& method, int columnsPerSheet);
    void keepOrder();
    float smallestKey() const;
    void link();

    IntSize grid{0, 0};
    Array<ColorEntry> entries;
    PointerPool<ColorEntry> whites;
    Array<ColorEntry*> placed;  // before the shuffle
    Array<ColorEntry*> start;   // where the last search started; empty before the first
    Array<ColorEntry*> patches; // in their order on the grid
    PointerPool<ColorGap> gaps;
    float smallest = 0;
    float bound = 0;
    bool hasLooseBound = false;
};
