// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvArray.h"

#include "lib/OvString.h"
#include "support/CapturedOutput.h"

#include <gmock/gmock.h>

#include <dlfcn.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// Some tests run out of memory: the sanitizer must not end the program then.
extern "C" char const* __asan_default_options()
{
    return "allocator_may_return_null=1";
}

namespace
{

// What rand() returns in this program, if a test sets it.
std::optional<int> forcedRandom;

} // namespace

extern "C" int rand() noexcept
{
    static auto* const original = reinterpret_cast<int (*)()>(dlsym(RTLD_NEXT, "rand"));
    return forcedRandom ? *forcedRandom : original();
}

namespace
{

using testing::ElementsAre;

constexpr char outOfBounds[] = "Array element out of bounds.\r";
constexpr char initOutOfBounds[] = "Array initialization out of bounds.\r";

// Too large for any address space, but its size in bytes does not overflow.
constexpr unsigned long long absurdCount = 1ULL << 62;

// Counts its living instances.
struct Counted
{
    static inline int living = 0;
    Counted() { ++living; }
    Counted(Counted const&) { ++living; }
    Counted& operator=(Counted const&) = default;
    ~Counted() { --living; }
};

Array<int> arrayOf(std::initializer_list<int> values)
{
    Array<int> array;
    array.init(values.begin(), values.size());
    return array;
}

GrowingArray<int> growingArrayOf(std::initializer_list<int> values)
{
    GrowingArray<int> array;
    for (int const value : values)
        array.add(value);
    return array;
}

template <typename T>
std::vector<T> elementsOf(Array<T> const& array)
{
    return {array.begin(), array.end()};
}

template <typename T>
bool hasStorage(Array<T> const& array)
{
    return array.begin() != nullptr;
}

} // namespace

TEST(MultiRefObject, IsDeletedThroughItsBaseWithTheLastReference)
{
    struct Object : MultiRefObject
    {
        Counted counted;
    };
    MultiRefObject* const object = new Object;
    EXPECT_FALSE(object->isShared());
    object->addReference();
    EXPECT_TRUE(object->isShared());
    object->release();
    EXPECT_EQ(Counted::living, 1);
    object->release();
    EXPECT_EQ(Counted::living, 0);
}

TEST(Array, IsEmptyAndWithoutStorageAtFirst)
{
    Array<int> const array;
    EXPECT_EQ(array.getCount(), 0U);
    EXPECT_FALSE(hasStorage(array));
}

TEST(Array, HoldsDefaultElementsAfterInitWithACount)
{
    Array<int*> array;
    array.init(3);
    EXPECT_THAT(elementsOf(array), ElementsAre(nullptr, nullptr, nullptr));
}

TEST(Array, LosesItsStorageByInitWithCountZero)
{
    Array<int> array = arrayOf({1, 2});
    array.init(0);
    EXPECT_EQ(array.getCount(), 0U);
    EXPECT_FALSE(hasStorage(array));
}

TEST(Array, BecomesEmptyWhenMemoryRunsOut)
{
    Array<char> bytes(2);
    bytes.init(absurdCount);
    EXPECT_EQ(bytes.getCount(), 0U);

    Array<double> numbers(2);
    numbers.init(~0ULL / sizeof(double) + 2); // the size in bytes would wrap around to 8
    EXPECT_EQ(numbers.getCount(), 0U);
    EXPECT_FALSE(hasStorage(numbers));
}

TEST(Array, SharesItsElementsWithItsCopies)
{
    Array<int> array = arrayOf({1, 2, 3});
    Array<int> copy = array;
    Array<int> inited;
    inited.init(array);
    array[1] = 20;
    EXPECT_THAT(elementsOf(copy), ElementsAre(1, 20, 3));
    EXPECT_THAT(elementsOf(inited), ElementsAre(1, 20, 3));
    EXPECT_EQ(copy.begin(), array.begin());
}

TEST(Array, KeepsTheStorageAsLongAsAnyArrayUsesIt)
{
    {
        Array<Counted> view;
        {
            Array<Counted> array(5);
            view.init(array, 4, 1);
        }
        EXPECT_EQ(Counted::living, 5);
    }
    EXPECT_EQ(Counted::living, 0);
}

