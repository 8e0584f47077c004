// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvWholeFile.h"

#include "support/FailingSystem.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/stat.h>

namespace
{

namespace fs = std::filesystem;

class WholeFileTest : public testing::Test
{
protected:
    ~WholeFileTest() override { systemFaults = {}; }

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
    systemFaults.interruptions = 2;
    systemFaults.mostBytesAtOnce = 4;
    WholeFile file(name);
    EXPECT_TRUE(file.write("0123456789", 10));
    EXPECT_TRUE(file.close());
    EXPECT_EQ(contents(), "0123456789");
}

TEST_F(WholeFileTest, IsGoneAfterAWriteThatFailed)
{
    systemFaults.freeBytes = 7;
    WholeFile file(name);
    EXPECT_TRUE(file.write("01234", 5));
    EXPECT_FALSE(file.write("56789", 5));
    EXPECT_FALSE(file.close());
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(WholeFileTest, IsGoneEvenIfALaterWriteSucceeds)
{
    systemFaults.freeBytes = 0;
    WholeFile file(name);
    EXPECT_FALSE(file.write("01234", 5));
    systemFaults.freeBytes = 100;
    EXPECT_TRUE(file.write("56789", 5));
    EXPECT_FALSE(file.close());
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(WholeFileTest, IsGoneWhenClosingFails)
{
    WholeFile file(name);
    EXPECT_TRUE(file.write("abc", 3));
    systemFaults.closingError = EIO;
    EXPECT_FALSE(file.close());
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(WholeFileTest, HasNotFailedWhileAllIsWell)
{
    WholeFile file(name);
    EXPECT_FALSE(file.hasFailed());
    EXPECT_TRUE(file.write("abc", 3));
    EXPECT_FALSE(file.hasFailed());
    EXPECT_TRUE(file.close());
    EXPECT_FALSE(file.hasFailed());
}

TEST_F(WholeFileTest, HasFailedWhereItCannotBeOpened)
{
    for (String const& unopened : {folder.pathOf("missing/whole"), folder.pathOf("."), String("/dev/null"), String()}) {
        WholeFile file(unopened);
        EXPECT_TRUE(file.hasFailed());
        EXPECT_FALSE(file.sync());
        EXPECT_FALSE(file.close());
    }
}

TEST_F(WholeFileTest, HasFailedOnceAWriteFailed)
{
    systemFaults.freeBytes = 2;
    WholeFile file(name);
    file.write("abc", 3);
    EXPECT_TRUE(file.hasFailed());
    EXPECT_FALSE(file.sync());
}

TEST_F(WholeFileTest, HasFailedWhenItCannotBeClosed)
{
    WholeFile file(name);
    file.write("abc", 3);
    systemFaults.closingError = ENOSPC;
    file.close();
    EXPECT_TRUE(file.hasFailed());
}

TEST_F(WholeFileTest, IsPutOnItsDiskWhenAsked)
{
    WholeFile file(name);
    file.write("abc", 3);
    EXPECT_EQ(systemFaults.syncCount, 0);
    EXPECT_TRUE(file.sync());
    EXPECT_EQ(systemFaults.syncCount, 1);
    EXPECT_TRUE(file.close());
    EXPECT_FALSE(file.sync());
    EXPECT_FALSE(file.hasFailed());
}

TEST_F(WholeFileTest, IsGoneWhenItsDiskFails)
{
    WholeFile file(name);
    file.write("abc", 3);
    systemFaults.syncError = EIO;
    EXPECT_FALSE(file.sync());
    EXPECT_TRUE(file.hasFailed());
    EXPECT_FALSE(file.close());
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(WholeFileTest, StaysWhenASignalInterruptsClosing)
{
    WholeFile file(name);
    EXPECT_TRUE(file.write("abc", 3));
    systemFaults.closingError = EINTR;
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
