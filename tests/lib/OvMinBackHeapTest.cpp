// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvMinBackHeap.h"

#include "support/CapturedOutput.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace
{

using Heap = MinBackHeap<char, float>;
using testing::ElementsAre;
using testing::ElementsAreArray;

constexpr unsigned long long largest = std::numeric_limits<unsigned long long>::max();

// The values in the order of their positions.
template <typename Key>
std::string valuesOf(MinBackHeap<char, Key> const& heap)
{
    std::string values;
    for (unsigned long long position = 1; position <= heap.getSize(); ++position)
        values += heap.getRecord(position).value;
    return values;
}

// A heap with the given keys, in this order from position 1 on. The values are a, b, c and so on.
struct FilledHeap
{
    explicit FilledHeap(std::vector<float> const& keys) : positions(keys.size())
    {
        heap.init(keys.size());
        for (std::size_t i = 0; i < keys.size(); ++i)
            heap.insert(keys[i], static_cast<char>('a' + i), &positions[i]);
    }

    Heap heap;
    std::vector<unsigned long long> positions;
};

} // namespace

TEST(MinBackHeap, GivesTheRecordWithTheSmallestKey)
{
    FilledHeap const filled({5, 3, 4, 1, 2});
    EXPECT_EQ(filled.heap.getTop().key, 1.0F);
    EXPECT_EQ(filled.heap.getTop().value, 'd');
    EXPECT_EQ(filled.heap.getTop().backPointer, &filled.positions[3]);
    EXPECT_EQ(filled.heap.getSize(), 5U);
    EXPECT_EQ(filled.heap.getCapacity(), 5U);
}

TEST(MinBackHeap, WritesEveryNewPositionThroughTheBackPointer)
{
    // 5 goes to 1. 3 moves it to 2. 4 stays at 3. 1 enters at 4 and moves 5 to 4 and 3 to 2.
    FilledHeap const filled({5, 3, 4, 1});
    EXPECT_THAT(filled.positions, ElementsAre(4, 2, 3, 1));
    EXPECT_EQ(valuesOf(filled.heap), "dbca");
}

TEST(MinBackHeap, InsertsARecordBelowRecordsWithAnEqualKey)
{
    FilledHeap const filled({2, 2, 2, 2});
    EXPECT_EQ(valuesOf(filled.heap), "abcd");
}

TEST(MinBackHeap, AcceptsRecordsWithoutABackPointer)
{
    Heap heap;
    heap.init(2);
    heap.insert(2, 'x', nullptr);
    heap.insert(1, 'y', nullptr);
    heap.updateKey(1, 3);
    EXPECT_EQ(valuesOf(heap), "xy");
}

TEST(MinBackHeap, RaisesARecordWhoseKeyBecomesSmaller)
{
    FilledHeap filled({1, 2, 3, 4, 5});
    filled.heap.updateKey(5, 0.5F);
    EXPECT_EQ(valuesOf(filled.heap), "eacdb");
    EXPECT_THAT(filled.positions, ElementsAre(2, 5, 3, 4, 1));
    EXPECT_EQ(filled.heap.getTop().key, 0.5F);
}

TEST(MinBackHeap, StopsARaisedRecordBelowAnEqualOne)
{
    FilledHeap filled({1, 2, 3, 4, 5});
    filled.heap.updateKey(4, 2);
    EXPECT_EQ(valuesOf(filled.heap), "abcde");
    EXPECT_EQ(filled.heap.getRecord(4).key, 2.0F);
}

TEST(MinBackHeap, SinksARecordWhoseKeyBecomesGreater)
{
    // The record moves from the root to 2, whose key is smaller than that of 3, and from there to 5.
    FilledHeap filled({1, 2, 3, 9, 4});
    filled.heap.updateKey(1, 8);
    EXPECT_EQ(valuesOf(filled.heap), "becda");
    EXPECT_THAT(filled.positions, ElementsAre(5, 1, 3, 4, 2));
    EXPECT_EQ(filled.heap.getRecord(5).key, 8.0F);
}

TEST(MinBackHeap, SinksToTheRightOfTwoEqualChildren)
{
    FilledHeap filled({1, 2, 2});
    filled.heap.updateKey(1, 3);
    EXPECT_EQ(valuesOf(filled.heap), "cba");
}

TEST(MinBackHeap, SinksToAnOnlyLeftChild)
{
    FilledHeap filled({1, 2});
    filled.heap.updateKey(1, 3);
    EXPECT_EQ(valuesOf(filled.heap), "ba");
}

