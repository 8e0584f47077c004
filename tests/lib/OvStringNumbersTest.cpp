// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvString.h"

#include "support/DecimalCommaLocale.h"
#include "support/StringText.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <sstream>
#include <string>

namespace
{

// Compares every bit, including the sign of 0 and the payload of a NaN.
void expectReadAsByAtof(std::string const& text)
{
    EXPECT_EQ(std::bit_cast<std::uint64_t>(String(text.c_str()).toReal()),
              std::bit_cast<std::uint64_t>(std::atof(text.c_str())))
        << text;
}

} // namespace

// Numbers -------------------------------------------------------------------------------------------------------------

TEST(StringNumbers, ConvertsDigitsToUnsignedNumbers)
{
    EXPECT_EQ(String("42").toUInt8(255), 42);
    EXPECT_EQ(String("42x7").toUInt16(65535), 42);
    EXPECT_EQ(String("007").toUInt32(100), 7U);
    EXPECT_EQ(String("18446744073709551614").toUInt64(~0ULL), 18446744073709551614ULL);
}

TEST(StringNumbers, ConvertsTextsWithoutDigitsToZero)
{
    for (char const* const text : {"", "x", " 1", "-", "+", "- 1", "--1", ".5"}) {
        EXPECT_EQ(String(text).toUInt32(5), 0U) << text;
        EXPECT_EQ(String(text).toInt32(5, -5), 0) << text;
        EXPECT_EQ(String(text).toInt32(-5, 5), 0) << text;
    }
    EXPECT_EQ(String("-1").toUInt32(5), 0U);
    EXPECT_EQ(String("+1").toUInt32(5), 0U);
}

TEST(StringNumbers, HoldsUnsignedNumbersAtTheirMaximum)
{
    EXPECT_EQ(String("300").toUInt8(255), 255);
    EXPECT_EQ(String("255").toUInt8(255), 255);
    EXPECT_EQ(String("99").toUInt8(100), 99);
    EXPECT_EQ(String("100").toUInt8(100), 100);
    EXPECT_EQ(String("101").toUInt8(100), 100);
    EXPECT_EQ(String("65536").toUInt16(65535), 65535);
    EXPECT_EQ(String("4294967296").toUInt32(4294967295U), 4294967295U);
    EXPECT_EQ(String("18446744073709551616").toUInt64(~0ULL), ~0ULL);
    EXPECT_EQ(String("99999999999999999999999999").toUInt64(1000), 1000U);
    EXPECT_EQ(String("0").toUInt8(0), 0);
}

TEST(StringNumbers, ConvertsDigitsToSignedNumbers)
{
    EXPECT_EQ(String("-12x").toInt32(1000, -1000), -12);
    EXPECT_EQ(String("").toInt32(1000, -1000), 0);
    EXPECT_EQ(String("+12").toInt8(127, -128), 12);
    EXPECT_EQ(String("-127").toInt8(127, -128), -127);
    EXPECT_EQ(String("32766").toInt16(32767, -32768), 32766);
    EXPECT_EQ(String("-9223372036854775807").toInt64(0x7fffffffffffffff, std::numeric_limits<std::int64_t>::min()),
              -9223372036854775807);
}

TEST(StringNumbers, HoldsSignedNumbersWithinTheirBounds)
{
    EXPECT_EQ(String("128").toInt8(127, -128), 127);
    EXPECT_EQ(String("-129").toInt8(127, -128), -128);
    EXPECT_EQ(String("50").toInt16(50, -50), 50);
    EXPECT_EQ(String("51").toInt16(50, -50), 50);
    EXPECT_EQ(String("-49").toInt16(50, -50), -49);
    EXPECT_EQ(String("-51").toInt16(50, -50), -50);
    EXPECT_EQ(String("2147483648").toInt32(2147483647, -2147483647), 2147483647);
    auto const lowest = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(String("9223372036854775808").toInt64(0x7fffffffffffffff, lowest), 0x7fffffffffffffff);
    EXPECT_EQ(String("-9223372036854775809").toInt64(0x7fffffffffffffff, lowest), lowest);
    EXPECT_EQ(String("-99999999999999999999999999").toInt64(0x7fffffffffffffff, lowest), lowest);
}

