// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A chart's files that cannot be written. No other file changes, and the other files of the chart are complete.

#include "support/CapturedOutput.h"
#include "support/FileSizeLimit.h"
#include "support/RulerChart.h"
#include "support/TargetTable.h"
#include "support/Unprivileged.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace
{

namespace fs = std::filesystem;

using testing::StartsWith;

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

// The contents of a folder by name: the kind of each file, and its bytes or link target.
using Tree = std::map<std::string, std::string>;

Tree treeOf(fs::path const& folder)
{
    Tree tree;
    for (auto const& entry : fs::recursive_directory_iterator(folder)) {
        std::string& what = tree[entry.path().lexically_relative(folder).string()];
        if (entry.is_symlink())
            what = "link to " + fs::read_symlink(entry).string();
        else if (entry.is_regular_file())
            what = withoutCreationTime(bytesOf(entry));
        else
            what = "kind " + std::to_string(static_cast<int>(entry.symlink_status().type()));
    }
    return tree;
}

// What can be in the place of a file.
struct Obstacle
{
    char const* name;
    void (*place)(fs::path const& where);
};

void placeSocket(fs::path const& where)
{
    int const descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    where.string().copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    close(descriptor);
}

void placeReadOnlyFile(fs::path const& where)
{
    std::ofstream(where) << "something longer than nothing";
    fs::permissions(where, fs::perms::owner_read);
}

Obstacle const obstacles[] = {
    {"read-only file", placeReadOnlyFile},
    {"folder", [](fs::path const& where) { fs::create_directory(where); }},
    {"folder with a file",
     [](fs::path const& where) {
         fs::create_directory(where);
         std::ofstream(where / "inside") << "inside";
     }},
    {"pipe that nobody reads", [](fs::path const& where) { mkfifo(where.c_str(), 0600); }},
    {"socket", placeSocket},
    {"link to itself", [](fs::path const& where) { fs::create_symlink(where.filename(), where); }},
    {"link round in a circle",
     [](fs::path const& where) {
         fs::path const other = where.string() + ".other";
         fs::create_symlink(other.filename(), where);
         fs::create_symlink(where.filename(), other);
     }},
    {"link to a folder", [](fs::path const& where) { fs::create_symlink(".", where); }},
    {"link into a missing folder", [](fs::path const& where) { fs::create_symlink("missing/file", where); }},
    {"link to a read-only file",
     [](fs::path const& where) {
         fs::path const other = where.string() + ".other";
         placeReadOnlyFile(other);
         fs::create_symlink(other.filename(), where);
     }},
    {"link to a device that is full", [](fs::path const& where) { fs::create_symlink("/dev/full", where); }},
};

// A separate disk with room for some bytes, if the user may mount one. It lives as long as the object.
class SmallDisk
{
public:
    explicit SmallDisk(int kilobytes)
    {
        TemporaryFolder const place;
        std::string const options = "size=" + std::to_string(kilobytes) + "k";
        if (mount("tmpfs", place.path().c_str(), "tmpfs", 0, options.c_str()) != 0)
            return;
        // From here on, only the descriptor keeps the disk.
        descriptor = open(place.path().c_str(), O_RDONLY | O_DIRECTORY);
        umount2(place.path().c_str(), MNT_DETACH);
    }
    ~SmallDisk() { close(descriptor); }
    SmallDisk(SmallDisk const&) = delete;
    SmallDisk& operator=(SmallDisk const&) = delete;

    bool isThere() const { return descriptor >= 0; }
    std::string root() const { return "/proc/self/fd/" + std::to_string(descriptor) + "/"; }

private:
    int descriptor = -1;
};

constexpr char unwritten[] = "TIFF file could not be written.\n\r";

// A chart of three sheets.
class Output : public testing::Test
{
protected:
    // Writes all files of the chart. Returns the text on standard error.
    std::string messagesOfWriting(String const& into, std::string const& name = "Chart")
    {
        chart.layout.setName(String(name.c_str()));
        return errorsOf([&] {
            EXPECT_TRUE(chart.layout.writeOutputFile(into + String(name.c_str()) + ".xml"));
            EXPECT_TRUE(chart.layout.writeOutputImagesEPS(into));
            EXPECT_TRUE(chart.layout.writeOutputImagesTIFF(into));
        });
    }

    // The files without any obstacle.
    Tree whole()
    {
        TemporaryFolder const elsewhere;
        EXPECT_EQ(messagesOfWriting(elsewhere.pathWithSlash()), "");
        Tree tree = treeOf(elsewhere.path());
        EXPECT_EQ(tree.size(), 7U);
        return tree;
    }

    RulerChart chart{greyEntries(6), {2, 1}};
};

// Its files in a folder, written by a user without special rights.
class OutputFaults : public Output
{
protected:
    Unprivileged const unprivileged;
    TemporaryFolder const folder;
    fs::path const path = folder.path();
    String const prefix = folder.pathWithSlash();
};

class OutputObstacles : public OutputFaults, public testing::WithParamInterface<Obstacle>
{
};

} // namespace

