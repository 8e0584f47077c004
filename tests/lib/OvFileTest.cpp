// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvFile.h"

#include "support/CapturedOutput.h"
#include "support/DecimalCommaLocale.h"
#include "support/FileSizeLimit.h"
#include "support/StringText.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

using namespace std::string_literals;

// A size that no memory holds is what one test is about: the sanitizer must not end the program for it.
extern "C" char const* __asan_default_options()
{
    return "allocator_may_return_null=1";
}

namespace
{

// The size that every regular file of this program claims, where a test sets it.
std::optional<long long> claimedSize;

// What the system does to the next reads of files.
int interruptions = 0;
std::size_t mostBytesAtOnce = ~std::size_t{0};

} // namespace

extern "C" ssize_t read(int descriptor, void* bytes, size_t size)
{
    static auto* const original = reinterpret_cast<ssize_t (*)(int, void*, size_t)>(dlsym(RTLD_NEXT, "read"));
    if (interruptions > 0) {
        --interruptions;
        errno = EINTR;
        return -1;
    }
    return original(descriptor, bytes, std::min(size, mostBytesAtOnce));
}

extern "C" int fstat(int descriptor, struct stat* status) noexcept
{
    static auto* const original = reinterpret_cast<int (*)(int, struct stat*)>(dlsym(RTLD_NEXT, "fstat"));
    int const result = original(descriptor, status);
    if (result == 0 && claimedSize && S_ISREG(status->st_mode))
        status->st_size = *claimedSize;
    return result;
}

namespace
{

using testing::Each;
using testing::ElementsAre;

class FileTest : public testing::Test
{
protected:
    TemporaryFolder const folder;
    String const path = folder.pathOf("file");

    // What is in the file by now, read without the classes under test.
    std::string onDisk() const
    {
        std::ostringstream bytes;
        bytes << std::ifstream(path.getNullTerminatedString(), std::ios::binary).rdbuf();
        return bytes.str();
    }

    // What a new file holds after `write` has written to it.
    template <typename Write>
    std::string written(Write const& write) const
    {
        {
            WFile file(path, false, 0644);
            write(file);
        }
        return onDisk();
    }

    // A file with these bytes.
    String holding(std::string const& bytes) const { return folder.write("file", bytes); }

    // What comes out of a pipe while a thread writes a block into it, which is disturbed before each reading.
    template <typename Disturb>
    std::string receivedThroughAPipe(std::string const& block, Disturb const& disturb) const
    {
        EXPECT_EQ(mkfifo(path, 0600), 0);
        int const reader = open(path, O_RDONLY | O_NONBLOCK);
        WFile file(path, false, 0644);
        fcntl(reader, F_SETFL, 0);
        std::thread writer([&] {
            file.writeBytes(block.data(), static_cast<long long>(block.size()));
            file.Close();
        });
        std::string received;
        char bytes[5000];
        for (ssize_t count = 1; count != 0;) {
            disturb(writer);
            count = read(reader, bytes, sizeof bytes);
            received.append(bytes, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        }
        writer.join();
        close(reader);
        return received;
    }

    unsigned permissions() const
    {
        struct stat status
        {
        };
        stat(path.getNullTerminatedString(), &status);
        return status.st_mode & 07777;
    }
};

using WFileTest = FileTest;
using RFileTest = FileTest;

// The numbers 0, 1, ... 255, 0, ... as bytes.
std::string countingBytes(std::size_t count)
{
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i)
        bytes += static_cast<char>(i);
    return bytes;
}

void writeThroughList(WFile& file, char const* format, ...) __attribute__((format(printf, 2, 3)));
void writeThroughList(WFile& file, char const* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    file.writeStringWithArguments(format, arguments);
    file.writeLineWithArguments(format, again);
    va_end(again);
    va_end(arguments);
}

int openDescriptors()
{
    int count = 0;
    for (int descriptor = 0; descriptor < 256; ++descriptor)
        count += fcntl(descriptor, F_GETFD) >= 0;
    return count;
}

} // namespace

// Texts ---------------------------------------------------------------------------------------------------------------

TEST_F(WFileTest, EndsLinesInACarriageReturnByDefault)
{
    EXPECT_EQ(written([](WFile& file) { file.writeLine("a"); }), "a\r");
}

TEST_F(WFileTest, EndsLinesInTheNewLineThatWasSet)
{
    EXPECT_EQ(written([](WFile& file) {
                  file.setNewLine("\n");
                  file.writeLine("a");
                  file.writeLine(String("b"));
                  file.writeNewLine();
                  file.setNewLine("<br>");
                  file.writeNewLine();
                  file.setNewLine("");
                  file.writeLine("c");
              }),
              "a\nb\n\n<br>c");
}

TEST_F(WFileTest, WritesFormattedTexts)
{
    EXPECT_EQ(written([](WFile& file) {
                  file.writeString("%s=%d", "a", 1);
                  file.writeTab();
                  file.writeLine("%5.2f%%", 2.5);
              }),
              "a=1\t 2.50%\r");
}

TEST_F(WFileTest, WritesStringsAsTheyAre)
{
    EXPECT_EQ(written([](WFile& file) {
                  file.writeString(String("100% %s"));
                  file.writeString(stringOf("a\0b"));
                  file.writeString(String());
                  file.writeLine(String("%d"));
              }),
              "100% %sa\0b%d\r"s);
}

