// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any bytes as a text.

#include "TableProperties.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    DecodedText const decoded = decodeText({reinterpret_cast<char const*>(data), size});
    requireMessages(decoded.faults);
    require(decoded.faults.isEmpty() || decoded.text.empty(), "a refused file has no text");
    require(decoded.text.find('\0') == std::string::npos, "a text has no NUL");
    require(decoded.text.size() <= 3 * size, "a text is at most three times as large as its file");
    // The mark makes sure that the bytes are not taken for something else.
    DecodedText const again = decodeText("\xEF\xBB\xBF" + decoded.text + " ");
    require(again.encoding == TextEncoding::utf8 && again.text == decoded.text + " ", "a text is valid UTF-8");
    return 0;
}