TEST(StringNumbers, HoldsSignedNumbersAtBoundsOfTheOtherSign)
{
    EXPECT_EQ(String("3").toInt32(-5, -10), -5);
    EXPECT_EQ(String("-3").toInt32(10, 5), 5);
}

TEST(StringNumbers, ConvertsDecimalTextsToReals)
{
    EXPECT_EQ(String("12.5").toReal(), 12.5);
    EXPECT_EQ(String(" -1.25e2x").toDouble(), -125.0);
    EXPECT_EQ(String("0.1").toFloat(), 0.1F);
    EXPECT_EQ(String("x").toReal(), 0.0);
    EXPECT_EQ(String().toReal(), 0.0);
    EXPECT_EQ(stringOf("1.5\0"
                       "7")
                  .toReal(),
              1.5);
    EXPECT_EQ(String("1e400").toReal(), std::numeric_limits<double>::infinity());
}

TEST(StringNumbers, ConvertsATokenToARealWithoutTheDigitsAfterIt)
{
    EXPECT_EQ(String("1.25").substr(0, 3).toReal(), 1.2);
    EXPECT_EQ(String("0x10").substr(0, 1).toReal(), 0);
    EXPECT_EQ(String("+1.25").substr(0, 4).toReal(), 1.2);
}

TEST(StringNumbers, ConvertsEveryFormOfANumberAsTheCLibraryDoes)
{
    std::istringstream texts(
        "0|-0|+0|-0.0e5|.5|5.|-.5|+.5|.|-|+|-.|+-5|-+5|--5|++5| 5|\t\v\f5|\n-5|\r+5|- 5|1.2.3|1,5|x|5x|"
        "1e5|1E5|1e+5|1e-5|1e|1e+|1e-x|1.5e3.5|e5|.e5|0x10|0X1.8p3|-0x.8|+0xff|0x|0xg|1x10|00x10|0x1p-1080|"
        "inf|-INF|+inf|infinity|-Infinity|infinit|in|nan|-nan|NaN(123)|nan(0x7)|nan(|nano|"
        "1e308|1.8e308|-1.8e308|1e400|-1e400|1e99999999999999999999|0e99999999999999999999|1e-99999999999999999999|"
        "1.7976931348623157e308|1.7976931348623158e308|1.7976931348623159e308|1e-307|1e-310|-4.9e-324|2.5e-324|"
        "2.4e-324|1e-400|-1e-400|2.2250738585072011e-308|2.2250738585072014e-308|0.1|9007199254740993|"
        "123456789012345678901234567890|0.000000000000000000000000000001e31");
    for (std::string text; std::getline(texts, text, '|');)
        expectReadAsByAtof(text);
    // Exactly half way between two doubles, unless more digits follow.
    std::string const half = "1.00000000000000011102230246251565404236316680908203125";
    std::string const noughts(1000, '0');
    for (char const* const end : {"", "0", "1", "e0", "000000001e9"})
        expectReadAsByAtof(half + end);
    expectReadAsByAtof(half + noughts + "1");
    expectReadAsByAtof(noughts + "7" + noughts + "e-1000");
    expectReadAsByAtof("0." + noughts + "7e1001");
}

TEST(StringNumbers, ConvertsRandomTextsAsTheCLibraryDoes)
{
    std::mt19937_64 random(1);
    auto const drawnOf = [&random](std::size_t count) { return static_cast<std::size_t>(random() % count); };
    std::string const characters = "01234567899.+-eExX ainf(";
    for (int i = 0; i < 100000; ++i) {
        std::string text;
        for (std::size_t length = drawnOf(12); length > 0; --length)
            text += characters[drawnOf(characters.size())];
        expectReadAsByAtof(text);
    }
    for (int i = 0; i < 100000; ++i) {
        auto const number = std::bit_cast<double>(static_cast<std::uint64_t>(random()));
        char text[64];
        std::snprintf(text, sizeof text, "%.*g", static_cast<int>(drawnOf(25)), number);
        expectReadAsByAtof(text);
        std::snprintf(text, sizeof text, "%.*f", static_cast<int>(drawnOf(10)), std::fmod(number, 1000));
        expectReadAsByAtof(text);
    }
}

