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

/// The Gregorian rule: every fourth year is a leap year, but of the full centuries only every fourth one.
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

/// Length of the date's month; a month outside 0 to 11 counts on into the years around.
int getDaysInMonth(CalendarDay const& date);

/// How many days `date` is after 1 January 1958.
///
/// A month or day outside its range counts on from the start of the year or month. Days that were left out are taken
/// as Julian. Years further than 10^12 from 0 are taken as that year.
long long toDayNumber(CalendarDay const& date);

/// The date that is `dayNumber` days after 1 January 1958; at most 10^15 days away from it.
CalendarDay toCalendarDay(long long dayNumber);

/// Quotient rounded down, also of negative numbers.
constexpr long long floorDivide(long long dividend, long long divisor)
{
    return dividend / divisor - (dividend % divisor < 0 ? 1 : 0);
}

/// What floorDivide leaves over: 0 to divisor - 1.
constexpr long long floorRemainder(long long dividend, long long divisor)
{
    long long const remainder = dividend % divisor;
    return remainder < 0 ? remainder + divisor : remainder;
}
