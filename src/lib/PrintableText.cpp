// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PrintableText.h"

#include <cstddef>

namespace
{

// How many bytes the UTF-8 character at the start of the text has; 0 for bytes that are none, or a control character.
std::size_t printableLength(std::string_view text)
{
    auto const byteAt = [&](std::size_t i) -> unsigned {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
    };
    unsigned const first = byteAt(0);
    if (first < 0x80)
        return first >= 0x20 && first != 0x7f ? 1 : 0;
    std::size_t const length = first >= 0xf0 && first < 0xf5 ? 4 : first >= 0xe0 ? 3 : first >= 0xc2 ? 2 : 0;
    if (length == 0 || first >= 0xf5)
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byteAt(i) & 0xc0) != 0x80)
            return 0;
    unsigned const second = byteAt(1);
    // Overlong forms, surrogates, what lies beyond Unicode, and the control characters from 0x80 on.
    bool const isWrong = (first == 0xe0 && second < 0xa0) || (first == 0xed && second >= 0xa0) ||
                         (first == 0xf0 && second < 0x90) || (first == 0xf4 && second >= 0x90) ||
                         (first == 0xc2 && second < 0xa0);
    return isWrong ? 0 : length;
}

} // namespace

std::string printable(std::string_view text)
{
    std::string result;
    while (!text.empty()) {
        std::size_t const length = printableLength(text);
        result += length > 0 ? text.substr(0, length) : "?";
        text.remove_prefix(length > 0 ? length : 1);
    }
    return result;
}