TEST_F(WFileTest, WritesTextsWithReadyArguments)
{
    EXPECT_EQ(written([](WFile& file) { writeThroughList(file, "%d-%s", 1, "a"); }), "1-a1-a\r");
}

TEST_F(WFileTest, WritesThePointUnderADecimalCommaLocale)
{
    DecimalCommaLocale const locale;
    ASSERT_TRUE(locale.isInForce());
    EXPECT_EQ(written([](WFile& file) {
                  file.writeString("%.1f ", 0.5);
                  file.writeLine("%s%.1f", std::string(5000, 'x').c_str(), 0.5);
                  writeThroughList(file, "%g", 0.25);
              }),
              "0.5 " + std::string(5000, 'x') + "0.5\r0.250.25\r");
}

TEST_F(WFileTest, WritesNothingWherePrintfFails)
{
    wchar_t const text[] = {static_cast<wchar_t>(0x20ac), 0};
    EXPECT_EQ(written([&](WFile& file) {
                  file.writeString("a%lsb", text);
                  file.writeLine("c");
              }),
              "c\r");
}

TEST_F(WFileTest, WritesFormattedTextsOfEveryLengthAroundItsBuffer)
{
    for (std::size_t const first : {0UL, 1UL, 4000UL, 4095UL}) {
        for (std::size_t const second : {0UL, 1UL, 94UL, 95UL, 96UL, 97UL, 4094UL, 4095UL, 4096UL, 4097UL, 1000000UL}) {
            std::string const a(first, 'a');
            std::string const b(second, 'b');
            EXPECT_EQ(written([&](WFile& file) {
                          file.writeString("%s", a.c_str());
                          file.writeString("%s", b.c_str());
                          file.writeString("%s", "end");
                      }),
                      a + b + "end")
                << first << " and " << second;
        }
    }
}

// Bytes and numbers ---------------------------------------------------------------------------------------------------

TEST_F(WFileTest, WritesBytesOfEveryCountAroundItsBuffer)
{
    for (std::size_t const first : {0UL, 1UL, 4095UL, 4096UL, 5000UL}) {
        for (std::size_t const second : {1UL, 4095UL, 4096UL, 4097UL, 100000UL}) {
            std::string const a = countingBytes(first);
            std::string const b = countingBytes(second);
            EXPECT_EQ(written([&](WFile& file) {
                          file.writeBytes(a.data(), static_cast<long long>(first));
                          file.writeBytes(b.data(), static_cast<long long>(second));
                      }),
                      a + b)
                << first << " and " << second;
        }
    }
}

TEST_F(WFileTest, WritesNoBytesForACountBelowOne)
{
    EXPECT_EQ(written([](WFile& file) {
                  file.writeBytes("abc", 0);
                  file.writeBytes("abc", -1);
                  file.writeBytes(nullptr, 0);
              }),
              "");
}

TEST_F(WFileTest, WritesNumbersInNativeOrderByDefault)
{
    EXPECT_EQ(written([](WFile& file) { file.writeUInt16(0x1234); }), "\x34\x12");
}

TEST_F(WFileTest, WritesNumbersInNativeOrderInOrders0And1)
{
    for (int const order : {0, 1}) {
        EXPECT_EQ(written([=](WFile& file) {
                      file.setEndianness(static_cast<Endianness>(order));
                      file.writeUInt16(0x1234);
                      file.writeInt32(-2);
                  }),
                  "\x34\x12\xfe\xff\xff\xff");
    }
}

TEST_F(WFileTest, WritesNumbersMostSignificantByteFirstInOrder2)
{
    EXPECT_EQ(written([](WFile& file) {
                  file.setEndianness(static_cast<Endianness>(2));
                  file.writeInt8(-2);
                  file.writeUInt8(0x12);
                  file.writeInt16(-2);
                  file.writeUInt16(0x1234);
                  file.writeInt32(-2);
                  file.writeUInt32(0x12345678);
                  file.writeInt64(-2);
                  file.writeUInt64(0x123456789abcdef0);
                  file.writeFloat(1.5F); // 3fc00000
              }),
              "\xfe"
              "\x12"
              "\xff\xfe"
              "\x12\x34"
              "\xff\xff\xff\xfe"
              "\x12\x34\x56\x78"
              "\xff\xff\xff\xff\xff\xff\xff\xfe"
              "\x12\x34\x56\x78\x9a\xbc\xde\xf0"
              "\x3f\xc0\0\0"s);
}

TEST_F(WFileTest, WritesArraysOfNumbers)
{
    std::uint8_t const bytes[] = {1, 2, 3};
    std::uint16_t const words[] = {0x1234, 0x5678};
    float const floats[] = {1.5F, -2.0F}; // 3fc00000, c0000000
    auto const write = [&](WFile& file) {
        file.writeUInt8Array(bytes, 3);
        file.writeUInt16Array(words, 2);
        file.writeFloatArray(floats, 2);
        file.writeUInt16Array(words, 0);
        file.writeUInt16Array(words, -1);
    };
    EXPECT_EQ(written(write), "\1\2\3\x34\x12\x78\x56\0\0\xc0\x3f\0\0\0\xc0"s);
    EXPECT_EQ(written([&](WFile& file) {
                  file.setEndianness(Endianness::big);
                  write(file);
              }),
              "\1\2\3\x12\x34\x56\x78\x3f\xc0\0\0\xc0\0\0\0"s);
    EXPECT_EQ(words[0], 0x1234);
}

