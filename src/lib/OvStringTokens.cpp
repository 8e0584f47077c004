// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvString.h"

#include <algorithm>

namespace
{

using Position = unsigned long long;

bool isWhitespace(char c)
{
    return static_cast<signed char>(c) <= 32;
}

bool isText(char c)
{
    return !isWhitespace(c);
}

bool isLineEnd(char c)
{
    return c == '\r' || c == '\n';
}

bool isSeparator(char c)
{
    return c == '/' || c == '\\';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isSign(char c)
{
    return c == '+' || c == '-';
}

// The position of the first byte at or after `from` that matches; the length of the text if none does.
template <typename Predicate>
Position find(String const& text, Predicate matches, Position from = 0)
{
    return static_cast<Position>(std::find_if(text.begin() + from, text.end(), matches) - text.begin());
}

// The position behind the last byte that matches; 0 if none does.
template <typename Predicate>
Position findBehindLast(String const& text, Predicate matches)
{
    Position end = text.getCount();
    while (end > 0 && !matches(text.begin()[end - 1]))
        --end;
    return end;
}

Position findAfterDigits(String const& text, Position from)
{
    return find(
        text, [](char c) { return !isDigit(c); }, from);
}

bool hasAt(String const& text, Position at, bool (*matches)(char))
{
    return at < text.getCount() && matches(text.begin()[at]);
}

// The position behind the line end at `at`, or `at` itself at the end of the text.
Position findAfterLineEnd(String const& text, Position at)
{
    if (at == text.getCount())
        return at;
    bool const isPair = text.begin()[at] == '\r' && hasAt(text, at + 1, [](char c) { return c == '\n'; });
    return at + (isPair ? 2 : 1);
}

} // namespace

// Tokens --------------------------------------------------------------------------------------------------------------

// Takes the first `length` bytes as the token and drops the bytes before `next`. The token may be this string.
void String::take(String& token, unsigned long long length, unsigned long long next)
{
    String taken = *this;
    taken.strip(0, count - length);
    skipCharacters(next);
    token = std::move(taken);
}

void String::skipWhitespaces()
{
    skipCharacters(find(*this, isText));
}

void String::skipLine()
{
    skipCharacters(findAfterLineEnd(*this, find(*this, isLineEnd)));
}

void String::getLine(String& token, bool skip)
{
    auto const end = find(*this, isLineEnd);
    auto const next = findAfterLineEnd(*this, end);
    take(token, end, skip ? find(*this, isText, next) : next);
}

void String::getToken(String& token)
{
    auto const end = find(*this, isWhitespace);
    take(token, end, find(*this, isText, end));
}

void String::getToken(String& token, char separator, bool drop)
{
    auto const end = find(*this, [separator](char c) { return c == separator; });
    auto const isDropped = drop && end < count;
    take(token, end, find(*this, isText, end + isDropped));
}

void String::getToken(String& token, char open, char close, bool nested)
{
    skipCharacters(find(*this, [open](char c) { return c == open; }));
    skipCharacters(1);
    unsigned long long depth = 1;
    auto const end = find(*this, [=, &depth](char c) {
        if (c == close)
            --depth;
        else if (nested && c == open)
            ++depth;
        return depth == 0;
    });
    take(token, end, find(*this, isText, std::min(end + 1, count)));
}

void String::getNameToken(String& token)
{
    auto const end = hasAt(*this, 0, isLetter) ? find(*this, [](char c) { return !isLetter(c) && !isDigit(c); }) : 0;
    take(token, end, find(*this, isText, end));
}

void String::getNumberToken(String& token)
{
    skipWhitespaces();
    Position const start = hasAt(*this, 0, isSign) ? 1 : 0;
    Position end = findAfterDigits(*this, start);
    Position digits = end - start;
    if (hasAt(*this, end, [](char c) { return c == '.'; })) {
        auto const point = end;
        end = findAfterDigits(*this, point + 1);
        digits += end - point - 1;
    }
    if (digits == 0) {
        take(token, 0, 0);
        return;
    }
    if (hasAt(*this, end, [](char c) { return c == 'e' || c == 'E'; })) {
        auto const exponent = end + (hasAt(*this, end + 1, isSign) ? 2 : 1);
        auto const exponentEnd = findAfterDigits(*this, exponent);
        if (exponentEnd > exponent)
            end = exponentEnd;
    }
    take(token, end, find(*this, isText, end));
}

void String::getDirectoryToken(String& token)
{
    auto const end = find(*this, isSeparator);
    take(token, end, end + 1);
}

// Paths ---------------------------------------------------------------------------------------------------------------

String String::getFilename() const
{
    auto const start = findBehindLast(*this, isSeparator);
    return substr(start, count - start);
}

String String::getParentDir() const
{
    return substr(0, findBehindLast(*this, isSeparator));
}

void String::getDirAndFilename(String& dir, String& filename) const
{
    String const path = *this;
    dir = path.getParentDir();
    filename = path.getFilename();
}

void String::getDirAndFilenameAndSuffix(String& dir, String& filename, String& suffix) const
{
    String const path = *this;
    path.getDirAndFilename(dir, filename);
    suffix = path.getSuffix();
}

String String::getSuffix() const
{
    auto const behindDot = findBehindLast(*this, [](char c) { return c == '.'; });
    return behindDot > 0 ? substr(behindDot - 1, count - behindDot + 1) : String();
}

void String::stripSuffix()
{
    auto const behindDot = findBehindLast(*this, [](char c) { return c == '.'; });
    *this = substr(0, behindDot > 0 ? behindDot - 1 : 0);
}

String String::getStringWithEndingSlash() const
{
    return count > 0 && isSeparator(data[count - 1]) ? *this : String(*this, "/");
}

String String::getStringWithoutEndingSlash() const
{
    return count > 0 && isSeparator(data[count - 1]) ? substr(0, count - 1) : *this;
}
