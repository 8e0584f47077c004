// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>

/// A period in which the difference of SI and civil seconds is constant. Both counts belong to the start of the period
/// and begin at 1 January 1958, 00:00:00. The civil count leaves out leap seconds.
struct TAIPeriod
{
    /// Where in the year the period begins.
    enum Marker : int {
        newYear = 0,                 ///< 1 January
        julyAfterLeapSecond = 1,     ///< 1 July
        julyBeforeLeapSecond = 2,    ///< the leap second at the end of June
        newYearBeforeLeapSecond = 3, ///< the leap second at the end of December
    };

    long long civilSeconds = 0;
    long long siSeconds = 0;
    int year = 0;
    Marker marker = newYear;

    /// Whether the period is itself a leap second. Its civil count is that of the period after it.
    constexpr bool isLeapSecond() const { return marker == julyBeforeLeapSecond || marker == newYearBeforeLeapSecond; }
};

/// Every 1 January from 1958 to 2012, and each leap second from 1972 to mid-2012 with the period after it. At the start
/// of 1972, civil time was set back by 10 s against SI time: the row before 1972 holds those ten seconds.
extern std::array<TAIPeriod, 91> const TAIPeriods;

/// A second in civil time.
struct CivilSecond
{
    /// Seconds from 1 January 1958, 00:00:00, without leap seconds.
    long long count = 0;

    /// How many seconds after `count`. It is 0 outside leap seconds; in one, `count` is the second before it.
    int leap = 0;
};

/// Index in TAIPeriods of the period that holds an SI second. The last period has no end.
///
/// \param siSeconds  not negative
int findTAIPeriod(long long siSeconds);

/// The civil second of an SI second. Until 1972 both counts are the same, also before 1958.
CivilSecond toCivilSecond(long long siSeconds);

/// The SI second of a civil second. A leap second shares its count with the second after it; the result is then the
/// later one. Results beyond 64 bits are held at the largest number.
long long toSISecond(long long civilSeconds);
