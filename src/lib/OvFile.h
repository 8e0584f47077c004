// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "OvArray.h"
#include "OvBinaryData.h"
#include "OvError.h"
#include "OvString.h"

#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdint>

// Nothing here stops or throws. A file that cannot be read is at its end at once. Once a write fails, that text and all
// later ones are lost; `WFile::hasFailed` tells so.

/// An open file. The derived classes say whether it is read or written.
class File
{
public:
    virtual ~File() { closeDescriptor(); }
    File(File const&) = delete;
    File& operator=(File const&) = delete;

    /// The name it was opened by; empty for what was opened otherwise.
    String const& getName() const { return name; }

    /// Sets the byte order of all numbers from here on; native at first.
    void setEndianness(Endianness order) { converter.setEndianness(order); }

    /// Bytes that the file has on disk; 0 for what has no size of its own: a folder, a pipe, a device, a failed open.
    long long getFileSize() const;

    /// Closes the file; a writer flushes its buffer first. The standard descriptors 0 to 2 stay open.
    virtual void Close();

protected:
    File() = default;
    File(String const& path, int flags, int mode);

    /// \return false where the system reports that what was written did not all reach the file
    bool closeDescriptor();

    static constexpr unsigned long long bufferSize = 4096;

    String name;
    int descriptor = -1;
    BinaryData converter;
};

/// Reads a file from its start, through a buffer.
class RFile : public File
{
public:
    /// Opens the file; never waits for a writer at the other end of a pipe.
    explicit RFile(String const& path);

    /// Whether the open failed or a read found nothing more.
    bool isAtEnd() const { return end; }

    /// Sees to it that `n` bytes are buffered, as far as the file and the buffer of 4096 bytes have them.
    void requireBytes(long long n);

    /// The next number in the file's byte order; 0 where the file ends before or within it.
    std::int8_t readInt8();
    std::uint8_t readUInt8();
    std::int16_t readInt16();
    std::uint16_t readUInt16();
    std::int32_t readInt32();
    std::uint32_t readUInt32();
    std::int64_t readInt64();
    std::uint64_t readUInt64();
    /// The bit pattern is read as 32 bits in the file's byte order.
    float readFloat();

    /// `n` numbers into a block of the caller; those that the file has no longer are 0.
    void readUInt8Array(std::uint8_t* values, long long n);
    void readUInt16Array(std::uint16_t* values, long long n);
    void readFloatArray(float* values, long long n);

    /// Up to `n` bytes into a block of the caller.
    ///
    /// \return how many the file had
    long long readBytes(void* bytes, long long n);

    /// The next line without its end, which is LF, CR, CR LF or the end of the file. Empty at the end of the file.
    String readLine();

    /// A length of 64 bits and as many bytes, or those that the file has.
    String readStringWithLength();

    /// The whole of a file; empty where it cannot be read.
    static String readContents(String const& path);
    static Array<unsigned char> readBinaryContents(String const& path);

    /// Goes to a place counted from the start of the file, or from the next byte to be read. Where there is no such
    /// place, the file stays where it is.
    void jumpToOffset(long long offset);
    void jumpRelative(long long distance);

private:
    template <typename Number>
    Number readNumber();
    template <typename Number>
    void readNumbers(Number* values, long long n);
    long long readDirectly(void* bytes, long long n);
    char nextBuffered() const { return buffer[static_cast<std::size_t>(readPosition)]; }
    void skipBuffered(long long n);

    std::array<char, bufferSize> buffer;
    long long buffered = 0;     // bytes in the buffer that were not taken yet
    long long readPosition = 0; // where in the buffer they start
    long long filePosition = 0; // where in the file they end
    bool end = false;
};

/// When a WFile writes out its buffer: 0 when it is full; 1 also after every string, line and new line; 2 also after
/// every writeBytes, but not after a lone new line or tab; 3 after everything.
using OvAutoFlush = int;

