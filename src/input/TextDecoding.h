// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "TableMessages.h"

#include <string>
#include <string_view>

/// How the bytes of a text stand for characters.
enum class TextEncoding { utf8, utf16LittleEndian, utf16BigEndian, windows1252 };

/// "UTF-8", "UTF-16LE", "UTF-16BE", "Windows-1252"
std::string_view nameOf(TextEncoding encoding);

/// The text of a file.
struct DecodedText
{
    std::string text; // valid UTF-8 without NUL and without a byte order mark
    TextEncoding encoding = TextEncoding::utf8;
    TableMessages faults; // why the file holds no text that can be read; the text is empty then
};

/// Decodes the bytes of a file. The encoding is told by a byte order mark; without one it is UTF-16 where every second
/// of the first 64 bytes is NUL, UTF-8 where the bytes are valid UTF-8, and else Windows-1252.
/// What is no text is refused: spreadsheets, colour profiles, images, other binary files, and more than 512 MiB.
DecodedText decodeText(std::string bytes);
