// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvLeapSeconds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <tuple>
#include <vector>

namespace
{

// The announced leap seconds, at the end of June or December of a year.
struct LeapSecond
{
    int year;
    int month;
};

constexpr LeapSecond leapSeconds[] = {
    {1972, 6}, {1972, 12}, {1973, 12}, {1974, 12}, {1975, 12}, {1976, 12}, {1977, 12}, {1978, 12}, {1979, 12},
    {1981, 6}, {1982, 6},  {1983, 6},  {1985, 6},  {1987, 12}, {1989, 12}, {1990, 12}, {1992, 6},  {1993, 6},
    {1994, 6}, {1995, 12}, {1997, 6},  {1998, 12}, {2005, 12}, {2008, 12}, {2012, 6},
};

// SI second, civil second, year, marker.
using Row = std::tuple<long long, long long, int, int>;

Row rowAt(std::size_t index)
{
    TAIPeriod const& period = TAIPeriods.at(index);
    return {period.siSeconds, period.civilSeconds, period.year, period.marker};
}

// Civil seconds at the start of 1 January or 1 July, by the formula for the Julian day number.
long long startOf(int year, int month)
{
    int const a = (14 - month) / 12;
    int const y = year + 4800 - a;
    int const m = month + 12 * a - 3;
    int const julianDayNumber = 1 + (153 * m + 2) / 5 + 365 * y + y / 4 - y / 100 + y / 400 - 32045;
    return (julianDayNumber - 2436205) * 86400LL;
}

// The table, built in another way: not in the order of time.
std::vector<Row> expectedRows()
{
    std::vector<Row> rows;
    std::vector<long long> civilAfterLeap;
    for (LeapSecond const& leap : leapSeconds) {
        long long const civil = leap.month == 6 ? startOf(leap.year, 7) : startOf(leap.year + 1, 1);
        long long const difference = 10 + static_cast<long long>(civilAfterLeap.size());
        rows.emplace_back(civil + difference, civil, leap.year, leap.month == 6 ? 2 : 3);
        if (leap.month == 6)
            rows.emplace_back(civil + difference + 1, civil, leap.year, 1);
        civilAfterLeap.push_back(civil);
    }
    for (int year = 1958; year <= 2012; ++year) {
        long long const civil = startOf(year, 1);
        long long const leaps = std::ranges::count_if(civilAfterLeap, [&](long long after) { return after <= civil; });
        rows.emplace_back(civil + leaps + (year < 1972 ? 0 : 10), civil, year, 0);
    }
    rows.emplace_back(startOf(1972, 1), startOf(1972, 1), 1971, 3);
    std::ranges::sort(rows);
    return rows;
}

} // namespace

TEST(TAIPeriods, HoldTheKnownRows)
{
    ASSERT_EQ(TAIPeriods.size(), 91U);
    EXPECT_EQ(rowAt(0), Row(0, 0, 1958, 0));
    EXPECT_EQ(rowAt(14), Row(441763200, 441763200, 1971, 3));
    EXPECT_EQ(rowAt(15), Row(441763210, 441763200, 1972, 0));
    EXPECT_EQ(rowAt(16), Row(457488010, 457488000, 1972, 2));
    EXPECT_EQ(rowAt(17), Row(457488011, 457488000, 1972, 1));
    EXPECT_EQ(rowAt(88), Row(1704067234, 1704067200, 2012, 0));
    EXPECT_EQ(rowAt(89), Row(1719792034, 1719792000, 2012, 2));
    EXPECT_EQ(rowAt(90), Row(1719792035, 1719792000, 2012, 1));
}

TEST(TAIPeriods, HoldEachNewYearAndEachAnnouncedLeapSecond)
{
    std::vector<Row> const expected = expectedRows();
    ASSERT_EQ(expected.size(), TAIPeriods.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(rowAt(i), expected[i]) << "row " << i;
}

TEST(TAIPeriods, AreFoundByTheirFirstAndLastSecond)
{
    EXPECT_EQ(findTAIPeriod(0), 0);
    for (int i = 1; i < 91; ++i) {
        long long const start = TAIPeriods.at(static_cast<std::size_t>(i)).siSeconds;
        EXPECT_EQ(findTAIPeriod(start - 1), i - 1);
        EXPECT_EQ(findTAIPeriod(start), i);
    }
    EXPECT_EQ(findTAIPeriod(std::numeric_limits<long long>::max()), 90);
}

TEST(LeapSeconds, HaveNoCivilCountOfTheirOwn)
{
    CivilSecond const before = toCivilSecond(1719792033);
    EXPECT_EQ(before.count, 1719791999);
    EXPECT_EQ(before.leap, 0);
    CivilSecond const leap = toCivilSecond(1719792034);
    EXPECT_EQ(leap.count, 1719791999);
    EXPECT_EQ(leap.leap, 1);
    CivilSecond const after = toCivilSecond(1719792035);
    EXPECT_EQ(after.count, 1719792000);
    EXPECT_EQ(after.leap, 0);
}

TEST(LeapSeconds, AreTenAtTheEndOf1971)
{
    EXPECT_EQ(toCivilSecond(441763199).leap, 0);
    for (int leap = 1; leap <= 10; ++leap) {
        CivilSecond const civil = toCivilSecond(441763199 + leap);
        EXPECT_EQ(civil.count, 441763199);
        EXPECT_EQ(civil.leap, leap);
    }
    EXPECT_EQ(toCivilSecond(441763210).count, 441763200);
    EXPECT_EQ(toCivilSecond(441763210).leap, 0);
}

TEST(LeapSeconds, CountFromTheSecondAfterThem)
{
    EXPECT_EQ(toSISecond(441763199), 441763199);
    EXPECT_EQ(toSISecond(441763200), 441763210);
    EXPECT_EQ(toSISecond(457487999), 457488009);
    EXPECT_EQ(toSISecond(457488000), 457488011);
    EXPECT_EQ(toSISecond(1719791999), 1719792033);
    EXPECT_EQ(toSISecond(1719792000), 1719792035);
}

TEST(LeapSeconds, LeaveBothCountsTheSameBefore1972)
{
    for (long long const second : {std::numeric_limits<long long>::min(), -1LL, 0LL, 1LL, 441763199LL}) {
        EXPECT_EQ(toSISecond(second), second);
        EXPECT_EQ(toCivilSecond(second).count, second);
        EXPECT_EQ(toCivilSecond(second).leap, 0);
    }
}

TEST(LeapSeconds, StayAt35FromMid2012On)
{
    EXPECT_EQ(toSISecond(3'000'000'000), 3'000'000'035);
    EXPECT_EQ(toCivilSecond(3'000'000'035).count, 3'000'000'000);
}

TEST(LeapSeconds, HoldTheSISecondAtTheLargestNumber)
{
    constexpr long long largest = std::numeric_limits<long long>::max();
    EXPECT_EQ(toSISecond(largest - 35), largest);
    EXPECT_EQ(toSISecond(largest - 34), largest);
    EXPECT_EQ(toSISecond(largest), largest);
}