TEST_F(WFileTest, WritesArraysThatAreLongerThanItsBuffer)
{
    std::vector<std::uint16_t> words;
    std::string expected = "x";
    for (unsigned i = 0; i < 10000; ++i) {
        words.push_back(static_cast<std::uint16_t>(i));
        expected += static_cast<char>(i >> 8);
        expected += static_cast<char>(i & 0xff);
    }
    EXPECT_EQ(written([&](WFile& file) {
                  file.setEndianness(Endianness::big);
                  file.writeUInt8('x'); // so that a number would straddle the end of the buffer
                  file.writeUInt16Array(words.data(), 10000);
              }),
              expected);
}

TEST_F(WFileTest, WritesAStringWithItsLength)
{
    EXPECT_EQ(written([](WFile& file) {
                  file.writeStringWithLength(stringOf("a\0c"));
                  file.setEndianness(Endianness::big);
                  file.writeStringWithLength(String());
                  file.writeStringWithLength("b");
              }),
              "\3\0\0\0\0\0\0\0a\0c\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\1b"s);
}

// Flushing ------------------------------------------------------------------------------------------------------------

TEST_F(WFileTest, KeepsWhatItWritesUntilItIsFlushed)
{
    WFile file(path, false, 0644);
    file.writeLine("a");
    EXPECT_EQ(onDisk(), "");
    file.Flush();
    EXPECT_EQ(onDisk(), "a\r");
    file.Flush();
    EXPECT_EQ(onDisk(), "a\r");
}

TEST_F(WFileTest, FlushesWhenItsBufferIsFull)
{
    WFile file(path, false, 0644);
    std::string const full(4095, 'a');
    file.writeBytes(full.data(), 4095);
    file.writeUInt8('b');
    EXPECT_EQ(onDisk(), "");
    file.writeUInt8('c');
    EXPECT_EQ(onDisk(), full + "b");
}

TEST_F(WFileTest, WritesLargeBlocksPastItsBuffer)
{
    WFile file(path, false, 0644);
    file.writeString("a");
    std::string const block(4096, 'b');
    file.writeBytes(block.data(), 4096);
    EXPECT_EQ(onDisk(), "a" + block);
}

TEST_F(WFileTest, FlushesForTheBytesThatAreRequired)
{
    WFile file(path, false, 0644);
    file.writeString("a");
    file.requireBytes(4095);
    EXPECT_EQ(onDisk(), "");
    file.requireBytes(4096);
    EXPECT_EQ(onDisk(), "a");
}

TEST_F(WFileTest, FlushesByItselfAsItsModeSays)
{
    using Write = void (*)(WFile&);
    struct Case
    {
        char const* name;
        Write write;
        std::string bytes;
        bool isFlushed[4]; // in modes 0 to 3
    };
    Case const cases[] = {
        {"formatted string", [](WFile& f) { f.writeString("%d", 1); }, "1", {false, true, true, true}},
        {"string", [](WFile& f) { f.writeString(String("a")); }, "a", {false, true, true, true}},
        {"formatted line", [](WFile& f) { f.writeLine("%d", 1); }, "1\r", {false, true, true, true}},
        {"line", [](WFile& f) { f.writeLine(String("a")); }, "a\r", {false, true, true, true}},
        {"new line", [](WFile& f) { f.writeNewLine(); }, "\r", {false, true, false, true}},
        {"tab", [](WFile& f) { f.writeTab(); }, "\t", {false, true, false, true}},
        {"bytes", [](WFile& f) { f.writeBytes("ab", 2); }, "ab", {false, false, true, true}},
        {"number", [](WFile& f) { f.writeUInt16(0x3132); }, "21", {false, false, false, true}},
        {"float", [](WFile& f) { f.writeFloat(0); }, "\0\0\0\0"s, {false, false, false, true}},
    };
    for (Case const& example : cases) {
        for (int mode = 0; mode < 4; ++mode) {
            WFile file(path, false, 0644);
            file.setAutoFlush(mode);
            example.write(file);
            EXPECT_EQ(onDisk(), example.isFlushed[mode] ? example.bytes : "") << example.name << ", mode " << mode;
            file.Close();
            EXPECT_EQ(onDisk(), example.bytes) << example.name << ", mode " << mode;
        }
    }
}

