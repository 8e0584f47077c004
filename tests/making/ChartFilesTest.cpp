// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartFiles.h"

#include "support/ChartCase.h"
#include "support/FailingSystem.h"
#include "support/FileSizeLimit.h"
#include "support/RulerChart.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <string>
#include <vector>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

using testing::ElementsAre;

std::vector<ImageKind const*> const both = {&epsImages, &tiffImages};

// A chart named "Chart" on two sheets.
class ChartFilesTest : public testing::Test
{
protected:
    ~ChartFilesTest() override { systemFaults = {}; }

    std::optional<FileFault> write(std::vector<ImageKind const*> const& kinds, BeforeSheet const& before = {}) const
    {
        return writeChartFiles(chart.layout, String(chart.folder.path().c_str()), String("Chart.xml"), kinds, before);
    }

    std::uintmax_t sizeOf(char const* name) const { return std::filesystem::file_size(chart.folder.path() / name); }

    String pathOf(char const* name) const { return chart.folder.pathOf(name); }

    RulerChart const chart{greyEntries(4), {2, 1}};
};

} // namespace

TEST(ChartFiles, NamesFolderAndDescriptionAfterTheChart)
{
    EXPECT_EQ(chartFolder(String("/a/b"), String("c d")), String("/a/b/c d"));
    EXPECT_EQ(chartFolder(String("/a/b/"), String("c")), String("/a/b/c"));
    EXPECT_EQ(targetDescriptionName(String("/a/b/c d")), String("c d.xml"));
    EXPECT_EQ(targetDescriptionName(String("/a/b/c.d")), String("c.d.xml"));
}

TEST_F(ChartFilesTest, AreTheDescriptionAndTheSheetsOfEachKind)
{
    EXPECT_FALSE(write({&epsImages}));
    EXPECT_THAT(chart.files(), ElementsAre("Chart.xml", "Chart_001.eps", "Chart_002.eps"));
    EXPECT_FALSE(write({&tiffImages}));
    EXPECT_THAT(chart.files(),
                ElementsAre("Chart.xml", "Chart_001.eps", "Chart_001.tif", "Chart_002.eps", "Chart_002.tif"));
}

TEST_F(ChartFilesTest, AreOneDocumentOfAllSheets)
{
    EXPECT_FALSE(write({&pdfImages}));
    EXPECT_THAT(chart.files(), ElementsAre("Chart.pdf", "Chart.xml"));
}

TEST_F(ChartFilesTest, LeaveOutTheWholeDocumentAfterTheCallerSaysSo)
{
    int asked = 0;
    EXPECT_FALSE(write({&epsImages, &pdfImages}, [&] { return ++asked <= 3; }));
    EXPECT_THAT(chart.files(), ElementsAre("Chart.xml", "Chart_001.eps", "Chart_002.eps"));
}

TEST_F(ChartFilesTest, AreDrawnWithTheOptions)
{
    String const folder(chart.folder.path().c_str());
    EXPECT_FALSE(writeChartFiles(chart.layout, folder, String("Chart.xml"), {&tiffImages}, {},
                                 {{72, TIFFCompression::lzw}, true}));
    Picture const small = readTiff(chart.fileOf(1, "tif"));
    EXPECT_FALSE(write({&tiffImages}));
    Picture const plain = chart.painted();
    EXPECT_GT(small.width, 0);
    EXPECT_NEAR(small.width, plain.width * 72 / 300.0, 1);
    EXPECT_NEAR(small.height, plain.height * 72 / 300.0, 1);
}

TEST_F(ChartFilesTest, LeaveOutTheSheetsAfterTheCallerSaysSo)
{
    int asked = 0;
    EXPECT_FALSE(write(both, [&] { return ++asked <= 3; }));
    EXPECT_THAT(chart.files(), ElementsAre("Chart.xml", "Chart_001.eps", "Chart_002.eps", "Chart_002.tif"));
}

TEST_F(ChartFilesTest, AreMissingWhereTheDiskHasNoRoomForThem)
{
    EXPECT_FALSE(write(both));
    // Each file's last byte finds no room; smaller files are written all the same.
    struct
    {
        char const* largest;
        std::vector<ImageKind const*> kinds;
    } const cases[] = {{"Chart_002.tif", both}, {"Chart_002.eps", {&epsImages}}, {"Chart.xml", {}}};
    for (auto const& [largest, kinds] : cases) {
        std::uintmax_t const size = sizeOf(largest);
        FileSizeLimit const limit(size - 1);
        FileFault const fault = write(kinds).value_or(FileFault{});
        EXPECT_EQ(fault.error, EFBIG) << largest;
        EXPECT_EQ(fault.path, pathOf(largest));
    }
}

TEST_F(ChartFilesTest, TellTheFirstFaultByFileAndError)
{
    systemFaults.freeBytes = 100;
    FileFault const full = write(both).value_or(FileFault{});
    EXPECT_EQ(full.path, pathOf("Chart.xml"));
    EXPECT_EQ(full.error, ENOSPC);
    systemFaults = {};

    std::filesystem::remove(chart.fileOf(2, "eps"));
    std::filesystem::create_directory(chart.fileOf(2, "eps"));
    FileFault const folder = write(both).value_or(FileFault{});
    EXPECT_EQ(folder.path, pathOf("Chart_002.eps"));
    EXPECT_EQ(folder.error, EISDIR);
    EXPECT_THAT(chart.files(),
                ElementsAre("Chart.xml", "Chart_001.eps", "Chart_001.tif", "Chart_002.eps", "Chart_002.tif"));
}

TEST_F(ChartFilesTest, TellWhatOnlyClosingReports)
{
    systemFaults.closingError = EDQUOT;
    FileFault const fault = write({&epsImages}).value_or(FileFault{});
    EXPECT_EQ(fault.path, pathOf("Chart.xml"));
    EXPECT_EQ(fault.error, EDQUOT);
}

TEST_F(ChartFilesTest, NeedAFolder)
{
    FileFault const fault =
        writeChartFiles(chart.layout, pathOf("none"), String("Chart.xml"), both).value_or(FileFault{});
    EXPECT_EQ(fault.path, pathOf("none/Chart.xml"));
    EXPECT_EQ(fault.error, ENOENT);
}
