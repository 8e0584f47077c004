// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvString.h"

#include "OvError.h"
#include "OvLocale.h"

#include <cstdio>
#include <cstring>

namespace
{

unsigned long long lengthOf(char const* text)
{
    return text ? std::strlen(text) : 0;
}

} // namespace

// Replaces the text by `length` bytes that are not set yet, with a NUL behind them. Null for length 0, or when memory
// runs out.
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

// Operations of the base class may have changed the storage since the flag was set, so the byte is checked too.
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
    if (front >= count || back >= count - front) {
        clearString();
        return;
    }
    data += front;
    count -= front + back;
    hasNullBehind = hasNullBehind && back == 0;
}

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
