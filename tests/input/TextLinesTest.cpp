// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TextLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

std::vector<std::string> linesOf(std::string_view text)
{
    std::vector<std::string> found;
    TextLines lines(text);
    for (TextLine line; lines.next(line);)
        found.push_back(std::to_string(line.number) + " " + std::string(text.substr(line.offset, line.length)));
    return found;
}

TEST(TextLines, EndInEachOfThreeWays)
{
    EXPECT_THAT(linesOf("a\nb\rc\r\nd\n\r\n\re"), ElementsAre("1 a", "2 b", "3 c", "4 d", "5 ", "6 ", "7 e"));
    EXPECT_THAT(linesOf("a\n"), ElementsAre("1 a"));
    EXPECT_THAT(linesOf(""), IsEmpty());
}

TEST(PlaceOf, CountsLinesAndCharacters)
{
    std::string_view const text = "a\r\n\xC3\xBC"
                                  "b\rc";
    EXPECT_EQ(placeOf(text, 0), (TextPlace{1, 1}));
    EXPECT_EQ(placeOf(text, 3), (TextPlace{2, 1}));
    EXPECT_EQ(placeOf(text, 5), (TextPlace{2, 2}));
    EXPECT_EQ(placeOf(text, 7), (TextPlace{3, 1}));
    EXPECT_EQ(placeOf(text, 5, {3, 0, 12}), (TextPlace{12, 2}));
}

TEST(Trimmed, DropsBlanksControlCharactersAndNoBreakSpaces)
{
    EXPECT_EQ(trimmed(" \t\xC2\xA0"
                      "a b\xC2\xA0\r "),
              "a b");
    EXPECT_EQ(trimmed("\xC3\xA0"), "\xC3\xA0");
    EXPECT_EQ(trimmed(" \xC2\xA0 "), "");
}

} // namespace
