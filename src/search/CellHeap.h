// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

/// The cells of a grid by their keys, the smallest on top. Every cell comes to the position to which a MinBackHeap
/// brings it, but sooner: a record is one word, one that is not there has one that stands for it, and the way down from
/// the top, which the search takes two times a round, has no branch to foretell.
class CellHeap
{
public:
    /// Below the largest number.
    using Key = std::uint32_t;

    /// Reports "Heap size is zero." when no cell can be in the heap.
    ///
    /// \param cells     how many there are, counted from 0
    /// \param capacity  how many of them can be in the heap at most
    CellHeap(int cells, int capacity);

    /// Puts a cell in that is not there yet, after all of an equal key on its way to the top.
    void insert(int cell, Key key);

    bool isEmpty() const { return size == 0; }

    /// The cell of the smallest key, and the key; the heap is not empty.
    int getTop() const { return cellOf(records[1]); }
    Key getTopKey() const { return keyOf(records[1]); }

    /// Where a cell is, from 1 on; 0 when it is not in the heap.
    std::uint32_t getPosition(int cell) const { return positions[static_cast<std::uint32_t>(cell)]; }

    /// Gives a cell another key, and so another position, if it is in the heap. An equal key changes nothing.
    void setKey(int cell, Key key);

    /// Exchanges the positions and keys of two cells, be they in the heap or not.
    void swap(int cell, int other);

private:
    // The cell, and below it the key, so that both move in one go.
    using Record = std::uint64_t;

    static Record recordOf(Key key, int cell) { return static_cast<Record>(cell) << 32 | key; }
    static Key keyOf(Record record) { return static_cast<Key>(record); }
    static int cellOf(Record record) { return static_cast<int>(record >> 32); }

    // Whether the right one of two children is the smaller one; of equals it is.
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

    // As many as the levels could hold if all were full, and two children for the lowest. Where there is no record, one
    // of the largest key stands for it, and before the top one of the smallest: neither child nor parent has to be
    // asked whether it is there. What stands for a record belongs to a cell past the last.
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
    // Which way the key has changed does not matter where the record can stay, and it mostly can.
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
    // A cell that is not in the heap writes to the record before the top.
    records[position] = recordOf(keyOf(records[position]), cell);
    records[otherPosition] = recordOf(keyOf(records[otherPosition]), other);
}

// Moves a hole towards the top, to below the first parent whose key is not greater than the record's, and puts the
// record there.
inline void CellHeap::rise(Record record, std::size_t position)
{
    do {
        put(records[position / 2], position);
        position /= 2;
    } while (keyOf(record) < keyOf(records[position / 2]));
    put(record, position);
}

// Moves a hole towards the leaves, to above the first children of which neither key is smaller than the record's, and
// puts the record there.
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