TEST_F(WFileTest, FlushesAndClosesOnDestruction)
{
    int const before = openDescriptors();
    EXPECT_EQ(written([&](WFile& file) {
                  EXPECT_EQ(openDescriptors(), before + 1);
                  file.writeString("a");
              }),
              "a");
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(WFileTest, LosesWhatIsWrittenOnceItIsClosed)
{
    int const before = openDescriptors();
    WFile file(path, false, 0644);
    file.writeString("a");
    file.Close();
    EXPECT_EQ(openDescriptors(), before);
    file.writeString("b");
    file.Flush();
    file.Close();
    EXPECT_EQ(onDisk(), "a");
}

// Opening for writing -------------------------------------------------------------------------------------------------

TEST_F(WFileTest, ReplacesAFileOfTheSameName)
{
    holding("a long text");
    EXPECT_EQ(written([](WFile& file) { file.writeString("b"); }), "b");
}

TEST_F(WFileTest, AppendsIfAsked)
{
    holding("a");
    {
        WFile file(path, true, 0644);
        file.writeString("b");
    }
    EXPECT_EQ(onDisk(), "ab");
}

TEST_F(WFileTest, CreatesAFileToAppendToWhereThereIsNone)
{
    {
        WFile file(path, true, 0644);
        file.writeString("b");
    }
    EXPECT_EQ(onDisk(), "b");
}

TEST_F(WFileTest, CreatesFilesWithThePermissionsGiven)
{
    mode_t const before = umask(0);
    {
        WFile const file(path, false, 0640);
    }
    umask(before);
    EXPECT_EQ(permissions(), 0640U);
}

TEST_F(WFileTest, LosesWhatIsWrittenToAFileThatCannotBeOpened)
{
    WFile file(folder.pathOf("no such folder/file"), false, 0644);
    EXPECT_EQ(errorsOf([&] {
                  file.writeLine("%d", 1);
                  file.writeBytes(std::string(5000, 'x').data(), 5000);
                  file.writeUInt64(1);
                  file.Flush();
                  file.Close();
              }),
              "");
    EXPECT_EQ(file.getFileSize(), 0);
}

TEST_F(WFileTest, LosesWhatIsWrittenWithoutAFile)
{
    EXPECT_EQ(errorsOf([] {
                  WFile file;
                  file.writeLine("a");
                  file.writeBytes(std::string(5000, 'x').data(), 5000);
                  file.Flush();
                  EXPECT_EQ(file.getFileSize(), 0);
              }),
              "");
}

TEST_F(WFileTest, LosesWhatAFullDiskDoesNotTake)
{
    WFile file("/dev/full", false, 0644);
    EXPECT_EQ(errorsOf([&] {
                  file.writeLine("a");
                  file.Flush();
                  file.writeBytes(std::string(5000, 'x').data(), 5000);
              }),
              "");
}

TEST_F(WFileTest, LeavesNoHoleWhereADiskWasFullForAWhile)
{
    std::string const block = countingBytes(5000);
    WFile file(path, false, 0644);
    file.writeBytes(block.data(), 5000);
    {
        FileSizeLimit const limit(6000);
        file.writeBytes(block.data(), 5000);
    }
    file.writeBytes(block.data(), 5000);
    file.writeLine("end");
    file.Close();
    EXPECT_EQ(onDisk(), block + block.substr(0, 1000));
}

TEST_F(WFileTest, WaitsForNoReaderOfAPipe)
{
    ASSERT_EQ(mkfifo(path, 0600), 0);
    WFile file(path, false, 0644);
    EXPECT_EQ(errorsOf([&] {
                  file.writeLine("a");
                  file.Flush();
              }),
              "");
}

TEST_F(WFileTest, OpensNoFileForANameWithANulInIt)
{
    String const name = folder.pathOf("file") + stringOf("\0.txt");
    {
        WFile file(name, false, 0644);
        file.writeString("a");
    }
    EXPECT_NE(access(path, F_OK), 0);
}

TEST_F(WFileTest, WritesAllOfABlockThatAPipeTakesPieceByPiece)
{
    std::string const block = countingBytes(1'000'000); // far more than a pipe holds
    EXPECT_EQ(receivedThroughAPipe(block, [](std::thread&) {}), block);
}

TEST_F(WFileTest, GoesOnWritingAfterASignal)
{
    struct sigaction action
    {
    };
    action.sa_handler = [](int) {};
    struct sigaction before
    {
    };
    ASSERT_EQ(sigaction(SIGUSR1, &action, &before), 0);
    std::string const block = countingBytes(1'000'000);
    std::string const received =
        receivedThroughAPipe(block, [](std::thread& writer) { pthread_kill(writer.native_handle(), SIGUSR1); });
    sigaction(SIGUSR1, &before, nullptr);
    EXPECT_EQ(received, block);
}

// File ----------------------------------------------------------------------------------------------------------------

TEST_F(FileTest, TellsItsName)
{
    EXPECT_EQ(textOf(RFile("none").getName()), "none");
    EXPECT_EQ(textOf(WFile(path, false, 0644).getName()), textOf(path));
    EXPECT_EQ(textOf(WFile().getName()), "");
}

TEST_F(FileTest, TellsItsSize)
{
    EXPECT_EQ(RFile(holding("12345")).getFileSize(), 5);
    EXPECT_EQ(RFile(holding("")).getFileSize(), 0);
}

TEST_F(FileTest, TellsItsSizeWithoutLosingItsPlace)
{
    RFile file(holding("12345"));
    EXPECT_EQ(file.readUInt8(), '1');
    EXPECT_EQ(file.getFileSize(), 5);
    EXPECT_EQ(file.readUInt8(), '2');

    WFile output(folder.pathOf("output"), false, 0644);
    output.writeString("abc");
    output.Flush();
    EXPECT_EQ(output.getFileSize(), 3);
    output.writeString("d");
    output.Flush();
    EXPECT_EQ(output.getFileSize(), 4);
}

TEST_F(FileTest, HasNoSizeWhereItIsNoRegularFile)
{
    ASSERT_EQ(mkfifo(path, 0600), 0);
    EXPECT_EQ(RFile(path).getFileSize(), 0);
    EXPECT_EQ(RFile(folder.pathWithSlash()).getFileSize(), 0);
    EXPECT_EQ(RFile("/dev/zero").getFileSize(), 0);
    EXPECT_EQ(RFile(folder.pathOf("none")).getFileSize(), 0);
}

TEST_F(FileTest, IsNotHandedOnToOtherPrograms)
{
    WFile const output(path, false, 0644);
    RFile const input(path);
    int found = 0;
    for (int descriptor = 3; descriptor < 256; ++descriptor) {
        struct stat opened
        {
        };
        struct stat expected
        {
        };
        if (fstat(descriptor, &opened) != 0 || stat(path, &expected) != 0 || opened.st_ino != expected.st_ino)
            continue;
        EXPECT_TRUE(fcntl(descriptor, F_GETFD) & FD_CLOEXEC);
        ++found;
    }
    EXPECT_EQ(found, 2);
}

TEST(File, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<RFile> || std::is_copy_assignable_v<RFile>);
    EXPECT_FALSE(std::is_copy_constructible_v<WFile> || std::is_copy_assignable_v<WFile>);
}

