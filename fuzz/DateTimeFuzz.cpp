// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any text and any bytes as a moment, and any moment told and read again.

#include "Fuzzing.h"
#include "lib/OvDateTime.h"
#include "lib/OvLeapSeconds.h"
#include "support/DateTimeValues.h"

#include <cstdlib>
#include <cstring>
#include <fuzzer/FuzzedDataProvider.h>

namespace
{

constexpr AscDateTimeFormat textFormats[] = {AscQuotedUTC, AscISO8601, AscCompactDate, AscDateAndTime};

// Beyond, calendar and seconds are held at their limits.
constexpr long long furthestSecond = 1'000'000'000'000'000'000;

void readText(FuzzedDataProvider& input)
{
    DateTime::setGlobalTimeShift(input.ConsumeIntegral<short>(), input.ConsumeBool());
    auto const format = static_cast<AscDateTimeFormat>(input.ConsumeIntegralInRange(0, 5));
    std::string const bytes = input.ConsumeRemainingBytesAsString();
    String const text(String(), bytes.data(), bytes.size());
    DateTime moment(1, 2, 3);
    if (moment.init(text, format))
        require(moment.getString(format) == text, "a text that is read is written the same");
    else
        require(fieldsOf(moment) == fieldsOf(DateTime(1, 2, 3)), "a text that is not read changes nothing");
    int const month = DateTime::getMonthNumberFromEnglishAbbreviation(text);
    require(month >= -1 && month < 12, "a month or none");
}

void readBytes(FuzzedDataProvider& input)
{
    unsigned char bytes[binaryDateTimeSize] = {};
    input.ConsumeData(bytes, sizeof bytes);
    DateTime const moment(bytes, BinBigEndian);
    unsigned char written[binaryDateTimeSize] = {};
    moment.output(written, BinBigEndian);
    require(std::memcmp(bytes, written, sizeof bytes) == 0, "bytes that are read are written the same");
    require(!DateTime(false).init(bytes, static_cast<BinDateTimeFormat>(0)), "an unknown format is not read");
}

void tell(DateTime const& moment)
{
    DateTimeStruct time;
    moment.getDateTimeStruct(&time);
    require(time.month >= 0 && time.month < 12 && time.day >= 0 && time.day < 31, "a day of the calendar");
    require(time.hour >= 0 && time.hour < 24 && time.minute >= 0 && time.minute < 60, "a time of the day");
    require(time.second >= 0 && time.second < 70, "a second, leap seconds included");
    bool const isFar = std::llabs(moment.getSISeconds() / 2) > furthestSecond / 2;
    require(isFar || DateTime(&time).getSISeconds() == moment.getSISeconds(), "a moment told and taken is the same");
    for (AscDateTimeFormat const format : textFormats) {
        DateTime again(false);
        require(isFar || again.init(moment.getString(format), format), "a text that is written is read");
        bool const isWhole = format == AscISO8601;
        require(isFar || !isWhole || again.getSISeconds() == moment.getSISeconds(), "a moment read is the one written");
    }
    moment.getDateTimeStructUTC(&time);
    require(time.shift == 0 && !time.dst, "UTC has no shift");
}

void moveAbout(FuzzedDataProvider& input, DateTime moment)
{
    auto const shift = input.ConsumeIntegral<short>();
    bool const isSummer = input.ConsumeBool();
    DateTime there = moment;
    there.correctZone(shift, isSummer);
    tell(there);
    moment.setZone(shift, isSummer);
    tell(moment);
    moment.addSISeconds(input.ConsumeIntegral<long long>());
    tell(moment);
}

void makeMoments(FuzzedDataProvider& input)
{
    DateTimeStruct time;
    time.year =
        input.ConsumeBool() ? input.ConsumeIntegralInRange<long long>(-5000, 5000) : input.ConsumeIntegral<long long>();
    for (int* const part : {&time.month, &time.day, &time.hour, &time.minute, &time.second})
        *part = input.ConsumeBool() ? input.ConsumeIntegralInRange(-1, 70) : input.ConsumeIntegral<int>();
    time.shift = input.ConsumeIntegral<short>();
    time.dst = input.ConsumeBool();
    DateTime const made(&time);
    tell(made);
    tell(DateTime(time.year, time.month, time.day, time.hour, time.minute, time.second));
    auto const seconds = input.ConsumeBool() ? input.ConsumeIntegralInRange<long long>(-100'000'000, 2'000'000'000)
                                             : input.ConsumeIntegral<long long>();
    DateTime const counted(seconds, input.ConsumeIntegral<short>(), input.ConsumeIntegral<unsigned short>());
    tell(counted);
    moveAbout(input, counted);
}

void count(FuzzedDataProvider& input)
{
    auto const second = input.ConsumeIntegral<long long>();
    int const period = DateTime::getLeapSecondCorrectionConstant(second);
    require(period >= -3 && period < static_cast<int>(TAIPeriods.size()), "a period or none");
    auto const other = input.ConsumeIntegral<long long>();
    require((second <= other) == (DateTime::correctLeapSeconds(second) <= DateTime::correctLeapSeconds(other)) ||
                std::max(second, other) > furthestSecond,
            "later civil seconds are later SI seconds");
    double duration = 0;
    input.ConsumeData(&duration, sizeof duration);
    auto const pieces = input.ConsumeIntegral<unsigned char>();
    bool const isTold = pieces >= 1 && pieces <= 3;
    require((DateTime::secondsToString(duration, pieces).getCount() > 0) == isTold, "three ways to tell a duration");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    switch (input.ConsumeIntegralInRange(0, 3)) {
    case 0:
        readText(input);
        break;
    case 1:
        readBytes(input);
        break;
    case 2:
        makeMoments(input);
        break;
    default:
        count(input);
    }
    return 0;
}
