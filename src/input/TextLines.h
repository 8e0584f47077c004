// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "TableMessages.h"

#include <cstdint>
#include <string_view>

/// A line of a text, without its end.
struct TextLine
{
    std::uint32_t offset = 0; // bytes from the start of the text
    std::uint32_t length = 0; // bytes
    std::uint32_t number = 0; // counts from 1
};

/// Walks through the lines of a text that end in LF, CR, CR LF or with the text.
class TextLines
{
public:
    /// \param lines  at most 2 GiB
    /// \param start  where to begin: a line of the text, only its offset and number count
    explicit TextLines(std::string_view lines, TextLine start = {0, 0, 1})
        : text(lines), offset(start.offset), number(start.number)
    {
    }

    /// \return false, and an unchanged line, where there is no further one
    bool next(TextLine& line);

private:
    std::string_view text;
    std::size_t offset;
    std::uint32_t number;
};

/// The place of a byte of a text.
///
/// \param start  a line at or before the byte; only its offset and number count
TextPlace placeOf(std::string_view text, std::size_t offset, TextLine start = {0, 0, 1});

/// Whether a byte is a blank or a control character.
inline bool isBlank(char c)
{
    return static_cast<unsigned char>(c) <= ' ' || c == '\x7F';
}

/// The bytes of a blank at the start of a text: a blank, a control character or a no-break space; 0 for none.
inline std::size_t blankLength(std::string_view text)
{
    if (text.empty())
        return 0;
    if (isBlank(text[0]))
        return 1;
    return text.starts_with("\xC2\xA0") ? 2 : 0;
}

/// A text without the blanks, control characters and no-break spaces at both ends.
std::string_view trimmed(std::string_view text);
