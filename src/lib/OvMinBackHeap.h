// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "OvArray.h"
#include "OvError.h"

#include <limits>

/// A binary min-heap of fixed capacity that tells each value its position.
///
/// Each record has a key, a value and a back pointer. Whenever a record moves, its new position is written through its
/// back pointer, so that the owner of the value can change the key without searching. Positions count from 1, which has
/// the smallest key; 0 means "not in the heap". A key must not be not-a-number.
///
/// Wrong use is reported on standard error and changes nothing.
template <typename Value, typename Key>
class MinBackHeap
{
public:
    /// An entry of the heap.
    struct Record
    {
        Key key{};
        Value value{};
        unsigned long long* backPointer = nullptr;
    };

    MinBackHeap() = default;

    // Not copyable: back pointers give positions in one heap only.
    MinBackHeap(MinBackHeap const&) = delete;
    MinBackHeap& operator=(MinBackHeap const&) = delete;

    /// Empties the heap and allocates room for `count` records. Back pointers of earlier records keep their values.
    /// Reports "Heap size is zero." for 0 and "Heap size is too big." for the largest number. In both cases, and when
    /// memory runs out, the heap has no room.
    void init(unsigned long long count);

    /// Inserts a record. On its way to the root it does not pass records with an equal key.
    ///
    /// \param backPointer  where the record's position is written, now and later; null, or valid as long as the heap
    ///
    /// When the heap is full, reports "Heap overflow.", does not insert the record and does not write to its back
    /// pointer.
    void insert(Key key, Value value, unsigned long long* backPointer);

    /// Changes the key of the record at `position` and moves the record. An equal key changes nothing. Reports
    /// "Backpointer makes no sense." for a position past the size, and "Backpointer says that element is not part of
    /// the heap." for 0.
    void updateKey(unsigned long long position, Key key);

    /// Moves a hole at `position` towards the root, to where a record with `key` belongs. Records with a strictly
    /// greater key move down past it. The hole may be just after the last record; one further out is reported with
    /// "Backpointer makes no sense.".
    ///
    /// \return the hole's new position; the caller fills it
    unsigned long long movedown(Key key, unsigned long long position);

    /// Moves a hole at `position` towards the leaves, to where a record with `key` belongs. The child with the smaller
    /// key moves up as long as its key is strictly smaller than `key`; of two equal children, the right one moves.
    /// Position 0 is reported with "Backpointer says that element is not part of the heap.".
    ///
    /// \return the hole's new position; the caller fills it
    unsigned long long moveup(Key key, unsigned long long position);

    /// How many records the heap holds.
    unsigned long long getSize() const { return size; }

    /// How many records the heap can hold.
    unsigned long long getCapacity() const { return capacity; }

    /// The record at `position`. A position outside the heap is reported as in updateKey and gives an empty record,
    /// with zero key and value.
    Record getRecord(unsigned long long position) const;

    /// The record with the smallest key. An empty heap reports "Heap is empty." and gives an empty record.
    Record getTop() const;

private:
    // Whether there is a record at `position`. Reports a position without one.
    bool holds(unsigned long long position) const;

    void put(Record const& record, unsigned long long position);

    // The parent of position i sits at i / 2. Slot 0 stays empty, so that the root is at 1 and 0 can mean "not in the
    // heap". One extra slot at the end makes it safe to read the right child of the last parent.
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
        // Branch-free: branch prediction cannot tell which child is smaller.
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