TEST(Array, CanBeAViewOntoAPartOfAnother)
{
    Array<int> array = arrayOf({1, 2, 3, 4, 5});
    Array<int> view;
    view.init(array, 1, 3);
    EXPECT_THAT(elementsOf(view), ElementsAre(2, 3, 4));
    view[0] = 20;
    EXPECT_EQ(array[1], 20);
}

TEST(Array, CanBeAViewOntoAView)
{
    Array<int> view;
    view.init(arrayOf({1, 2, 3, 4, 5}), 1, 3);
    view.init(view, 1, 1);
    EXPECT_THAT(elementsOf(view), ElementsAre(3));
}

TEST(Array, HasNoStorageAsAnEmptyView)
{
    Array<int> const array = arrayOf({1, 2});
    Array<int> view;
    EXPECT_EQ(errorsOf([&] { view.init(array, 2, 0); }), "");
    EXPECT_EQ(view.getCount(), 0U);
    EXPECT_FALSE(hasStorage(view));
}

TEST(Array, ReportsAViewPastTheEndAndKeepsWhatLiesWithin)
{
    Array<int> const array = arrayOf({1, 2, 3});
    Array<int> view;
    EXPECT_EQ(errorsOf([&] { view.init(array, 1, 3); }), initOutOfBounds);
    EXPECT_THAT(elementsOf(view), ElementsAre(2, 3));
    EXPECT_EQ(errorsOf([&] { view.init(array, 4, 1); }), initOutOfBounds);
    EXPECT_EQ(view.getCount(), 0U);
    EXPECT_EQ(errorsOf([&] { view.init(array, 1, ~0ULL); }), initOutOfBounds); // their sum wraps around to 0
    EXPECT_THAT(elementsOf(view), ElementsAre(2, 3));
    EXPECT_EQ(errorsOf([&] { view.init(array, ~0ULL, 2); }), initOutOfBounds);
    EXPECT_EQ(view.getCount(), 0U);
}

TEST(Array, CopiesTwoArraysOneAfterTheOther)
{
    Array<int> first = arrayOf({1, 2});
    Array<int> both;
    both.init(first, arrayOf({3}));
    first[0] = 10;
    EXPECT_THAT(elementsOf(both), ElementsAre(1, 2, 3));
}

TEST(Array, CopiesAnArrayAndOneMoreElement)
{
    Array<int> array;
    array.init(arrayOf({1, 2}), 3);
    EXPECT_THAT(elementsOf(array), ElementsAre(1, 2, 3));
}

TEST(Array, CanBeMadeFromItsOwnElements)
{
    Array<int> array = arrayOf({1, 2, 3});
    array.init(array, array);
    EXPECT_THAT(elementsOf(array), ElementsAre(1, 2, 3, 1, 2, 3));
    array.init(array, array[1]);
    EXPECT_THAT(elementsOf(array), ElementsAre(1, 2, 3, 1, 2, 3, 2));
    array.init(array.begin() + 1, 3);
    EXPECT_THAT(elementsOf(array), ElementsAre(2, 3, 1));
    array.init(array.begin() + 1, 2, array.begin(), 1);
    EXPECT_THAT(elementsOf(array), ElementsAre(3, 1, 2));
    array.init(array);
    EXPECT_THAT(elementsOf(array), ElementsAre(3, 1, 2));
}

TEST(Array, CopiesABuffer)
{
    char buffer[] = {'a', '\0', 'c'};
    Array<char> array;
    array.init(static_cast<char const*>(buffer), 3);
    buffer[0] = 'x';
    EXPECT_THAT(elementsOf(array), ElementsAre('a', '\0', 'c'));
}

TEST(Array, CopiesTwoBuffersOneAfterTheOther)
{
    Array<char> array;
    array.init("ab", 2, "cde", 3);
    EXPECT_THAT(elementsOf(array), ElementsAre('a', 'b', 'c', 'd', 'e'));
}

TEST(Array, TakesABufferOverAndFreesIt)
{
    {
        Array<Counted> array;
        array.init(new Counted[3], true, 3);
        EXPECT_EQ(array.getCount(), 3U);
        EXPECT_EQ(Counted::living, 3);
    }
    EXPECT_EQ(Counted::living, 0);
}

