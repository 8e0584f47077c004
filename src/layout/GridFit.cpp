// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "GridFit.h"

#include <algorithm>
#include <limits>

namespace
{

constexpr std::int64_t mostPatches = std::numeric_limits<std::int32_t>::max();

// The smallest count >= 1 that, times the factor, reaches n.
std::int64_t smallestCount(std::int64_t n, std::int64_t factor)
{
    return (n + factor - 1) / factor;
}

// Takes the excess length off a grid at once: the steps of shrunkForSpots would do so one by one. A grid at most half
// as wide as long loses rows first, until it is about twice as long as wide. Likewise a grid at most half as long as
// wide loses columns.
IntSize withoutExcessLength(IntSize largest, std::int64_t needed)
{
    auto const shorten = [needed](std::int32_t& length, std::int64_t breadth, std::int64_t end) {
        length =
            static_cast<std::int32_t>(std::min<std::int64_t>(length, std::max(end, smallestCount(needed, breadth))));
    };
    IntSize grid = largest;
    shorten(grid.height, largest.width, 2 * std::int64_t{largest.width} - 2);
    if (grid.height == largest.height)
        shorten(grid.width, largest.height, 2 * std::int64_t{largest.height} - 1);
    return grid;
}

} // namespace

std::int64_t capacity(IntSize grid, int pages)
{
    return std::int64_t{grid.width} * pages * grid.height;
}

bool hasRoom(IntSize grid)
{
    return grid.width > 0 && grid.height > 0 && capacity(grid, 1) <= mostPatches;
}

IntSize shrunkForScan(IntSize grid, std::int64_t n, int pages, ScanDirection direction)
{
    auto const shrink = [&](std::int32_t& length, std::int32_t otherLength) {
        std::int64_t const needed = smallestCount(n, std::int64_t{pages} * otherLength);
        length = static_cast<std::int32_t>(std::min<std::int64_t>(length, needed));
    };
    if (direction != alongX)
        shrink(grid.width, grid.height);
    if (direction == alongX || grid.width == 1)
        shrink(grid.height, grid.width);
    return grid;
}

// Every grid needs the same sheets: they always tile the instrument's whole reach.
IntSize shrunkForSpots(IntSize const largest, std::int64_t n, int pages)
{
    IntSize best = withoutExcessLength(largest, smallestCount(n, pages));
    for (bool improved = true; improved;) {
        IntSize const current = best;
        std::int64_t const bestCapacity = capacity(current, pages);
        std::int64_t winner = 0;
        improved = false;
        for (IntSize candidate :
             {IntSize{std::min(current.width + 1, largest.width), current.height - 1},
              IntSize{current.width - 1, std::min(current.height + 1, largest.height)},
              IntSize{current.width - 1, current.height}, IntSize{current.width, current.height - 1}}) {
            candidate = {std::max(candidate.width, 1), std::max(candidate.height, 1)};
            std::int64_t const held = capacity(candidate, pages);
            if (held >= n && held < bestCapacity && held > winner) {
                best = candidate;
                winner = held;
                improved = true;
            }
        }
    }
    return best;
}
