// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Which sheets are written, under which names and numbers.

#include "SheetFiles.h"

#include "OutputPage.h"
#include "support/CapturedOutput.h"
#include "support/RulerChart.h"
#include "support/StringText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <iterator>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

using testing::ElementsAre;
using testing::IsEmpty;

} // namespace

TEST(SheetFiles, NumbersSheetsDownwardsFromTheirCount)
{
    RulerChart const chart(greyEntries(6), {2, 1});
    EXPECT_EQ(chart.layout.countOutputPages(), 3);
    DrawnSheet const first = chart.drawn(3);
    EXPECT_THAT(chart.files(), ElementsAre("Chart_001.eps", "Chart_002.eps", "Chart_003.eps"));
    EXPECT_EQ(first.texts.at(0).text, "F");
    EXPECT_EQ(first.lastText().text, "3");
    EXPECT_EQ(readSheet(chart.fileOf(1, "eps")).texts.at(1).text, "A");
}

TEST(SheetFiles, SkipsSheetsWithoutPatchesInFilesAndNumbers)
{
    RulerChart chart(greyEntries(6), {2, 1});
    chart.sheet(1).reduceCoordWidth(2);
    EXPECT_EQ(chart.layout.countOutputPages(), 2);
    DrawnSheet const first = chart.drawn(2);
    DrawnSheet const third = chart.drawn(1);
    EXPECT_THAT(chart.files(), ElementsAre("Chart_001.eps", "Chart_002.eps"));
    EXPECT_EQ(first.texts.at(0).text, "F");
    EXPECT_EQ(first.lastText().text, "2");
    EXPECT_EQ(third.texts.at(0).text, "B");
    EXPECT_EQ(third.lastText().text, "1");

    chart.painted();
    EXPECT_THAT(chart.files(), ElementsAre("Chart_001.eps", "Chart_001.tif", "Chart_002.eps", "Chart_002.tif"));
}

TEST(SheetFiles, LowersTheCounterOnlyForWrittenSheets)
{
    RulerChart chart(greyEntries(6), {2, 1});
    chart.sheet(1).reduceCoordWidth(2);
    Array<ChartPage>& pages = *chart.layout.getChartPages();
    String const folder = chart.folder.pathWithSlash();
    int counter = 41;
    EXPECT_TRUE(pages[0].writeEPS(folder, String("Page"), counter, &chart.layout));
    EXPECT_EQ(counter, 40);
    EXPECT_TRUE(pages[1].writeEPS(folder, String("Page"), counter, &chart.layout));
    EXPECT_TRUE(pages[1].writeTIFF(folder, String("Page"), counter, &chart.layout));
    EXPECT_EQ(counter, 40);
    EXPECT_TRUE(pages[2].writeTIFF(folder, String("Page"), counter, &chart.layout));
    EXPECT_EQ(counter, 39);
    EXPECT_THAT(chart.files(), ElementsAre("Page_041.tif", "Page_042.eps"));
}

TEST(SheetFiles, TellsWhetherASheetHadPatchesToDraw)
{
    RulerChart chart(greyEntries(2), {2, 1});
    String const folder = chart.folder.pathWithSlash();
    EXPECT_TRUE(chart.sheet().writeEPS(folder, String("Full"), 0, &chart.layout));
    EXPECT_TRUE(chart.sheet().writeTIFF(folder, String("Full"), 0, &chart.layout));
    chart.sheet().reduceCoordWidth(2);
    EXPECT_FALSE(chart.sheet().writeEPS(folder, String("Empty"), 0, &chart.layout));
    EXPECT_FALSE(chart.sheet().writeTIFF(folder, String("Empty"), 0, &chart.layout));
    EXPECT_THAT(chart.files(), ElementsAre("Full_001.eps", "Full_001.tif"));
}