TEST(Array, FreesABufferTakenOverForNoElements)
{
    Array<Counted> array;
    array.init(new Counted[2], true, 0);
    EXPECT_FALSE(hasStorage(array));
    EXPECT_EQ(Counted::living, 0);
}

TEST(Array, OnlyBorrowsABufferThatIsNotTakenOver)
{
    int buffer[] = {1, 2, 3};
    {
        Array<int> array;
        array.init(buffer, false, 3);
        array[1] = 20;
    }
    EXPECT_THAT(buffer, ElementsAre(1, 20, 3));
}

TEST(Array, ReportsANullBufferAndIsEmpty)
{
    Array<char> array(1);
    EXPECT_EQ(errorsOf([&] { array.init(static_cast<char const*>(nullptr), 5); }),
              "Array creation: Pointer to provided buffer is NULL.\r");
    EXPECT_FALSE(hasStorage(array));
    array.init(1);
    EXPECT_EQ(errorsOf([&] { array.init(nullptr, true, 5); }), "Array creation: Pointer to provided buffer is NULL.\r");
    EXPECT_FALSE(hasStorage(array));
}

TEST(Array, ReportsANullBufferOfUnsignedBytesWithAnotherMessage)
{
    Array<unsigned char> array(1);
    EXPECT_EQ(errorsOf([&] { array.init(static_cast<unsigned char const*>(nullptr), 5); }),
              "Buffer given to array is NULL.\n\r");
    EXPECT_FALSE(hasStorage(array));
    array.init(1);
    EXPECT_EQ(errorsOf([&] { array.init(nullptr, false, 5); }), "Buffer given to array is NULL.\n\r");
    EXPECT_FALSE(hasStorage(array));
}

TEST(Array, ReportsEachNullBufferOfTwoAndKeepsTheOther)
{
    Array<char> array;
    EXPECT_EQ(errorsOf([&] { array.init(nullptr, 2, "cd", 2); }),
              "Array creation: Pointer to provided buffer 1 is NULL.\r");
    EXPECT_THAT(elementsOf(array), ElementsAre('c', 'd'));
    EXPECT_EQ(errorsOf([&] { array.init("ab", 2, nullptr, 2); }),
              "Array creation: Pointer to provided buffer 2 is NULL.\r");
    EXPECT_THAT(elementsOf(array), ElementsAre('a', 'b'));
    EXPECT_EQ(errorsOf([&] { array.init(nullptr, 2, nullptr, 2); }),
              "Array creation: Pointer to provided buffer 1 is NULL.\r"
              "Array creation: Pointer to provided buffer 2 is NULL.\r");
    EXPECT_FALSE(hasStorage(array));
}

TEST(Array, WritesOnlyToItsOwnElementsOnceDecoupled)
{
    Array<int> array = arrayOf({1, 2, 3});
    Array<int> view;
    view.init(array, 1, 2);
    view.decouple();
    view[0] = 20;
    EXPECT_THAT(elementsOf(view), ElementsAre(20, 3));
    EXPECT_THAT(elementsOf(array), ElementsAre(1, 2, 3));
}

TEST(Array, DecouplesIntoAStorageOfExactlyItsElements)
{
    {
        Array<Counted> array(5);
        array.init(array, 1, 2);
        EXPECT_EQ(Counted::living, 5);
        array.decouple();
        EXPECT_EQ(Counted::living, 2);
    }
    EXPECT_EQ(Counted::living, 0);
}

TEST(Array, MovesToAnotherStorageByDecouplingEvenWhenNothingIsShared)
{
    Array<int> array = arrayOf({1, 2});
    int const* const before = array.begin();
    array.decouple();
    EXPECT_NE(array.begin(), before);
    EXPECT_THAT(elementsOf(array), ElementsAre(1, 2));
}

TEST(Array, StaysEmptyWhenDecoupled)
{
    Array<int> array;
    array.decouple();
    EXPECT_FALSE(hasStorage(array));
}

TEST(Array, TakesIndicesOfAnyIntegerType)
{
    Array<int> array = arrayOf({1, 2, 3});
    Array<int> const& constant = array;
    EXPECT_EQ(array[static_cast<char>(0)], 1);
    EXPECT_EQ(array[1], 2);
    EXPECT_EQ(array[2ULL], 3);
    EXPECT_EQ(constant[static_cast<unsigned short>(2)], 3);
}