// Reading -------------------------------------------------------------------------------------------------------------

TEST_F(RFileTest, ReadsNumbersInNativeOrderByDefault)
{
    EXPECT_EQ(RFile(holding("\x34\x12")).readUInt16(), 0x1234);
}

TEST_F(RFileTest, ReadsNumbersInTheOrderThatIsSet)
{
    std::string const bytes = "\xfe"
                              "\x12"
                              "\xff\xfe"
                              "\x12\x34"
                              "\xff\xff\xff\xfe"
                              "\x12\x34\x56\x78"
                              "\xff\xff\xff\xff\xff\xff\xff\xfe"
                              "\x12\x34\x56\x78\x9a\xbc\xde\xf0"
                              "\x3f\xc0\0\0"s;
    RFile big(holding(bytes));
    big.setEndianness(static_cast<Endianness>(2));
    EXPECT_EQ(big.readInt8(), -2);
    EXPECT_EQ(big.readUInt8(), 0x12);
    EXPECT_EQ(big.readInt16(), -2);
    EXPECT_EQ(big.readUInt16(), 0x1234);
    EXPECT_EQ(big.readInt32(), -2);
    EXPECT_EQ(big.readUInt32(), 0x12345678U);
    EXPECT_EQ(big.readInt64(), -2);
    EXPECT_EQ(big.readUInt64(), 0x123456789abcdef0U);
    EXPECT_EQ(big.readFloat(), 1.5F);
    EXPECT_FALSE(big.isAtEnd());

    RFile native(holding(bytes));
    native.setEndianness(static_cast<Endianness>(1));
    EXPECT_EQ(native.readInt8(), -2);
    EXPECT_EQ(native.readUInt8(), 0x12);
    EXPECT_EQ(native.readInt16(), -257);
    EXPECT_EQ(native.readUInt16(), 0x3412);
    EXPECT_EQ(native.readInt32(), -16777217);
    EXPECT_EQ(native.readUInt32(), 0x78563412U);
    EXPECT_EQ(native.readInt64(), -72057594037927937);
    EXPECT_EQ(native.readUInt64(), 0xf0debc9a78563412U);
}

TEST_F(RFileTest, ReadsZeroAtTheEnd)
{
    RFile file(holding("\1"));
    EXPECT_FALSE(file.isAtEnd());
    EXPECT_EQ(file.readUInt8(), 1);
    EXPECT_EQ(file.readUInt8(), 0);
    EXPECT_TRUE(file.isAtEnd());
    EXPECT_EQ(file.readInt64(), 0);
    EXPECT_EQ(file.readFloat(), 0.0F);
}

TEST_F(RFileTest, ReadsZeroForANumberThatTheEndCutsOff)
{
    RFile file(holding("\1\2\3"));
    EXPECT_EQ(file.readUInt32(), 0U);
    EXPECT_TRUE(file.isAtEnd());
    EXPECT_EQ(file.readUInt8(), 0);
}

TEST_F(RFileTest, ReadsNumbersThatStraddleTheEndOfItsBuffer)
{
    RFile file(holding(std::string(4095, 'x') + "\x12\x34\x56"));
    file.setEndianness(Endianness::big);
    std::vector<std::uint8_t> skipped(4095);
    file.readUInt8Array(skipped.data(), 4095);
    EXPECT_THAT(skipped, Each('x'));
    EXPECT_EQ(file.readUInt16(), 0x1234);
    EXPECT_EQ(file.readUInt8(), 0x56);
}

