// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "DecimalText.h"

#include "support/DecimalCommaLocale.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace
{

constexpr Ratio percentToEightBit{255, 100};
constexpr Ratio oneToEightBit{255, 1};
constexpr Ratio sixteenBitToEightBit{255, 65535};
constexpr Ratio sixteenBitToPercent{100, 65535};
constexpr Ratio eightBitToPercent{100, 255};

NumberForm formOf(std::string_view text)
{
    return parseNumber(text).form;
}

std::string plainSpelling(std::string_view number)
{
    std::string text = "before ";
    appendPlainSpelling(text, number);
    return text.substr(7);
}

// A count of billionths as a decimal number, by integers only.
std::string billionths(std::uint64_t count)
{
    std::string decimals = std::to_string(1'000'000'000 + count % 1'000'000'000).substr(1);
    while (decimals.ends_with('0'))
        decimals.pop_back();
    return std::to_string(count / 1'000'000'000) + (decimals.empty() ? "" : "." + decimals);
}

TEST(ParseNumber, TakesSignsPointsAndExponents)
{
    for (char const* text : {"12", "+12", "12.0", "012.00", "1.2e1", "1.2E+01", "12.", "120e-1", "12e0"}) {
        EXPECT_EQ(formOf(text), NumberForm::point) << text;
        EXPECT_EQ(parseNumber(text).value, 12) << text;
    }
    EXPECT_EQ(parseNumber(".5").value, 0.5);
    EXPECT_EQ(parseNumber("-5.9").value, -5.9);
}

TEST(ParseNumber, RefusesWhatIsNoNumberAsAWhole)
{
    for (char const* text :
         {"",    "+",   "-",   ".",     "e1",    "1e",      "1e+", "0x1F", "nan", "inf", "infinity", "n/a",  "-5.9M",
          "1 2", "+-1", "++1", "1.2.3", "1,2,3", "1,234.5", " 1",  "1 ",   "%",   "1%%", "0b1",      "1_000"})
        EXPECT_EQ(formOf(text), NumberForm::none) << text;
}

TEST(ParseNumber, RefusesWhatNoDoubleHolds)
{
    EXPECT_EQ(formOf("1e999"), NumberForm::none);
    EXPECT_EQ(formOf("1e-999"), NumberForm::none);
    EXPECT_EQ(formOf("1e99999999999999999999"), NumberForm::none);
}

TEST(ParseNumber, TellsDecimalCommasAndPercentSigns)
{
    EXPECT_EQ(formOf("12,5"), NumberForm::comma);
    EXPECT_EQ(parseNumber("12,5").value, 12.5);
    EXPECT_EQ(formOf("12.5%"), NumberForm::percent);
    EXPECT_EQ(formOf("12.5 %"), NumberForm::percent);
    EXPECT_EQ(formOf("12,5%"), NumberForm::percentWithComma);
    EXPECT_EQ(parseNumber("12,5 %").value, 12.5);
}

TEST(ParseNumber, KnowsNoLocale)
{
    DecimalCommaLocale const locale;
    ASSERT_TRUE(locale.isInForce());
    EXPECT_EQ(parseNumber("99.61").value, 99.61);
    EXPECT_EQ(rescaled("10.5", percentToEightBit), "26.775");
}

TEST(PlainSpelling, ChangesNothingButCommaAndPercentSign)
{
    EXPECT_EQ(plainSpelling("+012.50e0"), "+012.50e0");
    EXPECT_EQ(plainSpelling("99,61"), "99.61");
    EXPECT_EQ(plainSpelling("50 %"), "50");
    EXPECT_EQ(plainSpelling("12,50%"), "12.50");
}

TEST(Rescaled, IsExactWhereADecimalIs)
{
    EXPECT_EQ(rescaled("50.000", percentToEightBit), "127.5");
    EXPECT_EQ(rescaled("100.00", percentToEightBit), "255");
    EXPECT_EQ(rescaled("0.41", oneToEightBit), "104.55");
    EXPECT_EQ(rescaled("0.1", {100, 1}), "10");
    EXPECT_EQ(rescaled("51", eightBitToPercent), "20");
    EXPECT_EQ(rescaled("25.5", eightBitToPercent), "10");
    // 0.333333333333333 x 255, by hand.
    EXPECT_EQ(rescaled("0.333333333333333", oneToEightBit), "84.999999999999915");
}

TEST(Rescaled, WritesNoNeedlessZerosAndNoExponent)
{
    EXPECT_EQ(rescaled("0", percentToEightBit), "0");
    EXPECT_EQ(rescaled("-0.000", percentToEightBit), "0");
    EXPECT_EQ(rescaled("0e999", percentToEightBit), "0");
    EXPECT_EQ(rescaled("1e-3", oneToEightBit), "0.255");
    EXPECT_EQ(rescaled("+4e1", {255, 100}), "102");
    EXPECT_EQ(rescaled("20000e-4", {255, 100}), "5.1");
}

TEST(Rescaled, IsRightToABillionthWhereNoDecimalIsExact)
{
    for (std::uint64_t value = 0; value <= 65535; ++value) {
        // value / 257 and value x 20 / 13107 in billionths, rounded to the nearest.
        EXPECT_EQ(rescaled(std::to_string(value), sixteenBitToEightBit),
                  billionths((value * 1'000'000'000 * 2 + 257) / (2 * 257)));
        EXPECT_EQ(rescaled(std::to_string(value), sixteenBitToPercent),
                  billionths((value * 20 * 1'000'000'000 * 2 + 13107) / (2 * 13107)));
    }
}

TEST(Rescaled, RoundsNumbersOfManyDecimals)
{
    // 254.9999999999 / 2.55 is 99.99999999996...
    EXPECT_EQ(rescaled("254.9999999999", eightBitToPercent), "100");
    // 0.00000000128 / 2.55 is 5.0196...e-10 and rounds up, 0.00000000127 / 2.55 is 4.98e-10 and does not.
    EXPECT_EQ(rescaled("0.00000000128", eightBitToPercent), "0.000000001");
    EXPECT_EQ(rescaled("0.00000000127", eightBitToPercent), "0");
    // More decimals than are written exactly.
    EXPECT_EQ(rescaled("1e-300", oneToEightBit), "0");
    EXPECT_EQ(rescaled("0.2" + std::string(50, '0') + "1", oneToEightBit), "51");
}

} // namespace
