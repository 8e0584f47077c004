// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvDateTime.h"

#include "support/CapturedOutput.h"
#include "support/DateTimeValues.h"

#include <gmock/gmock.h>

#include <limits>
#include <random>
#include <string>
#include <tuple>

using testing::IsEmpty;

TEST(DateTimeText, ShowsTheQuotedFormInUTC)
{
    EXPECT_EQ(textOf(momentOf(timeOf(2012, 6, 30, 12, 5, 59, 60, true)), AscQuotedUTC), "\"30/06/2012:11:05\"");
    EXPECT_EQ(textOf(momentOf(timeOf(2012, 1, 1, 0, 30, 0, 60)), AscQuotedUTC), "\"31/12/2011:23:30\"");
}

TEST(DateTimeText, ShowsTheFormWithAZoneInItsOwnZone)
{
    EXPECT_EQ(textOf(momentOf(timeOf(2012, 6, 30, 12, 0, 0, 60)), AscISO8601), "2012-06-30T12:00:00+01:00");
    EXPECT_EQ(textOf(momentOf(timeOf(2012, 6, 30, 12, 0, 0, 0)), AscISO8601), "2012-06-30T12:00:00+00:00");
    EXPECT_EQ(textOf(momentOf(timeOf(2012, 6, 30, 12, 0, 0, -210)), AscISO8601), "2012-06-30T12:00:00-03:30");
}

TEST(DateTimeText, TakesTheSignOfTheZoneFromTheShift)
{
    EXPECT_EQ(textOf(DateTime(0, -30, 0), AscISO8601), "1958-01-01T00:00:00-00:30");
    EXPECT_EQ(textOf(DateTime(0, -32768, 0), AscISO8601), "1958-01-01T00:00:00-546:08");
}

TEST(DateTimeText, ShowsTheOtherFormsInItsOwnZone)
{
    DateTime const moment = momentOf(timeOf(2012, 6, 30, 12, 0, 0, 60));
    EXPECT_EQ(textOf(moment, AscCompactDate), "20120630");
    EXPECT_EQ(textOf(moment, AscDateAndTime), "2012-06-30 12:00:00");
}

TEST(DateTimeText, ShowsYearsOfAnyLength)
{
    EXPECT_EQ(textOf(momentOf(timeOf(0, 2, 29)), AscCompactDate), "00229");
    EXPECT_EQ(textOf(momentOf(timeOf(-44, 3, 15)), AscDateAndTime), "-44-03-15 00:00:00");
    EXPECT_EQ(textOf(momentOf(timeOf(12345, 6, 7)), AscQuotedUTC), "\"07/06/12345:00:00\"");
}

TEST(DateTimeText, IsWrittenIntoAString)
{
    String text("before");
    DateTime(0, 0, 0).output(text, AscCompactDate);
    EXPECT_EQ(textOf(text), "19580101");
}

TEST(DateTimeText, IsLeftAsItWasByAnUnknownFormat)
{
    for (int const format : {0, 5, -1, 1000}) {
        String text("before");
        DateTime(0, 0, 0).output(text, AscDateTimeFormat(format));
        EXPECT_EQ(textOf(text), "before");
        EXPECT_THAT(textOf(DateTime(0, 0, 0), AscDateTimeFormat(format)), IsEmpty());
    }
}

TEST(DateTimeText, IsReadInEachForm)
{
    EXPECT_EQ(fieldsOf(DateTime(String("\"30/06/2012:12:00\""), AscQuotedUTC)), std::tuple(noonOfTheLeapDay, 0, 0));
    EXPECT_EQ(fieldsOf(DateTime(String("2012-06-30T12:00:00+01:00"), AscISO8601)), std::tuple(noonOfTheLeapDay, 60, 0));
    EXPECT_EQ(fieldsOf(DateTime(String("20120630"), AscCompactDate)), std::tuple(noonOfTheLeapDay - 43200, 0, 0));
    EXPECT_EQ(fieldsOf(DateTime(String("2012-06-30 12:00:00"), AscDateAndTime)), std::tuple(noonOfTheLeapDay, 0, 0));
}

TEST(DateTimeText, IsReadInTheProcessWideZoneIfItHasNoZone)
{
    GlobalZone const zone(-90, true);
    EXPECT_EQ(fieldsOf(DateTime(String("\"30/06/2012:12:00\""), AscQuotedUTC)), std::tuple(noonOfTheLeapDay, 0, 0));
    EXPECT_EQ(fieldsOf(DateTime(String("2012-06-30T12:00:00-00:30"), AscISO8601)),
              std::tuple(noonOfTheLeapDay, -30, 0));
    EXPECT_EQ(fieldsOf(DateTime(String("20120630"), AscCompactDate)), std::tuple(noonOfTheLeapDay - 43200, -90, 1));
    EXPECT_EQ(fieldsOf(DateTime(String("2012-06-30 12:00:00"), AscDateAndTime)), std::tuple(noonOfTheLeapDay, -90, 1));
}

