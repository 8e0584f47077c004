// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PendingFolder.h"

#include "support/ChartCase.h"
#include "support/FailingSystem.h"
#include "support/TemporaryFolder.h"
#include "support/Unprivileged.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <cerrno>
#include <fstream>
#include <optional>
#include <string>

namespace
{

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

void put(fs::path const& file, std::string const& text)
{
    std::ofstream(file) << text;
}

class PendingFolderTest : public testing::Test
{
protected:
    ~PendingFolderTest() override { systemFaults = {}; }

    // A folder with one file, as an earlier chart.
    void makeOld() const
    {
        fs::create_directory(place);
        put(place / "old", "old");
    }

    std::vector<std::string> filesBeside() const { return filesIn(parent.path()); }

    TemporaryFolder const parent;
    fs::path const place = parent.path() / "chart";
};

mode_t permissionsOf(fs::path const& path)
{
    struct stat status = {};
    stat(path.c_str(), &status);
    return status.st_mode & 07777;
}

class Mask
{
public:
    explicit Mask(mode_t mask) : previous(umask(mask)) {}
    ~Mask() { umask(previous); }
    Mask(Mask const&) = delete;
    Mask& operator=(Mask const&) = delete;

private:
    mode_t const previous;
};

} // namespace

TEST_F(PendingFolderTest, AppearsWhenItIsFinished)
{
    PendingFolder folder(place);
    ASSERT_EQ(folder.getError(), 0);
    EXPECT_EQ(folder.path().parent_path(), parent.path());
    put(folder.path() / "a", "1");
    EXPECT_FALSE(fs::exists(place));
    EXPECT_FALSE(folder.finish(false));
    EXPECT_THAT(filesBeside(), ElementsAre("chart"));
    EXPECT_EQ(bytesOf(place / "a"), "1");
}

TEST_F(PendingFolderTest, LeavesNothingWhenItIsGivenUp)
{
    {
        PendingFolder const folder(place);
        put(folder.path() / "a", "1");
        EXPECT_EQ(filesBeside().size(), 1u);
    }
    EXPECT_THAT(filesBeside(), IsEmpty());
    PendingFolder folder(place);
    put(folder.path() / "a", "1");
    folder.remove();
    EXPECT_THAT(filesBeside(), IsEmpty());
}

TEST_F(PendingFolderTest, StaysWhenTheObjectDies)
{
    EXPECT_FALSE(PendingFolder(place).finish(false));
    EXPECT_THAT(filesBeside(), ElementsAre("chart"));
}

TEST_F(PendingFolderTest, LeavesAnOldFolderAloneUnlessItMayReplaceIt)
{
    makeOld();
    {
        PendingFolder folder(place);
        put(folder.path() / "a", "1");
        FileFault const fault = folder.finish(false).value_or(FileFault{});
        EXPECT_EQ(fault.error, EEXIST);
        EXPECT_EQ(fault.path, String(place.c_str()));
    }
    EXPECT_THAT(filesBeside(), ElementsAre("chart"));
    EXPECT_THAT(filesIn(place), ElementsAre("old"));
}

TEST_F(PendingFolderTest, KeepsTheOldFolderUntilTheNewOneIsThere)
{
    makeOld();
    PendingFolder folder(place);
    put(folder.path() / "a", "1");
    EXPECT_THAT(filesIn(place), ElementsAre("old"));
    EXPECT_FALSE(folder.finish(true));
    EXPECT_THAT(filesIn(place), ElementsAre("a"));
    EXPECT_THAT(filesBeside(), ElementsAre("chart"));
}

TEST_F(PendingFolderTest, ReplacesNothingThatIsNoFolder)
{
    put(place, "a file");
    {
        PendingFolder folder(place);
        FileFault const fault = folder.finish(true).value_or(FileFault{});
        EXPECT_EQ(fault.error, ENOTDIR);
    }
    EXPECT_EQ(bytesOf(place), "a file");
    fs::remove(place);

    fs::create_directory_symlink("elsewhere", place);
    EXPECT_TRUE(PendingFolder(place).finish(true));
    EXPECT_TRUE(fs::is_symlink(place));
    EXPECT_THAT(filesBeside(), ElementsAre("chart"));
}

TEST_F(PendingFolderTest, ReplacesAFolderThatIsNotThere)
{
    EXPECT_FALSE(PendingFolder(place).finish(true));
    EXPECT_THAT(filesBeside(), ElementsAre("chart"));
}

