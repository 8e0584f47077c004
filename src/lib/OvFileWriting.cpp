// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvFile.h"

#include "OvLocale.h"
#include "OvSystemCall.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstring>

#include <fcntl.h>

WFile::WFile(String const& path, bool append, int mode)
    : File(path, O_WRONLY | O_CREAT | O_NONBLOCK | (append ? O_APPEND : O_TRUNC), mode)
{
    if (descriptor < 0)
        error.remember();
    // Only the open must not wait: a pipe whose reader is slow takes everything in the end.
    if (descriptor >= 0)
        fcntl(descriptor, F_SETFL, append ? O_APPEND : 0);
}

void WFile::writeDirectly(char const* bytes, unsigned long long n)
{
    // Nothing follows a missing piece: a reader could take such a file for a whole one.
    if (!writeAll(descriptor, bytes, n)) {
        error.remember();
        closeDescriptor();
    }
}

void WFile::Flush()
{
    writeDirectly(buffer.data(), bufferSize - freeBytes);
    freeBytes = bufferSize;
}

void WFile::flushFrom(OvAutoFlush mode)
{
    if (autoFlush >= mode)
        Flush();
}

bool WFile::sync()
{
    Flush();
    if (descriptor < 0)
        return false;
    if (!syncToDisk(descriptor))
        error.remember();
    return error.get() == 0;
}

void WFile::Close()
{
    Flush();
    if (!closeDescriptor())
        error.remember();
}

void WFile::requireBytes(long long n)
{
    if (n > static_cast<long long>(freeBytes))
        Flush();
}

// Puts bytes into the buffer, or writes them directly when they are too many for it.
void WFile::put(void const* bytes, unsigned long long n)
{
    if (n >= bufferSize) {
        Flush();
        writeDirectly(static_cast<char const*>(bytes), n);
        return;
    }
    requireBytes(static_cast<long long>(n));
    std::copy_n(static_cast<char const*>(bytes), n, freeSpace());
    freeBytes -= n;
}

void WFile::put(String const& text)
{
    put(text.begin(), text.getCount());
}

void WFile::putFormatted(char const* format, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    int length = -1;
    {
        PointedNumbers const pointed;
        length = std::vsnprintf(freeSpace(), freeBytes, format, arguments);
    }
    // vsnprintf needs room for a NUL too. Without it, the text is printed again into a new block.
    if (length >= 0 && static_cast<unsigned long long>(length) < freeBytes)
        freeBytes -= static_cast<unsigned long long>(length);
    else if (length >= 0) {
        String const text = String::formatWithArguments(format, again);
        if (text.getCount() != static_cast<unsigned long long>(length))
            error.remember();
        put(text);
    } else
        error.remember();
    va_end(again);
}

void WFile::writeString(char const* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    writeStringWithArguments(format, arguments);
    va_end(arguments);
}

void WFile::writeStringWithArguments(char const* format, va_list arguments)
{
    putFormatted(format, arguments);
    flushFrom(1);
}

void WFile::writeString(String const& text)
{
    put(text);
    flushFrom(1);
}

void WFile::writeLine(char const* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    writeLineWithArguments(format, arguments);
    va_end(arguments);
}

void WFile::writeLineWithArguments(char const* format, va_list arguments)
{
    putFormatted(format, arguments);
    put(newLine);
    flushFrom(1);
}

void WFile::writeLine(String const& text)
{
    put(text);
    put(newLine);
    flushFrom(1);
}

void WFile::writeNewLine()
{
    put(newLine);
    flushAfterSeparator();
}

void WFile::writeTab()
{
    put("\t", 1);
    flushAfterSeparator();
}

// Mode 2 is for blocks of bytes: a lone new line or tab is written with the next block.
void WFile::flushAfterSeparator()
{
    if (autoFlush == 1 || autoFlush == 3)
        Flush();
}

void WFile::writeBytes(void const* bytes, long long n)
{
    if (n <= 0)
        return;
    put(bytes, static_cast<unsigned long long>(n));
    flushFrom(2);
}

template <typename Number>
void WFile::writeNumber(Number value)
{
    converter.convert(value);
    put(&value, sizeof(Number));
    flushFrom(3);
}

void WFile::writeInt8(std::int8_t value)
{
    writeNumber(value);
}

void WFile::writeUInt8(std::uint8_t value)
{
    writeNumber(value);
}

void WFile::writeInt16(std::int16_t value)
{
    writeNumber(value);
}

void WFile::writeUInt16(std::uint16_t value)
{
    writeNumber(value);
}

void WFile::writeInt32(std::int32_t value)
{
    writeNumber(value);
}

void WFile::writeUInt32(std::uint32_t value)
{
    writeNumber(value);
}

void WFile::writeInt64(std::int64_t value)
{
    writeNumber(value);
}

void WFile::writeUInt64(std::uint64_t value)
{
    writeNumber(value);
}

void WFile::writeFloat(float value)
{
    // As an integer: a reversed float could be a signalling NaN, and passing it on as a float could change it.
    writeNumber(std::bit_cast<std::uint32_t>(value));
}

// Converts the numbers in the buffer, as many at a time as fit.
template <typename Number>
void WFile::writeNumbers(Number const* values, long long n)
{
    auto const* const end = values + std::max(n, 0LL);
    while (values < end) {
        requireBytes(sizeof(Number));
        auto const count = std::min(static_cast<unsigned long long>(end - values), freeBytes / sizeof(Number));
        auto* const target = freeSpace();
        std::memcpy(target, values, count * sizeof(Number));
        converter.convertEach<Number>(target, count);
        freeBytes -= count * sizeof(Number);
        values += count;
    }
    flushFrom(3);
}

void WFile::writeUInt8Array(std::uint8_t const* values, long long n)
{
    writeNumbers(values, n);
}

void WFile::writeUInt16Array(std::uint16_t const* values, long long n)
{
    writeNumbers(values, n);
}

void WFile::writeFloatArray(float const* values, long long n)
{
    writeNumbers(values, n);
}

void WFile::writeStringWithLength(String const& text)
{
    writeUInt64(text.getCount());
    writeBytes(text.begin(), static_cast<long long>(text.getCount()));
}
