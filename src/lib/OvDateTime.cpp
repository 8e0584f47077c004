// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvDateTime.h"

#include "OvLeapSeconds.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <limits>

namespace
{

constexpr int secondsPerMinute = 60;
constexpr int secondsPerHour = 3600;
constexpr int secondsPerDay = 86400;

constexpr unsigned short daylightSavingFlag = 1;

// Holds the seconds of any date, even beyond 64 bits.
__extension__ using WideInteger = __int128;

long long hold(WideInteger number)
{
    using Limits = std::numeric_limits<long long>;
    return static_cast<long long>(std::clamp<WideInteger>(number, Limits::min(), Limits::max()));
}

bool isWithin(int number, int count)
{
    return 0 <= number && number < count;
}

void printFaults(DateTimeStruct const& broken)
{
    CalendarDay const date{broken.year, broken.month, broken.day};
    if (isLeftOut(date))
        std::puts("The specified date does not exist. Assuming date in Julian calendar but might be different when "
                  "outputted.");
    if (!isWithin(broken.month, 12))
        std::puts("Invalid month number.");
    if (!isWithin(broken.day, getDaysInMonth(date)))
        std::puts("Invalid day of month.");
    if (!isWithin(broken.hour, 24))
        std::puts("Invalid hour number.");
    if (!isWithin(broken.minute, 60))
        std::puts("Invalid minute number.");
    if (!isWithin(broken.second, 61))
        std::puts("Invalid second number.");
}

} // namespace

void DateTime::setGlobalTimeShift(short newShift, bool summertime)
{
    globalshift = newShift;
    globalsummertime = summertime;
}

void DateTime::setGlobalTimeShiftToLocalSetting()
{
    DateTimeStruct now;
    getNowDateTimeStruct(&now);
    setGlobalTimeShift(now.shift, now.dst);
}

void DateTime::init(bool now)
{
    if (!now) {
        init(0, 0, 0);
        return;
    }
    DateTimeStruct broken;
    getNowDateTimeStruct(&broken);
    assign(broken);
}

void DateTime::init(long long year, int month, int day, int hour, int minute, int second)
{
    DateTimeStruct const broken{year, month, day, hour, minute, second, globalshift, globalsummertime};
    init(&broken);
}

void DateTime::init(DateTimeStruct const* broken)
{
    printFaults(*broken);
    assign(*broken);
}

void DateTime::init(long long newSeconds, short newShift, unsigned short newFlags)
{
    seconds = newSeconds;
    shift = newShift;
    flags = newFlags;
}

void DateTime::assign(DateTimeStruct const& broken)
{
    // A leap second has no civil count of its own. Seconds past the minute's last regular one are added at the end.
    int const second = std::min(broken.second, secondsPerMinute - 1);
    WideInteger const days = toDayNumber({broken.year, broken.month, broken.day});
    WideInteger const hours = broken.hour;
    WideInteger const minutes = broken.minute;
    long long const civil = hold(days * secondsPerDay + hours * secondsPerHour + minutes * secondsPerMinute + second);
    init(correctLeapSeconds(civil), broken.shift, broken.dst ? daylightSavingFlag : 0);
    addSISeconds(broken.second - second);
}

void DateTime::getDateTimeStruct(DateTimeStruct* broken) const
{
    CivilSecond const civil = toCivilSecond(seconds);
    CalendarDay const date = toCalendarDay(floorDivide(civil.count, secondsPerDay));
    auto const secondOfDay = static_cast<int>(floorRemainder(civil.count, secondsPerDay));
    *broken = {date.year,
               date.month,
               date.day,
               secondOfDay / secondsPerHour,
               secondOfDay % secondsPerHour / secondsPerMinute,
               secondOfDay % secondsPerMinute + civil.leap,
               shift,
               (flags & daylightSavingFlag) != 0};
}

void DateTime::getDateTimeStructUTC(DateTimeStruct* broken) const
{
    DateTime moment = *this;
    moment.correctZone(0, false);
    moment.getDateTimeStruct(broken);
}

void DateTime::addSISeconds(long long moreSeconds)
{
    seconds = hold(WideInteger{seconds} + moreSeconds);
}

void DateTime::setZone(short newShift, bool dst)
{
    shift = newShift;
    flags = static_cast<unsigned short>((flags & ~daylightSavingFlag) | (dst ? daylightSavingFlag : 0));
}

void DateTime::correctZone(short newShift, bool dst)
{
    long long const minutes = newShift - shift;
    addSISeconds(minutes * secondsPerMinute);
    setZone(newShift, dst);
}

long long DateTime::getFirstUncertainSecondNumber()
{
    return TAIPeriods.back().siSeconds;
}

int DateTime::getLeapSecondCorrectionConstant(long long siSeconds)
{
    if (siSeconds < 0) {
        std::puts("Invalid second number.");
        return -2;
    }
    if (siSeconds == getFirstUncertainSecondNumber())
        return -1;
    if (siSeconds > getFirstUncertainSecondNumber())
        return -3;
    return findTAIPeriod(siSeconds);
}

long long DateTime::correctLeapSeconds(long long civilSeconds)
{
    return toSISecond(civilSeconds);
}

void DateTime::getNowDateTimeStruct(DateTimeStruct* broken)
{
    std::time_t const now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    *broken = {local.tm_year + 1900LL,
               local.tm_mon,
               local.tm_mday - 1,
               local.tm_hour,
               local.tm_min,
               local.tm_sec,
               static_cast<short>(local.tm_gmtoff / secondsPerMinute),
               local.tm_isdst > 0};
}
