// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvDateTime.h"

#include "support/CapturedOutput.h"
#include "support/DateTimeValues.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <ctime>
#include <limits>
#include <random>
#include <string>
#include <tuple>

namespace
{

using testing::IsEmpty;

DateTimeStruct timeAt(DateTime const& moment)
{
    DateTimeStruct time;
    moment.getDateTimeStruct(&time);
    return time;
}

// What the moment of a struct prints to standard output.
std::string faultsOf(DateTimeStruct const& time)
{
    CapturedOutput const output(1);
    momentOf(time);
    return output.text();
}

// Sets the time zone of the C library, and restores it at the end.
class TimeZone
{
public:
    explicit TimeZone(char const* zone)
    {
        if (char const* const old = std::getenv("TZ"))
            previous = old;
        setenv("TZ", zone, 1);
        tzset();
    }

    ~TimeZone()
    {
        if (previous.empty())
            unsetenv("TZ");
        else
            setenv("TZ", previous.c_str(), 1);
        tzset();
    }

    TimeZone(TimeZone const&) = delete;
    TimeZone& operator=(TimeZone const&) = delete;

private:
    std::string previous;
};

} // namespace

TEST(DateTime, CountsSecondsFrom1January1958)
{
    EXPECT_EQ(momentOf(timeOf(1958, 1, 1)).getSISeconds(), 0);
    EXPECT_EQ(momentOf(timeOf(1958, 1, 2, 3, 4, 5)).getSISeconds(), 86400 + 3 * 3600 + 4 * 60 + 5);
    EXPECT_EQ(momentOf(timeOf(1957, 12, 31, 23, 59, 59)).getSISeconds(), -1);
}

TEST(DateTime, CountsLeapSeconds)
{
    EXPECT_EQ(momentOf(timeOf(1972, 1, 1)).getSISeconds(), 441763210);
    EXPECT_EQ(momentOf(timeOf(2012, 6, 30, 12)).getSISeconds(), noonOfTheLeapDay);
    EXPECT_EQ(momentOf(timeOf(2012, 7, 1)).getSISeconds(), 1719792035);
}

TEST(DateTime, TellsALeapSecondFromTheSecondsAroundIt)
{
    EXPECT_EQ(momentOf(timeOf(2012, 6, 30, 23, 59, 59)).getSISeconds(), 1719792033);
    EXPECT_EQ(momentOf(timeOf(2012, 6, 30, 23, 59, 60)).getSISeconds(), 1719792034);
    EXPECT_EQ(textOf(DateTime(1719792033, 0, 0), AscISO8601), "2012-06-30T23:59:59+00:00");
    EXPECT_EQ(textOf(DateTime(1719792034, 0, 0), AscISO8601), "2012-06-30T23:59:60+00:00");
    EXPECT_EQ(textOf(DateTime(1719792035, 0, 0), AscISO8601), "2012-07-01T00:00:00+00:00");
}

TEST(DateTime, ShowsTheTenSecondsAtTheEndOf1971AsSeconds60To69)
{
    EXPECT_EQ(textOf(DateTime(441763199, 0, 0), AscDateAndTime), "1971-12-31 23:59:59");
    EXPECT_EQ(textOf(DateTime(441763200, 0, 0), AscDateAndTime), "1971-12-31 23:59:60");
    EXPECT_EQ(textOf(DateTime(441763209, 0, 0), AscDateAndTime), "1971-12-31 23:59:69");
    EXPECT_EQ(textOf(DateTime(441763210, 0, 0), AscDateAndTime), "1972-01-01 00:00:00");
    CapturedOutput const faults(1);
    for (int second = 60; second < 70; ++second)
        EXPECT_EQ(momentOf(timeOf(1971, 12, 31, 23, 59, second)).getSISeconds(), 441763200 + second - 60);
}

TEST(DateTime, TakesSecond60OfAnyMinuteAsTheNextMinute)
{
    EXPECT_EQ(momentOf(timeOf(2011, 3, 4, 5, 6, 60)).getSISeconds(), momentOf(timeOf(2011, 3, 4, 5, 7)).getSISeconds());
}

