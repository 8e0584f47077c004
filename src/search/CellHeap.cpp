// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CellHeap.h"

#include "lib/OvFile.h"

#include <bit>
#include <limits>

CellHeap::CellHeap(int cells, int capacity)
    : records(2 * std::bit_floor(static_cast<std::size_t>(std::max(capacity, 1))) + 2,
              recordOf(std::numeric_limits<Key>::max(), cells)),
      positions(static_cast<std::size_t>(cells) + 1)
{
    if (capacity == 0)
        OvError("Heap size is zero.");
    records[0] = recordOf(0, cells);
}

void CellHeap::insert(int cell, Key key)
{
    ++size;
    if (key < keyOf(records[size / 2]))
        rise(recordOf(key, cell), size);
    else
        put(recordOf(key, cell), size);
}

// A record from the root mostly sinks to the leaves, and no branch prediction knows which child is smaller. So this
// code has no branch: at each level the smaller of the record and the child moves up and the greater goes on. A child
// that goes on returns to its own place in the next step. The path of smaller children does not depend on the record.
// It is computed two levels at a time.
void CellHeap::sinkFromTop(Record record)
{
    auto const moveUpSmaller = [&](std::size_t position, Record child) {
        Record const isChild = Record{0} - static_cast<Record>(keyOf(child) < keyOf(record));
        Record const exchanged = (record ^ child) & isChild;
        put(record ^ exchanged, position);
        record = child ^ exchanged;
    };

    auto levelsLeft = std::bit_width(size) - 1;
    std::size_t position = 1;
    if (levelsLeft % 2 != 0) {
        std::size_t const child = 2 + isRightSmaller(2);
        moveUpSmaller(position, records[child]);
        position = child;
    }
    for (levelsLeft /= 2; levelsLeft > 0; --levelsLeft) {
        std::size_t const right = isRightSmaller(2 * position);
        std::size_t const leftsRight = isRightSmaller(4 * position);
        std::size_t const rightsRight = isRightSmaller(4 * position + 2);
        std::size_t const child = 2 * position + right;
        std::size_t const grandchild = 2 * child + (leftsRight ^ ((leftsRight ^ rightsRight) & (0 - right)));
        Record const first = records[child];
        Record const second = records[grandchild];
        moveUpSmaller(position, first);
        moveUpSmaller(child, second);
        position = grandchild;
    }
    put(record, position);
}
