// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvString.h"

#include "OvFile.h"
#include "OvLocale.h"

#include <bit>
#include <cstdio>
#include <cstring>

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

// The first byte at or after `from` that matches; the count of bytes where there is none.
template <typename Predicate>
Position find(String const& text, Predicate matches, Position from = 0)
{
    return static_cast<Position>(std::find_if(text.begin() + from, text.end(), matches) - text.begin());
}

// The position behind the last byte that matches; 0 where there is none.
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

Position lengthOf(char const* text)
{
    return text ? std::strlen(text) : 0;
}

} // namespace

// Construction --------------------------------------------------------------------------------------------------------

// Changes over to a new text of `length` bytes, not set yet, with a NUL behind it; null where there is no such text.
char* String::allocate(unsigned long long length)
{
    auto const size = length + 1;
    adopt(length > 0 && canHold(size) ? new (std::nothrow) char[size] : nullptr, size, true);
    if (!storage)
        return nullptr;
    data[length] = '\0';
    count = length;
    hasNullBehind = true;
    return data;
}

void String::concatenate(char const* first, unsigned long long length1, char const* second, unsigned long long length2)
{
    if (length2 > ~0ULL - length1)
        return;
    if (char* const block = allocate(length1 + length2))
        std::copy_n(second, length2, std::copy_n(first, length1, block));
}

String::String(char const* text)
{
    if (!text)
        OvError("Array creation: Pointer to provided buffer is NULL.");
    concatenate(text, lengthOf(text), nullptr, 0);
}

String::String(char* text, bool takeOver)
{
    init(text, takeOver, lengthOf(text) + 1);
    if (count > 0)
        --count;
    hasNullBehind = true;
    if (count == 0)
        clearString();
}

String::String(char* text, bool takeOver, unsigned long long length)
{
    init(text, takeOver, length);
}

String::String(String const& first, String const& second)
{
    concatenate(first.data, first.count, second.data, second.count);
}

String::String(char const* first, String const& second)
{
    if (!first)
        OvError("Array creation: Pointer to provided buffer 1 is NULL.");
    concatenate(first, lengthOf(first), second.data, second.count);
}

String::String(String const& first, char const* second) : String(first, second, lengthOf(second)) {}

String::String(String const& first, char const* second, unsigned long long secondLength)
{
    if (!second)
        OvError("Array creation: Pointer to provided buffer 2 is NULL.");
    concatenate(first.data, first.count, second, second ? secondLength : 0);
}

String::String(Array<String> const& parts, String const& separator, bool before, bool after)
{
    if (parts.getCount() == 0)
        return;
    auto length = separator.count * (parts.getCount() - 1 + before + after);
    for (String const& part : parts)
        length += part.count;
    char* end = allocate(length);
    if (!end)
        return;
    auto const append = [&end](String const& text) { end = std::copy_n(text.data, text.count, end); };
    bool isSeparated = before;
    for (String const& part : parts) {
        if (isSeparated)
            append(separator);
        append(part);
        isSeparated = true;
    }
    if (after)
        append(separator);
}

String operator+(char const* first, String const& second)
{
    return String(first, second);
}

// Bytes ---------------------------------------------------------------------------------------------------------------

// The storage has the last word: operations of the base class may have changed it since the flag was set.
bool String::isNullTerminated() const
{
    return hasNullBehind && countBehind() > 0 && data[count] == '\0';
}

char* String::getNullTerminatedString() const
{
    if (count > 0 && !isNullTerminated()) {
        String copy;
        copy.concatenate(data, count, nullptr, 0);
        if (copy.storage) {
            swapStorage(copy);
            hasNullBehind = true;
        }
    }
    if (isNullTerminated())
        return data;
    static char emptyText;
    emptyText = '\0';
    return &emptyText;
}

bool String::operator==(String const& other) const
{
    return std::equal(begin(), end(), other.begin(), other.end());
}

bool String::operator==(char const* text) const
{
    return text && std::equal(begin(), end(), text, text + std::strlen(text));
}

String String::substr(unsigned long long offset, unsigned long long length) const
{
    String view;
    view.init(*this, offset, length);
    view.hasNullBehind = hasNullBehind && view.end() == end();
    return view;
}

void String::strip(unsigned long long front, unsigned long long back)
{
    front = std::min(front, count);
    back = std::min(back, count - front);
    *this = substr(front, count - front - back);
}

void String::print(WFile* file) const
{
    file->writeString(*this);
}

// Tokens --------------------------------------------------------------------------------------------------------------

