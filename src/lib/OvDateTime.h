// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "OvCalendar.h"
#include "OvString.h"

/// A moment as people write it. The calendar is Julian until 4 October 1582 and Gregorian from the next day on, 15
/// October 1582; the year before 1 is 0.
struct DateTimeStruct
{
    long long year = 0;
    int month = 0;  ///< 0 is January
    int day = 0;    ///< 0 is the 1st
    int hour = 0;   ///< 0 to 23
    int minute = 0; ///< 0 to 59
    int second = 0; ///< 0 to 59, 60 in a leap second, 60 to 69 in the ten seconds put in at the end of 1971

    short shift = 0;  ///< time zone, minutes east of UTC
    bool dst = false; ///< daylight-saving time in force
};

/// Texts of a moment. Months and days count from 1. All numbers but the year have at least two digits.
enum AscDateTimeFormat : int {
    AscQuotedUTC = 1,   ///< "day/month/year:hour:minute", in UTC, the quotes included
    AscISO8601 = 2,     ///< year-month-dayThour:minute:second, then the zone: + or -, hours:minutes
    AscCompactDate = 3, ///< yearmonthday, in the moment's own zone
    AscDateAndTime = 4  ///< year-month-day hour:minute:second, in the moment's own zone
};

/// Bytes of a moment.
enum BinDateTimeFormat : int {
    /// Twelve bytes, the most significant first: eight for the seconds, two for the shift (both in two's complement),
    /// two for the flags.
    BinBigEndian = 1
};

/// How many bytes a binary form takes.
inline constexpr int binaryDateTimeSize = 12;

/// A moment: SI seconds, leap seconds included, and the time zone in which it is shown.
///
/// The seconds count from 1 January 1958, 00:00:00, in the value's own zone. Leap seconds are known until mid-2012;
/// later moments are shown as if there were no more. Numbers beyond 64 bits are held at the limit.
class DateTime
{
public:
    /// The process-wide zone, for moments made without a zone: minutes east of UTC, and whether daylight-saving time is
    /// in force. UTC at first.
    inline static short globalshift = 0;
    inline static bool globalsummertime = false;

    static void setGlobalTimeShift(short newShift, bool summertime);
    /// Sets the local zone that is in force now.
    static void setGlobalTimeShiftToLocalSetting();

    /// Now, in local time. With `now` false, the moment is unset: second 0 of UTC.
    explicit DateTime(bool now) { init(now); }

    /// A moment in the process-wide zone. Month and day count from 0. Numbers out of range give the same messages as in
    /// a struct.
    DateTime(long long year, int month, int day, int hour, int minute, int second)
    {
        init(year, month, day, hour, minute, second);
    }

    /// The moment of a struct. Prints a line to standard output for a date that the change of calendar left out, and
    /// then one for each number out of range. Such numbers count on into the next months, days, hours or minutes.
    /// Left-out dates count as Julian.
    explicit DateTime(DateTimeStruct const* broken) { init(broken); }

    /// The moment of a text exactly as `output` writes it; unset for any other text. Fields that the format does not
    /// have are 0. The zone is UTC in format 1, and the process-wide one in formats 3 and 4.
    DateTime(String const& text, AscDateTimeFormat format) { init(text, format); }

    /// The moment of `binaryDateTimeSize` bytes. Unset if the format is unknown.
    DateTime(unsigned char const* bytes, BinDateTimeFormat format) { init(bytes, format); }

    DateTime(long long newSeconds, short newShift, unsigned short newFlags) { init(newSeconds, newShift, newFlags); }

    // Each does the same as the constructor with the same arguments.
    void init(bool now);
    void init(long long year, int month, int day, int hour, int minute, int second);
    void init(DateTimeStruct const* broken);
    /// \return whether the text has that format; if not, the moment does not change
    bool init(String const& text, AscDateTimeFormat format);
    /// \return whether the format is known; if not, the moment does not change
    bool init(unsigned char const* bytes, BinDateTimeFormat format);
    void init(long long newSeconds, short newShift, unsigned short newFlags);
    void init(DateTime const& other) { *this = other; }

    /// The text of the moment; empty for an unknown format.
    String getString(AscDateTimeFormat format) const;
    /// The same. An unknown format leaves `text` as it was.
    void output(String& text, AscDateTimeFormat format) const;
    /// Writes `binaryDateTimeSize` bytes; nothing for an unknown format.
    void output(unsigned char* bytes, BinDateTimeFormat format) const;

    /// The moment in its own zone.
    void getDateTimeStruct(DateTimeStruct* broken) const;
    /// The moment in UTC: shift and daylight-saving flag are 0.
    void getDateTimeStructUTC(DateTimeStruct* broken) const;

    long long getSISeconds() const { return seconds; }
    void setSISeconds(long long newSeconds) { seconds = newSeconds; }
    void addSISeconds(long long moreSeconds);

    /// Minutes east of UTC.
    short getShift() const { return shift; }
    /// Bit 0: daylight-saving time in force.
    unsigned short getFlags() const { return flags; }

    /// Changes the zone only. The seconds stay, so the shown time of day stays too, and the moment becomes another one.
    void setZone(short newShift, bool dst);
    /// Converts to another zone. The seconds and the shown time of day change, and the moment stays the same.
    void correctZone(short newShift, bool dst);

    // The rules of OvCalendar.h.
    static constexpr bool isJulianLeapYear(long long year) { return ::isJulianLeapYear(year); }
    static constexpr bool isGregorianLeapYear(long long year) { return ::isGregorianLeapYear(year); }
    static constexpr bool isLeapYear(long long year) { return ::isLeapYear(year); }

    /// 0 for "Jan" to 11 for "Dec", in this spelling; -1 for anything else.
    static int getMonthNumberFromEnglishAbbreviation(String const& text);

    /// The text of a duration in seconds, without fractions, with '-' in front if it is below 0.
    ///
    /// \param pieces  1 for whole days ("2d"), 2 for the rest ("03:04:05"), 3 for both ("2d 03:04:05")
    ///
    /// A duration beyond 64 bits is held at the limit. Not-a-number counts as 0.
    static String secondsToString(double duration, unsigned char pieces);

    /// The first SI second for which leap seconds are not known.
    static long long getFirstUncertainSecondNumber();

    /// Index in TAIPeriods of the period that holds an SI second.
    ///
    /// \return -1 at the first uncertain second, -3 after it; -2 for a negative number, which prints "Invalid second
    /// number." to standard output
    static int getLeapSecondCorrectionConstant(long long siSeconds);

    /// The SI second of a civil second, which is counted from 1958 without leap seconds. A leap second shares its count
    /// with the second after it; the result is then the later one.
    static long long correctLeapSeconds(long long civilSeconds);

    /// The system clock's time in local time.
    static void getNowDateTimeStruct(DateTimeStruct* broken);

private:
    // Sets the moment without printing messages.
    void assign(DateTimeStruct const& broken);

    long long seconds = 0;
    short shift = 0;
    unsigned short flags = 0;
};