TEST_F(RFileTest, ReadsArraysOfNumbers)
{
    RFile file(holding("\1\2\3\x12\x34\x56\x78\x3f\xc0\0\0\xc0\0\0\0"s));
    file.setEndianness(Endianness::big);
    std::uint8_t bytes[3];
    std::uint16_t words[2];
    float floats[2];
    file.readUInt8Array(bytes, 3);
    file.readUInt16Array(words, 2);
    file.readUInt16Array(words, 0);
    file.readUInt16Array(words, -1);
    file.readFloatArray(floats, 2);
    EXPECT_THAT(bytes, ElementsAre(1, 2, 3));
    EXPECT_THAT(words, ElementsAre(0x1234, 0x5678));
    EXPECT_THAT(floats, ElementsAre(1.5F, -2.0F));
}

TEST_F(RFileTest, FillsArraysWithZerosFromTheEndOn)
{
    RFile file(holding("\x12\x34\x56\x78\x9a"));
    file.setEndianness(Endianness::big);
    std::uint16_t words[] = {9, 9, 9, 9};
    file.readUInt16Array(words, 4);
    EXPECT_THAT(words, ElementsAre(0x1234, 0x5678, 0, 0));
    EXPECT_TRUE(file.isAtEnd());
    std::uint8_t bytes[] = {9, 9};
    file.readUInt8Array(bytes, 2);
    EXPECT_THAT(bytes, Each(0));
}

TEST_F(RFileTest, ReadsBytesOfEveryCountAroundItsBuffer)
{
    std::string const bytes = countingBytes(30000);
    for (std::size_t const first : {0UL, 1UL, 4095UL, 4096UL, 4097UL, 10000UL}) {
        for (std::size_t const second : {1UL, 4095UL, 4096UL, 4097UL, 20000UL}) {
            RFile file(holding(bytes));
            std::string read(first + second, '\0');
            EXPECT_EQ(file.readBytes(read.data(), static_cast<long long>(first)), static_cast<long long>(first));
            EXPECT_EQ(file.readBytes(read.data() + first, static_cast<long long>(second)),
                      static_cast<long long>(second));
            EXPECT_EQ(read, bytes.substr(0, first + second)) << first << " and " << second;
            EXPECT_FALSE(file.isAtEnd());
        }
    }
}

TEST_F(RFileTest, TellsHowManyBytesItHad)
{
    RFile file(holding("abc"));
    char bytes[5] = "....";
    EXPECT_EQ(file.readBytes(bytes, 0), 0);
    EXPECT_EQ(file.readBytes(bytes, -1), 0);
    EXPECT_FALSE(file.isAtEnd());
    EXPECT_EQ(file.readBytes(bytes, 4), 3);
    EXPECT_STREQ(bytes, "abc.");
    EXPECT_TRUE(file.isAtEnd());
    EXPECT_EQ(file.readBytes(bytes, 4), 0);
}

TEST_F(RFileTest, FindsTheEndWhenRequiredBytesDoNotCome)
{
    RFile file(holding("ab"));
    file.requireBytes(3);
    EXPECT_FALSE(file.isAtEnd());
    EXPECT_EQ(file.readUInt16(), 0x6261);
    file.requireBytes(0);
    EXPECT_FALSE(file.isAtEnd());
    file.requireBytes(1);
    EXPECT_TRUE(file.isAtEnd());
}

// Lines ---------------------------------------------------------------------------------------------------------------

TEST_F(RFileTest, ReadsLinesWithAnyEnd)
{
    RFile file(holding("a\r\nb\rc\n"));
    EXPECT_EQ(textOf(file.readLine()), "a");
    EXPECT_EQ(textOf(file.readLine()), "b");
    EXPECT_EQ(textOf(file.readLine()), "c");
    EXPECT_FALSE(file.isAtEnd());
    EXPECT_EQ(textOf(file.readLine()), "");
    EXPECT_TRUE(file.isAtEnd());
}

TEST_F(RFileTest, ReadsEmptyLinesAndALastOneWithoutAnEnd)
{
    RFile file(holding("\n\r\r\n\n\ra\0b"s));
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(textOf(file.readLine()), "");
        EXPECT_FALSE(file.isAtEnd());
    }
    EXPECT_EQ(textOf(file.readLine()), "a\0b"s);
    EXPECT_EQ(textOf(file.readLine()), "");
    EXPECT_TRUE(file.isAtEnd());
}

TEST_F(RFileTest, ReadsLinesThatEndWhereItsBufferEnds)
{
    for (std::size_t const length : {4094UL, 4095UL, 4096UL, 4097UL, 8192UL, 100000UL}) {
        for (std::string const end : {"\r", "\n", "\r\n"}) {
            std::string const line(length, 'x');
            RFile file(holding(line + end + "y" + end + "z"));
            EXPECT_EQ(textOf(file.readLine()), line);
            EXPECT_EQ(textOf(file.readLine()), "y");
            EXPECT_EQ(textOf(file.readLine()), "z");
        }
    }
}

TEST_F(RFileTest, GoesOnBehindALine)
{
    RFile file(holding("a\r\n\1\2b\r"));
    EXPECT_EQ(textOf(file.readLine()), "a");
    EXPECT_EQ(file.readUInt16(), 0x0201);
    EXPECT_EQ(textOf(file.readLine()), "b");
}

TEST_F(RFileTest, ReadsALineThatIsATextOfItsOwn)
{
    RFile file(holding("abc\ndef"));
    String const line = file.readLine();
    EXPECT_STREQ(line, "abc");
}

// Strings and whole files ---------------------------------------------------------------------------------------------

