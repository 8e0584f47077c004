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

/// A text of bytes without a character set. A NUL is a byte like any other. Copies, tokens and sub-strings share one
/// storage block, and all of them see what is written through one (see Array).
///
/// Whitespace is every byte that is at most 32 as a signed char: control characters, the blank, and 0x80 to 0xFF.
///
/// The tokenisers take a token off the front of the string, which shrinks, and put it into the given string. They copy
/// no bytes. The given string may be the same one; it then holds the token.
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

    /// Uses the caller's NUL-terminated text. With `takeOver`, the text must come from new[] and is freed with
    /// delete[]. Without, it must outlive all strings that share it. A null pointer is reported and gives the empty
    /// string.
    String(char* text, bool takeOver);

    /// As above, with the length of the text. It needs no NUL.
    String(char* text, bool takeOver, unsigned long long length);

    /// Two texts, one after the other. A null pointer is reported and counts as an empty text.
    String(String const& first, String const& second);
    String(char const* first, String const& second);
    String(String const& first, char const* second);
    String(String const& first, char const* second, unsigned long long secondLength);

    /// A view of `length` bytes of `source` from `offset` on. A range past the end is reported and cut off.
    template <std::integral Offset>
    String(String const& source, Offset offset, unsigned long long length)
        : String(source.substr(static_cast<unsigned long long>(offset), length))
    {
    }

    /// The parts, with the separator between every two. With `before`, a separator also stands before the first part,
    /// and with `after`, behind the last one. No parts give the empty string.
    String(Array<String> const& parts, String const& separator, bool before, bool after);

    /// The text with a NUL behind it, valid until the string changes. If the storage has no NUL there, the string moves
    /// to a new storage.
    operator char*() const { return getNullTerminatedString(); }
    char* getNullTerminatedString() const;

    /// Makes this the empty string.
    void clearString() { *this = String(); }

    String operator+(String const& other) const { return String(*this, other); }
    /// Deleted because it would be pointer arithmetic.
    template <std::integral Number>
    String operator+(Number) const = delete;

    bool operator==(String const& other) const;
    /// A null pointer equals no string.
    bool operator==(char const* text) const;

    /// The byte at `index`: from the start, or from the end, where 0 is the last byte. An index outside is reported and
    /// gives NUL.
    char Char(unsigned long long index) const { return (*this)[index]; }
    char CharRight(unsigned long long index) const { return (*this)[getCount() - 1 - index]; }

    /// A view of `length` bytes from `offset` on. A range past the end is reported and cut off.
    String substr(unsigned long long offset, unsigned long long length) const;

    /// Drops bytes at both ends. A string with no more bytes than that becomes empty.
    void strip(unsigned long long front, unsigned long long back);

    /// Drops whitespace at the front.
    void skipWhitespaces();

    /// Drops the first `n` bytes, or all if there are fewer.
    void skipCharacters(unsigned long long n) { strip(n, 0); }

    /// Drops everything up to and including the next line end: CR, LF or CR LF.
    void skipLine();

    /// Takes the text up to the next line end (CR, LF or CR LF) or the end of the string. The line end is dropped. With
    /// `skip`, whitespace after it is dropped too.
    void getLine(String& token, bool skip);

    /// Takes the text up to the first whitespace or the end of the string. The whitespace is dropped.
    void getToken(String& token);

    /// Takes the text up to the first separator or the end of the string. With `drop`, the separator is dropped.
    /// Whitespace at the front of the rest is dropped in any case.
    void getToken(String& token, char separator, bool drop);

    /// Takes the text between the first `open` and the matching `close`. Drops the text before `open`, both delimiters,
    /// and whitespace after `close`. With `nested`, each further `open` needs its own `close`. Without an `open`, the
    /// token and the string become empty. Without the matching `close`, the token is the whole rest.
    void getToken(String& token, char open, char close, bool nested);

    /// Takes an ASCII letter and the ASCII letters and digits after it. Takes nothing if the first byte is no letter.
    /// Whitespace after the name is dropped.
    void getNameToken(String& token);

    /// Takes a decimal number: an optional "+" or "-", digits with an optional ".", and an optional exponent ("e" or
    /// "E", an optional "+" or "-", digits). An exponent without digits stays in the string. Takes nothing if no digit
    /// stands before the exponent. Whitespace around the number is dropped.
    void getNumberToken(String& token);

    /// Takes the text up to the first slash or backslash, or the end of the string. The separator is dropped.
    void getDirectoryToken(String& token);

    // Paths: slash and backslash are separators.

    /// The text after the last separator; the whole text if there is none.
    String getFilename() const;
    /// The text up to and including the last separator; empty if there is none.
    String getParentDir() const;
    void getDirAndFilename(String& dir, String& filename) const;
    /// `filename` keeps its suffix.
    void getDirAndFilenameAndSuffix(String& dir, String& filename, String& suffix) const;
    /// The text from the last dot to the end, even if a separator follows the dot; empty if there is no dot.
    String getSuffix() const;
    /// Shortens the string to the text before its last dot. A string without a dot becomes empty.
    void stripSuffix();
    /// The string, with "/" appended unless it ends in a separator.
    String getStringWithEndingSlash() const;
    /// The string without one final separator.
    String getStringWithoutEndingSlash() const;

    /// The number of the digits at the front, at most `max`. 0 without digits.
    std::uint8_t toUInt8(std::uint8_t max) const;
    std::uint16_t toUInt16(std::uint16_t max) const;
    std::uint32_t toUInt32(std::uint32_t max) const;
    std::uint64_t toUInt64(std::uint64_t max) const;

    /// The number of an optional "-" or "+" and the digits at the front. A positive number is at most `max`, a negative
    /// one at least `min`. 0 without digits.
    std::int8_t toInt8(std::int8_t max, std::int8_t min) const;
    std::int16_t toInt16(std::int16_t max, std::int16_t min) const;
    std::int32_t toInt32(std::int32_t max, std::int32_t min) const;
    std::int64_t toInt64(std::int64_t max, std::int64_t min) const;

    /// What atof returns for the text, with a decimal point under every locale.
    double toReal() const;
    double toDouble() const { return toReal(); }
    float toFloat() const { return static_cast<float>(toReal()); }

    /// A hash of the bytes as signed chars; 0 for an unknown algorithm.
    std::uint32_t hashKey(HashAlgorithm algorithm) const;

    /// Writes the text as it is.
    void print(WFile* file) const;

    /// What printf would print, with a decimal point under every locale. Empty if printf would fail.
    [[gnu::format(printf, 1, 2)]] static String format(char const* format, ...);
    [[gnu::format(printf, 1, 0)]] static String formatWithArguments(char const* format, va_list arguments);

private:
    char* allocate(unsigned long long length);
    void concatenate(char const* first, unsigned long long length1, char const* second, unsigned long long length2);
    bool isNullTerminated() const;
    void take(String& token, unsigned long long length, unsigned long long next);

    // Whether the byte behind the text is a NUL that no other string can overwrite. False for views that stop before
    // the end of their source: the byte behind them belongs to another string's text.
    mutable bool hasNullBehind = false;
};

/// Both texts, one after the other. A null pointer is reported and counts as an empty text.
String operator+(char const* first, String const& second);

/// Prints the 32 bits of `number`, the highest first, and a line feed to standard output.
void printbinary(int number);
