// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvSystemCall.h"

#include "support/FailingSystem.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>

namespace
{

class SystemCallTest : public testing::Test
{
protected:
    ~SystemCallTest() override
    {
        systemFaults = {};
        close(descriptor);
    }

    // What is in the file by now.
    std::string onDisk() const
    {
        std::array<char, 100> bytes{};
        auto const count = pread(descriptor, bytes.data(), bytes.size(), 0);
        return {bytes.data(), static_cast<std::size_t>(count)};
    }

    TemporaryFolder const folder;
    int const descriptor = open(folder.pathOf("file"), O_RDWR | O_CREAT, 0600);
};

} // namespace

TEST_F(SystemCallTest, IsRepeatedUntilNoSignalInterruptsIt)
{
    int calls = 0;
    int const result = retryInterrupted([&] {
        errno = EINTR;
        return ++calls < 3 ? -1 : 7;
    });
    EXPECT_EQ(result, 7);
    EXPECT_EQ(calls, 3);
}

TEST_F(SystemCallTest, IsNotRepeatedAfterAnyOtherFailure)
{
    int calls = 0;
    int const result = retryInterrupted([&] {
        ++calls;
        errno = EIO;
        return -1;
    });
    EXPECT_EQ(result, -1);
    EXPECT_EQ(calls, 1);
}

TEST_F(SystemCallTest, IsNotRepeatedAfterASuccessWithAnOldErrorNumber)
{
    int calls = 0;
    errno = EINTR;
    EXPECT_EQ(retryInterrupted([&] { return calls++; }), 0);
    EXPECT_EQ(calls, 1);
}

TEST_F(SystemCallTest, WritesAllInAsManyPiecesAsItTakes)
{
    systemFaults.interruptions = 2;
    systemFaults.mostBytesAtOnce = 3;
    EXPECT_TRUE(writeAll(descriptor, "0123456789", 10));
    EXPECT_EQ(onDisk(), "0123456789");
}

TEST_F(SystemCallTest, WritesNoBytesEvenWithoutAFile)
{
    EXPECT_TRUE(writeAll(descriptor, "abc", 0));
    EXPECT_TRUE(writeAll(-1, nullptr, 0));
    EXPECT_EQ(onDisk(), "");
}

TEST_F(SystemCallTest, StopsWritingWhenTheDiskIsFull)
{
    systemFaults.freeBytes = 4;
    EXPECT_FALSE(writeAll(descriptor, "0123456789", 10));
    EXPECT_EQ(onDisk(), "0123");
}

TEST_F(SystemCallTest, FailsToWriteWhereThereIsNoFile)
{
    EXPECT_FALSE(writeAll(-1, "abc", 3));
}

TEST_F(SystemCallTest, PutsAFileOnItsDisk)
{
    EXPECT_TRUE(syncToDisk(descriptor));
    EXPECT_EQ(systemFaults.syncCount, 1);
}

TEST_F(SystemCallTest, NeedsNoDiskWhereThereIsNone)
{
    for (int const noDisk : {EINVAL, EROFS}) {
        systemFaults.syncError = noDisk;
        EXPECT_TRUE(syncToDisk(descriptor));
    }
}

TEST_F(SystemCallTest, TellsThatADiskFails)
{
    for (int const failure : {EIO, ENOSPC, EDQUOT}) {
        systemFaults.syncError = failure;
        EXPECT_FALSE(syncToDisk(descriptor));
    }
    systemFaults.syncError = 0;
    EXPECT_FALSE(syncToDisk(-1));
}
