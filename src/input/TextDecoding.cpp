// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TextDecoding.h"

#include "TextLines.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace
{

using namespace std::literals;

// Decoding makes at most three bytes of one: the text stays below 2 GiB, within the reach of 32-bit offsets.
constexpr std::size_t largestFile = std::size_t{1} << 29;

struct FileSignature
{
    std::size_t offset;
    std::string_view bytes;
    char const* fault;
};

constexpr FileSignature foreignFiles[] = {
    {0, "PK\x03\x04"sv, "is a spreadsheet or an archive: save the table as text with tabs or as CSV"},
    {0, "\xD0\xCF\x11\xE0"sv, "is a spreadsheet of an old format: save the table as text with tabs or as CSV"},
    {36, "acsp"sv, "is a colour profile, which holds no table of patches"},
    {0, "%PDF"sv, "is a PDF document: a table of patches is a text file"},
    {0, "%!PS"sv, "is a PostScript file: a table of patches is a text file"},
    {0, "II*\0"sv, "is a TIFF image: a table of patches is a text file"},
    {0, "MM\0*"sv, "is a TIFF image: a table of patches is a text file"},
    {0, "\x89PNG"sv, "is a PNG image: a table of patches is a text file"},
    {0, "\x1F\x8B"sv, "is a compressed file: unpack it first"},
};

// A signature that is not at the start can be a word of a text by chance. What stands before it in a profile has NULs.
bool hasSignature(std::string_view bytes, FileSignature const& file)
{
    bool const isThere = bytes.size() >= file.offset && bytes.substr(file.offset).starts_with(file.bytes);
    return isThere && (file.offset == 0 || bytes.substr(0, file.offset).find('\0') != std::string_view::npos);
}

// What the bytes 0x80 to 0x9F stand for; the five that stand for nothing become the replacement character.
constexpr std::array<char16_t, 32> windows1252 = {
    u'\u20AC', u'\uFFFD', u'\u201A', u'\u0192', u'\u201E', u'\u2026', u'\u2020', u'\u2021',
    u'\u02C6', u'\u2030', u'\u0160', u'\u2039', u'\u0152', u'\uFFFD', u'\u017D', u'\uFFFD',
    u'\uFFFD', u'\u2018', u'\u2019', u'\u201C', u'\u201D', u'\u2022', u'\u2013', u'\u2014',
    u'\u02DC', u'\u2122', u'\u0161', u'\u203A', u'\u0153', u'\uFFFD', u'\u017E', u'\u0178'};

constexpr char32_t replacement = U'\uFFFD';

void appendUtf8(std::string& text, char32_t character)
{
    auto const put = [&](char32_t bits) { text += static_cast<char>(bits); };
    auto const putLast6Bits = [&](int shift) { put(0x80 | ((character >> shift) & 0x3F)); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0 | (character >> 6));
        putLast6Bits(0);
    } else if (character < 0x10000) {
        put(0xE0 | (character >> 12));
        putLast6Bits(6);
        putLast6Bits(0);
    } else {
        put(0xF0 | (character >> 18));
        putLast6Bits(12);
        putLast6Bits(6);
        putLast6Bits(0);
    }
}

// The bytes of the valid character at the start of a text; 0 where there is none.
std::size_t characterLength(std::string_view text)
{
    auto const byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    auto const continues = [&](std::size_t i) { return i < text.size() && (byte(i) & 0xC0) == 0x80; };
    unsigned const first = byte(0);
    if (first < 0x80)
        return 1;
    if (first >= 0xC2 && first < 0xE0)
        return continues(1) ? 2 : 0;
    if (first >= 0xE0 && first < 0xF0) {
        if (!continues(1) || !continues(2))
            return 0;
        bool const isTooLong = first == 0xE0 && byte(1) < 0xA0;
        bool const isSurrogate = first == 0xED && byte(1) >= 0xA0;
        return isTooLong || isSurrogate ? 0 : 3;
    }
    if (first >= 0xF0 && first < 0xF5) {
        if (!continues(1) || !continues(2) || !continues(3))
            return 0;
        bool const isTooLong = first == 0xF0 && byte(1) < 0x90;
        bool const isTooLarge = first == 0xF4 && byte(1) >= 0x90;
        return isTooLong || isTooLarge ? 0 : 4;
    }
    return 0;
}

