// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "OvArray.h"

#include <concepts>
#include <cstdarg>
#include <cstdint>

class WFile;

/// The string hashes that String::hashKey knows.
enum class HashAlgorithm : int { RS, JS, ELF, BKDR, SDBM, DJB, DEK, BP, FNV, AP };

/// A text of bytes, without any character set; NULs are bytes like others. Copies, tokens and sub-strings share one
/// storage block, and what one of them writes all of them see (see Array).
///
/// Whitespace is every byte that is at most 32 as a signed char: control characters, the blank, and 0x80 to 0xFF.
///
/// The tokenisers take a token off the front of the string, which shrinks, and put it into the string given, without
/// copying a byte. The string given may be the same one: the token wins then.
class String : public Array<char>
{
public:
    String() = default;

    /// A text of `length` NULs.
    template <std::integral Length>
    requires(!std::same_as<Length, bool> && !std::same_as<Length, char>) explicit String(Length length)
    {
        allocate(static_cast<unsigned long long>(length));
        std::fill(begin(), end(), '\0');
    }

    /// A copy of a NUL-terminated text. A null pointer is reported and gives the empty string.
    String(char const* text);

    /// The caller's own NUL-terminated text. Taken over, it must come from new[] and is freed by delete[]; borrowed, it
    /// must outlive all strings that share it. A null pointer is reported and gives the empty string.
    String(char* text, bool takeOver);

    /// As above, with the length of the text given: no NUL needs to follow it.
    String(char* text, bool takeOver, unsigned long long length);

    /// Two texts, one after the other. A null pointer is reported and left out.
    String(String const& first, String const& second);
    String(char const* first, String const& second);
    String(String const& first, char const* second);
    String(String const& first, char const* second, unsigned long long secondLength);

    /// A view of `length` bytes of `source` from `offset` on. What lies past the end is reported and left out.
    template <std::integral Offset>
    String(String const& source, Offset offset, unsigned long long length)
        : String(source.substr(static_cast<unsigned long long>(offset), length))
    {
    }

    /// The parts with the separator between each two, before the first one too if `before` is set, and after the last
    /// one if `after` is. No parts give the empty string.
    String(Array<String> const& parts, String const& separator, bool before, bool after);

    /// The text with a NUL behind it; valid until the string changes. Where none stands there yet, the string moves to
    /// a storage of its own.
    operator char*() const { return getNullTerminatedString(); }
    char* getNullTerminatedString() const;

    /// Makes this the empty string.
    void clearString() { *this = String(); }

    String operator+(String const& other) const { return String(*this, other); }
    /// Would be pointer arithmetic.
    template <std::integral Number>
    String operator+(Number) const = delete;

    bool operator==(String const& other) const;
    /// A null pointer equals no string.
    bool operator==(char const* text) const;

    /// The byte at `index` from the start; from the end, where 0 is the last byte. One outside is reported and NUL.
    char Char(unsigned long long index) const { return (*this)[index]; }
    char CharRight(unsigned long long index) const { return (*this)[getCount() - 1 - index]; }

    /// A view of `length` bytes from `offset` on. What lies past the end is reported and left out.
    String substr(unsigned long long offset, unsigned long long length) const;

    /// Drops bytes at both ends; the string becomes empty where it has no more.
    void strip(unsigned long long front, unsigned long long back);

    /// Drops whitespace at the front.
    void skipWhitespaces();

    /// Drops the first `n` bytes, or all there are.
    void skipCharacters(unsigned long long n) { strip(n, 0); }

    /// Drops everything up to and including the next line end: CR, LF or CR LF.
    void skipLine();

    /// Takes the text up to the next line end (CR, LF or CR LF) or the end of the string; the line end is dropped, and
    /// so is whitespace after it if `skip` is set.
    void getLine(String& token, bool skip);

    /// Takes the text up to the first whitespace or the end of the string; the whitespace is dropped.
    void getToken(String& token);