/// Writes a file through a buffer.
///
/// To be sure of a file, call `sync` where it has to survive a power cut, then `Close`, then ask `hasFailed`.
class WFile : public File
{
public:
    /// A writer without a file: what is written is lost.
    WFile() = default;

    /// Opens a file, creating it with the permission bits `mode` where there is none; never waits for a reader at the
    /// other end of a pipe.
    ///
    /// \param append  keep what is in the file and go on at its end; otherwise the file starts empty
    WFile(String const& path, bool append, int mode);

    /// Flushes and closes.
    ~WFile() override { WFile::Close(); }

    /// Sets what ends a line; a carriage return at first.
    void setNewLine(String const& text) { newLine = text; }
    void setAutoFlush(OvAutoFlush mode) { autoFlush = mode; }

    /// Writes what printf would print, with a decimal point under every locale; nothing where printf would fail.
    [[gnu::format(printf, 2, 3)]] void writeString(char const* format, ...);
    [[gnu::format(printf, 2, 0)]] void writeStringWithArguments(char const* format, va_list arguments);
    /// Writes the text as it is.
    void writeString(String const& text);

    /// The same, with a new line behind it.
    [[gnu::format(printf, 2, 3)]] void writeLine(char const* format, ...);
    [[gnu::format(printf, 2, 0)]] void writeLineWithArguments(char const* format, va_list arguments);
    void writeLine(String const& text);

    void writeNewLine();
    void writeTab();

    void writeBytes(void const* bytes, long long n);

    /// Writes a number in the file's byte order.
    void writeInt8(std::int8_t value);
    void writeUInt8(std::uint8_t value);
    void writeInt16(std::int16_t value);
    void writeUInt16(std::uint16_t value);
    void writeInt32(std::int32_t value);
    void writeUInt32(std::uint32_t value);
    void writeInt64(std::int64_t value);
    void writeUInt64(std::uint64_t value);
    /// The bit pattern is written as 32 bits in the file's byte order.
    void writeFloat(float value);

    void writeUInt8Array(std::uint8_t const* values, long long n);
    void writeUInt16Array(std::uint16_t const* values, long long n);
    void writeFloatArray(float const* values, long long n);

    /// Writes the length in 64 bits and then the bytes.
    void writeStringWithLength(String const& text);

    /// Sees to it that `n` bytes fit into the buffer of 4096 bytes, as far as they can.
    void requireBytes(long long n);

    /// Writes out what is in the buffer.
    void Flush();

    /// Flushes, and waits until the system has put the file on its disk. What has no disk, such as a pipe, needs none.
    ///
    /// \return whether all that was written so far is there; false without an open file
    bool sync();

    /// Flushes and closes. What is written later is lost.
    void Close() override;

    /// Whether the file could not be opened, or something that was written is lost. While the file is open, what is in
    /// the buffer counts as written: the answer is final after `Close`.
    bool hasFailed() const { return failed || (descriptor < 0 && freeBytes < bufferSize); }

protected:
    /// Writes to an open descriptor.
    explicit WFile(int openDescriptor) { descriptor = openDescriptor; }

private:
    template <typename Number>
    void writeNumber(Number value);
    template <typename Number>
    void writeNumbers(Number const* values, long long n);
    void put(void const* bytes, unsigned long long n);
    void put(String const& text);
    [[gnu::format(printf, 2, 0)]] void putFormatted(char const* format, va_list arguments);
    void writeDirectly(char const* bytes, unsigned long long n);
    char* freeSpace() { return buffer.data() + (bufferSize - freeBytes); }
    void flushFrom(OvAutoFlush mode);
    void flushAfterSeparator();

    std::array<char, bufferSize> buffer;
    unsigned long long freeBytes = bufferSize;
    String newLine = "\r";
    OvAutoFlush autoFlush = 0;
    bool failed = false;
};

/// Writes to standard error, and out at once after every string and line.
class Stderr : public WFile
{
public:
    Stderr() : WFile(2) { setAutoFlush(1); }
};

/// The process's current folder, without an ending slash unless it is the root; empty where it cannot be told.
String getWorkingDirectory();
