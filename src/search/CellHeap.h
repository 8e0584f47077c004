// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

/// A heap of the cells of a grid by their keys, the smallest on top. Every cell gets the position that MinBackHeap
/// gives it, but faster: a record is one word, missing records have sentinels, and sifting down from the root is
/// branch-free. The search sifts down from the root twice a round.
class CellHeap
{
public:
    /// Less than the largest 32-bit number.
    using Key = std::uint32_t;

    /// Reports "Heap size is zero." for a capacity of 0.
    ///
    /// \param cells     the number of cells; the first is cell 0
    /// \param capacity  the most cells that can be in the heap
    CellHeap(int cells, int capacity);

    /// Inserts a cell that is not in the heap. It stays below cells with an equal key on its path to the root.
    void insert(int cell, Key key);

    bool isEmpty() const { return size == 0; }

    /// The cell with the smallest key, and the key. The heap must not be empty.
    int getTop() const { return cellOf(records[1]); }
    Key getTopKey() const { return keyOf(records[1]); }

    /// A cell's position, from 1; 0 when the cell is not in the heap.
    std::uint32_t getPosition(int cell) const { return positions[static_cast<std::uint32_t>(cell)]; }

    /// Changes a cell's key and moves the cell to its new position. Nothing happens when the cell is not in the heap.
    void setKey(int cell, Key key);

    /// Swaps two cells. Cells outside the heap are allowed.
    void swap(int cell, int other);

private:
    // The cell in the high half and the key in the low half: both move together.
    using Record = std::uint64_t;

    static Record recordOf(Key key, int cell) { return static_cast<Record>(cell) << 32 | key; }
    static Key keyOf(Record record) { return static_cast<Key>(record); }
    static int cellOf(Record record) { return static_cast<int>(record >> 32); }

    // Whether the right child is the smaller one. Of two equal children, the right one counts as smaller.
    std::size_t isRightSmaller(std::size_t left) const { return keyOf(records[left + 1]) <= keyOf(records[left]); }

    std::size_t smallerChild(std::size_t position) const
    {
        std::size_t const left = std::min(2 * position, records.size() - 2);
        return left + isRightSmaller(left);
    }

    void put(Record record, std::size_t position)
    {
        records[position] = record;
        positions[static_cast<std::uint32_t>(cellOf(record))] = static_cast<std::uint32_t>(position);
    }

    void rise(Record record, std::size_t position);
    void sink(Record record, std::size_t position);
    void sinkFromTop(Record record);

    // Room for full levels and for two children below the lowest. A missing record is a sentinel with the largest key;
    // slot 0 holds one with the smallest. So no test is needed whether a child or the parent is there. Sentinels belong
    // to a cell past the last.
    std::vector<Record> records;
    std::vector<std::uint32_t> positions;
    std::size_t size = 0;
};

inline void CellHeap::setKey(int cell, Key key)
{
    std::size_t const position = getPosition(cell);
    if (position == 0)
        return;
    Record const record = recordOf(key, cell);
    if (position == 1) {
        sinkFromTop(record);
        return;
    }
    // Mostly the record can stay where it is.
    records[position] = record;
    if (key < keyOf(records[position / 2]))
        rise(record, position);
    else if (keyOf(records[smallerChild(position)]) < key)
        sink(record, position);
}

inline void CellHeap::swap(int cell, int other)
{
    std::uint32_t& position = positions[static_cast<std::uint32_t>(cell)];
    std::uint32_t& otherPosition = positions[static_cast<std::uint32_t>(other)];
    std::swap(position, otherPosition);
    // A cell that is not in the heap writes to slot 0.
    records[position] = recordOf(keyOf(records[position]), cell);
    records[otherPosition] = recordOf(keyOf(records[otherPosition]), other);
}

// Moves a hole towards the root while the parent's key is greater than the record's, and puts the record there.
inline void CellHeap::rise(Record record, std::size_t position)
{
    do {
        put(records[position / 2], position);
        position /= 2;
    } while (keyOf(record) < keyOf(records[position / 2]));
    put(record, position);
}

// Moves a hole towards the leaves while the smaller child's key is smaller than the record's, and puts the record
// there.
inline void CellHeap::sink(Record record, std::size_t position)
{
    std::size_t child = smallerChild(position);
    do {
        put(records[child], position);
        position = child;
        child = smallerChild(position);
    } while (keyOf(records[child]) < keyOf(record));
    put(record, position);
}
