// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "OvError.h"

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <new>
#include <type_traits>
#include <utility>

/// Base of objects that are shared by counting references. A new object has one reference, that of its creator. The
/// count is not atomic: an object and all its sharers belong to one thread.
class MultiRefObject
{
public:
    MultiRefObject() = default;
    MultiRefObject(MultiRefObject const&) = delete;
    MultiRefObject& operator=(MultiRefObject const&) = delete;
    virtual ~MultiRefObject() = default;

    void addReference() { ++references; }

    /// Gives up one reference; the last one deletes the object.
    void release()
    {
        if (references-- == 1)
            delete this;
    }

    bool isShared() const { return references > 1; }

private:
    std::uint64_t references = 1;
};

/// An array whose copies share one storage block. Copying only adds a reference, and all copies see what is written
/// through one of them. An array can also be a view of a part of another's storage. `decouple` makes a private copy.
///
/// An empty array has no storage. When memory runs out, the array becomes empty.
template <typename T>
class Array
{
public:
    /// A block of elements. It is either owned (made by new[], freed by delete[]) or borrowed from a caller.
    class ArrayStorage : public MultiRefObject
    {
    public:
        ArrayStorage(T* block, unsigned long long size, bool owned) : elements(block), count(size), isOwned(owned) {}

        ~ArrayStorage() override
        {
            if (isOwned)
                delete[] elements;
        }

        T* const elements;
        unsigned long long const count;

    private:
        bool const isOwned;
    };

    Array() = default;
    explicit Array(unsigned long long size) { init(size); }

    Array(Array const& other) : storage(other.storage), data(other.data), count(other.count)
    {
        if (storage)
            storage->addReference();
    }

    Array(Array&& other) noexcept
        : storage(std::exchange(other.storage, nullptr)), data(std::exchange(other.data, nullptr)),
          count(std::exchange(other.count, 0))
    {
    }

    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): it works on a copy
    Array& operator=(Array const& other)
    {
        Array(other).swap(*this);
        return *this;
    }

    Array& operator=(Array&& other) noexcept
    {
        // cppcheck-suppress accessMoved; the new array is swapped, not `other`
        Array(std::move(other)).swap(*this);
        return *this;
    }

    ~Array()
    {
        if (storage)
            storage->release();
    }

    /// `size` elements in their default state.
    void init(unsigned long long size) { adopt(canHold(size) ? new (std::nothrow) T[size]() : nullptr, size, true); }

    /// Shares the storage of `other`.
    void init(Array const& other) { *this = other; }

    /// A view of `length` elements of `source` from `offset` on. A range past the end of `source` is reported and cut
    /// off.
    void init(Array const& source, unsigned long long offset, unsigned long long length)
    {
        if (offset > source.count || length > source.count - offset) {
            OvError("Array initialization out of bounds.");
            offset = std::min(offset, source.count);
            length = std::min(length, source.count - offset);
        }
        Array view;
        if (length > 0) {
            view = source;
            view.data += offset;
            view.count = length;
        }
        view.swap(*this);
    }

    /// A copy of the elements of both, one after the other.
    void init(Array const& first, Array const& second) { copy(first.data, first.count, second.data, second.count); }

    /// A copy of `first` with one more element.
    void init(Array const& first, T const& last) { copy(first.data, first.count, &last, 1); }

    /// A copy of a buffer. A null buffer is reported and gives an empty array.
    void init(T const* buffer, unsigned long long length)
    {
        if (!buffer)
            reportNullBuffer();
        copy(buffer, buffer ? length : 0, nullptr, 0);
    }

    /// A copy of two buffers, one after the other. A null buffer is reported and skipped.
    void init(T const* buffer1, unsigned long long length1, T const* buffer2, unsigned long long length2)
    {
        if (!buffer1)
            OvError("Array creation: Pointer to provided buffer 1 is NULL.");
        if (!buffer2)
            OvError("Array creation: Pointer to provided buffer 2 is NULL.");
        copy(buffer1, buffer1 ? length1 : 0, buffer2, buffer2 ? length2 : 0);
    }

    /// Uses the caller's buffer. With `takeOver`, the buffer must come from new[], and the last array that uses it
    /// frees it with delete[]. Without, the buffer must outlive all arrays that use it. A null buffer is reported and
    /// gives an empty array.
    void init(T* buffer, bool takeOver, unsigned long long length)
    {
        if (!buffer)
            reportNullBuffer();
        adopt(buffer, length, takeOver);
    }

    /// Copies the elements into a new storage block that no other array shares.
    void decouple() { copy(data, count, nullptr, 0); }

    unsigned long long getCount() const { return count; }

    /// The element at `index`. An index outside the array is reported; the returned element then belongs to no array
    /// and has its default value.
    template <std::integral Index>
    T& operator[](Index index)
    {
        // NOLINTNEXTLINE(bugprone-signed-char-misuse): a negative index is out of bounds
        return isWithin(index) ? data[static_cast<unsigned long long>(index)] : elementOfNoArray();
    }

    template <std::integral Index>
    T const& operator[](Index index) const
    {
        // NOLINTNEXTLINE(bugprone-signed-char-misuse): a negative index is out of bounds
        return isWithin(index) ? data[static_cast<unsigned long long>(index)] : elementOfNoArray();
    }

    T* begin() { return data; }
    T* end() { return data + count; }
    T const* begin() const { return data; }
    T const* end() const { return data + count; }

    /// Shuffles the elements with rand(). Each element in turn is swapped with one drawn from the whole array. The same
    /// seed gives the same order. Arrays that share the storage see the new order too.
    void shuffle()
    {
        for (unsigned long long i = 0; i < count; ++i) {
            auto const drawn = static_cast<unsigned long long>(static_cast<double>(count) * std::rand() / 2147483647.0);
            std::swap(data[i], data[std::min(drawn, count - 1)]);
        }
    }

