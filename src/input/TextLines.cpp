// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TextLines.h"

#include <algorithm>

bool TextLines::next(TextLine& line)
{
    if (offset >= text.size())
        return false;
    auto const isEnd = [](char c) { return c == '\n' || c == '\r'; };
    auto const first = text.begin() + static_cast<std::ptrdiff_t>(offset);
    auto const length = static_cast<std::size_t>(std::find_if(first, text.end(), isEnd) - first);
    line = {static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(length), number++};
    offset += length;
    offset += text.substr(offset, 2) == "\r\n" ? 2U : 1U;
    return true;
}

TextPlace placeOf(std::string_view text, std::size_t offset, TextLine start)
{
    TextPlace place{start.number, 1};
    for (std::size_t i = start.offset; i < offset; ++i) {
        char const c = text[i];
        if (c == '\n' || (c == '\r' && text.substr(i + 1, 1) != "\n")) {
            ++place.line;
            place.column = 1;
        } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {
            ++place.column;
        }
    }
    return place;
}

std::string_view trimmed(std::string_view text)
{
    while (std::size_t const length = blankLength(text))
        text.remove_prefix(length);
    while (!text.empty()) {
        if (isBlank(text.back()))
            text.remove_suffix(1);
        else if (text.ends_with("\xC2\xA0"))
            text.remove_suffix(2);
        else
            break;
    }
    return text;
}
