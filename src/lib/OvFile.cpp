// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvFile.h"

#include "OvLocale.h"
#include "OvSystemCall.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

// Takes a number from the host's byte order to the file's, or back.
template <typename Number>
void convert(BinaryData const& converter, Number& number)
{
    auto const conversion = sizeof(Number) == 1   ? converter.cnv8
                            : sizeof(Number) == 2 ? converter.cnv16
                            : sizeof(Number) == 4 ? converter.cnv32
                                                  : converter.cnv64;
    conversion(&number);
}

// The same for a block of numbers, which need not be aligned.
template <typename Number>
void convertEach(BinaryData const& converter, void* numbers, unsigned long long count)
{
    auto const conversion = sizeof(Number) == 1   ? converter.cnvA8
                            : sizeof(Number) == 2 ? converter.cnvA16
                                                  : converter.cnvA32;
    conversion(numbers, count);
}

} // namespace

// File ----------------------------------------------------------------------------------------------------------------

File::File(String const& path, int flags, int mode) : name(path)
{
    char const* const text = path.getNullTerminatedString();
    // A path with a NUL in it would open another file.
    if (std::strlen(text) == path.getCount())
        descriptor = retryInterrupted([=] { return open(text, flags | O_CLOEXEC | O_NOCTTY, mode); });
}

long long File::getFileSize() const
{
    struct stat status;
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) ? status.st_size : 0;
}

void File::Close()
{
    closeDescriptor();
}

bool File::closeDescriptor()
{
    // A network folder can report a full disk as late as this. A signal is no failure: the descriptor is closed anyway.
    bool const isClosed = descriptor <= STDERR_FILENO || close(descriptor) == 0 || errno == EINTR;
    descriptor = -1;
    return isClosed;
}

// RFile ---------------------------------------------------------------------------------------------------------------

RFile::RFile(String const& path) : File(path, O_RDONLY | O_NONBLOCK, 0), end(descriptor < 0) {}

// Reads past the buffer until `n` bytes are there or there is nothing more.
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
    convert(converter, value);
    return value;
}

template <typename Number>
void RFile::readNumbers(Number* values, long long n)
{
    constexpr auto size = static_cast<long long>(sizeof(Number));
    if (n <= 0)
        return;
    auto const whole = readBytes(values, std::min(n, std::numeric_limits<long long>::max() / size) * size) / size;
    convertEach<Number>(converter, values, static_cast<unsigned long long>(whole));
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
    // The length is not to be trusted with an allocation: the text grows with what is really there.
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

// WFile ---------------------------------------------------------------------------------------------------------------

WFile::WFile(String const& path, bool append, int mode)
    : File(path, O_WRONLY | O_CREAT | O_NONBLOCK | (append ? O_APPEND : O_TRUNC), mode), failed(descriptor < 0)
{
    // Only the open must not wait: a pipe whose reader is slow takes everything in the end.
    if (descriptor >= 0)
        fcntl(descriptor, F_SETFL, append ? O_APPEND : 0);
}

void WFile::writeDirectly(char const* bytes, unsigned long long n)
{
    // Nothing follows a missing piece: a reader could take such a file for a whole one.
    if (!writeAll(descriptor, bytes, n)) {
        failed = true;
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
    failed = !syncToDisk(descriptor) || failed;
    return !failed;
}

void WFile::Close()
{
    Flush();
    failed = !closeDescriptor() || failed;
}

void WFile::requireBytes(long long n)
{
    if (n > static_cast<long long>(freeBytes))
        Flush();
}

// Takes bytes into the buffer or, when they are too many for it, past it.
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
    // Without room for the NUL that printf adds, the text is printed anew into a block of its own.
    if (length >= 0 && static_cast<unsigned long long>(length) < freeBytes)
        freeBytes -= static_cast<unsigned long long>(length);
    else if (length >= 0) {
        String const text = String::formatWithArguments(format, again);
        failed = failed || text.getCount() != static_cast<unsigned long long>(length);
        put(text);
    } else
        failed = true;
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

// Mode 2 is for blocks of bytes: a lone new line or tab goes out with the next of them.
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
    convert(converter, value);
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
    // As an integer: a reversed float could be a signalling NaN, which does not survive being handed on as a float.
    writeNumber(std::bit_cast<std::uint32_t>(value));
}

// Converts the numbers in the buffer, as many at a time as it takes.
template <typename Number>
void WFile::writeNumbers(Number const* values, long long n)
{
    auto const* const end = values + std::max(n, 0LL);
    while (values < end) {
        requireBytes(sizeof(Number));
        auto const count = std::min(static_cast<unsigned long long>(end - values), freeBytes / sizeof(Number));
        auto* const target = freeSpace();
        std::memcpy(target, values, count * sizeof(Number));
        convertEach<Number>(converter, target, count);
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

// A text knows nothing of files: its printing is defined here.
void String::print(WFile* file) const
{
    file->writeString(*this);
}

// The working folder --------------------------------------------------------------------------------------------------

String getWorkingDirectory()
{
    char* const text = getcwd(nullptr, 0);
    if (!text)
        return {};
    String folder(static_cast<char const*>(text));
    std::free(text);
    return folder.getCount() >= 2 ? folder.getStringWithoutEndingSlash() : folder;
}