    /// Takes the text up to the first separator or the end of the string. The separator is dropped if `drop` is set,
    /// and then whitespace in any case.
    void getToken(String& token, char separator, bool drop);

    /// Takes the text between the first `open` and the matching `close`; what stands before, both delimiters and
    /// whitespace after them are dropped. With `nested` set, each further `open` needs a `close` of its own. Without
    /// `open` token and string become empty; without the matching `close` the whole rest is the token.
    void getToken(String& token, char open, char close, bool nested);

    /// Takes an ASCII letter and the ASCII letters and digits after it; nothing where no letter stands. Whitespace
    /// after them is dropped.
    void getNameToken(String& token);

    /// Takes a decimal number: "+" or "-", digits with or without a "." among them, and an exponent of "e" or "E", "+"
    /// or "-", and digits. An exponent without digits is left in the string; nothing is taken where there is no digit
    /// before the exponent. Whitespace around the number is dropped.
    void getNumberToken(String& token);

    /// Takes the text up to the first slash or backslash, which is dropped, or the end of the string.
    void getDirectoryToken(String& token);

    // Paths: slash and backslash are separators.

    /// What follows the last separator; all where there is none.
    String getFilename() const;
    /// Everything up to and including the last separator; empty where there is none.
    String getParentDir() const;
    void getDirAndFilename(String& dir, String& filename) const;
    /// The file name keeps its suffix.
    void getDirAndFilenameAndSuffix(String& dir, String& filename, String& suffix) const;
    /// From the last dot to the end, even if a separator follows the dot; empty where there is none.
    String getSuffix() const;
    /// Shortens the string to what stands before its last dot: without a dot to nothing.
    void stripSuffix();
    /// Ends in the separator it has or in "/".
    String getStringWithEndingSlash() const;
    /// Without one final separator.
    String getStringWithoutEndingSlash() const;

    /// The number that the digits at the front make up, 0 without any: at most `max`.
    std::uint8_t toUInt8(std::uint8_t max) const;
    std::uint16_t toUInt16(std::uint16_t max) const;
    std::uint32_t toUInt32(std::uint32_t max) const;
    std::uint64_t toUInt64(std::uint64_t max) const;

    /// The number that a "-" or "+" and the digits at the front make up, 0 without digits: a positive number at most
    /// `max`, a negative one at least `min`.
    std::int8_t toInt8(std::int8_t max, std::int8_t min) const;
    std::int16_t toInt16(std::int16_t max, std::int16_t min) const;
    std::int32_t toInt32(std::int32_t max, std::int32_t min) const;
    std::int64_t toInt64(std::int64_t max, std::int64_t min) const;

    /// What atof makes of the text, with a decimal point under every locale.
    double toReal() const;
    double toDouble() const { return toReal(); }
    float toFloat() const { return static_cast<float>(toReal()); }

    /// A hash of the bytes, taken as signed chars; 0 for a value that is no algorithm.
    std::uint32_t hashKey(HashAlgorithm algorithm) const;

    /// Writes the text as it is.
    void print(WFile* file) const;

    /// What printf would print, with a decimal point under every locale; empty where printf would fail.
    [[gnu::format(printf, 1, 2)]] static String format(char const* format, ...);
    [[gnu::format(printf, 1, 0)]] static String formatWithArguments(char const* format, va_list arguments);

private:
    char* allocate(unsigned long long length);
    void concatenate(char const* first, unsigned long long length1, char const* second, unsigned long long length2);
    bool isNullTerminated() const;
    void take(String& token, unsigned long long length, unsigned long long next);

    // Whether the byte behind the text is a NUL that no other string can overwrite. Clear for views that stop before
    // the end of their source: the byte behind them is another string's text.
    mutable bool hasNullBehind = false;
};

/// Both texts, one after the other. A null pointer is reported and left out.
String operator+(char const* first, String const& second);

/// Prints the 32 bits of `number`, the highest first, and a line feed to standard output.
void printbinary(int number);
