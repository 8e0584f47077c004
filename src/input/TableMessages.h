// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A place in a file. Lines and columns count from 1, columns in characters. 0 stands for the file as a whole, and for
/// the line as a whole.
struct TextPlace
{
    std::uint32_t line = 0;
    std::uint32_t column = 0;

    auto operator<=>(TextPlace const&) const = default;
};

/// One line of English about a table: what is wrong or doubtful, the text found, and what would make it right.
struct TableMessage
{
    TextPlace place;
    std::string text;

    auto operator<=>(TableMessage const&) const = default;
};

/// The first messages about a table, and how many there are in all.
class TableMessages
{
public:
    /// How many messages are kept; the others are only counted.
    static constexpr std::size_t limit = 20;

    void add(TextPlace place, std::string text)
    {
        addMade([&] { return TableMessage{place, std::move(text)}; });
    }

    /// Adds what `make` returns, a TableMessage. It is called only for messages that are kept.
    template <typename Make>
    void addMade(Make&& make)
    {
        ++count;
        if (messages.size() < limit)
            messages.push_back(make());
    }

    /// Adds the messages of another list, with those that it only counted. All are in the order of their places then.
    void merge(TableMessages const& others);

    std::vector<TableMessage> const& kept() const { return messages; }
    std::size_t total() const { return count; }
    bool isEmpty() const { return count == 0; }

private:
    std::vector<TableMessage> messages;
    std::size_t count = 0;
};

/// A text of a file as messages show it: on one line, at most 40 characters of it.
///
/// \param text  valid UTF-8
std::string shown(std::string_view text);

/// The same in quotes.
std::string excerpt(std::string_view text);

/// "1 row", "2 rows".
std::string counted(std::size_t count, std::string_view noun);
