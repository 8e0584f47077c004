// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TableMessages.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

TEST(TableMessages, KeepTheFirstTwentyAndCountAll)
{
    TableMessages messages;
    EXPECT_TRUE(messages.isEmpty());
    int made = 0;
    for (std::uint32_t line = 1; line <= 25; ++line)
        messages.addMade([&] {
            ++made;
            return TableMessage{{line, 1}, "x"};
        });
    EXPECT_EQ(messages.kept().size(), 20U);
    EXPECT_EQ(messages.total(), 25U);
    EXPECT_EQ(made, 20);
}

TEST(TableMessages, MergeInTheOrderOfTheirPlaces)
{
    TableMessages messages;
    TableMessages others;
    messages.add({7, 1}, "c");
    others.add({7, 1}, "d");
    others.add({2, 9}, "b");
    others.add({2, 1}, "a");
    messages.merge(others);
    ASSERT_EQ(messages.total(), 4U);
    std::string order;
    for (TableMessage const& message : messages.kept())
        order += message.text;
    EXPECT_EQ(order, "abcd");
}

TEST(TableMessages, KeepTheTwentyThatStandFirstWhenMerged)
{
    TableMessages messages;
    TableMessages others;
    for (std::uint32_t line = 1; line <= 30; ++line) {
        messages.add({2 * line, 1}, "x");
        others.add({2 * line + 1, 1}, "x");
    }
    messages.merge(others);
    EXPECT_EQ(messages.total(), 60U);
    ASSERT_EQ(messages.kept().size(), 20U);
    EXPECT_EQ(messages.kept().back().place.line, 21U);
}

TEST(Excerpt, IsOneLineOfWholeCharacters)
{
    EXPECT_EQ(excerpt("a\tb\nc"), "\"a b c\"");
    EXPECT_EQ(excerpt("a\xC2\x9B"
                      "b\xC2\xA0"
                      "c"),
              "\"a b\xC2\xA0"
              "c\"");
    std::string const forty(40, 'a');
    EXPECT_EQ(excerpt(forty), '"' + forty + '"');
    EXPECT_EQ(excerpt(forty + "b"), '"' + forty + "...\"");
    EXPECT_EQ(shown(forty.substr(1) + "\xC3\xBC"
                                      "b"),
              forty.substr(1) + "\xC3\xBC...");
}

TEST(Counted, IsSingularForOne)
{
    EXPECT_EQ(counted(0, "row"), "0 rows");
    EXPECT_EQ(counted(1, "row"), "1 row");
    EXPECT_EQ(counted(2, "row"), "2 rows");
}

} // namespace
