// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvDateTime.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>

// The texts of one moment, by format:
//
//     1    "30/06/2012:11:00"
//     2    2012-06-30T12:00:00+01:00
//     3    20120630
//     4    2012-06-30 12:00:00
//
// Its bytes, 1719748834 seconds, 60 minutes east, no daylight-saving time:
//
//     00 00 00 00 66 81 48 E2   00 3C   00 00

namespace
{

constexpr std::array monthAbbreviations{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                        "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// Takes the numbers off the front of a text. Text that is no number gives 0. Separators are not checked.
class FieldReader
{
public:
    explicit FieldReader(String const& text) : at(text.begin()), end(text.end()) {}

    long long takeYear() { return take<long long>(); }
    int takeField() { return take<unsigned short>(); }

    char takeSeparator() { return at == end ? '\0' : *at++; }

private:
    template <typename Number>
    Number take()
    {
        Number number = 0;
        at = std::from_chars(at, end, number).ptr;
        return number;
    }

    char const* at;
    char const* end;
};

void takeDateAndTime(FieldReader& reader, DateTimeStruct& broken)
{
    broken.year = reader.takeYear();
    for (int* const field : {&broken.month, &broken.day, &broken.hour, &broken.minute, &broken.second}) {
        reader.takeSeparator();
        *field = reader.takeField();
    }
    --broken.month;
    --broken.day;
}

void takeQuotedMinute(FieldReader& reader, DateTimeStruct& broken)
{
    reader.takeSeparator();
    broken.day = reader.takeField() - 1;
    reader.takeSeparator();
    broken.month = reader.takeField() - 1;
    reader.takeSeparator();
    broken.year = reader.takeYear();
    reader.takeSeparator();
    broken.hour = reader.takeField();
    reader.takeSeparator();
    broken.minute = reader.takeField();
}

short takeZone(FieldReader& reader)
{
    int const sign = reader.takeSeparator() == '-' ? -1 : 1;
    int const hours = reader.takeField();
    reader.takeSeparator();
    return static_cast<short>(sign * (hours * 60 + reader.takeField()));
}

// The year has no fixed number of digits, so the whole text is read as one number.
void takeCompactDate(FieldReader& reader, DateTimeStruct& broken)
{
    long long const number = reader.takeYear();
    broken.year = number / 10000;
    broken.month = std::abs(static_cast<int>(number / 100 % 100)) - 1;
    broken.day = std::abs(static_cast<int>(number % 100)) - 1;
}

template <typename Number>
unsigned char* putBytes(unsigned char* bytes, Number number)
{
    for (int bit = 8 * sizeof(Number) - 8; bit >= 0; bit -= 8)
        *bytes++ = static_cast<unsigned char>(number >> bit);
    return bytes;
}

template <typename Number>
Number takeBytes(unsigned char const*& bytes)
{
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        number = number << 8 | *bytes++;
    return static_cast<Number>(number);
}

} // namespace

bool DateTime::init(String const& text, AscDateTimeFormat format)
{
    FieldReader reader(text);
    DateTimeStruct broken;
    broken.shift = globalshift;
    broken.dst = globalsummertime;
    switch (format) {
    case AscQuotedUTC:
        takeQuotedMinute(reader, broken);
        broken.shift = 0;
        broken.dst = false;
        break;
    case AscISO8601:
        takeDateAndTime(reader, broken);
        broken.shift = takeZone(reader);
        broken.dst = false;
        break;
    case AscCompactDate:
        takeCompactDate(reader, broken);
        break;
    case AscDateAndTime:
        takeDateAndTime(reader, broken);
        break;
    default:
        return false;
    }
    DateTime moment(false);
    moment.assign(broken);
    // Writing the moment again and comparing finds every text that does not have the format.
    if (moment.getString(format) != text)
        return false;
    *this = moment;
    return true;
}

void DateTime::output(String& text, AscDateTimeFormat format) const
{
    DateTimeStruct time;
    if (format == AscQuotedUTC)
        getDateTimeStructUTC(&time);
    else
        getDateTimeStruct(&time);
    int const month = time.month + 1;
    int const day = time.day + 1;
    int const shiftMinutes = std::abs(int{time.shift});
    switch (format) {
    case AscQuotedUTC:
        text = String::format("\"%02d/%02d/%lld:%02d:%02d\"", day, month, time.year, time.hour, time.minute);
        break;
    case AscISO8601:
        text = String::format("%lld-%02d-%02dT%02d:%02d:%02d%c%02d:%02d", time.year, month, day, time.hour, time.minute,
                              time.second, time.shift < 0 ? '-' : '+', shiftMinutes / 60, shiftMinutes % 60);
        break;
    case AscCompactDate:
        text = String::format("%lld%02d%02d", time.year, month, day);
        break;
    case AscDateAndTime:
        text =
            String::format("%lld-%02d-%02d %02d:%02d:%02d", time.year, month, day, time.hour, time.minute, time.second);
        break;
    }
}

String DateTime::getString(AscDateTimeFormat format) const
{
    String text;
    output(text, format);
    return text;
}

bool DateTime::init(unsigned char const* bytes, BinDateTimeFormat format)
{
    if (format != BinBigEndian)
        return false;
    seconds = takeBytes<long long>(bytes);
    shift = takeBytes<short>(bytes);
    flags = takeBytes<unsigned short>(bytes);
    return true;
}

void DateTime::output(unsigned char* bytes, BinDateTimeFormat format) const
{
    if (format != BinBigEndian)
        return;
    bytes = putBytes(bytes, seconds);
    bytes = putBytes(bytes, shift);
    putBytes(bytes, flags);
}

int DateTime::getMonthNumberFromEnglishAbbreviation(String const& text)
{
    auto const found = std::ranges::find_if(monthAbbreviations, [&](char const* name) { return text == name; });
    return found == monthAbbreviations.end() ? -1 : static_cast<int>(found - monthAbbreviations.begin());
}

String DateTime::secondsToString(double duration, unsigned char pieces)
{
    constexpr double longest = 9223372036854774784.0; // the largest double that 64 bits hold
    auto const length = std::isnan(duration) ? 0 : static_cast<long long>(std::min(std::fabs(duration), longest));
    auto const secondOfDay = static_cast<int>(length % 86400);
    String const sign = duration < 0.0 && length > 0 ? "-" : "";
    String const days = String::format("%lldd", length / 86400);
    String const time = String::format("%02d:%02d:%02d", secondOfDay / 3600, secondOfDay / 60 % 60, secondOfDay % 60);
    switch (pieces) {
    case 1:
        return sign + days;
    case 2:
        return sign + time;
    case 3:
        return sign + days + " " + time;
    default:
        return String();
    }
}