TEST(Array, ReportsAnIndexPastTheEndAndGivesADefaultElement)
{
    Array<int> array = arrayOf({1, 2});
    Array<int> const& constant = array;
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(array[2], 0); }), outOfBounds);
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(constant[~0ULL], 0); }), outOfBounds);
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(array[-1], 0); }), outOfBounds);
    EXPECT_EQ(errorsOf([] { EXPECT_EQ(Array<int>()[0], 0); }), outOfBounds);
}

TEST(Array, ForgetsWhatIsWrittenPastItsEnd)
{
    Array<String> strings(2);
    EXPECT_EQ(errorsOf([&] {
                  strings[2] = "lost";
                  EXPECT_TRUE(strings[2] == "");
                  EXPECT_TRUE(Array<String>()[0] == "");
              }),
              std::string(outOfBounds) + outOfBounds + outOfBounds);
    EXPECT_TRUE(strings[0] == "" && strings[1] == "");
}

TEST(Array, SurvivesAssignmentToItself)
{
    Array<int> array = arrayOf({1, 2});
    Array<int>& same = array;
    array = same;
    EXPECT_THAT(elementsOf(array), ElementsAre(1, 2));
    array = std::move(same);
    EXPECT_THAT(elementsOf(array), ElementsAre(1, 2));
}

TEST(Array, LeavesAnEmptyArrayBehindWhenMoved)
{
    Array<int> array = arrayOf({1, 2});
    int const* const elements = array.begin();
    Array<int> const moved = std::move(array);
    EXPECT_EQ(moved.begin(), elements);
    EXPECT_EQ(array.getCount(), 0U); // NOLINT(bugprone-use-after-move)
    EXPECT_FALSE(hasStorage(array));
    array = moved;
    EXPECT_THAT(elementsOf(array), ElementsAre(1, 2));
}

// With seed 0, rand() of the GNU C library gives 1804289383, 846930886, 1681692777, 1714636915 and 1957747793. Of five
// elements, these draw the indices 4, 1, 3, 3 and 4. The steps are: 5 2 3 4 1, the same, 5 2 4 3 1, the same, the same.
TEST(Array, IsShuffledBySwapsWithPartnersDrawnFromTheWholeArray)
{
    Array<int> array = arrayOf({1, 2, 3, 4, 5});
    std::srand(0);
    array.shuffle();
    EXPECT_THAT(elementsOf(array), ElementsAre(5, 2, 4, 3, 1));
}

TEST(Array, DrawsTheLastElementByTheGreatestRandomNumber)
{
    Array<int> array = arrayOf({1, 2, 3});
    forcedRandom = 2147483647;
    array.shuffle(); // 3 2 1, 3 1 2, the same
    forcedRandom.reset();
    EXPECT_THAT(elementsOf(array), ElementsAre(3, 1, 2));
}

// 5 * 858993459 = 4294967295 = 2 * 2147483647 + 1: the third element. Any greater divisor would give the second.
TEST(Array, DrawsByFractionsOf2147483647)
{
    Array<int> array = arrayOf({1, 2, 3, 4, 5});
    forcedRandom = 858993459;
    array.shuffle(); // 3 2 1 4 5, 3 1 2 4 5, the same, 3 1 4 2 5, 3 1 5 2 4
    forcedRandom.reset();
    EXPECT_THAT(elementsOf(array), ElementsAre(3, 1, 5, 2, 4));
}

TEST(Array, DrawsTheFirstElementByTheSmallestRandomNumber)
{
    Array<int> array = arrayOf({1, 2, 3});
    forcedRandom = 0;
    array.shuffle(); // the same, 2 1 3, 3 1 2
    forcedRandom.reset();
    EXPECT_THAT(elementsOf(array), ElementsAre(3, 1, 2));
}

TEST(Array, DrawsNothingForAnEmptyArray)
{
    std::srand(0);
    Array<int>().shuffle();
    EXPECT_EQ(std::rand(), 1804289383);
}

TEST(Array, ShufflesTheElementsOfAViewOnly)
{
    Array<int> array = arrayOf({1, 2, 3, 4});
    Array<int> view;
    view.init(array, 1, 2);
    forcedRandom = 0;
    view.shuffle(); // the same, 3 2
    forcedRandom.reset();
    EXPECT_THAT(elementsOf(array), ElementsAre(1, 3, 2, 4));
}

