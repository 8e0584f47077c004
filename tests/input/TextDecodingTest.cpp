// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TextDecoding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using namespace std::string_literals;
using testing::HasSubstr;

namespace
{

void expectText(std::string const& bytes, std::string const& text, TextEncoding encoding)
{
    DecodedText const decoded = decodeText(bytes);
    EXPECT_TRUE(decoded.faults.isEmpty());
    EXPECT_EQ(decoded.text, text);
    EXPECT_EQ(nameOf(decoded.encoding), nameOf(encoding));
}

void expectRefusal(std::string const& bytes, std::string const& reason)
{
    DecodedText const decoded = decodeText(bytes);
    EXPECT_EQ(decoded.text, "");
    ASSERT_EQ(decoded.faults.total(), 1U);
    EXPECT_THAT(decoded.faults.kept()[0].text, HasSubstr(reason));
}

TEST(TextDecoding, TakesUtf8WithAndWithoutItsMark)
{
    expectText("gr\xC3\xBCn \xE2\x82\xAC \xF0\x9F\x8E\xA8", "gr\xC3\xBCn \xE2\x82\xAC \xF0\x9F\x8E\xA8",
               TextEncoding::utf8);
    expectText("\xEF\xBB\xBF"
               "abc",
               "abc", TextEncoding::utf8);
    expectText("", "", TextEncoding::utf8);
}

TEST(TextDecoding, TakesUtf16WithItsMarkInBothOrders)
{
    expectText("\xFF\xFE"
               "a\0\xFC\0\xAC\x20"s,
               "a\xC3\xBC\xE2\x82\xAC", TextEncoding::utf16LittleEndian);
    expectText("\xFE\xFF"
               "\0a\0\xFC\x20\xAC"s,
               "a\xC3\xBC\xE2\x82\xAC", TextEncoding::utf16BigEndian);
}

TEST(TextDecoding, TakesUtf16WithoutAMarkByItsNulBytes)
{
    expectText("R\0G\0B\0"s, "RGB", TextEncoding::utf16LittleEndian);
    expectText("\0R\0G\0B"s, "RGB", TextEncoding::utf16BigEndian);
}

TEST(TextDecoding, JoinsSurrogatesAndReplacesHalfOnes)
{
    expectText("\xFF\xFE\x3C\xD8\xA8\xDF"s, "\xF0\x9F\x8E\xA8", TextEncoding::utf16LittleEndian);
    expectText("\xFF\xFE\x3C\xD8"
               "a\0"s,
               "\xEF\xBF\xBD"
               "a",
               TextEncoding::utf16LittleEndian);
    expectText("\xFF\xFE\xA8\xDF"
               "a"s,
               "\xEF\xBF\xBD\xEF\xBF\xBD", TextEncoding::utf16LittleEndian);
}

TEST(TextDecoding, TakesOtherBytesForWindows1252)
{
    expectText("gr\xFCn \x80 \x96 \x81", "gr\xC3\xBCn \xE2\x82\xAC \xE2\x80\x93 \xEF\xBF\xBD",
               TextEncoding::windows1252);
}

TEST(TextDecoding, TakesBrokenUtf8ForWindows1252)
{
    for (char const* bytes : {"\xC3", "\xC3(", "\xC0\xAF", "\xE0\x80\x80", "\xED\xA0\x80", "\xF0\x80\x80\x80",
                              "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xE2\x82", "\xF0\x9F\x8E", "\x80"})
        EXPECT_EQ(decodeText(bytes).encoding, TextEncoding::windows1252);
    EXPECT_EQ(decodeText("abcdefgh\xFC").encoding, TextEncoding::windows1252);
}

TEST(TextDecoding, DropsAnOldEndOfFileMark)
{
    expectText("RGB\n\x1A", "RGB\n", TextEncoding::utf8);
}

TEST(TextDecoding, RefusesOtherFilesByName)
{
    expectRefusal("PK\x03\x04", "spreadsheet");
    expectRefusal("\xD0\xCF\x11\xE0\xA1\xB1", "spreadsheet of an old format");
    expectRefusal(std::string(36, '\0') + "acsp", "colour profile");
    expectRefusal("%PDF-1.7", "PDF");
    expectRefusal("II*\0"s, "TIFF");
    expectRefusal("\x1F\x8B\x08", "compressed");
}

TEST(TextDecoding, TakesAProfilesMarkInATextForAWord)
{
    std::string const text = std::string(36, 'x') + "acsp\n";
    expectText(text, text, TextEncoding::utf8);
}

TEST(TextDecoding, RefusesNulBytesWithTheirPlace)
{
    DecodedText const decoded = decodeText("RGB\nab\0c\n"s);
    ASSERT_EQ(decoded.faults.total(), 1U);
    EXPECT_EQ(decoded.faults.kept()[0].place, (TextPlace{2, 3}));
}

} // namespace
