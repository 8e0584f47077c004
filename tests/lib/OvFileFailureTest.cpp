// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvFile.h"

#include "support/FailingSystem.h"
#include "support/FileTest.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <utility>

namespace
{

// Whether arrays get no memory.
bool isMemoryExhausted = false;

} // namespace

// These take the place of the C++ library's.

void* operator new[](std::size_t size)
{
    return operator new(size);
}

void* operator new[](std::size_t size, std::nothrow_t const& tag) noexcept
{
    return isMemoryExhausted ? nullptr : operator new(size, tag);
}

void operator delete[](void* block) noexcept
{
    operator delete(block);
}

void operator delete[](void* block, std::size_t) noexcept
{
    operator delete(block);
}

namespace
{

class WFileFailureTest : public FileTest
{
protected:
    ~WFileFailureTest() override { systemFaults = {}; }
};

} // namespace

TEST_F(WFileFailureTest, HasNotFailedWhenEverythingIsWritten)
{
    WFile file(path, false, 0644);
    EXPECT_FALSE(file.hasFailed());
    file.writeLine("%d", 1);
    file.writeBytes(std::string(5000, 'x').data(), 5000);
    EXPECT_FALSE(file.hasFailed());
    file.Close();
    EXPECT_FALSE(file.hasFailed());
    file.Close();
    EXPECT_FALSE(file.hasFailed());
}

TEST_F(WFileFailureTest, HasFailedWhereItCannotBeOpened)
{
    for (String const& name : {folder.pathOf("missing/file"), folder.pathWithSlash(), String()}) {
        WFile file(name, false, 0644);
        EXPECT_TRUE(file.hasFailed());
        file.Close();
        EXPECT_TRUE(file.hasFailed());
    }
}

TEST_F(WFileFailureTest, FailsWithoutAFileOnlyIfSomethingIsWritten)
{
    WFile file;
    file.Flush();
    EXPECT_FALSE(file.hasFailed());
    file.writeString("a");
    EXPECT_TRUE(file.hasFailed());
    file.Close();
    EXPECT_TRUE(file.hasFailed());
}

TEST_F(WFileFailureTest, FailsIfSomethingIsWrittenAfterClosing)
{
    WFile file(path, false, 0644);
    file.Close();
    file.writeUInt8(1);
    EXPECT_TRUE(file.hasFailed());
    file.Flush();
    EXPECT_TRUE(file.hasFailed());
}

TEST_F(WFileFailureTest, FailsWhenTheDiskIsFull)
{
    systemFaults.freeBytes = 2;
    WFile file(path, false, 0644);
    file.writeString("abc");
    EXPECT_FALSE(file.hasFailed()); // still in the buffer
    file.Close();
    EXPECT_TRUE(file.hasFailed());
    EXPECT_EQ(onDisk(), "ab");
}

TEST_F(WFileFailureTest, FailsWhenTheDiskIsFullForALargeBlock)
{
    systemFaults.freeBytes = 4999;
    WFile file(path, false, 0644);
    file.writeBytes(std::string(5000, 'x').data(), 5000);
    EXPECT_TRUE(file.hasFailed());
}

TEST_F(WFileFailureTest, StaysFailedWhenTheDiskHasRoomAgain)
{
    systemFaults.freeBytes = 0;
    WFile file(path, false, 0644);
    file.writeString("a");
    file.Flush();
    systemFaults.freeBytes = 100;
    file.writeString("b");
    file.Close();
    EXPECT_TRUE(file.hasFailed());
    EXPECT_EQ(onDisk(), "");
}

TEST_F(WFileFailureTest, GoesOnAfterShortAndInterruptedWrites)
{
    systemFaults.interruptions = 2;
    systemFaults.mostBytesAtOnce = 4;
    WFile file(path, false, 0644);
    file.writeString("0123456789");
    file.Close();
    EXPECT_FALSE(file.hasFailed());
    EXPECT_EQ(onDisk(), "0123456789");
}