TEST_F(PendingFolderTest, KeepsTheOldFolderWhenTheDiskFails)
{
    makeOld();
    {
        PendingFolder folder(place);
        put(folder.path() / "a", "1");
        systemFaults.syncError = EIO;
        FileFault const fault = folder.finish(true).value_or(FileFault{});
        EXPECT_EQ(fault.error, EIO);
        EXPECT_EQ(fault.path, String((folder.path() / "a").c_str()));
    }
    EXPECT_THAT(filesIn(place), ElementsAre("old"));
    EXPECT_THAT(filesBeside(), ElementsAre("chart"));
}

TEST_F(PendingFolderTest, PutsEachFileAndBothFoldersOnTheDisk)
{
    PendingFolder folder(place);
    put(folder.path() / "a", "1");
    put(folder.path() / "b", "2");
    systemFaults.syncCount = 0;
    EXPECT_FALSE(folder.finish(false));
    EXPECT_EQ(systemFaults.syncCount, 4);
}

TEST_F(PendingFolderTest, TellsThatItsOwnFolderVanished)
{
    PendingFolder folder(place);
    fs::remove_all(folder.path());
    FileFault const fault = folder.finish(true).value_or(FileFault{});
    EXPECT_EQ(fault.error, ENOENT);
    EXPECT_THAT(filesBeside(), IsEmpty());
}

TEST_F(PendingFolderTest, HasThePermissionsThatTheMaskLeaves)
{
    for (mode_t const mask : {022U, 077U, 0U}) {
        Mask const current(mask);
        EXPECT_FALSE(PendingFolder(place).finish(true));
        EXPECT_EQ(permissionsOf(place), 0755U & ~mask);
        EXPECT_EQ(umask(mask), mask);
    }
}

TEST_F(PendingFolderTest, NeedsAParentThatItMayWriteTo)
{
    PendingFolder const nowhere(parent.path() / "none" / "chart");
    EXPECT_EQ(nowhere.getError(), ENOENT);
    EXPECT_TRUE(nowhere.path().empty());

    put(parent.path() / "file", "");
    EXPECT_EQ(PendingFolder(parent.path() / "file" / "chart").getError(), ENOTDIR);

    fs::permissions(parent.path(), fs::perms::owner_read | fs::perms::owner_exec);
    {
        Unprivileged const user;
        EXPECT_EQ(PendingFolder(place).getError(), EACCES);
    }
    fs::permissions(parent.path(), fs::perms::owner_all);
}

TEST_F(PendingFolderTest, IsMadeOnceByTwoAtATime)
{
    PendingFolder first(place);
    PendingFolder second(place);
    EXPECT_NE(first.path(), second.path());
    put(first.path() / "first", "");
    put(second.path() / "second", "");
    EXPECT_FALSE(second.finish(false));
    FileFault const fault = first.finish(false).value_or(FileFault{});
    EXPECT_EQ(fault.error, EEXIST);
    first.remove();
    EXPECT_THAT(filesIn(place), ElementsAre("second"));
    EXPECT_THAT(filesBeside(), ElementsAre("chart"));
}

TEST_F(PendingFolderTest, IsTheLastOneWhereTwoMayReplace)
{
    makeOld();
    PendingFolder first(place);
    PendingFolder second(place);
    put(first.path() / "first", "");
    put(second.path() / "second", "");
    EXPECT_FALSE(second.finish(true));
    EXPECT_FALSE(first.finish(true));
    EXPECT_THAT(filesIn(place), ElementsAre("first"));
    EXPECT_THAT(filesBeside(), ElementsAre("chart"));
}

TEST_F(PendingFolderTest, TakesNamesAsLongAsTheSystemAllows)
{
    fs::path const longest = parent.path() / std::string(255, 'n');
    EXPECT_FALSE(PendingFolder(longest).finish(false));
    EXPECT_TRUE(fs::is_directory(longest));
    FileFault const fault = PendingFolder(parent.path() / std::string(256, 'n')).finish(false).value_or(FileFault{});
    EXPECT_EQ(fault.error, ENAMETOOLONG);
    EXPECT_EQ(filesBeside().size(), 1u);
}

TEST_F(PendingFolderTest, TellsForeignFiles)
{
    auto const startsWithA = [](std::string const& name) { return name.front() == 'a'; };
    EXPECT_EQ(firstForeignFile(place, startsWithA), "");
    fs::create_directory(place);
    EXPECT_EQ(firstForeignFile(place, startsWithA), "");
    put(place / "a", "");
    EXPECT_EQ(firstForeignFile(place, startsWithA), "");
    put(place / "c", "");
    put(place / "b", "");
    EXPECT_EQ(firstForeignFile(place, startsWithA), "b");
    fs::create_directory(place / "aa");
    EXPECT_EQ(firstForeignFile(place, startsWithA), "aa");
    fs::remove(place / "aa");
    fs::create_symlink("a", place / "ab");
    EXPECT_EQ(firstForeignFile(place, startsWithA), "ab");
}
