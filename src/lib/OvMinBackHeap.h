// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "OvArray.h"
#include "OvError.h"

#include <limits>

/// A binary min-heap of fixed capacity whose values know where they are.
///
/// Each record has a key, a value and a back pointer. Whenever a record lands at a position, the position is written
/// through its back pointer, so that the value's owner can change the key without searching. Positions count from 1,
/// the record with the smallest key; 0 means "not in the heap". Keys must be ordered: a not-a-number key is not.
///
/// Wrong use is reported on standard error and changes nothing.
template <typename Value, typename Key>
class MinBackHeap
{
public:
    /// What the heap holds at a position.
    struct Record
    {
        Key key{};
        Value value{};
        unsigned long long* backPointer = nullptr;
    };

    MinBackHeap() = default;

    // The back pointers tell positions in one heap.
    MinBackHeap(MinBackHeap const&) = delete;
    MinBackHeap& operator=(MinBackHeap const&) = delete;

    /// Makes room for `count` records and forgets the earlier ones, whose back pointers keep what they hold. Reports
    /// "Heap size is zero." for 0, and "Heap size is too big." for the largest number: that heap has no room. Nor has
    /// one that memory cannot hold.
    void init(unsigned long long count);

    /// Puts a record in, after all records of an equal key on its way to the top.
    ///
    /// \param backPointer  where to write the record's position, now and later; may be null, else outlives the heap
    ///
    /// Reports "Heap overflow." when the heap is full: the record is left out and its back pointer is not written.
    void insert(Key key, Value value, unsigned long long* backPointer);

    /// Gives the record at `position` another key, and so another position; an equal key changes nothing. Reports
    /// "Backpointer makes no sense." for a position past the size, and "Backpointer says that element is not part of
    /// the heap." for 0.
    void updateKey(unsigned long long position, Key key);

    /// Moves a hole at `position` towards the top, to where a record of `key` belongs: records of a strictly greater
    /// key move down past it. The hole may stand just after the last record; one further out is reported with
    /// "Backpointer makes no sense.".
    ///
    /// \return the hole's new position; it is the caller's to fill
    unsigned long long movedown(Key key, unsigned long long position);

    /// Moves a hole at `position` towards the leaves, to where a record of `key` belongs: the smaller child moves up
    /// past it while that child's key is strictly smaller; of two equal children the right one. Position 0 is reported
    /// with "Backpointer says that element is not part of the heap.".
    ///
    /// \return the hole's new position; it is the caller's to fill
    unsigned long long moveup(Key key, unsigned long long position);

    /// How many records the heap holds.
    unsigned long long getSize() const { return size; }

    /// How many records the heap can hold.
    unsigned long long getCapacity() const { return capacity; }

    /// The record at `position`. A position that the heap does not hold is reported as in updateKey and gives an empty
    /// record: a zero key and value.
    Record getRecord(unsigned long long position) const;

    /// The record of the smallest key. Reports "Heap is empty." when there is none and gives an empty record.
    Record getTop() const;

private:
    // Reports a position that holds no record.
    bool holds(unsigned long long position) const;

    void put(Record const& record, unsigned long long position);

    // The parent of position i sits at i / 2: slot 0 stays empty so that the top is 1 and 0 can mean "not in the heap".
    // One more slot lets the right child of the last record be looked at.
    Array<Record> storage;
    Record* records = nullptr;
    unsigned long long size = 0;
    unsigned long long capacity = 0;
};

template <typename Value, typename Key>
void MinBackHeap<Value, Key>::init(unsigned long long count)
{
    size = 0;
    capacity = 0;
    if (count == 0)
        OvError("Heap size is zero.");
    constexpr unsigned long long tooBig = std::numeric_limits<unsigned long long>::max();
    if (count == tooBig)
        OvError("Heap size is too big.");
    unsigned long long const length = count < tooBig - 1 ? count + 2 : 0;
    storage.init(length);
    if (storage.getCount() == 0)
        return;
    records = storage.begin();
    capacity = count;
}

template <typename Value, typename Key>
void MinBackHeap<Value, Key>::insert(Key key, Value value, unsigned long long* backPointer)
{
    if (size == capacity) {
        OvError("Heap overflow.");
        return;
    }
    put({key, value, backPointer}, movedown(key, size + 1));
    ++size;
}

template <typename Value, typename Key>
void MinBackHeap<Value, Key>::updateKey(unsigned long long position, Key key)
{
    if (!holds(position))
        return;
    Record const record = records[position];
    if (key < record.key)
        position = movedown(key, position);
    else if (record.key < key)
        position = moveup(key, position);
    else
        return;
    put({key, record.value, record.backPointer}, position);
}

template <typename Value, typename Key>
unsigned long long MinBackHeap<Value, Key>::movedown(Key key, unsigned long long position)
{
    if (position > capacity || position > size + 1) {
        OvError("Backpointer makes no sense.");
        return position;
    }
    while (position > 1 && key < records[position / 2].key) {
        put(records[position / 2], position);
        position /= 2;
    }
    return position;
}

template <typename Value, typename Key>
unsigned long long MinBackHeap<Value, Key>::moveup(Key key, unsigned long long position)
{
    if (position == 0) {
        OvError("Backpointer says that element is not part of the heap.");
        return position;
    }
    while (position <= size / 2) {
        unsigned long long child = 2 * position;
        // Added rather than branched on: which child is smaller cannot be foretold.
        child += static_cast<unsigned long long>((child < size) & (records[child + 1].key <= records[child].key));
        if (key <= records[child].key)
            break;
        put(records[child], position);
        position = child;
    }
    return position;
}

template <typename Value, typename Key>
typename MinBackHeap<Value, Key>::Record MinBackHeap<Value, Key>::getRecord(unsigned long long position) const
{
    return holds(position) ? records[position] : Record();
}

template <typename Value, typename Key>
typename MinBackHeap<Value, Key>::Record MinBackHeap<Value, Key>::getTop() const
{
    if (size == 0) {
        OvError("Heap is empty.");
        return Record();
    }
    return records[1];
}

template <typename Value, typename Key>
bool MinBackHeap<Value, Key>::holds(unsigned long long position) const
{
    if (position > size) {
        OvError("Backpointer makes no sense.");
        return false;
    }
    if (position == 0) {
        OvError("Backpointer says that element is not part of the heap.");
        return false;
    }
    return true;
}

template <typename Value, typename Key>
void MinBackHeap<Value, Key>::put(Record const& record, unsigned long long position)
{
    records[position] = record;
    if (record.backPointer)
        *record.backPointer = position;
}
