// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>

/// A period in which SI and civil seconds run in step. Both counts are of the same instant, the period's start, and are
/// taken from 1 January 1958, 00:00:00; the civil count leaves leap seconds out.
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

    /// Whether the period is itself a leap second: its civil count is already that of the period after it.
    constexpr bool isLeapSecond() const { return marker == julyBeforeLeapSecond || marker == newYearBeforeLeapSecond; }
};

/// Every 1 January from 1958 to 2012, and the leap seconds of 1972 to mid-2012 each with the period after it. Civil
/// time was set 10 s apart from SI time at the start of 1972: the row before that holds those ten seconds.
extern std::array<TAIPeriod, 91> const TAIPeriods;

/// A second in civil time.
struct CivilSecond
{
    /// Seconds from 1 January 1958, 00:00:00, without leap seconds.
    long long count = 0;

    /// How many seconds past `count`: not 0 only in a leap second, where `count` is the second before it.
    int leap = 0;
};

/// Index in TAIPeriods of the period that holds an SI second; the last one goes on for ever.
///
/// \param siSeconds  not negative
int findTAIPeriod(long long siSeconds);

/// The civil second at an SI second; before 1958 and until 1972 both counts are the same.
CivilSecond toCivilSecond(long long siSeconds);

/// The SI second at a civil second. Where the count stands for a leap second and for the second after it, the latter.
/// Held at the largest number.
long long toSISecond(long long civilSeconds);