bool isUtf8(std::string_view text)
{
    constexpr std::uint64_t highBits = 0x8080808080808080;
    while (!text.empty()) {
        std::uint64_t eightBytes = 0;
        if (text.size() >= sizeof eightBytes) {
            std::memcpy(&eightBytes, text.data(), sizeof eightBytes);
            if ((eightBytes & highBits) == 0) {
                text.remove_prefix(sizeof eightBytes);
                continue;
            }
        }
        std::size_t const length = characterLength(text);
        if (length == 0)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string fromWindows1252(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    for (char const c : bytes) {
        auto const byte = static_cast<unsigned char>(c);
        bool const isLatin1 = byte < 0x80 || byte >= 0xA0;
        appendUtf8(text, isLatin1 ? byte : windows1252[byte - 0x80U]);
    }
    return text;
}

// Half a pair of surrogates and half a unit at the end become the replacement character.
std::string fromUtf16(std::string_view bytes, bool isLittleEndian)
{
    std::string text;
    text.reserve(bytes.size() / 2 + bytes.size() / 8);
    auto const unitAt = [&](std::size_t i) -> char32_t {
        auto const first = static_cast<unsigned char>(bytes[i]);
        auto const second = static_cast<unsigned char>(bytes[i + 1]);
        return static_cast<char32_t>(isLittleEndian ? second << 8 | first : first << 8 | second);
    };
    std::size_t i = 0;
    for (; i + 2 <= bytes.size(); i += 2) {
        char32_t const unit = unitAt(i);
        bool const isHighSurrogate = unit >= 0xD800 && unit < 0xDC00;
        bool const isLowSurrogate = unit >= 0xDC00 && unit < 0xE000;
        char32_t const next = isHighSurrogate && i + 4 <= bytes.size() ? unitAt(i + 2) : 0;
        if (next >= 0xDC00 && next < 0xE000) {
            appendUtf8(text, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
            i += 2;
        } else {
            appendUtf8(text, isHighSurrogate || isLowSurrogate ? replacement : unit);
        }
    }
    if (i < bytes.size())
        appendUtf8(text, replacement);
    return text;
}

// Whether the bytes of each of the first 32 pairs are NUL at one place and only there.
bool looksLikeUtf16(std::string_view bytes, std::size_t nulPlace)
{
    std::string_view const start = bytes.substr(0, 64);
    if (start.size() < 4)
        return false;
    for (std::size_t i = 0; i + 2 <= start.size(); i += 2)
        if (start[i + nulPlace] != '\0' || start[i + 1 - nulPlace] == '\0')
            return false;
    return true;
}

DecodedText decodeUnchecked(std::string bytes)
{
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.erase(0, 3);
    std::string_view const view = bytes;
    if (view.starts_with("\xFF\xFE"))
        return {fromUtf16(view.substr(2), true), TextEncoding::utf16LittleEndian, {}};
    if (view.starts_with("\xFE\xFF"))
        return {fromUtf16(view.substr(2), false), TextEncoding::utf16BigEndian, {}};
    if (looksLikeUtf16(view, 1))
        return {fromUtf16(view, true), TextEncoding::utf16LittleEndian, {}};
    if (looksLikeUtf16(view, 0))
        return {fromUtf16(view, false), TextEncoding::utf16BigEndian, {}};
    if (isUtf8(view))
        return {std::move(bytes), TextEncoding::utf8, {}};
    return {fromWindows1252(view), TextEncoding::windows1252, {}};
}

} // namespace

std::string_view nameOf(TextEncoding encoding)
{
    constexpr std::string_view names[] = {"UTF-8", "UTF-16LE", "UTF-16BE", "Windows-1252"};
    return names[static_cast<std::size_t>(encoding)];
}

DecodedText decodeText(std::string bytes)
{
    DecodedText refused;
    for (FileSignature const& file : foreignFiles)
        if (hasSignature(bytes, file)) {
            refused.faults.add({}, file.fault);
            return refused;
        }
    if (bytes.size() > largestFile) {
        refused.faults.add({}, "is larger than 512 MiB: no table of patches is");
        return refused;
    }

    DecodedText decoded = decodeUnchecked(std::move(bytes));
    // An old end-of-file mark.
    if (decoded.text.ends_with('\x1A'))
        decoded.text.pop_back();
    if (std::size_t const nul = decoded.text.find('\0'); nul != std::string::npos) {
        refused.faults.add(placeOf(decoded.text, nul),
                           "a NUL byte: this is no text file; save the table as text or CSV");
        return refused;
    }
    return decoded;
}
