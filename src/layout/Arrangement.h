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

/// Which entry stands on each cell of a chart's patch grid. Owns the white patches and the gaps, and keeps the input's
/// entries alive. An entry knows its gaps and its place in one arrangement only: entries that stand in another
/// arrangement are copied, and the arrangement then owns the copies. When it ends, the entries forget it.
class Arrangement
{
public:
    Arrangement() = default;
    Arrangement(Arrangement const&) = delete;
    Arrangement& operator=(Arrangement const&) = delete;
    ~Arrangement() { clear(); }

    /// Leaves the grid empty.
    void clear();

    /// Makes a grid without entries, for up to as many white patches as are needed besides the data.
    void init(IntSize newGrid, Array<ColorEntry> const& data);

    /// Puts an entry on every cell, from the last column's last row. The data go to the visible cells first. White
    /// patches fill the others.
    ///
    /// \param visible  which cells a sheet shows, row after row
    /// \return how many data entries are placed
    int place(std::vector<bool> const& visible, ColorSpace colorSpace);

    /// Shuffles the entries as placed, by rand() with a seed, and searches from there an order in which neighbours
    /// along the scan differ. Gives the entries their places, gaps and keys. A seed that gives the order that the last
    /// search started from changes nothing: the search would find the same again.
    ///
    /// \param columnsPerSheet  columns of the grid that a sheet shows
    /// \return the smallest squared delta E along the scan
    float order(unsigned seed, ColorSpace colorSpace, OrderMethod const& method = {}, int columnsPerSheet = 0);

    /// What no order of the patches exceeds, squared delta E, and whether the bound is looser than it could be. Only
    /// the search for the best order computes it; otherwise it is 0.
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
    void link();

    IntSize grid{0, 0};
    Array<ColorEntry> entries;
    PointerPool<ColorEntry> whites;
    Array<ColorEntry*> placed;  // before the shuffle
    Array<ColorEntry*> start;   // where the last search started; empty before the first
    Array<ColorEntry*> patches; // as they stand on the grid
    PointerPool<ColorGap> gaps;
    float smallest = 0;
    float bound = 0;
    bool hasLooseBound = false;
};
