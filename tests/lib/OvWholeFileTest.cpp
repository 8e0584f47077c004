// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvWholeFile.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

// What the system does to the next writes and to the next closing of a file.
int interruptions = 0;
std::size_t mostBytesAtOnce = ~std::size_t{0};
std::size_t freeBytes = ~std::size_t{0};
int closingError = 0;

} // namespace

// These stand in for the C library's.
extern "C" ssize_t write(int descriptor, void const* data, size_t size)
{
    if (descriptor > STDERR_FILENO) {
        if (interruptions > 0) {
            --interruptions;
            errno = EINTR;
            return -1;
        }
        if (size > 0 && freeBytes == 0) {
            errno = ENOSPC;
            return -1;
        }
        size = std::min({size, mostBytesAtOnce, freeBytes});
        freeBytes -= size;
    }
    return syscall(SYS_write, descriptor, data, size);
}

extern "C" int close(int descriptor)
{
    auto const result = static_cast<int>(syscall(SYS_close, descriptor));
    if (descriptor > STDERR_FILENO && closingError != 0) {
        errno = closingError;
        closingError = 0;
        return -1;
    }
    return result;
}

namespace
{

namespace fs = std::filesystem;

class WholeFileTest : public testing::Test
{
protected:
    ~WholeFileTest() override
    {
        interruptions = 0;
        mostBytesAtOnce = freeBytes = ~std::size_t{0};
        closingError = 0;
    }

    std::string contents() const
    {
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        return text.str();
    }

    TemporaryFolder folder;
    String name = folder.pathOf("whole");
    fs::path path = folder.path() / "whole";
};

} // namespace

TEST_F(WholeFileTest, KeepsWhatWasWritten)
{
    WholeFile file(name);
    ASSERT_TRUE(file.isOpen());
    EXPECT_TRUE(file.write("abc", 3));
    EXPECT_TRUE(file.write("def", 3));
    EXPECT_EQ(file.getSize(), 6);
    EXPECT_TRUE(file.close());
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(contents(), "abcdef");
}

TEST_F(WholeFileTest, ClosesItselfAtTheEnd)
{
    {
        WholeFile file(name);
        file.write("abc", 3);
    }
    EXPECT_EQ(contents(), "abc");
}

TEST_F(WholeFileTest, WritesWhereItWasMovedTo)
{
    WholeFile file(name);
    file.write("abcdef", 6);
    EXPECT_EQ(file.seek(1, SEEK_SET), 1);
    file.write("X", 1);
    EXPECT_EQ(file.seek(0, SEEK_END), 6);
    EXPECT_EQ(file.seek(-1, SEEK_SET), -1);
    file.write("Y", 1);
    EXPECT_TRUE(file.close());
    EXPECT_EQ(contents(), "aXcdefY");
}

TEST_F(WholeFileTest, ReplacesWhatWasThere)
{
    folder.write("whole", "something longer");
    WholeFile file(name);
    file.write("abc", 3);
    EXPECT_TRUE(file.close());
    EXPECT_EQ(contents(), "abc");
}

TEST_F(WholeFileTest, MayBeReadByAllAndWrittenByItsOwner)
{
    auto const previous = umask(0);
    WholeFile const file(name);
    umask(previous);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms{0644});
}

TEST_F(WholeFileTest, OpensNothingInAMissingFolder)
{
    WholeFile file(folder.pathOf("missing/whole"));
    EXPECT_FALSE(file.isOpen());
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(WholeFileTest, OpensNoFolder)
{
    WholeFile file(folder.pathOf("."));
    EXPECT_FALSE(file.isOpen());
}

TEST_F(WholeFileTest, OpensNoPipe)
{
    ASSERT_EQ(mkfifo(name, 0600), 0);
    EXPECT_FALSE(WholeFile(name).isOpen());
    EXPECT_TRUE(fs::is_fifo(path));
}

TEST_F(WholeFileTest, LeavesADeviceAlone)
{
    WholeFile file("/dev/null");
    EXPECT_FALSE(file.isOpen());
    file.giveUp();
    file.close();
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(WholeFileTest, OpensNoOtherFileForANameWithANul)
{
    std::string text = path.string() + '\0' + "more";
    EXPECT_FALSE(WholeFile(String(text.data(), false, text.size())).isOpen());
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(WholeFileTest, GoesOnAfterShortAndInterruptedWrites)
{
    interruptions = 2;
    mostBytesAtOnce = 4;
    WholeFile file(name);
    EXPECT_TRUE(file.write("0123456789", 10));
    EXPECT_TRUE(file.close());
    EXPECT_EQ(contents(), "0123456789");
}

TEST_F(WholeFileTest, IsGoneAfterAWriteThatFailed)
{
    freeBytes = 7;
    WholeFile file(name);
    EXPECT_TRUE(file.write("01234", 5));
    EXPECT_FALSE(file.write("56789", 5));
    EXPECT_FALSE(file.close());
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(WholeFileTest, IsGoneEvenIfALaterWriteSucceeds)
{
    freeBytes = 0;
    WholeFile file(name);
    EXPECT_FALSE(file.write("01234", 5));
    freeBytes = 100;
    EXPECT_TRUE(file.write("56789", 5));
    EXPECT_FALSE(file.close());
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(WholeFileTest, IsGoneWhenClosingFails)
{
    WholeFile file(name);
    EXPECT_TRUE(file.write("abc", 3));
    closingError = EIO;
    EXPECT_FALSE(file.close());
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(WholeFileTest, StaysWhenASignalInterruptsClosing)
{
    WholeFile file(name);
    EXPECT_TRUE(file.write("abc", 3));
    closingError = EINTR;
    EXPECT_TRUE(file.close());
    EXPECT_EQ(contents(), "abc");
}

TEST_F(WholeFileTest, IsGoneWhenTheWriterGivesUp)
{
    WholeFile file(name);
    file.write("abc", 3);
    file.giveUp();
    EXPECT_FALSE(file.close());
    EXPECT_FALSE(file.close());
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(WholeFileTest, LeavesALinkWithAnEmptyFileBehindIt)
{
    folder.write("target", "before");
    fs::create_symlink("target", path);
    {
        WholeFile file(name);
        ASSERT_TRUE(file.isOpen());
        file.write("abc", 3);
        file.giveUp();
    }
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_EQ(fs::file_size(folder.path() / "target"), 0u);
}

TEST_F(WholeFileTest, LeavesAFileThatHasTakenItsPlace)
{
    {
        WholeFile file(name);
        file.write("abc", 3);
        fs::rename(path, folder.path() / "moved");
        folder.write("whole", "another");
        file.giveUp();
    }
    EXPECT_EQ(contents(), "another");
    EXPECT_EQ(fs::file_size(folder.path() / "moved"), 0u);
}

TEST_F(WholeFileTest, CanBeGivenUpAfterItWasRemoved)
{
    WholeFile file(name);
    fs::remove(path);
    file.giveUp();
    EXPECT_FALSE(file.close());
    EXPECT_TRUE(fs::is_empty(folder.path()));
}
