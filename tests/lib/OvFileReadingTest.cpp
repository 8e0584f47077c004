// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvFile.h"

#include "support/FileTest.h"
#include "support/StringText.h"

#include <gmock/gmock.h>

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

using namespace std::string_literals;

// One test asks for too much memory: the sanitizer must not end the program then.
extern "C" char const* __asan_default_options()
{
    return "allocator_may_return_null=1";
}

namespace
{

// The size that every regular file of this program reports, if a test sets it.
std::optional<long long> claimedSize;

// How the system disturbs the next reads.
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

using RFileTest = FileTest;

} // namespace

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

TEST_F(RFileTest, FillsArraysWithZerosPastTheEnd)
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

TEST_F(RFileTest, ReadsNumbersAfterALine)
{
    RFile file(holding("a\r\n\1\2b\r"));
    EXPECT_EQ(textOf(file.readLine()), "a");
    EXPECT_EQ(file.readUInt16(), 0x0201);
    EXPECT_EQ(textOf(file.readLine()), "b");
}

TEST_F(RFileTest, ReadsALineIntoItsOwnStorage)
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

TEST_F(RFileTest, ReadsTheExistingBytesOfAStringWithAHugeLength)
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
    String const line = file.readLine(); // the LF is byte 10
    mostBytesAtOnce = ~std::size_t{0};
    EXPECT_EQ(interruptions, 0);
    EXPECT_EQ(textOf(contents), bytes);
    EXPECT_EQ(textOf(line), bytes.substr(0, 10));
}

TEST_F(RFileTest, ReadsNothingOfAFileTooLargeForMemory)
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

TEST_F(RFileTest, IsAtTheEndAtOnceIfItCannotBeOpened)
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

TEST_F(RFileTest, JumpsRelativeToTheLineAfterTheOneRead)
{
    RFile file(holding("ab\ncd\nef"));
    file.readLine();
    file.jumpRelative(3);
    EXPECT_EQ(textOf(file.readLine()), "ef");
}

TEST_F(RFileTest, IsNoLongerAtTheEndAfterAJump)
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

TEST_F(RFileTest, StaysWhereItIsIfThereIsNoSuchPosition)
{
    RFile file(holding("abc"));
    EXPECT_EQ(file.readUInt8(), 'a');
    file.jumpToOffset(-1);
    file.jumpRelative(-2);
    file.jumpRelative(0x7fffffffffffffff);
    EXPECT_EQ(file.readUInt8(), 'b');
}
