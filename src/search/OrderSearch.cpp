// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OrderSearch.h"

#include "lib/OvFile.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <utility>

namespace
{

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

} // namespace

OrderSearch::OrderSearch(OrderTask const& task)
    : grid(task.grid), colors(grid, task.paper), rowLength(colors.getRowLength()),
      differencesAbove(at(colors.getCells() + rowLength)), patchAt(at(colors.getCells())),
      heap(colors.getCells(), static_cast<int>(task.colors.size()))
{
    int patch = 0;
    for (int y = 0; y < grid.height; ++y)
        for (int x = 0; x < grid.width; ++x, ++patch) {
            int const cell = colors.cellAt({x, y});
            colors.set(cell, task.colors[at(patch)]);
            patchAt[at(cell)] = patch;
        }
    for (int cell = -rowLength; cell < colors.getCells(); ++cell)
        renewDifferenceBelow(cell);

    for (int y = 0; y < grid.height; ++y)
        for (int x = 0; x < grid.width; ++x) {
            int const cell = colors.cellAt({x, y});
            if (task.takesPart[at(patchAt[at(cell)])])
                heap.insert(cell, keyAt(cell));
        }
}

void OrderSearch::renewDifferenceBelow(int cell)
{
    float const difference = squaredDeltaE(colors.at(cell), colors.at(cell + rowLength));
    differencesAbove[at(cell + rowLength)] =
        std::bit_cast<KeyBits>(difference < furthestSquaredDeltaE ? difference : furthestSquaredDeltaE);
}

OrderSearch::KeyBits OrderSearch::keyAt(int cell) const
{
    return std::min(differencesAbove[at(cell)], differencesAbove[at(cell + rowLength)]);
}

void OrderSearch::swapPatches(int cell, int other)
{
    colors.swap(cell, other);
    std::swap(patchAt[at(cell)], patchAt[at(other)]);
    heap.swap(cell, other);
    for (int const changed : {cell, other}) {
        renewDifferenceBelow(changed - rowLength);
        renewDifferenceBelow(changed);
    }
}

void OrderSearch::renewKey(int cell)
{
    heap.setKey(cell, keyAt(cell));
}

// The order decides which of two equal keys comes to the top, and so the result: above, right, below, left, itself.
// A patch beside the cell has the same neighbours along the scan as before, unless it belongs to the other cell of the
// swap.
void OrderSearch::renewKeysAround(int cell, bool beside)
{
    if (cell >= rowLength)
        renewKey(cell - rowLength);
    if (beside && cell % rowLength + 1 < grid.width)
        renewKey(cell + 1);
    if (cell + rowLength < colors.getCells())
        renewKey(cell + rowLength);
    if (beside && cell % rowLength > 0)
        renewKey(cell - 1);
    renewKey(cell);
}

float OrderSearch::run()
{
    if (heap.isEmpty()) {
        OvError("Heap is empty.");
        return 0;
    }
    while (true) {
        auto const key = std::bit_cast<float>(heap.getTopKey());
        // A worst patch this far from its neighbours needs no partner. It would pass every test against itself.
        if (!(key < furthestSquaredDeltaE))
            return key;
        int const worst = heap.getTop();
        int const partner = partners.find(colors, worst, key);
        if (partner < 0)
            return key;
        swapPatches(worst, partner);
        int const distance = std::abs(worst - partner);
        bool const beside = distance == 1 || std::abs(distance - rowLength) == 1;
        renewKeysAround(partner, beside);
        renewKeysAround(worst, beside);
    }
}
