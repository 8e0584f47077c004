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

/// Texts of a moment. Months and days count from 1; numbers other than the year have at least two
/// digits.
enum AscDateTimeFormat : int {
    AscQuotedUTC = 1,   ///< "day/month/year:hour:minute", in UTC, the quotes included
    AscISO8601 = 2,     ///< year-month-dayThour:minute:second, then the zone: + or -, hours:minutes
    AscCompactDate = 3, ///< yearmonthday, in the own zone
    AscDateAndTime = 4  ///< year-month-day hour:minute:second, in the own zone
};

/// Bytes of a moment.
enum BinDateTimeFormat : int {
    /// Twelve bytes, most significant first: the seconds in eight, the shift in two, both in two's complement, and the
    /// flags in two.
    BinBigEndian = 1
};

/// How many bytes a binary form takes.
inline constexpr int binaryDateTimeSize = 12;

/// A moment: SI seconds, leap seconds included, and the time zone that they are told in.
///
/// The seconds count from 1 January 1958, 00:00:00, of the value's own zone. Leap seconds are known until mid-2012;
/// what comes later is shown as if there were no others. Numbers beyond 64 bits are held at the limit.
class DateTime
{
public:
    /// The process-wide zone, that of moments made without one: minutes east of UTC, and whether daylight-saving time
    /// is in force. UTC at first.
    inline static short globalshift = 0;
    inline static bool globalsummertime = false;

    static void setGlobalTimeShift(short newShift, bool summertime);
    /// Takes over the zone that is in force here and now.
    static void setGlobalTimeShiftToLocalSetting();

    /// Now, in local time; or, if `now` is false, unset: second 0 of UTC.
    explicit DateTime(bool now) { init(now); }

    /// A moment of the process-wide zone; month and day count from 0. Numbers out of range are printed to standard
    /// output as they are for a struct.
    DateTime(long long year, int month, int day, int hour, int minute, int second)
    {
        init(year, month, day, hour, minute, second);
    }

    /// The moment of a struct. A date that the change of calendar left out, and then each number out of range, has a
    /// line printed to standard output; it counts as it is, on into the next months, days, hours or minutes. Left-out
    /// dates are taken as Julian.
    explicit DateTime(DateTimeStruct const* broken) { init(broken); }

    /// The moment of a text exactly as `output` writes it, unset for any other. What the text does not tell is 0, and
    /// its zone UTC in format 1, the process-wide one in formats 3 and 4.
    DateTime(String const& text, AscDateTimeFormat format) { init(text, format); }

    /// The moment of `binaryDateTimeSize` bytes; unset if the format is unknown.
    DateTime(unsigned char const* bytes, BinDateTimeFormat format) { init(bytes, format); }

    DateTime(long long newSeconds, short newShift, unsigned short newFlags) { init(newSeconds, newShift, newFlags); }

    // Each does what the constructor of the same arguments does.
    void init(bool now);
    void init(long long year, int month, int day, int hour, int minute, int second);
    void init(DateTimeStruct const* broken);
    /// \return whether the text is one of that format; if not, the moment stays what it was
    bool init(String const& text, AscDateTimeFormat format);
    /// \return whether the format is known; if not, the moment stays what it was
    bool init(unsigned char const* bytes, BinDateTimeFormat format);
    void init(long long newSeconds, short newShift, unsigned short newFlags);
    void init(DateTime const& other) { *this = other; }

    /// The text of the moment; empty for an unknown format.
    String getString(AscDateTimeFormat format) const;
    /// The same, into a string that an unknown format leaves as it was.
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

    /// Says that the seconds are those of another zone; they stay the same, and so does what a clock there shows.
    void setZone(short newShift, bool dst);
    /// Goes over to another zone: the seconds move along with the clocks, and the moment stays the same.
    void correctZone(short newShift, bool dst);

    // The rules of OvCalendar.h.
    static constexpr bool isJulianLeapYear(long long year) { return ::isJulianLeapYear(year); }
    static constexpr bool isGregorianLeapYear(long long year) { return ::isGregorianLeapYear(year); }
    static constexpr bool isLeapYear(long long year) { return ::isLeapYear(year); }

    /// 0 for Jan to 11 for Dec, written just so; -1 for anything else.
    static int getMonthNumberFromEnglishAbbreviation(String const& text);

    /// A duration, fractions of a second left out; '-' in front if it is below 0.
    ///
    /// \param pieces  1 for the whole days ("2d"), 2 for the time past them ("03:04:05"), 3 for both ("2d 03:04:05")
    ///
    /// A duration beyond 64 bits is held at the limit; one that is not a number is 0.
    static String secondsToString(double duration, unsigned char pieces);

    /// The SI second from which on leap seconds are not known.
    static long long getFirstUncertainSecondNumber();

    /// Index in TAIPeriods of the period that holds an SI second.
    ///
    /// \return -1 at the first uncertain second, -3 after it; -2 for a negative number, which prints "Invalid second
    /// number." to standard output
    static int getLeapSecondCorrectionConstant(long long siSeconds);

    /// The SI second at a civil second, that is one counted from 1958 without leap seconds. Where a leap second and the
    /// second after it share a count, the latter.
    static long long correctLeapSeconds(long long civilSeconds);

    /// The system clock's time in local time.
    static void getNowDateTimeStruct(DateTimeStruct* broken);

private:
    // Takes over a moment without a word on numbers out of range.
    void assign(DateTimeStruct const& broken);

    long long seconds = 0;
    short shift = 0;
    unsigned short flags = 0;
};