TEST_F(RFileTest, ReadsAStringWithItsLength)
{
    RFile file(holding("\3\0\0\0\0\0\0\0a\0c\0\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0b"s));
    EXPECT_EQ(textOf(file.readStringWithLength()), "a\0c"s);
    EXPECT_EQ(textOf(file.readStringWithLength()), "");
    EXPECT_EQ(textOf(file.readStringWithLength()), "b");
}

TEST_F(RFileTest, ReadsTheLengthOfAStringInTheOrderThatIsSet)
{
    RFile file(holding("\0\0\0\0\0\0\0\1b"s));
    file.setEndianness(Endianness::big);
    EXPECT_EQ(textOf(file.readStringWithLength()), "b");
}

TEST_F(RFileTest, ReadsWhatIsThereOfAStringWithAnAbsurdLength)
{
    RFile file(holding(std::string(8, '\xff') + "abc"));
    EXPECT_EQ(textOf(file.readStringWithLength()), "abc");
    EXPECT_TRUE(file.isAtEnd());
    EXPECT_EQ(textOf(file.readStringWithLength()), "");
}

TEST_F(RFileTest, ReadsBackWhatWasWritten)
{
    std::string const text = countingBytes(10000);
    {
        WFile file(path, false, 0644);
        file.setEndianness(Endianness::big);
        file.writeStringWithLength(String(String(), text.data(), text.size()));
        file.writeFloat(-0.0F);
        file.writeInt64(-5);
    }
    RFile file(path);
    file.setEndianness(Endianness::big);
    EXPECT_EQ(textOf(file.readStringWithLength()), text);
    EXPECT_TRUE(std::signbit(file.readFloat()));
    EXPECT_EQ(file.readInt64(), -5);
}

TEST_F(RFileTest, ReadsAWholeFile)
{
    for (std::size_t const size : {0UL, 1UL, 4096UL, 5000UL, 1000000UL}) {
        std::string const bytes = countingBytes(size);
        String const contents = RFile::readContents(holding(bytes));
        EXPECT_EQ(textOf(contents), bytes);
        Array<unsigned char> const binary = RFile::readBinaryContents(path);
        EXPECT_EQ(std::string(binary.begin(), binary.end()), bytes);
    }
}

TEST_F(RFileTest, ReadsAWholeFileIntoATextThatNeedsNoCopyForItsNul)
{
    String const contents = RFile::readContents(holding("abc"));
    EXPECT_EQ(contents.getNullTerminatedString(), contents.begin());
    EXPECT_STREQ(contents, "abc");
}

TEST_F(RFileTest, ReadsWhatIsLeftOfAFileThatShrinksMeanwhile)
{
    holding("abc");
    claimedSize = 10000;
    String const contents = RFile::readContents(path);
    Array<unsigned char> const binary = RFile::readBinaryContents(path);
    claimedSize.reset();
    EXPECT_EQ(textOf(contents), "abc");
    EXPECT_STREQ(contents, "abc");
    EXPECT_EQ(std::string(binary.begin(), binary.end()), "abc");
}

TEST_F(RFileTest, ReadsTheFirstBytesOfAFileThatGrowsMeanwhile)
{
    holding("abcdef");
    claimedSize = 3;
    String const contents = RFile::readContents(path);
    Array<unsigned char> const binary = RFile::readBinaryContents(path);
    claimedSize.reset();
    EXPECT_EQ(textOf(contents), "abc");
    EXPECT_STREQ(contents, "abc");
    EXPECT_EQ(std::string(binary.begin(), binary.end()), "abc");
}

TEST_F(RFileTest, ReadsOnAfterShortAndInterruptedReads)
{
    std::string const bytes = countingBytes(10000);
    holding(bytes);
    interruptions = 2;
    mostBytesAtOnce = 7;
    String const contents = RFile::readContents(path);
    RFile file(path);
    String const line = file.readLine(); // up to the LF, which is byte 10
    mostBytesAtOnce = ~std::size_t{0};
    EXPECT_EQ(interruptions, 0);
    EXPECT_EQ(textOf(contents), bytes);
    EXPECT_EQ(textOf(line), bytes.substr(0, 10));
}

TEST_F(RFileTest, ReadsNothingOfAFileThatNoMemoryHolds)
{
    holding("abc");
    claimedSize = 1LL << 62;
    String const contents = RFile::readContents(path);
    Array<unsigned char> const binary = RFile::readBinaryContents(path);
    claimedSize.reset();
    EXPECT_EQ(contents.begin(), nullptr);
    EXPECT_EQ(binary.begin(), nullptr);
}

TEST_F(RFileTest, ReadsNothingWhereThereIsNoFileToRead)
{
    ASSERT_EQ(mkfifo(folder.pathOf("fifo"), 0600), 0);
    for (String const& name : {folder.pathOf("none"), folder.pathWithSlash(), folder.pathOf("fifo"),
                               String("/dev/zero"), String(), folder.pathOf("file") + stringOf("\0.txt")}) {
        holding("abc");
        EXPECT_EQ(RFile::readContents(name).begin(), nullptr);
        EXPECT_EQ(RFile::readBinaryContents(name).begin(), nullptr);
    }
}