TEST(SheetFiles, NamesFilesWithAtLeastThreeDigits)
{
    RulerChart chart(greyEntries(2), {2, 1});
    String const prefix = chart.folder.pathOf("50 %d of ");
    chart.sheet().writeEPS(prefix, String("A %s"), 98, &chart.layout);
    chart.sheet().writeEPS(prefix, String("A %s"), 999, &chart.layout);
    EXPECT_THAT(chart.files(), ElementsAre("50 %d of A %s_099.eps", "50 %d of A %s_1000.eps"));
    DrawnSheet::Text const number = readSheet(chart.folder.path() / "50 %d of A %s_1000.eps").lastText();
    EXPECT_EQ(number.text, "1000");
    EXPECT_NEAR(number.position.x, 16 - 6 - 4 * 2.4, 0.000001);
}

TEST(SheetFiles, WritesNothingForAChartWithoutPages)
{
    ChartLayout const chart;
    TemporaryFolder const folder;
    EXPECT_EQ(chart.countOutputPages(), 0);
    EXPECT_TRUE(chart.writeOutputImagesEPS(folder.pathWithSlash()));
    EXPECT_TRUE(chart.writeOutputImagesTIFF(folder.pathWithSlash()));
    EXPECT_THAT(filesIn(folder.path()), IsEmpty());
}

TEST(SheetFiles, ContinuesIfItsFilesCannotBeCreated)
{
    RulerChart const chart(greyEntries(6), {2, 1});
    std::string const errors = errorsOf([&] {
        EXPECT_TRUE(chart.layout.writeOutputImagesEPS(chart.folder.pathOf("missing/")));
        EXPECT_TRUE(chart.layout.writeOutputImagesTIFF(chart.folder.pathOf("missing/")));
    });
    EXPECT_EQ(errors, "");
    EXPECT_THAT(chart.files(), IsEmpty());
}

TEST(SheetFiles, OfferEpsTiffAndPdf)
{
    ASSERT_EQ(std::size(imageKinds), 3U);
    EXPECT_STREQ(imageKinds[0]->name, "eps");
    EXPECT_STREQ(imageKinds[0]->suffix, ".eps");
    EXPECT_STREQ(imageKinds[1]->name, "tiff");
    EXPECT_STREQ(imageKinds[1]->suffix, ".tif");
    EXPECT_STREQ(imageKinds[2]->name, "pdf");
    EXPECT_STREQ(imageKinds[2]->suffix, ".pdf");
    EXPECT_EQ(imageKinds[0], &epsImages);
    EXPECT_EQ(imageKinds[1], &tiffImages);
    EXPECT_EQ(imageKinds[2], &pdfImages);
}

TEST(SheetFiles, PutTheNumberAndSuffixAfterTheName)
{
    EXPECT_EQ(sheetFileName(epsImages, String("Name"), 1), "Name_001.eps");
    EXPECT_EQ(sheetFileName(tiffImages, String("50 %d"), 1000), "50 %d_1000.tif");
    EXPECT_EQ(sheetFileName(pdfImages, String("Name"), 1), "Name.pdf");
}

TEST(SheetFiles, HaveNoFaultIfTheyAreWritten)
{
    RulerChart const chart(greyEntries(6), {2, 1});
    for (ImageKind const* kind : imageKinds)
        EXPECT_FALSE(writeSheets(*kind, chart.layout, chart.folder.pathWithSlash()));
    EXPECT_THAT(chart.files(), ElementsAre("Chart.pdf", "Chart_001.eps", "Chart_001.tif", "Chart_002.eps",
                                           "Chart_002.tif", "Chart_003.eps", "Chart_003.tif"));
}

TEST(SheetFiles, TheFirstFaultNamesPathAndError)
{
    // Sheets 3 and 2 cannot be written. Sheet 1 is written all the same.
    RulerChart const chart(greyEntries(6), {2, 1});
    std::vector<ImageKind const*> const kinds = {&epsImages, &tiffImages};
    for (ImageKind const* kind : kinds)
        for (int const number : {2, 3})
            std::filesystem::create_directory(chart.folder.path() /
                                              textOf(sheetFileName(*kind, String("Chart"), number)));
    for (ImageKind const* kind : kinds) {
        auto const fault = writeSheets(*kind, chart.layout, chart.folder.pathWithSlash());
        ASSERT_TRUE(fault);
        EXPECT_EQ(textOf(fault->path), textOf(chart.folder.pathWithSlash() + sheetFileName(*kind, String("Chart"), 3)));
        EXPECT_EQ(fault->error, EISDIR);
        EXPECT_TRUE(std::filesystem::is_regular_file(chart.fileOf(1, kind->suffix + 1)));
    }
}

