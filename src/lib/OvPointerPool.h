// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "OvArray.h"
#include "OvError.h"

/// Hands out objects of one block made at once, so that making each costs no allocation.
///
/// The pool owns its objects: they live until the next `init` and as long as the pool or a copy of it. Copies share
/// the objects by reference count; each copy counts for itself what it has handed out.
template <typename T>
class PointerPool
{
public:
    /// Makes `count` default objects, all of them free, and lets go of the earlier ones. A count that memory cannot
    /// hold leaves the pool empty.
    void init(unsigned long long count);

    /// A free object, the last of the block first; it is not handed out again before the next `init`. When none is
    /// free, reports "Pool is empty!" and gives a spare object that belongs to no pool: it is made afresh at each such
    /// call, and shared by all of them.
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
    objects.init(0); // first, so that there are never two blocks
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
