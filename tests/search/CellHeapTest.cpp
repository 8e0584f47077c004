// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CellHeap.h"

#include "lib/OvMinBackHeap.h"
#include "support/CapturedOutput.h"

#include <gtest/gtest.h>

#include <random>
#include <utility>
#include <vector>

namespace
{

using Positions = std::vector<unsigned long long>;

// A heap of the given keys, in this order from position 1 on.
CellHeap heapOf(std::vector<CellHeap::Key> const& keys)
{
    int const cells = static_cast<int>(keys.size());
    CellHeap heap(cells, cells);
    for (int cell = 0; cell < cells; ++cell)
        heap.insert(cell, keys[static_cast<std::size_t>(cell)]);
    return heap;
}

Positions positionsIn(CellHeap const& heap, int cells)
{
    Positions positions;
    for (int cell = 0; cell < cells; ++cell)
        positions.push_back(heap.getPosition(cell));
    return positions;
}

// The same cells in a heap with back-pointers. It holds patches, and the cells swap their patches.
class PatchHeap
{
public:
    PatchHeap(int cells, int capacity) : positions(static_cast<std::size_t>(cells)), patchAt(positions.size())
    {
        heap.init(static_cast<unsigned long long>(capacity));
        for (std::size_t cell = 0; cell < patchAt.size(); ++cell)
            patchAt[cell] = cell;
    }

    void insert(int cell, CellHeap::Key key) { heap.insert(key, cell, &position(cell)); }

    void setKey(int cell, CellHeap::Key key)
    {
        if (position(cell) != 0)
            heap.updateKey(position(cell), key);
    }

    void swap(int cell, int other)
    {
        std::swap(patchAt[static_cast<std::size_t>(cell)], patchAt[static_cast<std::size_t>(other)]);
    }

    Positions getPositions()
    {
        Positions all;
        for (std::size_t const patch : patchAt)
            all.push_back(positions[patch]);
        return all;
    }

    CellHeap::Key getTopKey() const { return heap.getTop().key; }

private:
    unsigned long long& position(int cell) { return positions[patchAt[static_cast<std::size_t>(cell)]]; }

    MinBackHeap<int, CellHeap::Key> heap;
    Positions positions;
    std::vector<std::size_t> patchAt;
};

} // namespace

TEST(CellHeap, HasTheCellWithTheSmallestKeyOnTop)
{
    CellHeap const heap = heapOf({5, 3, 4, 1, 2});
    EXPECT_EQ(heap.getTop(), 3);
    EXPECT_EQ(heap.getTopKey(), 1U);
    EXPECT_FALSE(heap.isEmpty());
}

TEST(CellHeap, IsEmptyAtFirst)
{
    CellHeap const heap(7, 7);
    EXPECT_TRUE(heap.isEmpty());
    EXPECT_EQ(heap.getPosition(6), 0U);
}

TEST(CellHeap, ReportsThatItHasNoRoom)
{
    EXPECT_EQ(errorsOf([] { CellHeap(0, 0); }), "Heap size is zero.\r");
}

TEST(CellHeap, TakesTheRightOfEqualChildrenWhenSinkingFromTheTop)
{
    CellHeap heap = heapOf({1, 2, 2, 3, 3, 3, 3});
    heap.setKey(0, 9);
    EXPECT_EQ(positionsIn(heap, 7), (Positions{7, 2, 1, 4, 5, 6, 3}));
}

TEST(CellHeap, StopsAboveAnEqualChildWhenSinkingFromTheTop)
{
    CellHeap heap = heapOf({1, 2, 5, 4, 4});
    heap.setKey(0, 4);
    EXPECT_EQ(positionsIn(heap, 5), (Positions{2, 1, 3, 4, 5}));
}