TEST(StringNumbers, ConvertsThePointUnderADecimalCommaLocale)
{
    DecimalCommaLocale const locale;
    ASSERT_TRUE(locale.isInForce());
    EXPECT_EQ(String("12.5").toReal(), 12.5);
    EXPECT_EQ(String("12.5").toDouble(), 12.5);
    EXPECT_EQ(String("12.5").toFloat(), 12.5F);
}

// Hashes --------------------------------------------------------------------------------------------------------------

TEST(StringNumbers, HashesByTenPublishedAlgorithms)
{
    struct Expected
    {
        std::uint32_t ofAscii;
        std::uint32_t ofHighBytes;
    };
    constexpr Expected expected[] = {
        {0x4ed8e4b1, 0x59fa2761}, // RS
        {0x84a8b34a, 0x1f2fbd16}, // JS
        {0x05f66c44, 0x0dde1d15}, // ELF
        {0x336b224b, 0xe5b3c7e7}, // BKDR
        {0x6d0446e7, 0x84f5b02b}, // SDBM
        {0xe505085e, 0x6299143e}, // DJB
        {0x76280a92, 0x27e47c4c}, // DEK
        {0x3d187974, 0xc6cf0fe5}, // BP
        {0x46c4b847, 0x8ff9e97d}, // FNV
        {0xfd776acf, 0x0fcd9f6e}, // AP
    };
    int algorithm = 0;
    for (auto const& [ofAscii, ofHighBytes] : expected) {
        auto const value = static_cast<HashAlgorithm>(algorithm);
        EXPECT_EQ(String("Patchloom chart").hashKey(value), ofAscii) << algorithm;
        EXPECT_EQ(String("Gr\xc3\xb6\xc3\x9f"
                         "e")
                      .hashKey(value),
                  ofHighBytes)
            << algorithm;
        ++algorithm;
    }
}

TEST(StringNumbers, HashesShortTextsAsWorkedOutByHand)
{
    EXPECT_EQ(String("ab").hashKey(HashAlgorithm::RS), 97U * (63689U * 378551U) + 98U);
    EXPECT_EQ(String("ab").hashKey(HashAlgorithm::ELF), 97U * 16 + 98);
    EXPECT_EQ(String("ab").hashKey(HashAlgorithm::BKDR), 97U * 131 + 98);
    EXPECT_EQ(String("ab").hashKey(HashAlgorithm::SDBM), 97U * 65599 + 98);
    EXPECT_EQ(String("ab").hashKey(HashAlgorithm::DJB), (5381U * 33 + 97) * 33 + 98);
    EXPECT_EQ(String("ab").hashKey(HashAlgorithm::DEK), ((2U * 32 ^ 97U) * 32) ^ 98U);
    EXPECT_EQ(String("ab").hashKey(HashAlgorithm::BP), (97U * 128) ^ 98U);
}

TEST(StringNumbers, HashesTheEmptyTextToTheStartingValue)
{
    std::uint32_t const expected[] = {0, 1315423911, 0, 0, 0, 5381, 0, 0, 0, 0xaaaaaaaa};
    for (int algorithm = 0; algorithm < 10; ++algorithm)
        EXPECT_EQ(String().hashKey(static_cast<HashAlgorithm>(algorithm)), expected[algorithm]) << algorithm;
}

TEST(StringNumbers, HashesToZeroByAnUnknownAlgorithm)
{
    for (int const algorithm : {-1, 10, 1000})
        EXPECT_EQ(String("abc").hashKey(static_cast<HashAlgorithm>(algorithm)), 0U);
}
