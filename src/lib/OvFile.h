// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "OvArray.h"
#include "OvBinaryData.h"
#include "OvError.h"
#include "OvString.h"
#include "OvSystemCall.h"

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

    /// The name by which it was opened; empty if it was opened without a name.
    String const& getName() const { return name; }

    /// Sets the byte order of all numbers from now on; native at first.
    void setEndianness(Endianness order) { converter.setEndianness(order); }

    /// Bytes that the file has on disk. 0 for a folder, a pipe, a device or a failed open.
    long long getFileSize() const;

    /// Closes the file; a writer flushes its buffer first. The standard descriptors 0 to 2 stay open.
    virtual void Close();

protected:
    File() = default;
    File(String const& path, int flags, int mode);

    /// \return false where the system reports that something written did not reach the file
    bool closeDescriptor();

    static constexpr unsigned long long bufferSize = 4096;

    String name;
    int descriptor = -1;
    BinaryData converter;
};

/// Reads a file through a buffer, from its start.
class RFile : public File
{
public:
    /// Opens the file; never waits for a writer at the other end of a pipe.
    explicit RFile(String const& path);

    /// Whether the open failed or a read found no more bytes.
    bool isAtEnd() const { return end; }

    /// Makes sure that `n` bytes are buffered, as far as the file has them and the buffer of 4096 bytes holds them.
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

    /// Reads `n` numbers into the caller's block. Numbers past the end of the file are 0.
    void readUInt8Array(std::uint8_t* values, long long n);
    void readUInt16Array(std::uint16_t* values, long long n);
    void readFloatArray(float* values, long long n);

    /// Reads up to `n` bytes into the caller's block.
    ///
    /// \return how many bytes were read
    long long readBytes(void* bytes, long long n);

    /// The next line without its end, which is LF, CR, CR LF or the end of the file. Empty at the end of the file.
    String readLine();

    /// Reads a length of 64 bits and then that many bytes, or as many as the file has.
    String readStringWithLength();

    /// All bytes of a file; empty if it cannot be read.
    static String readContents(String const& path);
    static Array<unsigned char> readBinaryContents(String const& path);

    /// Moves to a position, counted from the start of the file or from the next byte to be read. Does nothing where
    /// there is no such position.
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
    long long buffered = 0;     // bytes in the buffer that are still to be read
    long long readPosition = 0; // where they start in the buffer
    long long filePosition = 0; // where they end in the file
    bool end = false;
};

/// When a WFile writes out its buffer: 0 when it is full; 1 also after every string, line, new line and tab; 2 also
/// after every writeBytes, but not after a lone new line or tab; 3 after everything.
using OvAutoFlush = int;

/// Writes a file through a buffer.
///
/// To be sure of a file, call `sync` where it has to survive a power cut, then `Close`, then ask `hasFailed`.
class WFile : public File
{
public:
    /// A writer without a file. Everything written is lost.
    WFile() = default;

    /// Opens a file, and creates it with the permission bits `mode` if there is none. Never waits for a reader at the
    /// other end of a pipe.
    ///
    /// \param append  true to write after what is in the file; false to empty the file first
    WFile(String const& path, bool append, int mode);

    /// Flushes and closes.
    ~WFile() override { WFile::Close(); }

    /// Sets what ends a line; a carriage return at first.
    void setNewLine(String const& text) { newLine = text; }
    void setAutoFlush(OvAutoFlush mode) { autoFlush = mode; }

    /// Writes what printf would print, with a decimal point under every locale. Writes nothing where printf would fail.
    [[gnu::format(printf, 2, 3)]] void writeString(char const* format, ...);
    [[gnu::format(printf, 2, 0)]] void writeStringWithArguments(char const* format, va_list arguments);
    /// Writes the text as it is.
    void writeString(String const& text);

    /// The same, followed by a new line.
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

    /// Writes the length in 64 bits, and then the bytes.
    void writeStringWithLength(String const& text);

    /// Flushes unless `n` bytes fit into the free part of the buffer of 4096 bytes.
    void requireBytes(long long n);

    /// Writes out what is in the buffer.
    void Flush();

    /// Flushes, and waits until the system has put the file on its disk. A pipe or device has no disk: the wait is
    /// skipped.
    ///
    /// \return whether all that was written so far is there; false without an open file
    bool sync();

    /// Flushes and closes. Later writes are lost.
    void Close() override;

    /// Whether the file could not be opened, or something that was written is lost. While the file is open, bytes in
    /// the buffer count as written. The answer is final after `Close`.
    bool hasFailed() const { return getError() != 0 || (descriptor < 0 && freeBytes < bufferSize); }

    /// The system's error number of the first failure; 0 without one.
    int getError() const { return error.get(); }

protected:
    /// A writer to an open descriptor.
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
    FirstError error;
};

/// Writes to standard error, and flushes after every string and line.
class Stderr : public WFile
{
public:
    Stderr() : WFile(2) { setAutoFlush(1); }
};

/// The process's current folder, without an ending slash unless it is the root. Empty if it is not known.
String getWorkingDirectory();