TEST_F(RFileTest, IsAtTheEndAtOnceWhereItCannotBeOpened)
{
    RFile file(folder.pathOf("none"));
    EXPECT_TRUE(file.isAtEnd());
    EXPECT_EQ(file.readUInt32(), 0U);
    EXPECT_EQ(textOf(file.readLine()), "");
    EXPECT_EQ(textOf(file.readStringWithLength()), "");
    char byte = 'x';
    EXPECT_EQ(file.readBytes(&byte, 1), 0);
    file.jumpToOffset(0);
    EXPECT_TRUE(file.isAtEnd());
}

TEST_F(RFileTest, FindsTheEndOfAFolderAndOfAPipeWithoutAWriter)
{
    ASSERT_EQ(mkfifo(path, 0600), 0);
    for (String const& name : {folder.pathWithSlash(), path}) {
        RFile file(name);
        EXPECT_FALSE(file.isAtEnd());
        EXPECT_EQ(textOf(file.readLine()), "");
        EXPECT_TRUE(file.isAtEnd());
    }
}

TEST_F(RFileTest, ClosesItsFileOnDestruction)
{
    int const before = openDescriptors();
    {
        RFile const file(holding("a"));
        EXPECT_EQ(openDescriptors(), before + 1);
    }
    EXPECT_EQ(openDescriptors(), before);
}

// Jumps ---------------------------------------------------------------------------------------------------------------

TEST_F(RFileTest, JumpsToAnOffset)
{
    RFile file(holding(countingBytes(10000)));
    file.jumpToOffset(5000); // 5000 = 19 * 256 + 136
    EXPECT_EQ(file.readUInt8(), 136);
    file.jumpToOffset(1);
    EXPECT_EQ(file.readUInt8(), 1);
    EXPECT_EQ(file.readUInt8(), 2);
}

TEST_F(RFileTest, JumpsRelativeToTheNextByte)
{
    RFile file(holding(countingBytes(10000)));
    EXPECT_EQ(file.readUInt8(), 0);
    file.jumpRelative(2);
    EXPECT_EQ(file.readUInt8(), 3);
    file.jumpRelative(5000); // from 4 to 5004
    EXPECT_EQ(file.readUInt8(), 140);
    file.jumpRelative(-5005);
    EXPECT_EQ(file.readUInt8(), 0);
    std::vector<char> block(6000);
    file.readBytes(block.data(), 6000);
    file.jumpRelative(-1); // 6000 = 23 * 256 + 112
    EXPECT_EQ(file.readUInt8(), 112);
}

TEST_F(RFileTest, JumpsRelativeToTheLineBehindTheOneRead)
{
    RFile file(holding("ab\ncd\nef"));
    file.readLine();
    file.jumpRelative(3);
    EXPECT_EQ(textOf(file.readLine()), "ef");
}

TEST_F(RFileTest, LeavesTheEndByAJump)
{
    RFile file(holding("a"));
    file.readUInt16();
    EXPECT_TRUE(file.isAtEnd());
    file.jumpToOffset(0);
    EXPECT_FALSE(file.isAtEnd());
    EXPECT_EQ(file.readUInt8(), 'a');
    file.jumpToOffset(1000);
    EXPECT_EQ(file.readUInt8(), 0);
    EXPECT_TRUE(file.isAtEnd());
}

TEST_F(RFileTest, StaysWhereItIsInsteadOfJumpingNowhere)
{
    RFile file(holding("abc"));
    EXPECT_EQ(file.readUInt8(), 'a');
    file.jumpToOffset(-1);
    file.jumpRelative(-2);
    file.jumpRelative(0x7fffffffffffffff);
    EXPECT_EQ(file.readUInt8(), 'b');
}

// Standard error ------------------------------------------------------------------------------------------------------

TEST(Stderr, WritesOutEveryStringAndLine)
{
    CapturedOutput const errors;
    Stderr writer;
    writer.writeString("%d", 1);
    EXPECT_EQ(errors.text(), "1");
    writer.writeLine(String("a"));
    EXPECT_EQ(errors.text(), "1a\r");
    writer.writeNewLine();
    EXPECT_EQ(errors.text(), "1a\r\r");
}

TEST(Stderr, LeavesTheDescriptorOpen)
{
    {
        Stderr writer;
        writer.Close();
    }
    EXPECT_GE(fcntl(2, F_GETFD), 0);
}

// The working folder --------------------------------------------------------------------------------------------------

TEST(WorkingDirectory, HasNoEndingSlash)
{
    TemporaryFolder const folder;
    auto const before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    EXPECT_EQ(textOf(getWorkingDirectory()), std::filesystem::canonical(folder.path()).string());
    std::filesystem::current_path(before);
}

TEST(WorkingDirectory, IsASlashAtTheRoot)
{
    auto const before = std::filesystem::current_path();
    std::filesystem::current_path("/");
    EXPECT_EQ(textOf(getWorkingDirectory()), "/");
    std::filesystem::current_path(before);
}

TEST(WorkingDirectory, IsEmptyWhereItIsGone)
{
    auto const before = std::filesystem::current_path();
    {
        TemporaryFolder const folder;
        std::filesystem::current_path(folder.path());
    }
    EXPECT_EQ(textOf(getWorkingDirectory()), "");
    std::filesystem::current_path(before);
}
