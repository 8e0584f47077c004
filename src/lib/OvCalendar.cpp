// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvCalendar.h"

#include <algorithm>

namespace
{

// No DateTime reaches this far.
constexpr long long furthestYear = 1'000'000'000'000;

constexpr CalendarDay firstDayLeftOut{1582, 9, 4};
constexpr CalendarDay firstGregorianDay{1582, 9, 14};

// Days from the start of the year to that of each month, in a common and in a leap year.
constexpr int monthStarts[2][13] = {
    {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365},
    {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335, 366},
};

// Leap years repeat after a cycle.
struct Calendar
{
    long long yearsInCycle;
    long long daysInCycle;
    long long firstDayOfYear0; // counted from 1 January 1958
    bool leavesOutCenturies;

    long long firstDayOfYear(long long year) const
    {
        long long leapDays = floorDivide(year + 3, 4);
        if (leavesOutCenturies)
            leapDays += floorDivide(year + 399, 400) - floorDivide(year + 99, 100);
        return firstDayOfYear0 + 365 * year + leapDays;
    }

    long long yearOf(long long dayNumber) const
    {
        long long year = floorDivide((dayNumber - firstDayOfYear0) * yearsInCycle, daysInCycle);
        while (dayNumber < firstDayOfYear(year))
            --year;
        while (dayNumber >= firstDayOfYear(year + 1))
            ++year;
        return year;
    }
};

constexpr Calendar julian{4, 4 * 365 + 1, -715147, false};
constexpr Calendar gregorian{400, 400 * 365 + 97, -715145, true};

int const* getMonthStarts(long long year)
{
    return monthStarts[isLeapYear(year) ? 1 : 0];
}

// The same date with its month brought into range.
CalendarDay carryMonth(CalendarDay const& date)
{
    return {std::clamp(date.year, -furthestYear, furthestYear) + floorDivide(date.month, 12),
            static_cast<int>(floorRemainder(date.month, 12)), date.day};
}

} // namespace

bool isLeftOut(CalendarDay const& date)
{
    CalendarDay const carried = carryMonth(date);
    return firstDayLeftOut <= carried && carried < firstGregorianDay;
}

int getDaysInMonth(CalendarDay const& date)
{
    CalendarDay const carried = carryMonth(date);
    int const* const starts = getMonthStarts(carried.year);
    return starts[carried.month + 1] - starts[carried.month];
}

long long toDayNumber(CalendarDay const& date)
{
    CalendarDay const carried = carryMonth(date);
    Calendar const& calendar = carried < firstGregorianDay ? julian : gregorian;
    return calendar.firstDayOfYear(carried.year) + getMonthStarts(carried.year)[carried.month] + carried.day;
}

CalendarDay toCalendarDay(long long dayNumber)
{
    Calendar const& calendar = dayNumber < toDayNumber(firstGregorianDay) ? julian : gregorian;
    long long const year = calendar.yearOf(dayNumber);
    auto const dayOfYear = static_cast<int>(dayNumber - calendar.firstDayOfYear(year));
    int const* const starts = getMonthStarts(year);
    auto const month = static_cast<int>(std::upper_bound(starts, starts + 12, dayOfYear) - starts) - 1;
    return {year, month, dayOfYear - starts[month]};
}
