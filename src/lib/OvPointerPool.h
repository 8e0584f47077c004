// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "OvArray.h"
#include "OvError.h"

/// Hands out objects of one block. The whole block is allocated at once, so that a single object costs no allocation.
///
/// The pool owns its objects. They live until the next `init`, or until the pool and all its copies are gone. Copies
/// share the objects by reference count, but each copy has its own count of free objects.
template <typename T>
class PointerPool
{
public:
    /// Frees the earlier objects and makes `count` default ones, all of them free. When memory runs out, the pool is
    /// empty.
    void init(unsigned long long count);

    /// A free object, the last one of the block first. It is not handed out again before the next `init`. When none is
    /// free, reports "Pool is empty!" and returns a spare object that belongs to no pool. All such calls share the
    /// spare object, and each call resets it.
    T* suck();

    /// How many objects are still free.
    unsigned long long getFreeCount() const { return freeCount; }

    /// All objects of the block, handed out or not, in the order of the block.
    Array<T>& getObjects() { return objects; }

private:
    Array<T> objects;
    unsigned long long freeCount = 0;
};

template <typename T>
void PointerPool<T>::init(unsigned long long count)
{
    objects.init(0); // frees the old block before the new one is made
    objects.init(count);
    freeCount = objects.getCount();
}

template <typename T>
T* PointerPool<T>::suck()
{
    if (freeCount == 0) {
        OvError("Pool is empty!");
        static T spare;
        spare = T();
        return &spare;
    }
    --freeCount;
    return &objects[freeCount];
}
