// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <compare>

/// A day of the calendar: Julian until 4 October 1582, Gregorian from the next day on, 15 October 1582. The year before
/// 1 is 0, and the years before that are negative.
struct CalendarDay
{
    long long year = 0;
    int month = 0; ///< 0 is January
    int day = 0;   ///< 0 is the 1st

    auto operator<=>(CalendarDay const&) const = default;
};

/// The Julian rule: every fourth year is a leap year.
constexpr bool isJulianLeapYear(long long year)
{
    return year % 4 == 0;
}

/// The Gregorian rule: every fourth year is a leap year. Of the full centuries, only every fourth one is.
constexpr bool isGregorianLeapYear(long long year)
{
    return year % 400 == 0 || (year % 4 == 0 && year % 100 != 0);
}

/// The rule of the calendar in force: Gregorian from 1583 on.
constexpr bool isLeapYear(long long year)
{
    return year < 1583 ? isJulianLeapYear(year) : isGregorianLeapYear(year);
}

/// Whether `date` is one of 5 to 14 October 1582, which the change of calendar left out.
bool isLeftOut(CalendarDay const& date);

/// Days in the date's month. A month outside 0 to 11 counts into the years before or after.
int getDaysInMonth(CalendarDay const& date);

/// How many days `date` lies after 1 January 1958.
///
/// A month or day outside its range counts on from the start of the year or month. Days that were left out count as
/// Julian. Years more than 10^12 away from 0 are held at that limit.
long long toDayNumber(CalendarDay const& date);

/// The date `dayNumber` days after 1 January 1958. The number may be up to 10^15 in either direction.
CalendarDay toCalendarDay(long long dayNumber);

/// The quotient rounded down, for negative numbers too.
constexpr long long floorDivide(long long dividend, long long divisor)
{
    return dividend / divisor - (dividend % divisor < 0 ? 1 : 0);
}

/// The remainder of floorDivide: 0 to divisor - 1.
constexpr long long floorRemainder(long long dividend, long long divisor)
{
    long long const remainder = dividend % divisor;
    return remainder < 0 ? remainder + divisor : remainder;
}