TEST(CellHeap, KeepsACellBelowAnEqualParentAndAboveEqualChildren)
{
    CellHeap heap = heapOf({1, 5, 5, 6, 6});
    heap.setKey(1, 6);
    EXPECT_EQ(positionsIn(heap, 5), (Positions{1, 2, 3, 4, 5}));
    heap.setKey(3, 6);
    heap.setKey(1, 1);
    EXPECT_EQ(positionsIn(heap, 5), (Positions{1, 2, 3, 4, 5}));
}

TEST(CellHeap, SinksACellToALoneLeftChild)
{
    CellHeap heap = heapOf({1, 2, 3, 4, 5, 6});
    heap.setKey(2, 7);
    EXPECT_EQ(positionsIn(heap, 6), (Positions{1, 2, 6, 4, 5, 3}));
    heap.setKey(0, 9);
    EXPECT_EQ(positionsIn(heap, 6), (Positions{4, 1, 6, 2, 5, 3}));
}

TEST(CellHeap, RaisesACellToTheTop)
{
    CellHeap heap = heapOf({2, 3, 4, 5, 6, 7, 8, 9});
    heap.setKey(7, 1);
    EXPECT_EQ(heap.getTop(), 7);
    EXPECT_EQ(positionsIn(heap, 8), (Positions{2, 4, 3, 8, 5, 6, 7, 1}));
}

TEST(CellHeap, IgnoresCellsThatAreNotInIt)
{
    CellHeap heap(3, 3);
    heap.insert(2, 5);
    heap.setKey(0, 1);
    EXPECT_EQ(positionsIn(heap, 3), (Positions{0, 0, 1}));
    EXPECT_EQ(heap.getTopKey(), 5U);
}

TEST(CellHeap, SwapsTwoCells)
{
    CellHeap heap(4, 4);
    heap.insert(0, 5);
    heap.insert(1, 7);
    heap.swap(0, 1);
    EXPECT_EQ(positionsIn(heap, 4), (Positions{2, 1, 0, 0}));
    EXPECT_EQ(heap.getTop(), 1);
    heap.swap(1, 3);
    EXPECT_EQ(positionsIn(heap, 4), (Positions{2, 0, 0, 1}));
    EXPECT_EQ(heap.getTop(), 3);
    heap.swap(1, 2);
    EXPECT_EQ(positionsIn(heap, 4), (Positions{2, 0, 0, 1}));
    heap.setKey(3, 9);
    EXPECT_EQ(positionsIn(heap, 4), (Positions{1, 0, 0, 2}));
}

// Few different keys, so that many are equal. The sizes are close to those that fill a level.
TEST(CellHeap, AgreesWithTheHeapWithBackPointers)
{
    std::mt19937 generator(1);
    auto const upTo = [&](int limit) { return static_cast<int>(generator() % static_cast<unsigned>(limit)); };
    for (int const cells : {1, 2, 3, 4, 5, 6, 7, 8, 9, 15, 16, 17, 31, 32, 33, 100, 127, 128, 129, 1000}) {
        CellHeap heap(cells, cells);
        PatchHeap patches(cells, cells);
        auto const anyKey = [&] { return static_cast<CellHeap::Key>(upTo(2 * cells)); };
        int size = 0;
        for (int cell = 0; cell < cells; ++cell)
            if (upTo(8) != 0 || cells < 4) {
                CellHeap::Key const key = anyKey();
                heap.insert(cell, key);
                patches.insert(cell, key);
                ++size;
            }
        for (int i = 0; i < 3000; ++i) {
            int const other = upTo(cells);
            if (upTo(3) == 0) {
                int const cell = upTo(cells);
                heap.swap(cell, other);
                patches.swap(cell, other);
            }
            int const changed = upTo(2) == 0 ? heap.getTop() : other;
            CellHeap::Key const key = anyKey();
            heap.setKey(changed, key);
            patches.setKey(changed, key);
            ASSERT_EQ(positionsIn(heap, cells), patches.getPositions()) << cells << " cells, " << size << " inserted";
            ASSERT_EQ(heap.getTopKey(), patches.getTopKey());
        }
    }
}