TEST(MinBackHeap, StopsASinkingRecordAboveAnEqualOne)
{
    FilledHeap filled({1, 2, 3});
    filled.heap.updateKey(1, 2);
    EXPECT_EQ(valuesOf(filled.heap), "abc");
    EXPECT_EQ(filled.heap.getTop().key, 2.0F);
}

TEST(MinBackHeap, LeavesARecordWithAnEqualKeyAlone)
{
    FilledHeap filled({1, 2, 3});
    filled.positions[1] = 77;
    filled.heap.updateKey(2, 2);
    EXPECT_EQ(valuesOf(filled.heap), "abc");
    EXPECT_EQ(filled.positions[1], 77U);
}

TEST(MinBackHeap, WritesThePositionEvenIfAChangedKeyMovesNothing)
{
    FilledHeap filled({1, 2, 3});
    filled.positions[1] = 77;
    filled.heap.updateKey(2, 2.5F);
    EXPECT_EQ(filled.positions[1], 2U);
    EXPECT_EQ(filled.heap.getRecord(2).key, 2.5F);
}

TEST(MinBackHeap, MovesAHoleTowardsTheRoot)
{
    FilledHeap filled({1, 3, 5, 4});
    EXPECT_EQ(filled.heap.movedown(2, 4), 2U);
    EXPECT_EQ(filled.positions[1], 4U);
    EXPECT_EQ(filled.heap.getRecord(4).value, 'b');
}

TEST(MinBackHeap, MovesAHoleTowardsTheLeaves)
{
    FilledHeap filled({1, 3, 5, 4});
    EXPECT_EQ(filled.heap.moveup(9, 1), 4U);
    EXPECT_THAT(filled.positions, ElementsAre(1, 1, 3, 2));
    EXPECT_EQ(filled.heap.moveup(9, 3), 3U);
}

TEST(MinBackHeap, ReportsOverflowAndLeavesTheRecordOut)
{
    FilledHeap filled({1, 2, 3});
    unsigned long long position = 77;
    EXPECT_EQ(errorsOf([&] { filled.heap.insert(0, 'x', &position); }), "Heap overflow.\r");
    EXPECT_EQ(valuesOf(filled.heap), "abc");
    EXPECT_THAT(filled.positions, ElementsAre(1, 2, 3));
    EXPECT_EQ(position, 77U);
}

TEST(MinBackHeap, HasNoRoomBeforeItsInit)
{
    Heap heap;
    EXPECT_EQ(errorsOf([&] { heap.insert(0, 'x', nullptr); }), "Heap overflow.\r");
    EXPECT_EQ(heap.getSize(), 0U);
}

TEST(MinBackHeap, ReportsASizeOfZero)
{
    Heap heap;
    EXPECT_EQ(errorsOf([&] { heap.init(0); }), "Heap size is zero.\r");
    EXPECT_EQ(errorsOf([&] { heap.insert(1, 'x', nullptr); }), "Heap overflow.\r");
}

TEST(MinBackHeap, ReportsTheLargestNumberAsTooBig)
{
    FilledHeap filled({1, 2});
    EXPECT_EQ(errorsOf([&] { filled.heap.init(largest); }), "Heap size is too big.\r");
    EXPECT_EQ(filled.heap.getSize(), 0U);
    EXPECT_EQ(errorsOf([&] { filled.heap.insert(1, 'x', nullptr); }), "Heap overflow.\r");
}

TEST(MinBackHeap, HasNoRoomWhenMemoryCannotHoldIt)
{
    Heap heap;
    EXPECT_EQ(errorsOf([&] { heap.init(largest - 1); }), "");
    EXPECT_EQ(heap.getCapacity(), 0U);
    EXPECT_EQ(errorsOf([&] { heap.insert(1, 'x', nullptr); }), "Heap overflow.\r");
}

TEST(MinBackHeap, ForgetsItsRecordsWithTheNextInit)
{
    FilledHeap filled({1, 2});
    filled.heap.init(1);
    EXPECT_EQ(filled.heap.getSize(), 0U);
    filled.heap.insert(5, 'x', nullptr);
    EXPECT_EQ(valuesOf(filled.heap), "x");
}

TEST(MinBackHeap, ReportsThatItIsEmptyAndGivesAnEmptyRecord)
{
    MinBackHeap<int*, float> heap;
    heap.init(1);
    EXPECT_EQ(errorsOf([&] {
                  EXPECT_EQ(heap.getTop().value, nullptr);
                  EXPECT_EQ(heap.getTop().key, 0.0F);
              }),
              "Heap is empty.\rHeap is empty.\r");
}

