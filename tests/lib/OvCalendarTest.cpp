// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvCalendar.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>

// Prints a date with month and day from 1.
static std::ostream& operator<<(std::ostream& stream, CalendarDay const& date)
{
    return stream << date.year << '-' << date.month + 1 << '-' << date.day + 1;
}

namespace
{

// Months and days count from 1 in these tests' tables.
CalendarDay dateOf(long long year, int month, int day)
{
    return {year, month - 1, day - 1};
}

// The Julian day number of 1 January 1958.
constexpr long long julianDayNumberOfDay0 = 2436205;

struct KnownDay
{
    CalendarDay date;
    long long julianDayNumber;
};

} // namespace

TEST(Calendar, AgreesWithTheAstronomersDayNumbers)
{
    KnownDay const known[] = {
        {dateOf(-4712, 1, 1), 0},        {dateOf(-1000, 7, 12), 1356001}, {dateOf(0, 2, 29), 1721117},
        {dateOf(1, 1, 1), 1721424},      {dateOf(333, 1, 27), 1842713},   {dateOf(837, 4, 10), 2026872},
        {dateOf(1582, 10, 4), 2299160},  {dateOf(1582, 10, 15), 2299161}, {dateOf(1600, 12, 31), 2305813},
        {dateOf(1858, 11, 17), 2400001}, {dateOf(1957, 12, 31), 2436204}, {dateOf(1958, 1, 1), 2436205},
        {dateOf(1970, 1, 1), 2440588},   {dateOf(1987, 6, 19), 2446966},  {dateOf(2000, 1, 1), 2451545},
        {dateOf(2000, 2, 29), 2451604},  {dateOf(2012, 7, 1), 2456110},
    };
    for (KnownDay const& day : known) {
        EXPECT_EQ(toDayNumber(day.date), day.julianDayNumber - julianDayNumberOfDay0) << day.date;
        EXPECT_EQ(toCalendarDay(day.julianDayNumber - julianDayNumberOfDay0), day.date);
    }
}

TEST(Calendar, CallsEveryFourthYearALeapYearByTheJulianRule)
{
    for (long long const year : {-4LL, 0LL, 4LL, 1500LL, 1900LL})
        EXPECT_TRUE(isJulianLeapYear(year)) << year;
    for (long long const year : {-3LL, 1LL, 1582LL, 1902LL})
        EXPECT_FALSE(isJulianLeapYear(year)) << year;
}

TEST(Calendar, LeavesOutThreeOfFourCenturiesByTheGregorianRule)
{
    for (long long const year : {1584LL, 1600LL, 2000LL, 2012LL})
        EXPECT_TRUE(isGregorianLeapYear(year)) << year;
    for (long long const year : {1583LL, 1700LL, 1800LL, 1900LL, 2013LL})
        EXPECT_FALSE(isGregorianLeapYear(year)) << year;
}

TEST(Calendar, ChangesItsLeapYearRuleIn1583)
{
    EXPECT_TRUE(isLeapYear(1500));
    EXPECT_FALSE(isLeapYear(1582));
    EXPECT_FALSE(isLeapYear(1583));
    EXPECT_TRUE(isLeapYear(1584));
    EXPECT_FALSE(isLeapYear(1700));
}

TEST(Calendar, GoesOnFromEachDayToTheNext)
{
    int const lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    CalendarDay date = dateOf(-500, 1, 1);
    long long number = toDayNumber(date);
    while (date.year < 2500) {
        ASSERT_EQ(toDayNumber(date), number) << date;
        ASSERT_EQ(toCalendarDay(number), date);
        bool const isLeapYear =
            date.year % 4 == 0 && (date.year < 1600 || date.year % 100 != 0 || date.year % 400 == 0);
        int const length = date.month == 1 && isLeapYear ? 29 : lengths[date.month];
        ASSERT_EQ(getDaysInMonth(date), length) << date;
        ++number;
        ++date.day;
        if (date == dateOf(1582, 10, 5))
            date = dateOf(1582, 10, 15);
        if (date.day == length)
            date = {date.month == 11 ? date.year + 1 : date.year, (date.month + 1) % 12, 0};
    }
}

TEST(Calendar, RepeatsEvery400YearsAfterTheChangeAndEvery4YearsBeforeIt)
{
    for (long long const cycles : {1LL, 1000LL, 700'000'000LL}) {
        CalendarDay const late = dateOf(2012 + 400 * cycles, 6, 30);
        EXPECT_EQ(toDayNumber(late), toDayNumber(dateOf(2012, 6, 30)) + 146097 * cycles);
        EXPECT_EQ(toCalendarDay(toDayNumber(late)), late);
        CalendarDay const early = dateOf(1500 - 400 * cycles, 2, 29);
        EXPECT_EQ(toDayNumber(early), toDayNumber(dateOf(1500, 2, 29)) - 146100 * cycles);
        EXPECT_EQ(toCalendarDay(toDayNumber(early)), early);
    }
}

