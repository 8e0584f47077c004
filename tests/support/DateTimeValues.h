// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/OvDateTime.h"

#include "support/StringText.h"

#include <limits>
#include <string>
#include <tuple>

inline constexpr long long leastSeconds = std::numeric_limits<long long>::min();
inline constexpr long long largestSeconds = std::numeric_limits<long long>::max();

/// SI seconds at noon of 30 June 2012: 43200 s before the start of July, after 34 leap seconds.
inline constexpr long long noonOfTheLeapDay = 1719792000 - 43200 + 34;

/// Month and day count from 1 here, as in a written date.
inline DateTimeStruct timeOf(long long year, int month, int day, int hour = 0, int minute = 0, int second = 0,
                             short shift = 0, bool dst = false)
{
    return {year, month - 1, day - 1, hour, minute, second, shift, dst};
}

inline DateTime momentOf(DateTimeStruct const& time)
{
    return DateTime(&time);
}

inline auto fieldsOf(DateTimeStruct const& time)
{
    return std::tuple(time.year, time.month, time.day, time.hour, time.minute, time.second, time.shift, time.dst);
}

/// Seconds, shift and flags.
inline auto fieldsOf(DateTime const& moment)
{
    return std::tuple(moment.getSISeconds(), moment.getShift(), moment.getFlags());
}

inline std::string textOf(DateTime const& moment, AscDateTimeFormat format)
{
    return textOf(moment.getString(format));
}

/// Sets the process-wide zone of new moments while the object lives, and UTC after that.
class GlobalZone
{
public:
    GlobalZone(short shift, bool summertime) { DateTime::setGlobalTimeShift(shift, summertime); }
    ~GlobalZone() { DateTime::setGlobalTimeShift(0, false); }
    GlobalZone(GlobalZone const&) = delete;
    GlobalZone& operator=(GlobalZone const&) = delete;
};