TEST(DateTimeText, IsReadWithALeapSecond)
{
    EXPECT_EQ(DateTime(String("2012-06-30T23:59:60+00:00"), AscISO8601).getSISeconds(), 1719792034);
    EXPECT_EQ(DateTime(String("1971-12-31 23:59:69"), AscDateAndTime).getSISeconds(), 441763209);
}

TEST(DateTimeText, IsReadAsItWasWritten)
{
    std::mt19937_64 random(1);
    std::uniform_int_distribution<long long> draw(leastSeconds, largestSeconds);
    std::uniform_int_distribution<int> drawBits(0, 63);
    for (int i = 0; i < 20'000; ++i) {
        DateTime const moment(draw(random) >> drawBits(random), static_cast<short>(draw(random)), 0);
        DateTime read(false);
        ASSERT_TRUE(read.init(moment.getString(AscISO8601), AscISO8601));
        ASSERT_EQ(fieldsOf(read), fieldsOf(moment));
        ASSERT_TRUE(read.init(moment.getString(AscDateAndTime), AscDateAndTime));
        ASSERT_EQ(read.getSISeconds(), moment.getSISeconds());
        for (AscDateTimeFormat const format : {AscQuotedUTC, AscCompactDate}) {
            ASSERT_TRUE(read.init(moment.getString(format), format)) << textOf(moment, format);
            ASSERT_EQ(textOf(read, format), textOf(moment, format));
        }
    }
}

TEST(DateTimeText, IsReadAtBothEndsOfTime)
{
    for (long long const seconds : {leastSeconds, leastSeconds + 1, largestSeconds - 1, largestSeconds}) {
        DateTime const moment(seconds, 0, 0);
        for (AscDateTimeFormat const format : {AscQuotedUTC, AscISO8601, AscCompactDate, AscDateAndTime}) {
            DateTime read(false);
            EXPECT_TRUE(read.init(moment.getString(format), format));
            EXPECT_EQ(textOf(read, format), textOf(moment, format));
        }
    }
}

TEST(DateTimeText, IsRefusedInAnyOtherForm)
{
    struct Malformed
    {
        AscDateTimeFormat format;
        std::string text;
    };
    Malformed const malformed[] = {
        {AscISO8601, ""},
        {AscISO8601, "2012"},
        {AscISO8601, "2012-06-30T12:00:00"},
        {AscISO8601, "2012-06-30T12:00:00+01:0"},
        {AscISO8601, "2012-06-30T12:00:00+01:00 "},
        {AscISO8601, " 2012-06-30T12:00:00+01:00"},
        {AscISO8601, "2012-06-30 12:00:00+01:00"},
        {AscISO8601, "2012-06-30T12:00:00 01:00"},
        {AscISO8601, "2012-06-30T12:00:00-00:00"},
        {AscISO8601, "2012-06-30T12:00:00+00:60"},
        {AscISO8601, "2012-06-30T12:00:00+1092:16"},
        {AscISO8601, "2012-6-30T12:00:00+01:00"},
        {AscISO8601, "02012-06-30T12:00:00+01:00"},
        {AscISO8601, "+2012-06-30T12:00:00+01:00"},
        {AscISO8601, "2012-13-30T12:00:00+01:00"},
        {AscISO8601, "2012-00-30T12:00:00+01:00"},
        {AscISO8601, "2012-06-31T12:00:00+01:00"},
        {AscISO8601, "1582-10-10T12:00:00+01:00"},
        {AscISO8601, "2012-06-30T24:00:00+01:00"},
        {AscISO8601, "2012-06-30T12:60:00+01:00"},
        {AscISO8601, "2012-06-30T12:00:60+01:00"},
        {AscISO8601, "9223372036854775807-01-01T00:00:00+00:00"},
        {AscISO8601, "99999999999999999999-01-01T00:00:00+00:00"},
        {AscISO8601, "2012-99999999999-30T12:00:00+01:00"},
        {AscISO8601, "2012--2147483648-30T12:00:00+01:00"},
        {AscISO8601, "2012-06-30T12:00:00+2147483647:00"},
        {AscISO8601, std::string("2012-06-30T12:00:00+01:00\0", 26)},
        {AscQuotedUTC, "30/06/2012:12:00"},
        {AscQuotedUTC, "\"30/06/2012:12:00"},
        {AscQuotedUTC, "\"30/06/2012:12:00:00\""},
        {AscQuotedUTC, "\"06/30/2012:12:00\""},
        {AscQuotedUTC, "\"30.06.2012:12:00\""},
        {AscCompactDate, ""},
        {AscCompactDate, "-"},
        {AscCompactDate, "0630"},
        {AscCompactDate, "2012063"},
        {AscCompactDate, "20120631"},
        {AscCompactDate, "2012-06-30"},
        {AscCompactDate, "-9223372036854775808"},
        {AscDateAndTime, "2012-06-30T12:00:00"},
        {AscDateAndTime, "2012-06-30 12:00"},
        {AscDateAndTime, "2012-06-30 12:00:00+01:00"},
        {AscDateAndTime, "2012-06-30 12:0x:00"},
        {AscDateTimeFormat(5), "2012-06-30 12:00:00"},
    };
    for (Malformed const& input : malformed) {
        CapturedOutput const output(1);
        String text;
        text.init(input.text.data(), input.text.size());
        EXPECT_EQ(fieldsOf(DateTime(text, input.format)), std::tuple(0, 0, 0)) << input.text;
        DateTime moment(5, 6, 1);
        EXPECT_FALSE(moment.init(text, input.format)) << input.text;
        EXPECT_EQ(fieldsOf(moment), std::tuple(5, 6, 1));
        EXPECT_THAT(output.text(), IsEmpty());
    }
}

