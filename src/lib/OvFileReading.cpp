// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvFile.h"

#include "OvSystemCall.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

#include <fcntl.h>
#include <unistd.h>

RFile::RFile(String const& path) : File(path, O_RDONLY | O_NONBLOCK, 0), end(descriptor < 0) {}

// Reads without the buffer, until `n` bytes are read or the file ends.
long long RFile::readDirectly(void* bytes, long long n)
{
    long long done = 0;
    while (done < n) {
        auto* const target = static_cast<char*>(bytes) + done;
        auto const got = retryInterrupted([&] { return read(descriptor, target, static_cast<std::size_t>(n - done)); });
        if (got <= 0)
            break;
        done += got;
    }
    filePosition += done;
    return done;
}

void RFile::skipBuffered(long long n)
{
    readPosition += n;
    buffered -= n;
}

void RFile::requireBytes(long long n)
{
    if (n <= buffered)
        return;
    std::memmove(buffer.data(), buffer.data() + readPosition, static_cast<std::size_t>(buffered));
    readPosition = 0;
    buffered += readDirectly(buffer.data() + buffered, static_cast<long long>(bufferSize) - buffered);
    if (buffered == 0)
        end = true;
}

template <typename Number>
Number RFile::readNumber()
{
    constexpr auto size = static_cast<long long>(sizeof(Number));
    Number value{};
    requireBytes(size);
    if (buffered < size) {
        skipBuffered(buffered);
        end = true;
        return value;
    }
    std::memcpy(&value, buffer.data() + readPosition, sizeof(Number));
    skipBuffered(size);
    converter.convert(value);
    return value;
}

template <typename Number>
void RFile::readNumbers(Number* values, long long n)
{
    constexpr auto size = static_cast<long long>(sizeof(Number));
    if (n <= 0)
        return;
    auto const whole = readBytes(values, std::min(n, std::numeric_limits<long long>::max() / size) * size) / size;
    converter.convertEach<Number>(values, static_cast<unsigned long long>(whole));
    std::fill(values + whole, values + n, Number{});
}

std::int8_t RFile::readInt8()
{
    return readNumber<std::int8_t>();
}

std::uint8_t RFile::readUInt8()
{
    return readNumber<std::uint8_t>();
}

std::int16_t RFile::readInt16()
{
    return readNumber<std::int16_t>();
}

std::uint16_t RFile::readUInt16()
{
    return readNumber<std::uint16_t>();
}

std::int32_t RFile::readInt32()
{
    return readNumber<std::int32_t>();
}

std::uint32_t RFile::readUInt32()
{
    return readNumber<std::uint32_t>();
}

std::int64_t RFile::readInt64()
{
    return readNumber<std::int64_t>();
}

std::uint64_t RFile::readUInt64()
{
    return readNumber<std::uint64_t>();
}

float RFile::readFloat()
{
    return std::bit_cast<float>(readNumber<std::uint32_t>());
}

void RFile::readUInt8Array(std::uint8_t* values, long long n)
{
    readNumbers(values, n);
}

void RFile::readUInt16Array(std::uint16_t* values, long long n)
{
    readNumbers(values, n);
}

void RFile::readFloatArray(float* values, long long n)
{
    readNumbers(values, n);
}

long long RFile::readBytes(void* bytes, long long n)
{
    auto* target = static_cast<char*>(bytes);
    auto const takeBuffered = [&](long long most) {
        auto const taken = std::clamp(most, 0LL, buffered);
        target = std::copy_n(buffer.data() + readPosition, taken, target);
        skipBuffered(taken);
        return taken;
    };
    auto done = takeBuffered(n);
    if (n - done >= static_cast<long long>(bufferSize))
        done += readDirectly(target, n - done);
    else if (n > done) {
        requireBytes(n - done);
        done += takeBuffered(n - done);
    }
    if (done < n)
        end = true;
    return done;
}

String RFile::readLine()
{
    GrowingArray<char> line;
    for (requireBytes(1); buffered > 0; requireBytes(1)) {
        char const c = nextBuffered();
        skipBuffered(1);
        if (c == '\r') {
            requireBytes(1);
            if (buffered > 0 && nextBuffered() == '\n')
                skipBuffered(1);
        }
        if (c == '\r' || c == '\n')
            break;
        line.add(c);
    }
    String text;
    text.init(line);
    return text;
}

String RFile::readStringWithLength()
{
    // The length may be wrong, so it is not allocated at once: the text grows with the bytes that are there.
    GrowingArray<char> bytes;
    for (auto missing = readUInt64(); missing > 0; --missing) {
        requireBytes(1);
        if (buffered == 0)
            break;
        bytes.add(nextBuffered());
        skipBuffered(1);
    }
    String text;
    text.init(bytes);
    return text;
}

String RFile::readContents(String const& path)
{
    RFile file(path);
    String contents(file.getFileSize());
    auto const size = static_cast<long long>(contents.getCount());
    contents.strip(0, static_cast<unsigned long long>(size - file.readBytes(contents.begin(), size)));
    return contents;
}

Array<unsigned char> RFile::readBinaryContents(String const& path)
{
    RFile file(path);
    Array<unsigned char> contents(static_cast<unsigned long long>(file.getFileSize()));
    auto const got = file.readBytes(contents.begin(), static_cast<long long>(contents.getCount()));
    contents.init(contents, 0, static_cast<unsigned long long>(got));
    return contents;
}

void RFile::jumpToOffset(long long offset)
{
    if (lseek(descriptor, offset, SEEK_SET) < 0)
        return;
    filePosition = offset;
    skipBuffered(buffered);
    end = false;
}

void RFile::jumpRelative(long long distance)
{
    long long offset = 0;
    if (!__builtin_add_overflow(filePosition - buffered, distance, &offset))
        jumpToOffset(offset);
}
