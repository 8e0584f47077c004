// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvFile.h"

#include "support/CapturedOutput.h"
#include "support/DecimalCommaLocale.h"
#include "support/FileSizeLimit.h"
#include "support/FileTest.h"
#include "support/StringText.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdarg>
#include <string>
#include <thread>
#include <vector>

using namespace std::string_literals;

namespace
{

class WFileTest : public FileTest
{
protected:
    // What is read from a pipe while a thread writes a block into it. `disturb` is called before each read.
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
                  file.writeUInt8('x'); // so that a number crosses the end of the buffer
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

TEST_F(WFileTest, FlushesToMakeRoomForRequiredBytes)
{
    WFile file(path, false, 0644);
    file.writeString("a");
    file.requireBytes(4095);
    EXPECT_EQ(onDisk(), "");
    file.requireBytes(4096);
    EXPECT_EQ(onDisk(), "a");
}

TEST_F(WFileTest, FlushesAutomaticallyByItsMode)
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

TEST_F(WFileTest, LosesWhatDoesNotFitOnAFullDisk)
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

TEST_F(WFileTest, DoesNotWaitForAReaderOfAPipe)
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