TEST(DateTime, ShowsLaterDatesAsIfNoOtherLeapSecondsCame)
{
    EXPECT_EQ(textOf(DateTime(1719792035 + 10 * 86400, 0, 0), AscDateAndTime), "2012-07-11 00:00:00");
}

TEST(DateTime, GoesFromTheJulianToTheGregorianCalendarOvernight)
{
    DateTime moment = momentOf(timeOf(1582, 10, 4, 12));
    EXPECT_EQ(momentOf(timeOf(1582, 10, 15, 12)).getSISeconds() - moment.getSISeconds(), 86400);
    moment.addSISeconds(86400);
    EXPECT_EQ(textOf(moment, AscCompactDate), "15821015");
}

TEST(DateTime, KnowsTheLeapYearsOfEachCalendar)
{
    EXPECT_TRUE(DateTime::isJulianLeapYear(1900));
    EXPECT_TRUE(DateTime::isJulianLeapYear(0));
    EXPECT_TRUE(DateTime::isJulianLeapYear(-4));
    EXPECT_FALSE(DateTime::isJulianLeapYear(-3));
    EXPECT_FALSE(DateTime::isGregorianLeapYear(1900));
    EXPECT_TRUE(DateTime::isGregorianLeapYear(2000));
    EXPECT_TRUE(DateTime::isGregorianLeapYear(2012));
    EXPECT_FALSE(DateTime::isGregorianLeapYear(2013));
    EXPECT_FALSE(DateTime::isLeapYear(1900));
    EXPECT_TRUE(DateTime::isLeapYear(2000));
    EXPECT_TRUE(DateTime::isLeapYear(1500));
    EXPECT_FALSE(DateTime::isLeapYear(1582));
    EXPECT_TRUE(DateTime::isLeapYear(1584));
    EXPECT_FALSE(DateTime::isLeapYear(1700));
    EXPECT_TRUE(DateTime::isLeapYear(leastSeconds));
    EXPECT_FALSE(DateTime::isLeapYear(largestSeconds));
}

TEST(DateTime, GivesBackEveryDay)
{
    for (long long day = -1'000'000; day < 200'000; ++day) {
        DateTime const moment(day * 86400 + 40000, -210, 1);
        DateTimeStruct const time = timeAt(moment);
        ASSERT_EQ(fieldsOf(momentOf(time)), fieldsOf(moment)) << textOf(moment, AscISO8601);
        ASSERT_TRUE(0 <= time.month && time.month < 12 && 0 <= time.day && time.day < 31);
    }
}

TEST(DateTime, GivesBackTheSecondsOfADay)
{
    for (int second = 0; second < 86400; ++second) {
        DateTimeStruct const time = timeAt(DateTime(-86400 + second, 0, 0));
        ASSERT_EQ(fieldsOf(time), fieldsOf(timeOf(1957, 12, 31, second / 3600, second / 60 % 60, second % 60)));
    }
}

TEST(DateTime, GivesBackAnyNumberOfSeconds)
{
    std::mt19937_64 random(1);
    std::uniform_int_distribution<long long> draw(leastSeconds, largestSeconds);
    for (int i = 0; i < 100'000; ++i) {
        DateTime const moment(draw(random), 0, 0);
        ASSERT_EQ(momentOf(timeAt(moment)).getSISeconds(), moment.getSISeconds());
    }
    for (long long const seconds : {leastSeconds, leastSeconds + 1, largestSeconds - 1, largestSeconds})
        EXPECT_EQ(momentOf(timeAt(DateTime(seconds, 0, 0))).getSISeconds(), seconds);
}

