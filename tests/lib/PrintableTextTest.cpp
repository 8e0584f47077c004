// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/PrintableText.h"

#include <gtest/gtest.h>

TEST(PrintableText, ReplacesControlCharactersAndBytesThatAreNotUtf8)
{
    struct
    {
        char const* text;
        char const* shown;
    } const cases[] = {
        {"plain 'text'", "plain 'text'"},
        {"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80", "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"},
        {"a\nb\tc\x1B[31m\x7F", "a?b?c?[31m?"},
        {"\xC2\x9B", "??"},           // a control character
        {"\xC0\xAF", "??"},           // overlong
        {"\xE0\x80\x80", "???"},      // overlong
        {"\xED\xA0\x80", "???"},      // a surrogate
        {"\xF4\x90\x80\x80", "????"}, // beyond Unicode
        {"\xFF"
         "a\xE2\x82",
         "?a??"}, // cut off
    };
    for (auto const& [text, shown] : cases)
        EXPECT_EQ(printable(text), shown);
}
