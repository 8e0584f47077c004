// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvLeapSeconds.h"

#include "OvCalendar.h"

#include <algorithm>
#include <limits>

namespace
{

constexpr long long secondsPerDay = 86400;

constexpr std::array leapSecondsInJune{1972, 1981, 1982, 1983, 1985, 1992, 1993, 1994, 1997, 2012};
constexpr std::array leapSecondsInDecember{1972, 1973, 1974, 1975, 1976, 1977, 1978, 1979,
                                           1987, 1989, 1990, 1995, 1998, 2005, 2008};

constexpr int getStepAtEndOfYear(int year)
{
    if (year == 1971)
        return 10;
    return std::ranges::count(leapSecondsInDecember, year) == 0 ? 0 : 1;
}

constexpr std::array<TAIPeriod, 91> makeTAIPeriods()
{
    std::array<TAIPeriod, 91> periods;
    std::size_t row = 0;
    long long civil = 0; // at the year's 1 January
    long long difference = 0;
    for (int year = 1958; year <= 2012; ++year) {
        bool const isLeapYear = isGregorianLeapYear(year);
        periods[row++] = {civil, civil + difference, year, TAIPeriod::newYear};
        if (std::ranges::count(leapSecondsInJune, year) != 0) {
            long long const july = civil + (isLeapYear ? 182 : 181) * secondsPerDay;
            periods[row++] = {july, july + difference, year, TAIPeriod::julyBeforeLeapSecond};
            ++difference;
            periods[row++] = {july, july + difference, year, TAIPeriod::julyAfterLeapSecond};
        }
        civil += (isLeapYear ? 366 : 365) * secondsPerDay;
        if (int const step = getStepAtEndOfYear(year); step != 0) {
            periods[row++] = {civil, civil + difference, year, TAIPeriod::newYearBeforeLeapSecond};
            difference += step;
        }
    }
    return periods;
}

} // namespace

constexpr std::array<TAIPeriod, 91> TAIPeriods = makeTAIPeriods();

int findTAIPeriod(long long siSeconds)
{
    auto const next = std::ranges::upper_bound(TAIPeriods, siSeconds, {}, &TAIPeriod::siSeconds);
    return static_cast<int>(next - TAIPeriods.begin()) - 1;
}

CivilSecond toCivilSecond(long long siSeconds)
{
    if (siSeconds < 0)
        return {siSeconds};
    TAIPeriod const& period = TAIPeriods[static_cast<std::size_t>(findTAIPeriod(siSeconds))];
    long long const elapsed = siSeconds - period.siSeconds;
    if (period.isLeapSecond())
        return {period.civilSeconds - 1, static_cast<int>(elapsed) + 1};
    return {period.civilSeconds + elapsed};
}

long long toSISecond(long long civilSeconds)
{
    if (civilSeconds < 0)
        return civilSeconds;
    TAIPeriod const& period = *(std::ranges::upper_bound(TAIPeriods, civilSeconds, {}, &TAIPeriod::civilSeconds) - 1);
    long long const difference = period.siSeconds - period.civilSeconds;
    return std::min(civilSeconds, std::numeric_limits<long long>::max() - difference) + difference;
}