TEST(GrowingArray, DoublesItsCapacityWhenItIsFull)
{
    GrowingArray<int> array(1);
    EXPECT_EQ(array.getCapacity(), 1U);
    unsigned long long const capacities[] = {1, 2, 4, 4, 8};
    for (int i = 0; i < 5; ++i) {
        array.add(i);
        EXPECT_EQ(array.getCount(), static_cast<unsigned>(i + 1));
        EXPECT_EQ(array.getCapacity(), capacities[i]);
    }
    EXPECT_THAT(elementsOf(array), ElementsAre(0, 1, 2, 3, 4));
}

TEST(GrowingArray, GrowsFromCapacity0)
{
    GrowingArray<int> array(0);
    array.add(1);
    array.add(2);
    EXPECT_THAT(elementsOf(array), ElementsAre(1, 2));
}

TEST(GrowingArray, TakesItsFirstElementsWithoutGrowing)
{
    GrowingArray<int> array(3);
    array.add(1);
    int const* const first = array.begin();
    array.add(2);
    array.add(3);
    EXPECT_EQ(array.begin(), first);
    EXPECT_EQ(array.getCapacity(), 3U);
}

TEST(GrowingArray, HidesTheElementsBeyondItsCount)
{
    GrowingArray<int> array(8);
    array.add(1);
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(array[1], 0); }), outOfBounds);
    Array<int> view;
    EXPECT_EQ(errorsOf([&] { view.init(array, 0, 2); }), initOutOfBounds);
    EXPECT_THAT(elementsOf(view), ElementsAre(1));
}

TEST(GrowingArray, StartsAfreshByInit)
{
    GrowingArray<int> array = growingArrayOf({1, 2, 3});
    array.init(5);
    EXPECT_EQ(array.getCount(), 0U);
    EXPECT_EQ(array.getCapacity(), 5U);
    array.add(4);
    EXPECT_THAT(elementsOf(array), ElementsAre(4));
}

TEST(GrowingArray, AppendsItsOwnElement)
{
    GrowingArray<String> array;
    array.add("a");
    array.add(array[0]);
    EXPECT_TRUE(array[1] == "a");
}

TEST(GrowingArray, NeverOverwritesElementsOfACopy)
{
    GrowingArray<int> array = growingArrayOf({1, 2, 3}); // room for one more
    GrowingArray<int> copy = array;
    copy.add(40);
    EXPECT_EQ(copy.getCapacity(), 4U);
    array.add(4);
    EXPECT_THAT(elementsOf(copy), ElementsAre(1, 2, 3, 40));
    EXPECT_THAT(elementsOf(array), ElementsAre(1, 2, 3, 4));
}

TEST(GrowingArray, LeavesTheElementsOfArraysThatShareThemAlone)
{
    GrowingArray<int> array = growingArrayOf({1, 2, 3});
    Array<int> const shared = array;
    array.add(4);
    array[0] = 10;
    EXPECT_THAT(elementsOf(shared), ElementsAre(1, 2, 3));
}

TEST(GrowingArray, GrowsOnAfterOperationsOfItsBase)
{
    GrowingArray<int> array = growingArrayOf({1, 2, 3});
    array.decouple();
    EXPECT_EQ(array.getCapacity(), 3U);
    array.add(4);
    Array<int>& base = array;
    base.init(array, 1, 2);
    array.add(5);
    EXPECT_THAT(elementsOf(array), ElementsAre(2, 3, 5));
    base.init(0);
    array.add(6);
    EXPECT_THAT(elementsOf(array), ElementsAre(6));
}

TEST(GrowingArray, StaysAsItIsWhenMemoryRunsOut)
{
    GrowingArray<int> array(absurdCount);
    array.add(1);
    EXPECT_EQ(array.getCount(), 0U);
}

TEST(GrowingArray, DestroysAllItsElements)
{
    {
        GrowingArray<Counted> array;
        for (int i = 0; i < 5; ++i)
            array.add(Counted());
        EXPECT_EQ(Counted::living, 8); // its capacity
    }
    EXPECT_EQ(Counted::living, 0);
}