TEST(DateTimeBytes, AreWrittenMostSignificantFirst)
{
    unsigned char bytes[binaryDateTimeSize + 1] = {};
    bytes[binaryDateTimeSize] = 0xAA;
    DateTime(0x0102030405060708, -2, 0x0A01).output(bytes, BinBigEndian);
    EXPECT_THAT(bytes, testing::ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 0xFF, 0xFE, 0x0A, 1, 0xAA));
}

TEST(DateTimeBytes, AreRead)
{
    unsigned char const bytes[binaryDateTimeSize] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE, 0x01, 0x02, 0, 1};
    EXPECT_EQ(fieldsOf(DateTime(bytes, BinBigEndian)), std::tuple(-2, 258, 1));
}

TEST(DateTimeBytes, AreReadAsTheyWereWritten)
{
    std::mt19937_64 random(1);
    std::uniform_int_distribution<long long> draw(leastSeconds, largestSeconds);
    for (int i = 0; i < 1000; ++i) {
        DateTime const moment(draw(random), static_cast<short>(draw(random)),
                              static_cast<unsigned short>(draw(random)));
        unsigned char bytes[binaryDateTimeSize];
        moment.output(bytes, BinBigEndian);
        DateTime read(false);
        EXPECT_TRUE(read.init(bytes, BinBigEndian));
        EXPECT_EQ(fieldsOf(read), fieldsOf(moment));
    }
}

TEST(DateTimeBytes, AreLeftAloneByAnUnknownFormat)
{
    unsigned char byte = 0xAA;
    DateTime moment(1, 2, 1);
    moment.output(&byte, BinDateTimeFormat(0));
    EXPECT_EQ(byte, 0xAA);
    EXPECT_FALSE(moment.init(&byte, BinDateTimeFormat(2)));
    EXPECT_EQ(fieldsOf(moment), std::tuple(1, 2, 1));
    EXPECT_EQ(fieldsOf(DateTime(&byte, BinDateTimeFormat(2))), std::tuple(0, 0, 0));
}

TEST(MonthAbbreviations, CountFrom0)
{
    char const* const names[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    int number = 0;
    for (char const* const name : names)
        EXPECT_EQ(DateTime::getMonthNumberFromEnglishAbbreviation(String(name)), number++);
}

TEST(MonthAbbreviations, AreReadOnlyInTheirExactSpelling)
{
    for (char const* const text : {"", "J", "Ja", "jan", "JAN", "January", "Jan.", " Jan", "Mai", "13"})
        EXPECT_EQ(DateTime::getMonthNumberFromEnglishAbbreviation(String(text)), -1) << text;
}

TEST(Durations, AreShownInDaysOrTimeOrBoth)
{
    double const duration = 2 * 86400 + 3 * 3600 + 4 * 60 + 5.9;
    EXPECT_EQ(textOf(DateTime::secondsToString(duration, 1)), "2d");
    EXPECT_EQ(textOf(DateTime::secondsToString(duration, 2)), "03:04:05");
    EXPECT_EQ(textOf(DateTime::secondsToString(duration, 3)), "2d 03:04:05");
    EXPECT_EQ(textOf(DateTime::secondsToString(86399, 3)), "0d 23:59:59");
    EXPECT_EQ(textOf(DateTime::secondsToString(0, 3)), "0d 00:00:00");
}

TEST(Durations, AreNotShownInUnknownPieces)
{
    EXPECT_THAT(textOf(DateTime::secondsToString(1, 0)), IsEmpty());
    EXPECT_THAT(textOf(DateTime::secondsToString(1, 4)), IsEmpty());
    EXPECT_THAT(textOf(DateTime::secondsToString(1, 255)), IsEmpty());
}

TEST(Durations, BelowZeroHaveASign)
{
    EXPECT_EQ(textOf(DateTime::secondsToString(-90, 2)), "-00:01:30");
    EXPECT_EQ(textOf(DateTime::secondsToString(-86401, 3)), "-1d 00:00:01");
    EXPECT_EQ(textOf(DateTime::secondsToString(-0.9, 2)), "00:00:00");
}

TEST(Durations, OutOfRangeAreHeldAtTheLimit)
{
    // The largest double below 2^63 is 2^63 - 1024 = 106751991167300 days and 54784 s.
    double const infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(textOf(DateTime::secondsToString(infinity, 3)), "106751991167300d 15:13:04");
    EXPECT_EQ(textOf(DateTime::secondsToString(-1e300, 3)), "-106751991167300d 15:13:04");
    EXPECT_EQ(textOf(DateTime::secondsToString(std::numeric_limits<double>::quiet_NaN(), 3)), "0d 00:00:00");
}
