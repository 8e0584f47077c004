// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvFile.h"

#include "support/CapturedOutput.h"
#include "support/FileTest.h"
#include "support/StringText.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <type_traits>

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
