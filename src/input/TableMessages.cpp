// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TableMessages.h"

#include <algorithm>

void TableMessages::merge(TableMessages const& others)
{
    messages.insert(messages.end(), others.messages.begin(), others.messages.end());
    std::stable_sort(messages.begin(), messages.end(),
                     [](TableMessage const& a, TableMessage const& b) { return a.place < b.place; });
    if (messages.size() > limit)
        messages.resize(limit);
    count += others.count;
}

std::string shown(std::string_view text)
{
    constexpr std::size_t limit = 40;
    std::string line;
    std::size_t characters = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        bool const continuesCharacter = (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80;
        if (!continuesCharacter && characters++ == limit) {
            line += "...";
            break;
        }
        bool const isControl = static_cast<unsigned char>(text[i]) < ' ' || text[i] == '\x7F';
        // U+0080 to U+009F, which some terminals obey.
        bool const isHighControl = text[i] == '\xC2' && text.substr(i + 1, 1) < "\xA0";
        line += isControl || isHighControl ? ' ' : text[i];
        i += isHighControl ? 1U : 0U;
    }
    return line;
}

std::string excerpt(std::string_view text)
{
    return '"' + shown(text) + '"';
}

std::string counted(std::size_t count, std::string_view noun)
{
    std::string text = std::to_string(count) + " ";
    text += noun;
    return count == 1 ? text : text + "s";
}