TEST(SheetFiles, AreLeftOutWhenTheCallbackReturnsFalse)
{
    RulerChart const chart(greyEntries(6), {2, 1});
    int calls = 0;
    EXPECT_FALSE(writeSheets(epsImages, chart.layout, chart.folder.pathWithSlash(), [&] { return ++calls < 2; }));
    EXPECT_THAT(chart.files(), ElementsAre("Chart_003.eps"));
}

TEST(SheetFiles, HoldSheetsOfAnySizeInEpsOnly)
{
    SheetOptions const plain;
    auto const frameOfSize = [](double width, double height) {
        SheetFrame frame{};
        frame.size = {width, height};
        return frame;
    };
    EXPECT_TRUE(epsImages.canHold(frameOfSize(1e6, 1e6), CMYK, plain));
    EXPECT_TRUE(pdfImages.canHold(frameOfSize(5080, 5080), CMYK, plain));
    EXPECT_FALSE(pdfImages.canHold(frameOfSize(5080.001, 1), CMYK, plain));
    EXPECT_FALSE(pdfImages.canHold(frameOfSize(1, 5080.001), RGB, plain));
    // 3000 mm at 300 dots per inch are 35,433 pixels: 3.8 GB in three channels and 5 GB in four.
    EXPECT_TRUE(tiffImages.canHold(frameOfSize(3000, 3000), RGB, plain));
    EXPECT_FALSE(tiffImages.canHold(frameOfSize(3000, 3000), CMYK, plain));
    EXPECT_TRUE(tiffImages.canHold(frameOfSize(3000, 3000), CMYK, {{300, TIFFCompression::lzw}, false}));
    EXPECT_TRUE(tiffImages.canHold(frameOfSize(3000, 3000), CMYK, {{200, TIFFCompression::none}, false}));
    EXPECT_FALSE(tiffImages.canHold(frameOfSize(3000, 3000), CMYK, {{2400, TIFFCompression::deflate}, false}));
}

TEST(SheetFiles, HaveMarksOnlyIfTheyAreAskedFor)
{
    RulerChart const chart(greyEntries(2), {2, 1});
    NumberedSheet const sheet = sheetsOf(chart.layout).at(0);
    SheetFrame const frame = frameOf(sheet, chart.layout, {});
    EXPECT_FALSE(frame.scaleMark.across);
    EXPECT_FALSE(frame.scaleMark.up);
}

TEST(SheetFiles, AFaultOfADocumentNamesItsPathAndError)
{
    RulerChart const chart(greyEntries(6), {2, 1});
    std::filesystem::create_directory(chart.folder.path() / "Chart.pdf");
    FileFault const fault =
        writeSheets(pdfImages, chart.layout, chart.folder.pathWithSlash()).value_or(FileFault{String(), 0});
    EXPECT_EQ(textOf(fault.path), textOf(chart.folder.pathOf("Chart.pdf")));
    EXPECT_EQ(fault.error, EISDIR);
}

TEST(SheetFiles, AreDrawnTheSameWayInEveryOptionButForTheMarks)
{
    RulerChart const chart(greyEntries(6), {2, 1});
    String const folder = chart.folder.pathWithSlash();
    ASSERT_FALSE(writeSheets(epsImages, chart.layout, folder));
    std::string const plain = bytesOf(chart.fileOf(1, "eps"));
    ASSERT_FALSE(writeSheets(epsImages, chart.layout, folder, {}, {{600, TIFFCompression::lzw}, false}));
    EXPECT_EQ(bytesOf(chart.fileOf(1, "eps")), plain);
}