// Takes the first `length` bytes for the token and goes on at `next`. The token may be this string.
void String::take(String& token, unsigned long long length, unsigned long long next)
{
    String taken = substr(0, length);
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

// Numbers -------------------------------------------------------------------------------------------------------------

namespace
{

// The number that the digits from `start` on make up, or the greatest of its type.
std::uint64_t readDigits(String const& text, Position start)
{
    constexpr auto greatest = ~std::uint64_t{0};
    std::uint64_t number = 0;
    for (Position i = start; hasAt(text, i, isDigit); ++i) {
        auto const digit = static_cast<std::uint64_t>(text.begin()[i] - '0');
        if (number > (greatest - digit) / 10)
            return greatest;
        number = number * 10 + digit;
    }
    return number;
}

template <typename Number>
Number toUnsigned(String const& text, Number max)
{
    if (!hasAt(text, 0, isDigit))
        return 0;
    auto const number = readDigits(text, 0);
    return number >= max ? max : static_cast<Number>(number);
}

template <typename Number>
Number toSigned(String const& text, Number max, Number min)
{
    Position const start = hasAt(text, 0, isSign) ? 1 : 0;
    if (!hasAt(text, start, isDigit))
        return 0;
    auto const magnitude = readDigits(text, start);
    if (text.begin()[0] == '-') {
        bool const isReached = min >= 0 || magnitude >= 0 - static_cast<std::uint64_t>(min);
        return isReached ? min : static_cast<Number>(-static_cast<std::int64_t>(magnitude));
    }
    bool const isReached = max <= 0 || magnitude >= static_cast<std::uint64_t>(max);
    return isReached ? max : static_cast<Number>(magnitude);
}

} // namespace

std::uint8_t String::toUInt8(std::uint8_t max) const
{
    return toUnsigned(*this, max);
}

std::uint16_t String::toUInt16(std::uint16_t max) const
{
    return toUnsigned(*this, max);
}

std::uint32_t String::toUInt32(std::uint32_t max) const
{
    return toUnsigned(*this, max);
}

std::uint64_t String::toUInt64(std::uint64_t max) const
{
    return toUnsigned(*this, max);
}

std::int8_t String::toInt8(std::int8_t max, std::int8_t min) const
{
    return toSigned(*this, max, min);
}

std::int16_t String::toInt16(std::int16_t max, std::int16_t min) const
{
    return toSigned(*this, max, min);
}

std::int32_t String::toInt32(std::int32_t max, std::int32_t min) const
{
    return toSigned(*this, max, min);
}

std::int64_t String::toInt64(std::int64_t max, std::int64_t min) const
{
    return toSigned(*this, max, min);
}

double String::toReal() const
{
    return parseReal(getNullTerminatedString());
}

// Hashes --------------------------------------------------------------------------------------------------------------

std::uint32_t String::hashKey(HashAlgorithm algorithm) const
{
    auto const fold = [this](std::uint32_t hash, auto step) {
        for (char const c : *this)
            hash = step(hash, static_cast<std::uint32_t>(static_cast<signed char>(c)));
        return hash;
    };
    switch (algorithm) {
    case HashAlgorithm::RS:
        return fold(0, [a = 63689U](std::uint32_t h, std::uint32_t c) mutable {
            h = h * a + c;
            a *= 378551;
            return h;
        });
    case HashAlgorithm::JS:
        return fold(1315423911, [](std::uint32_t h, std::uint32_t c) { return h ^ ((h << 5) + c + (h >> 2)); });
    case HashAlgorithm::ELF:
        return fold(0, [](std::uint32_t h, std::uint32_t c) {
            h = (h << 4) + c;
            auto const top = h & 0xF0000000;
            return (h ^ (top >> 24)) & ~top;
        });
    case HashAlgorithm::BKDR:
        return fold(0, [](std::uint32_t h, std::uint32_t c) { return h * 131 + c; });
    case HashAlgorithm::SDBM:
        return fold(0, [](std::uint32_t h, std::uint32_t c) { return c + h * 65599; });
    case HashAlgorithm::DJB:
        return fold(5381, [](std::uint32_t h, std::uint32_t c) { return h * 33 + c; });
    case HashAlgorithm::DEK:
        return fold(static_cast<std::uint32_t>(count),
                    [](std::uint32_t h, std::uint32_t c) { return std::rotl(h, 5) ^ c; });
    case HashAlgorithm::BP:
        return fold(0, [](std::uint32_t h, std::uint32_t c) { return (h << 7) ^ c; });
    case HashAlgorithm::FNV:
        return fold(0, [](std::uint32_t h, std::uint32_t c) { return (h * 0x811C9DC5) ^ c; });
    case HashAlgorithm::AP:
        return fold(0xAAAAAAAA, [isOdd = false](std::uint32_t h, std::uint32_t c) mutable {
            auto const mixed = isOdd ? ~((h << 11) + (c ^ (h >> 5))) : (h << 7) ^ (c * (h >> 3));
            isOdd = !isOdd;
            return h ^ mixed;
        });
    }
    return 0;
}

// Formats -------------------------------------------------------------------------------------------------------------

String String::format(char const* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    String text = formatWithArguments(format, arguments);
    va_end(arguments);
    return text;
}

String String::formatWithArguments(char const* format, va_list arguments)
{
    PointedNumbers const pointed;
    va_list again;
    va_copy(again, arguments);
    int const length = std::vsnprintf(nullptr, 0, format, arguments);
    String text;
    if (length > 0) {
        auto const textLength = static_cast<std::size_t>(length);
        if (char* const block = text.allocate(textLength))
            std::vsnprintf(block, textLength + 1, format, again);
    }
    va_end(again);
    return text;
}

void printbinary(int number)
{
    for (int bit = 31; bit >= 0; --bit)
        std::putchar((static_cast<unsigned>(number) >> bit) & 1 ? '1' : '0');
    std::putchar('\n');
}