TEST(DateTime, HoldsYearsOutOfRangeAtTheLimit)
{
    EXPECT_EQ(momentOf(timeOf(largestSeconds, 6, 30, 12)).getSISeconds(), largestSeconds);
    EXPECT_EQ(momentOf(timeOf(leastSeconds, 6, 30, 12)).getSISeconds(), leastSeconds);
    EXPECT_EQ(momentOf(timeOf(300'000'000'000, 1, 1)).getSISeconds(), largestSeconds);
    EXPECT_EQ(momentOf(timeOf(-300'000'000'000, 1, 1)).getSISeconds(), leastSeconds);
}

TEST(DateTime, IsSecond0OfUTCWhileUnset)
{
    EXPECT_EQ(fieldsOf(DateTime(false)), std::tuple(0, 0, 0));
}

TEST(DateTime, IsUnsetAgainByAnInit)
{
    DateTime moment(5, 6, 1);
    moment.init(false);
    EXPECT_EQ(fieldsOf(moment), std::tuple(0, 0, 0));
}

TEST(DateTime, TakesSecondsShiftAndFlagsAsTheyAre)
{
    DateTime const moment(-5, -30, 0xFFFE);
    EXPECT_EQ(fieldsOf(moment), std::tuple(-5, -30, 0xFFFE));
    DateTime other(false);
    other.init(-5, -30, 0xFFFE);
    EXPECT_EQ(fieldsOf(other), fieldsOf(moment));
    EXPECT_FALSE(timeAt(moment).dst);
}

TEST(DateTime, CopiesAnother)
{
    DateTime const moment(7, 8, 1);
    DateTime const copy(moment);
    EXPECT_EQ(fieldsOf(copy), std::tuple(7, 8, 1));
    DateTime other(false);
    other.init(moment);
    EXPECT_EQ(fieldsOf(other), std::tuple(7, 8, 1));
}

TEST(DateTime, KeepsShiftAndDaylightSavingFlagOfAStruct)
{
    DateTimeStruct const time = timeOf(2011, 3, 4, 5, 6, 7, -570, true);
    DateTime moment(false);
    moment.init(&time);
    EXPECT_EQ(moment.getShift(), -570);
    EXPECT_EQ(moment.getFlags(), 1);
    EXPECT_EQ(fieldsOf(timeAt(moment)), fieldsOf(time));
}

TEST(DateTime, CountsTheSecondsOfItsOwnZone)
{
    EXPECT_EQ(momentOf(timeOf(1958, 1, 1, 0, 0, 0, 120)).getSISeconds(), 0);
}

TEST(DateTime, IsMadeOfSixNumbersInTheProcessWideZone)
{
    GlobalZone const zone(90, true);
    DateTime const moment(2012, 5, 29, 12, 0, 0);
    EXPECT_EQ(fieldsOf(moment), std::tuple(noonOfTheLeapDay, 90, 1));
    DateTime other(false);
    other.init(2012, 5, 29, 12, 0, 0);
    EXPECT_EQ(fieldsOf(other), fieldsOf(moment));
}

TEST(DateTime, StartsWithUTCAsTheProcessWideZone)
{
    EXPECT_EQ(DateTime::globalshift, 0);
    EXPECT_FALSE(DateTime::globalsummertime);
    EXPECT_EQ(fieldsOf(DateTime(1958, 0, 0, 0, 0, 1)), std::tuple(1, 0, 0));
}

TEST(DateTime, SetsTheProcessWideZone)
{
    GlobalZone const zone(-45, true);
    EXPECT_EQ(DateTime::globalshift, -45);
    EXPECT_TRUE(DateTime::globalsummertime);
}

TEST(DateTime, TakesTheProcessWideZoneFromTheSystem)
{
    GlobalZone const zone(0, false);
    {
        TimeZone const kolkata("IST-5:30");
        DateTime::setGlobalTimeShiftToLocalSetting();
        EXPECT_EQ(DateTime::globalshift, 330);
        EXPECT_FALSE(DateTime::globalsummertime);
    }
    TimeZone const alwaysSummer("EST5EDT,0/0,J365/25");
    DateTime::setGlobalTimeShiftToLocalSetting();
    EXPECT_EQ(DateTime::globalshift, -240);
    EXPECT_TRUE(DateTime::globalsummertime);
}

TEST(DateTime, ReadsTheSystemClock)
{
    TimeZone const zone("UTC0");
    // From 1 January 1958 to 1 January 1970 there are 12 years and 3 leap days. 35 leap seconds are known after that.
    constexpr long long unixEpoch = (12 * 365 + 3) * 86400LL + 35;
    long long const before = unixEpoch + std::time(nullptr);
    DateTime const moment(true);
    long long const after = unixEpoch + std::time(nullptr);
    EXPECT_LE(before, moment.getSISeconds());
    EXPECT_LE(moment.getSISeconds(), after);
    EXPECT_EQ(moment.getShift(), 0);
    EXPECT_EQ(moment.getFlags(), 0);
}

TEST(DateTime, ReadsTheSystemClockInLocalTime)
{
    TimeZone const newfoundland("NST3:30");
    std::time_t const before = std::time(nullptr);
    DateTimeStruct now;
    DateTime::getNowDateTimeStruct(&now);
    std::time_t const after = std::time(nullptr);
    std::tm asUTC{};
    asUTC.tm_year = static_cast<int>(now.year - 1900);
    asUTC.tm_mon = now.month;
    asUTC.tm_mday = now.day + 1;
    asUTC.tm_hour = now.hour;
    asUTC.tm_min = now.minute;
    asUTC.tm_sec = now.second;
    std::time_t const clock = timegm(&asUTC) + 210 * 60;
    EXPECT_LE(before, clock);
    EXPECT_LE(clock, after);
    EXPECT_EQ(now.shift, -210);
    EXPECT_FALSE(now.dst);
}

TEST(DateTime, SaysWhenDaylightSavingTimeIsInForce)
{
    TimeZone const alwaysSummer("EST5EDT,0/0,J365/25");
    DateTime const moment(true);
    EXPECT_EQ(moment.getShift(), -240);
    EXPECT_EQ(moment.getFlags(), 1);
}

TEST(DateTime, ChangesItsSeconds)
{
    DateTime moment(false);
    moment.setSISeconds(10);
    moment.addSISeconds(-25);
    EXPECT_EQ(moment.getSISeconds(), -15);
}

TEST(DateTime, HoldsItsSecondsAtTheLimit)
{
    DateTime moment(largestSeconds - 1, 0, 0);
    moment.addSISeconds(5);
    EXPECT_EQ(moment.getSISeconds(), largestSeconds);
    moment.setSISeconds(-2);
    moment.addSISeconds(leastSeconds);
    EXPECT_EQ(moment.getSISeconds(), leastSeconds);
    moment.correctZone(-32768, false);
    EXPECT_EQ(moment.getSISeconds(), leastSeconds);
}

TEST(DateTime, KeepsItsSecondsWhenItsZoneIsSet)
{
    DateTime moment(1000, 60, 0);
    moment.setZone(-30, true);
    EXPECT_EQ(fieldsOf(moment), std::tuple(1000, -30, 1));
    moment.setZone(0, false);
    EXPECT_EQ(fieldsOf(moment), std::tuple(1000, 0, 0));
}

TEST(DateTime, MovesItsSecondsWhenItsZoneIsCorrected)
{
    DateTime moment(1000, 60, 0);
    moment.correctZone(-30, true);
    EXPECT_EQ(fieldsOf(moment), std::tuple(1000 - 90 * 60, -30, 1));
    moment.correctZone(60, false);
    EXPECT_EQ(fieldsOf(moment), std::tuple(1000, 60, 0));
}

TEST(DateTime, CorrectsItsZoneFromOneEndToTheOther)
{
    DateTime moment(0, -32768, 0);
    moment.correctZone(32767, false);
    EXPECT_EQ(fieldsOf(moment), std::tuple(65535 * 60, 32767, 0));
}

TEST(DateTime, LeavesTheOtherFlagsAloneInAnotherZone)
{
    DateTime moment(0, 0, 0xFFFE);
    moment.setZone(0, true);
    EXPECT_EQ(moment.getFlags(), 0xFFFF);
    moment.correctZone(0, false);
    EXPECT_EQ(moment.getFlags(), 0xFFFE);
}

TEST(DateTime, GivesItsTimeInUTC)
{
    DateTimeStruct time;
    momentOf(timeOf(2012, 1, 1, 0, 20, 30, 60, true)).getDateTimeStructUTC(&time);
    EXPECT_EQ(fieldsOf(time), fieldsOf(timeOf(2011, 12, 31, 23, 20, 30)));
}

TEST(DateTime, NamesTheFirstUncertainSecond)
{
    EXPECT_EQ(DateTime::getFirstUncertainSecondNumber(), 1719792035);
}

TEST(DateTime, FindsTheLeapSecondPeriodOfASecond)
{
    EXPECT_EQ(DateTime::getLeapSecondCorrectionConstant(0), 0);
    EXPECT_EQ(DateTime::getLeapSecondCorrectionConstant(365 * 86400 - 1), 0);
    EXPECT_EQ(DateTime::getLeapSecondCorrectionConstant(365 * 86400), 1);
    EXPECT_EQ(DateTime::getLeapSecondCorrectionConstant(441763209), 14);
    EXPECT_EQ(DateTime::getLeapSecondCorrectionConstant(441763210), 15);
    EXPECT_EQ(DateTime::getLeapSecondCorrectionConstant(1719792033), 88);
    EXPECT_EQ(DateTime::getLeapSecondCorrectionConstant(1719792034), 89);
}

TEST(DateTime, KnowsNoLeapSecondsFromTheFirstUncertainSecondOn)
{
    EXPECT_EQ(DateTime::getLeapSecondCorrectionConstant(1719792035), -1);
    EXPECT_EQ(DateTime::getLeapSecondCorrectionConstant(1719792036), -3);
    EXPECT_EQ(DateTime::getLeapSecondCorrectionConstant(largestSeconds), -3);
}

TEST(DateTime, PrintsThatANegativeSecondIsInvalid)
{
    CapturedOutput const output(1);
    EXPECT_EQ(DateTime::getLeapSecondCorrectionConstant(-1), -2);
    EXPECT_EQ(DateTime::getLeapSecondCorrectionConstant(leastSeconds), -2);
    EXPECT_EQ(output.text(), "Invalid second number.\nInvalid second number.\n");
}

TEST(DateTime, AddsTheLeapSecondsToACivilCount)
{
    EXPECT_EQ(DateTime::correctLeapSeconds(-1), -1);
    EXPECT_EQ(DateTime::correctLeapSeconds(441763199), 441763199);
    EXPECT_EQ(DateTime::correctLeapSeconds(441763200), 441763210);
    EXPECT_EQ(DateTime::correctLeapSeconds(1719791999), 1719792033);
    EXPECT_EQ(DateTime::correctLeapSeconds(1719792000), 1719792035);
    EXPECT_EQ(DateTime::correctLeapSeconds(2'000'000'000), 2'000'000'035);
}

TEST(DateTimeFaults, AreNotPrintedForNumbersInRange)
{
    EXPECT_THAT(faultsOf(timeOf(2012, 1, 1)), IsEmpty());
    EXPECT_THAT(faultsOf(timeOf(2012, 12, 31, 23, 59, 60)), IsEmpty());
    EXPECT_THAT(faultsOf(timeOf(2012, 2, 29)), IsEmpty());
    EXPECT_THAT(faultsOf(timeOf(1500, 2, 29)), IsEmpty());
    EXPECT_THAT(faultsOf(timeOf(1582, 10, 4)), IsEmpty());
    EXPECT_THAT(faultsOf(timeOf(1582, 10, 15)), IsEmpty());
    EXPECT_THAT(faultsOf(timeOf(-4712, 1, 1)), IsEmpty());
}

TEST(DateTimeFaults, NameADateThatTheChangeOfCalendarLeftOut)
{
    std::string const message =
        "The specified date does not exist. Assuming date in Julian calendar but might be different when outputted.\n";
    EXPECT_EQ(faultsOf(timeOf(1582, 10, 5)), message);
    EXPECT_EQ(faultsOf(timeOf(1582, 10, 10)), message);
    EXPECT_EQ(faultsOf(timeOf(1582, 10, 14)), message);
}

TEST(DateTimeFaults, LeaveADateThatWasLeftOutJulian)
{
    CapturedOutput const faults(1);
    EXPECT_EQ(textOf(momentOf(timeOf(1582, 10, 10)), AscCompactDate), "15821020");
}

TEST(DateTimeFaults, NameEachNumberOutOfRange)
{
    EXPECT_EQ(faultsOf(timeOf(2012, 13, 1)), "Invalid month number.\n");
    EXPECT_EQ(faultsOf(timeOf(2012, 0, 1)), "Invalid month number.\n");
    EXPECT_EQ(faultsOf(timeOf(2012, 1, 0)), "Invalid day of month.\n");
    EXPECT_EQ(faultsOf(timeOf(2012, 1, 32)), "Invalid day of month.\n");
    EXPECT_EQ(faultsOf(timeOf(2012, 4, 31)), "Invalid day of month.\n");
    EXPECT_EQ(faultsOf(timeOf(1900, 2, 29)), "Invalid day of month.\n");
    EXPECT_EQ(faultsOf(timeOf(2012, 1, 1, 24)), "Invalid hour number.\n");
    EXPECT_EQ(faultsOf(timeOf(2012, 1, 1, -1)), "Invalid hour number.\n");
    EXPECT_EQ(faultsOf(timeOf(2012, 1, 1, 0, 60)), "Invalid minute number.\n");
    EXPECT_EQ(faultsOf(timeOf(2012, 1, 1, 0, -1)), "Invalid minute number.\n");
    EXPECT_EQ(faultsOf(timeOf(2012, 1, 1, 0, 0, 61)), "Invalid second number.\n");
    EXPECT_EQ(faultsOf(timeOf(2012, 1, 1, 0, 0, -1)), "Invalid second number.\n");
}

TEST(DateTimeFaults, AreAllPrinted)
{
    EXPECT_EQ(faultsOf(timeOf(2012, 13, 32, 24, 60, 61)),
              "Invalid month number.\nInvalid day of month.\nInvalid hour number.\nInvalid minute number.\n"
              "Invalid second number.\n");
}

TEST(DateTimeFaults, ArePrintedForSixNumbersToo)
{
    CapturedOutput const output(1);
    DateTime const moment(2012, 12, 0, 0, 0, 0);
    EXPECT_EQ(output.text(), "Invalid month number.\n");
    EXPECT_EQ(moment.getSISeconds(), momentOf(timeOf(2013, 1, 1)).getSISeconds());
}

TEST(DateTimeFaults, LeaveTheNumbersAsTheyAre)
{
    CapturedOutput const output(1);
    EXPECT_EQ(textOf(momentOf(timeOf(2012, 14, 1)), AscDateAndTime), "2013-02-01 00:00:00");
    EXPECT_EQ(textOf(momentOf(timeOf(2012, 2, 30)), AscDateAndTime), "2012-03-01 00:00:00");
    EXPECT_EQ(textOf(momentOf(timeOf(2012, 1, 1, 25)), AscDateAndTime), "2012-01-02 01:00:00");
    EXPECT_EQ(textOf(momentOf(timeOf(2012, 1, 1, 0, -1)), AscDateAndTime), "2011-12-31 23:59:00");
    EXPECT_EQ(textOf(momentOf(timeOf(2013, 1, 1, 0, 0, 61)), AscDateAndTime), "2013-01-01 00:01:01");
}

TEST(DateTimeFaults, MayHaveAnySize)
{
    CapturedOutput const output(1);
    constexpr int high = std::numeric_limits<int>::max();
    constexpr int low = std::numeric_limits<int>::min();
    DateTimeStruct const above{largestSeconds, high, high, high, high, high, 32767, true};
    DateTimeStruct const below{leastSeconds, low, low, low, low, low, -32768, false};
    EXPECT_EQ(fieldsOf(momentOf(above)), std::tuple(largestSeconds, 32767, 1));
    EXPECT_EQ(fieldsOf(momentOf(below)), std::tuple(leastSeconds, -32768, 0));
    DateTimeStruct const near{1958, 0, 0, high, high, high, 0, false};
    EXPECT_EQ(momentOf(near).getSISeconds(), 3661LL * high + 35);
}