TEST_P(OutputObstacles, StayInPlaceAndOnlyTheirFilesAreMissing)
{
    for (char const* const name : {"Chart.xml", "Chart_002.eps", "Chart_002.tif"})
        GetParam().place(path / name);
    Tree expected = treeOf(path);
    EXPECT_EQ(messagesOfWriting(prefix), "");
    expected.merge(whole());
    EXPECT_EQ(treeOf(path), expected);
}

INSTANTIATE_TEST_SUITE_P(Every, OutputObstacles, testing::ValuesIn(obstacles),
                         [](auto const& obstacle) { return caseName(obstacle.param.name); });

TEST_F(OutputFaults, NothingIsWrittenIntoAFolderWithoutPermission)
{
    folder.write("other", "other");
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(messagesOfWriting(prefix), "");
    EXPECT_EQ(treeOf(path), (Tree{{"other", "other"}}));
    fs::permissions(path, fs::perms::owner_all);
}

TEST_F(OutputFaults, NothingIsWrittenIntoAPathThatIsNoFolder)
{
    folder.write("file", "file");
    fs::create_symlink("loop", path / "loop");
    Tree const before = treeOf(path);
    for (char const* const name : {"file/", "loop/", "missing/", "missing/../"})
        EXPECT_EQ(messagesOfWriting(folder.pathOf(name)), "");
    EXPECT_EQ(messagesOfWriting("/dev/null/"), "");
    EXPECT_EQ(treeOf(path), before);
}

TEST_F(OutputFaults, NothingIsWrittenUnderNamesThatNoFileCanHave)
{
    EXPECT_EQ(messagesOfWriting(prefix, std::string(256, 'n')), "");
    EXPECT_EQ(messagesOfWriting(prefix, "sub/folder"), "");
    std::string deep;
    while (deep.size() < 5000)
        deep += "./";
    EXPECT_EQ(messagesOfWriting(folder.pathOf(deep)), "");
    EXPECT_EQ(treeOf(path), Tree());
}

TEST_F(OutputFaults, ChartsAreWrittenUnderEveryNameThatAFileCanHave)
{
    std::string const longest(255 - sizeof "_001.eps" + 1, 'n');
    for (std::string const name : {longest.c_str(), "Gr\303\266\303\237e \345\233\263", "no UTF-8 \xff\xc3", "%s%n%d",
                                   "line\nfeed", "-n", "\\\"'`$(x)*?&<>", ""}) {
        TemporaryFolder const own;
        EXPECT_EQ(messagesOfWriting(own.pathWithSlash(), name), "");
        EXPECT_EQ(filesIn(own.path()),
                  (std::vector<std::string>{name + ".xml", name + "_001.eps", name + "_001.tif", name + "_002.eps",
                                            name + "_002.tif", name + "_003.eps", name + "_003.tif"}));
    }
}

TEST_F(OutputFaults, AFileSizeLimitLeavesTheStartsOfTextsAndNoImages)
{
    Tree const complete = whole();
    {
        FileSizeLimit const limit(500);
        EXPECT_EQ(messagesOfWriting(prefix), std::string(unwritten) + unwritten + unwritten);
    }
    Tree const cut = treeOf(path);
    EXPECT_EQ(cut.size(), 4U);
    for (auto const& [name, contents] : cut) {
        EXPECT_EQ(fs::file_size(path / name), 500U) << name;
        EXPECT_THAT(complete.at(name), StartsWith(contents)) << name;
    }
    EXPECT_EQ(messagesOfWriting(prefix), "");
    EXPECT_EQ(treeOf(path), complete);
}

TEST_F(Output, HasNoImagesOnADiskWithoutRoomForThem)
{
    SmallDisk const disk(48);
    if (!disk.isThere())
        GTEST_SKIP() << "Only an administrator can mount a disk.";
    std::ofstream(disk.root() + "other") << "other";
    Tree expected = whole();
    std::erase_if(expected, [](auto const& file) { return file.first.ends_with(".tif"); });
    expected["other"] = "other";
    EXPECT_EQ(messagesOfWriting(String(disk.root().c_str())), std::string(unwritten) + unwritten + unwritten);
    EXPECT_EQ(treeOf(disk.root()), expected);
}

TEST_F(Output, HasEmptyTextsOnAFullDisk)
{
    SmallDisk const disk(16);
    if (!disk.isThere())
        GTEST_SKIP() << "Only an administrator can mount a disk.";
    std::ofstream other(disk.root() + "other");
    while (other.put('x').flush())
        ;
    Tree expected = treeOf(disk.root());
    for (char const* const name : {"Chart.xml", "Chart_001.eps", "Chart_002.eps", "Chart_003.eps"})
        expected[name] = "";
    EXPECT_EQ(messagesOfWriting(String(disk.root().c_str())), std::string(unwritten) + unwritten + unwritten);
    EXPECT_EQ(treeOf(disk.root()), expected);
}