TEST(MinBackHeap, ReportsAPositionPastItsSizeAndChangesNothing)
{
    for (unsigned long long const position : {4ULL, 5ULL, 1000000ULL, largest / 2 + 1, largest}) {
        FilledHeap filled({1, 2, 3});
        EXPECT_EQ(errorsOf([&] { filled.heap.updateKey(position, 0); }), "Backpointer makes no sense.\r");
        EXPECT_EQ(errorsOf([&] { filled.heap.updateKey(position, 9); }), "Backpointer makes no sense.\r");
        EXPECT_EQ(valuesOf(filled.heap), "abc");
        EXPECT_THAT(filled.positions, ElementsAre(1, 2, 3));
    }
}

TEST(MinBackHeap, ReportsPositionZeroAndChangesNothing)
{
    FilledHeap filled({1, 2, 3});
    std::string const report = "Backpointer says that element is not part of the heap.\r";
    EXPECT_EQ(errorsOf([&] { filled.heap.updateKey(0, -1); }), report);
    EXPECT_EQ(errorsOf([&] { filled.heap.updateKey(0, 9); }), report);
    EXPECT_EQ(valuesOf(filled.heap), "abc");
    EXPECT_THAT(filled.positions, ElementsAre(1, 2, 3));
}

TEST(MinBackHeap, GivesAnEmptyRecordAtAPositionWithoutOne)
{
    FilledHeap const filled({1, 2, 3});
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(filled.heap.getRecord(4).value, '\0'); }), "Backpointer makes no sense.\r");
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(filled.heap.getRecord(0).backPointer, nullptr); }),
              "Backpointer says that element is not part of the heap.\r");
}

TEST(MinBackHeap, DoesNotMoveHolesOutsideItsRecords)
{
    FilledHeap filled({1, 2, 3});
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(filled.heap.movedown(0, 4), 4U); }), "Backpointer makes no sense.\r");
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(filled.heap.movedown(0, largest), largest); }), "Backpointer makes no sense.\r");
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(filled.heap.moveup(0, 0), 0U); }),
              "Backpointer says that element is not part of the heap.\r");
    EXPECT_EQ(filled.heap.movedown(0, 0), 0U);
    EXPECT_EQ(filled.heap.moveup(9, largest / 2 + 1), largest / 2 + 1);
    EXPECT_EQ(valuesOf(filled.heap), "abc");
    EXPECT_THAT(filled.positions, ElementsAre(1, 2, 3));
}

TEST(MinBackHeap, ReportsAHoleFurtherOutThanTheNextRecord)
{
    Heap heap;
    heap.init(4);
    heap.insert(1, 'a', nullptr);
    EXPECT_EQ(errorsOf([&] { heap.movedown(0, 3); }), "Backpointer makes no sense.\r");
    EXPECT_EQ(valuesOf(heap), "a");
}

TEST(MinBackHeap, IgnoresANewKeyThatIsNotANumber)
{
    FilledHeap filled({1, 2, 3});
    filled.heap.updateKey(1, std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(filled.heap.getTop().key, 1.0F);
    EXPECT_EQ(valuesOf(filled.heap), "abc");
}

TEST(MinBackHeap, StaysInOrderUnderManyChanges)
{
    constexpr std::size_t count = 300;
    std::mt19937 random(1);
    std::uniform_int_distribution<int> drawKey(0, 99);
    std::uniform_int_distribution<std::size_t> drawRecord(0, count - 1);

    std::array<int, count> keys{};
    std::array<unsigned long long, count> positions{};
    MinBackHeap<std::size_t, int> heap;
    heap.init(count);
    for (std::size_t i = 0; i < count; ++i) {
        keys[i] = drawKey(random);
        heap.insert(keys[i], i, &positions[i]);
    }
    for (int change = 0; change < 2000; ++change) {
        std::size_t const changed = drawRecord(random);
        keys[changed] = drawKey(random);
        heap.updateKey(positions[changed], keys[changed]);

        ASSERT_EQ(heap.getTop().key, *std::ranges::min_element(keys));
        ASSERT_EQ(heap.getRecord(positions[changed]).value, changed);
    }
    for (std::size_t i = 0; i < count; ++i) {
        EXPECT_EQ(heap.getRecord(positions[i]).value, i);
        EXPECT_EQ(heap.getRecord(positions[i]).key, keys[i]);
    }
    for (unsigned long long position = 2; position <= count; ++position)
        EXPECT_LE(heap.getRecord(position / 2).key, heap.getRecord(position).key);
}