protected:
    static bool canHold(unsigned long long size)
    {
        constexpr auto most = static_cast<unsigned long long>(std::numeric_limits<std::ptrdiff_t>::max());
        // NOLINTNEXTLINE(bugprone-sizeof-expression): the elements may be pointers
        return size > 0 && size <= most / sizeof(T);
    }

    void swap(Array& other) noexcept
    {
        swapStorage(other);
        std::swap(count, other.count);
    }

    // Const because callers see no change: `other` must hold equal elements.
    void swapStorage(Array const& other) const noexcept
    {
        std::swap(storage, other.storage);
        std::swap(data, other.data);
    }

    // Replaces the storage by a block of elements. Without a block, the array becomes empty.
    void adopt(T* block, unsigned long long size, bool owned)
    {
        Array fresh;
        if (block && size > 0)
            fresh.storage = new (std::nothrow) ArrayStorage(block, size, owned);
        if (fresh.storage) {
            fresh.data = block;
            fresh.count = size;
        } else if (owned)
            delete[] block;
        fresh.swap(*this);
    }

    // Replaces the storage by a copy of both buffers. They may lie in the old storage.
    void copy(T const* first, unsigned long long length1, T const* second, unsigned long long length2)
    {
        auto const size = length2 <= ~0ULL - length1 ? length1 + length2 : 0;
        T* const block = canHold(size) ? new (std::nothrow) T[size] : nullptr;
        if (block)
            std::copy_n(second, length2, std::copy_n(first, length1, block));
        adopt(block, size, true);
    }

    // How many elements the storage has after the last one of this array.
    unsigned long long countBehind() const
    {
        return storage ? static_cast<unsigned long long>(storage->elements + storage->count - data) - count : 0;
    }

    // Mutable so that a const string can move to a storage with an ending NUL.
    mutable ArrayStorage* storage = nullptr;
    mutable T* data = nullptr;
    unsigned long long count = 0;

private:
    template <std::integral Index>
    bool isWithin(Index index) const
    {
        if (static_cast<unsigned long long>(index) < count)
            return true;
        OvError("Array element out of bounds.");
        return false;
    }

    static T& elementOfNoArray()
    {
        static T element{};
        element = T();
        return element;
    }

    static void reportNullBuffer()
    {
        if constexpr (std::is_same_v<T, unsigned char>)
            OvError("Buffer given to array is NULL.\n");
        else
            OvError("Array creation: Pointer to provided buffer is NULL.");
    }
};

/// An array that can be appended to. Its storage doubles when it is full.
template <typename T>
class GrowingArray : public Array<T>
{
public:
    /// An empty array. The first `add` allocates `capacity` elements.
    explicit GrowingArray(unsigned long long capacity = 1) : firstCapacity(capacity) {}

    /// Empties the array and sets its first capacity.
    void init(unsigned long long capacity) { *this = GrowingArray(capacity); }

    /// How many elements fit before the storage grows.
    unsigned long long getCapacity() const { return this->storage ? this->count + this->countBehind() : firstCapacity; }

    /// Appends `value`. An array that shares its storage moves to a new one first, so that the others keep their
    /// elements. When memory runs out, the array stays as it is.
    void add(T value)
    {
        bool const isFull = this->countBehind() == 0;
        auto const needed = !this->storage ? std::max(firstCapacity, 1ULL) : getCapacity() * (isFull ? 2 : 1);
        if ((isFull || this->storage->isShared()) && !moveToStorage(needed))
            return;
        this->data[this->count] = std::move(value);
        ++this->count;
    }

private:
    // When memory runs out, the array stays as it is.
    bool moveToStorage(unsigned long long capacity)
    {
        GrowingArray moved(firstCapacity);
        moved.adopt(this->canHold(capacity) ? new (std::nothrow) T[capacity] : nullptr, capacity, true);
        if (!moved.storage)
            return false;
        if (this->storage && !this->storage->isShared())
            std::move(this->begin(), this->end(), moved.data);
        else
            std::copy(this->begin(), this->end(), moved.data);
        moved.count = this->count;
        this->swap(moved);
        return true;
    }

    unsigned long long firstCapacity;
};