TEST(Calendar, CountsTheDaysLeftOutAsJulian)
{
    EXPECT_EQ(toDayNumber(dateOf(1582, 10, 5)), toDayNumber(dateOf(1582, 10, 15)));
    EXPECT_EQ(toDayNumber(dateOf(1582, 10, 14)), toDayNumber(dateOf(1582, 10, 24)));
}

TEST(Calendar, KnowsTheDaysLeftOut)
{
    EXPECT_FALSE(isLeftOut(dateOf(1582, 10, 4)));
    EXPECT_TRUE(isLeftOut(dateOf(1582, 10, 5)));
    EXPECT_TRUE(isLeftOut(dateOf(1582, 10, 14)));
    EXPECT_FALSE(isLeftOut(dateOf(1582, 10, 15)));
    EXPECT_FALSE(isLeftOut(dateOf(1582, 9, 10)));
    EXPECT_FALSE(isLeftOut(dateOf(1581, 10, 10)));
}

TEST(Calendar, CountsMonthsOutsideTheYearIntoTheYearsBeforeAndAfter)
{
    EXPECT_EQ(toDayNumber(dateOf(2011, 13, 1)), toDayNumber(dateOf(2012, 1, 1)));
    EXPECT_EQ(toDayNumber(dateOf(2012, 0, 31)), toDayNumber(dateOf(2011, 12, 31)));
    EXPECT_EQ(toDayNumber(dateOf(2012, -11, 1)), toDayNumber(dateOf(2011, 1, 1)));
    EXPECT_EQ(toDayNumber(dateOf(2010, 24 + 2, 29)), toDayNumber(dateOf(2012, 2, 29)));
    EXPECT_EQ(getDaysInMonth(dateOf(2010, 24 + 2, 1)), 29);
    EXPECT_TRUE(isLeftOut(dateOf(1581, 12 + 10, 5)));
}

TEST(Calendar, CountsDaysOutsideTheMonthFromItsStart)
{
    EXPECT_EQ(toDayNumber(dateOf(2012, 2, 30)), toDayNumber(dateOf(2012, 3, 1)));
    EXPECT_EQ(toDayNumber(dateOf(2012, 3, 0)), toDayNumber(dateOf(2012, 2, 29)));
}

TEST(Calendar, HoldsYearsTooFarAwayAtTheLimit)
{
    constexpr long long furthest = 1'000'000'000'000;
    EXPECT_EQ(toDayNumber({std::numeric_limits<long long>::max(), 5, 3}), toDayNumber({furthest, 5, 3}));
    EXPECT_EQ(toDayNumber({std::numeric_limits<long long>::min(), 5, 3}), toDayNumber({-furthest, 5, 3}));
    EXPECT_LT(toDayNumber({furthest - 1, 5, 3}), toDayNumber({furthest, 5, 3}));
}

TEST(Calendar, TakesAnyMonthAndDay)
{
    constexpr int least = std::numeric_limits<int>::min();
    constexpr int largest = std::numeric_limits<int>::max();
    EXPECT_EQ(toDayNumber({0, 0, largest}), toDayNumber({0, 0, 0}) + largest);
    EXPECT_EQ(toDayNumber({0, 0, least}), toDayNumber({0, 0, 0}) + least);
    // 2^31 months are 178956970 years and 8 months.
    EXPECT_EQ(toDayNumber({0, largest, 0}), toDayNumber({178'956'970, 7, 0}));
    EXPECT_EQ(toDayNumber({0, least, 0}), toDayNumber({-178'956'971, 4, 0}));
}

TEST(Calendar, RoundsQuotientsDown)
{
    EXPECT_EQ(floorDivide(7, 4), 1);
    EXPECT_EQ(floorDivide(8, 4), 2);
    EXPECT_EQ(floorDivide(-1, 4), -1);
    EXPECT_EQ(floorDivide(-4, 4), -1);
    EXPECT_EQ(floorDivide(-5, 4), -2);
    EXPECT_EQ(floorRemainder(7, 4), 3);
    EXPECT_EQ(floorRemainder(-1, 4), 3);
    EXPECT_EQ(floorRemainder(-4, 4), 0);
}
