// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvPointerPool.h"

#include "support/CapturedOutput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <set>

namespace
{

struct Counted
{
    static inline int alive = 0;
    static inline int mostAlive = 0;

    Counted() { count(); }
    Counted(Counted const& other) : value(other.value) { count(); }
    Counted& operator=(Counted const&) = default;
    ~Counted() { --alive; }

    static void count() { mostAlive = std::max(mostAlive, ++alive); }

    int value = 7;
};

} // namespace

TEST(PointerPool, HandsOutTheLastObjectFirst)
{
    PointerPool<int> pool;
    pool.init(3);
    EXPECT_EQ(pool.suck(), &pool.getObjects()[2]);
    EXPECT_EQ(pool.suck(), &pool.getObjects()[1]);
    EXPECT_EQ(pool.suck(), &pool.getObjects()[0]);
}

TEST(PointerPool, CountsTheObjectsThatAreStillFree)
{
    PointerPool<int> pool;
    EXPECT_EQ(pool.getFreeCount(), 0U);
    pool.init(2);
    EXPECT_EQ(pool.getFreeCount(), 2U);
    pool.suck();
    EXPECT_EQ(pool.getFreeCount(), 1U);
    pool.suck();
    EXPECT_EQ(pool.getFreeCount(), 0U);
}

TEST(PointerPool, FreesTheEarlierObjectsBeforeItMakesNewOnes)
{
    PointerPool<Counted> pool;
    pool.init(3);
    Counted::mostAlive = 0;
    pool.init(2);
    EXPECT_EQ(Counted::mostAlive, 2);
    EXPECT_EQ(Counted::alive, 2);
}

TEST(PointerPool, MakesItsObjectsInTheirDefaultState)
{
    PointerPool<Counted> counted;
    counted.init(2);
    EXPECT_EQ(counted.suck()->value, 7);
    PointerPool<int> numbers;
    numbers.init(1);
    EXPECT_EQ(*numbers.suck(), 0);
}

TEST(PointerPool, NeverHandsOutAnObjectTwice)
{
    PointerPool<int> pool;
    pool.init(1000);
    std::set<int*> objects;
    for (int i = 0; i < 1000; ++i)
        objects.insert(pool.suck());
    EXPECT_EQ(objects.size(), 1000U);
}

TEST(PointerPool, ReportsThatItIsEmptyAndGivesASpareObjectOfNoPool)
{
    PointerPool<Counted> pool;
    pool.init(1);
    Counted* const only = pool.suck();
    Counted* spare = nullptr;
    EXPECT_EQ(errorsOf([&] { spare = pool.suck(); }), "Pool is empty!\r");
    EXPECT_NE(spare, only);
    EXPECT_EQ(spare->value, 7);
    EXPECT_EQ(pool.getFreeCount(), 0U);
}

TEST(PointerPool, ResetsTheSpareObjectEachTime)
{
    PointerPool<Counted> pool;
    errorsOf([&] {
        pool.suck()->value = 1;
        EXPECT_EQ(pool.suck()->value, 7);
    });
}

TEST(PointerPool, IsEmptyAfterInitWithNoObjects)
{
    PointerPool<int> pool;
    pool.init(5);
    pool.init(0);
    EXPECT_EQ(pool.getFreeCount(), 0U);
    EXPECT_EQ(pool.getObjects().getCount(), 0U);
}

TEST(PointerPool, IsEmptyWhenMemoryCannotHoldTheObjects)
{
    PointerPool<double> pool;
    pool.init(5);
    pool.init(std::numeric_limits<unsigned long long>::max());
    EXPECT_EQ(pool.getFreeCount(), 0U);
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(*pool.suck(), 0.0); }), "Pool is empty!\r");
}

TEST(PointerPool, FreesItsObjectsWithTheNextInitAndAtItsEnd)
{
    int const before = Counted::alive;
    {
        PointerPool<Counted> pool;
        pool.init(4);
        EXPECT_EQ(Counted::alive, before + 4);
        pool.init(3);
        EXPECT_EQ(Counted::alive, before + 3);
    }
    EXPECT_EQ(Counted::alive, before);
}

TEST(PointerPool, StartsAgainWithTheNextInit)
{
    PointerPool<int> pool;
    pool.init(2);
    *pool.suck() = 5;
    pool.init(2);
    EXPECT_EQ(pool.getFreeCount(), 2U);
    EXPECT_EQ(*pool.suck(), 0);
}

TEST(PointerPool, SharesItsObjectsWithItsCopies)
{
    int const before = Counted::alive;
    PointerPool<Counted> copy;
    Counted* object = nullptr;
    {
        PointerPool<Counted> pool;
        pool.init(2);
        object = pool.suck();
        object->value = 3;
        copy = pool;
    }
    EXPECT_EQ(Counted::alive, before + 2);
    EXPECT_EQ(object, &copy.getObjects()[1]);
    EXPECT_EQ(object->value, 3);
    EXPECT_EQ(copy.getFreeCount(), 1U);
}

TEST(PointerPool, LeavesTheObjectsOfItsCopiesAloneWhenItStartsAgain)
{
    PointerPool<int> pool;
    pool.init(1);
    int* const object = pool.suck();
    *object = 9;
    PointerPool<int> const copy = pool;
    pool.init(1);
    EXPECT_NE(pool.suck(), object);
    EXPECT_EQ(*object, 9);
    EXPECT_EQ(copy.getFreeCount(), 0U);
}

TEST(PointerPool, GivesAllObjectsInTheOrderOfTheBlock)
{
    PointerPool<int> pool;
    pool.init(3);
    *pool.suck() = 1;
    *pool.suck() = 2;
    ASSERT_EQ(pool.getObjects().getCount(), 3U);
    EXPECT_EQ(pool.getObjects()[0], 0);
    EXPECT_EQ(pool.getObjects()[1], 2);
    EXPECT_EQ(pool.getObjects()[2], 1);
}
