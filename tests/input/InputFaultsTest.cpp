// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Paths that are no tables, and tables that change while they are read.

#include "InputFile.h"

#include "support/CapturedOutput.h"
#include "support/TemporaryFolder.h"
#include "support/TestChart.h"
#include "support/Unprivileged.h"

#include <gmock/gmock.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <utility>

namespace
{

// Runs once, just before the program reads from an opened file.
std::function<void()> meanwhile;

} // namespace

extern "C" ssize_t read(int descriptor, void* bytes, size_t size)
{
    static auto* const original = reinterpret_cast<ssize_t (*)(int, void*, size_t)>(dlsym(RTLD_NEXT, "read"));
    if (meanwhile)
        std::exchange(meanwhile, nullptr)();
    return original(descriptor, bytes, size);
}

namespace
{

namespace fs = std::filesystem;

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

constexpr char table[] = "RGB\n1 2 3\n4 5 6\n7 8 9\n";

// The tables are in a folder, read by a user without special rights.
class InputFaults : public testing::Test
{
protected:
    InputFaults() { file.init(path); }

    void expectNothingIn(String const& name)
    {
        EXPECT_EQ(errorsOf([&] { EXPECT_FALSE(file.init(name)); }), "") << name.getNullTerminatedString();
        EXPECT_FALSE(file.isValid());
        EXPECT_EQ(file.getEntries()->getCount(), 0U);
    }

    void expectPatches(unsigned long long count, bool isGood, std::string const& messages = "")
    {
        EXPECT_EQ(errorsOf([&] { EXPECT_EQ(file.init(path), isGood); }), messages);
        EXPECT_TRUE(file.isValid());
        EXPECT_EQ(file.getEntries()->getCount(), count);
    }

    Unprivileged const unprivileged;
    TemporaryFolder const folder;
    String const path = folder.write("table.txt", table);
    fs::path const filePath = folder.path() / "table.txt";
    InputFile file; // has read a table before
};

} // namespace

TEST_F(InputFaults, NothingIsReadFromAPipe)
{
    String const pipe = folder.pathOf("pipe");
    ASSERT_EQ(mkfifo(pipe, 0600), 0);
    expectNothingIn(pipe);
    int const writer = open(pipe, O_RDWR);
    expectNothingIn(pipe);
    ASSERT_EQ(write(writer, table, sizeof table - 1), static_cast<ssize_t>(sizeof table - 1));
    expectNothingIn(pipe);
    close(writer);
}

TEST_F(InputFaults, NothingIsReadFromFoldersAndDevices)
{
    for (char const* const name : {"/", "/dev", "/dev/zero", "/dev/null", "/dev/full", "/dev/random", "/dev/tty"})
        expectNothingIn(String(name));
    expectNothingIn(folder.pathWithSlash());
    expectNothingIn(folder.pathOf("."));
}

TEST_F(InputFaults, NothingIsReadThroughLinksThatLeadNowhere)
{
    fs::create_symlink("self", folder.path() / "self");
    fs::create_symlink("there", folder.path() / "back");
    fs::create_symlink("back", folder.path() / "there");
    fs::create_symlink("missing", folder.path() / "dangling");
    for (char const* const name : {"self", "back", "there/table.txt", "dangling"})
        expectNothingIn(folder.pathOf(name));
}

TEST_F(InputFaults, NothingIsReadWithoutPermission)
{
    fs::permissions(filePath, fs::perms::none);
    expectNothingIn(path);

    fs::create_directory(folder.path() / "closed");
    String const inside = folder.write("closed/table.txt", table);
    fs::permissions(folder.path() / "closed", fs::perms::none);
    expectNothingIn(inside);
    fs::permissions(folder.path() / "closed", fs::perms::owner_all);
}

TEST_F(InputFaults, NothingIsReadUnderNamesThatNoFileCanHave)
{
    expectNothingIn(folder.pathOf(std::string(256, 'n')));
    std::string deep;
    while (deep.size() < 5000)
        deep += "./";
    expectNothingIn(folder.pathOf(deep + "table.txt"));
    expectNothingIn(folder.pathOf("table.txt/table.txt"));
    expectNothingIn(String(path, "\0more", 5));
}

TEST_F(InputFaults, ATableIsReadUnderEveryNameThatAFileCanHave)
{
    std::string const longest(255, 'n');
    for (std::string const& name :
         {longest, std::string("Gr\303\266\303\237e \345\233\263.txt"), std::string("no UTF-8 \xff\xc3"),
          std::string("%s%n%d"), std::string("line\nfeed"), std::string("-n"), std::string("\\\"'`$(x)*?")}) {
        EXPECT_TRUE(file.init(folder.write(name, table))) << testing::PrintToString(name);
        EXPECT_EQ(file.getEntries()->getCount(), 3U);
    }
    std::string deep = folder.path().string();
    while (deep.size() + 255 < 3800) {
        deep += "/" + std::string(255, 'd');
        fs::create_directory(deep);
    }
    std::ofstream(deep + "/table.txt") << table;
    EXPECT_TRUE(file.init(String((deep + "/table.txt").c_str())));
}

TEST_F(InputFaults, ATableThatVanishesMeanwhileIsReadCompletely)
{
    meanwhile = [&] { fs::remove(filePath); };
    expectPatches(3, true);
    expectNothingIn(path);
}

TEST_F(InputFaults, ATableThatIsReplacedMeanwhileIsReadCompletely)
{
    folder.write("other.txt", "CMYK\n1 2 3 4\n");
    meanwhile = [&] { fs::rename(folder.path() / "other.txt", filePath); };
    expectPatches(3, true);
    EXPECT_EQ(file.getColorSpace(), RGB);
    expectPatches(1, true);
    EXPECT_EQ(file.getColorSpace(), CMYK);
}

TEST_F(InputFaults, ATableThatGrowsMeanwhileIsReadAsItWas)
{
    meanwhile = [&] { std::ofstream(filePath, std::ios::app) << "10 11 12\n13"; };
    expectPatches(3, true);
}

TEST_F(InputFaults, TheRestOfATableThatIsCutOffMeanwhileIsRead)
{
    meanwhile = [&] { fs::resize_file(filePath, sizeof "RGB\n1 2 3\n4 5" - 1); };
    std::string const noThirdValue = "Array element out of bounds.\r";
    expectPatches(1, false, noThirdValue + noThirdValue + noThirdValue);
    folder.write("table.txt", table);
    meanwhile = [&] { fs::resize_file(filePath, 0); };
    expectNothingIn(path);
}