TEST_F(WFileFailureTest, FailsWhenClosingFails)
{
    WFile file(path, false, 0644);
    file.writeString("a");
    systemFaults.closingError = ENOSPC;
    file.Close();
    EXPECT_TRUE(file.hasFailed());
}

TEST_F(WFileFailureTest, HasNotFailedWhenASignalInterruptsClosing)
{
    WFile file(path, false, 0644);
    file.writeString("a");
    systemFaults.closingError = EINTR;
    file.Close();
    EXPECT_FALSE(file.hasFailed());
}

TEST_F(WFileFailureTest, FailsOnATextThatPrintfRefuses)
{
    wchar_t const text[] = {static_cast<wchar_t>(0x20ac), 0};
    WFile file(path, false, 0644);
    file.writeString("a%lsb", text);
    EXPECT_TRUE(file.hasFailed());
}

TEST_F(WFileFailureTest, FailsOnATextThatIsTooLongForItsMemory)
{
    std::string const text(5000, 'x');
    WFile file(path, false, 0644);
    isMemoryExhausted = true;
    file.writeString("%s", text.c_str());
    isMemoryExhausted = false;
    EXPECT_TRUE(file.hasFailed());
    file.Close();
    EXPECT_EQ(onDisk(), "");
}

TEST_F(WFileFailureTest, ClosesWithItsBufferThroughTheBaseClass)
{
    WFile file(path, false, 0644);
    file.writeString("a");
    static_cast<File&>(file).Close();
    EXPECT_EQ(onDisk(), "a");
    EXPECT_FALSE(file.hasFailed());
}

TEST_F(WFileFailureTest, FlushesItsBufferWhenItIsDeletedThroughTheBaseClass)
{
    auto writer = std::make_unique<WFile>(path, false, 0644);
    writer->writeString("a");
    std::unique_ptr<File> file = std::move(writer);
    EXPECT_EQ(onDisk(), "");
    file.reset();
    EXPECT_EQ(onDisk(), "a");
}

TEST_F(WFileFailureTest, IsPutOnItsDiskWhenAsked)
{
    WFile file(path, false, 0644);
    file.writeString("a");
    EXPECT_TRUE(file.sync());
    EXPECT_EQ(systemFaults.syncCount, 1);
    EXPECT_EQ(onDisk(), "a");
    file.writeString("b");
    file.Close();
    EXPECT_EQ(systemFaults.syncCount, 1);
    EXPECT_EQ(onDisk(), "ab");
    EXPECT_FALSE(file.hasFailed());
}

TEST_F(WFileFailureTest, FailsWhenItsDiskFails)
{
    systemFaults.syncError = EIO;
    WFile file(path, false, 0644);
    file.writeString("a");
    EXPECT_FALSE(file.sync());
    EXPECT_TRUE(file.hasFailed());
    systemFaults.syncError = 0;
    EXPECT_FALSE(file.sync());
    file.Close();
    EXPECT_TRUE(file.hasFailed());
}

TEST_F(WFileFailureTest, CannotBePutOnADiskThatIsFull)
{
    systemFaults.freeBytes = 0;
    WFile file(path, false, 0644);
    file.writeString("a");
    EXPECT_FALSE(file.sync());
    EXPECT_TRUE(file.hasFailed());
}

TEST_F(WFileFailureTest, CannotBePutOnADiskWithoutAnOpenFile)
{
    WFile none;
    EXPECT_FALSE(none.sync());
    EXPECT_FALSE(none.hasFailed());
    WFile closed(path, false, 0644);
    closed.writeString("a");
    closed.Close();
    EXPECT_FALSE(closed.sync());
    EXPECT_FALSE(closed.hasFailed());
}

TEST_F(WFileFailureTest, NeedsNoDiskForAPipe)
{
    ASSERT_EQ(mkfifo(path, 0600), 0);
    RFile reader(path);
    WFile file(path, false, 0644);
    file.writeString("a");
    EXPECT_TRUE(file.sync());
    EXPECT_FALSE(file.hasFailed());
    EXPECT_EQ(reader.readUInt8(), 'a');
}
