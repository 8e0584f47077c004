// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SheetMeasures.h"

#include "lib/OvTIFFFile.h"
#include "support/ChartCase.h"
#include "support/RulerChart.h"
#include "support/TemporaryFolder.h"
#include "support/TestChart.h"

#include <gtest/gtest.h>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

// The measures of a written sheet of two columns and three rows.
void expectMeasures(RealSize gap)
{
    RulerChart chart(greyEntries(6), {2, 3}, gap);
    chart.drawn();
    auto const found = sheetMeasures(bytesOf(chart.fileOf(1, "eps")));
    EXPECT_TRUE(found);
    SheetMeasures const measures = found.value_or(SheetMeasures{});
    EXPECT_NEAR(measures.size.width, chart.sheet().getSize().width, 1e-5);
    EXPECT_NEAR(measures.size.height, chart.sheet().getSize().height, 1e-5);
    RealRect const block = chart.sheet().getContentRect();
    EXPECT_NEAR(measures.block.x, block.x, 1e-5);
    EXPECT_NEAR(measures.block.y, block.y, 1e-5);
    EXPECT_NEAR(measures.block.width, block.width, 1e-5);
    EXPECT_NEAR(measures.block.height, block.height, 1e-5);
}

} // namespace

TEST(SheetMeasures, AreThoseOfTheWrittenSheet)
{
    expectMeasures({0, 0});
}

TEST(SheetMeasures, AreThoseOfASheetWithGaps)
{
    expectMeasures({0, 1});
}

TEST(SheetMeasures, OfOtherTextsAreNone)
{
    EXPECT_FALSE(sheetMeasures(""));
    EXPECT_FALSE(sheetMeasures("II*"));
    EXPECT_FALSE(sheetMeasures("%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 100 100\n"));
    EXPECT_FALSE(sheetMeasures("%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 nan 100\nnewpath 1 2 moveto fill"));
}

TEST(SheetMeasures, OfACutFileAreNone)
{
    RulerChart chart(greyEntries(6), {2, 3});
    chart.drawn();
    std::string const bytes = bytesOf(chart.fileOf(1, "eps"));
    for (std::size_t length = 0; length < 900; length += 7)
        EXPECT_FALSE(sheetMeasures(std::string_view(bytes).substr(0, length))) << length;
}

// 60 mm at 300 dots per inch are 708.66 pixels.
TEST(SheetMeasures, ATiffSheetHasItsSizeInWholePixels)
{
    TemporaryFolder const folder;
    TIFFFile file(folder.pathOf("sheet.tif"), {60, 30});
    file.setColorSpace(RGB);
    file.setResolution(300);
    file.startPage("");
    file.endPage();
    file.Close();
    RealSize const size = tiffSheetSize(folder.path() / "sheet.tif").value_or(RealSize{});
    EXPECT_NEAR(size.width, 708 * 25.4 / 300, 1e-6);
    EXPECT_NEAR(size.height, 354 * 25.4 / 300, 1e-6);
}

TEST(SheetMeasures, ATiffSheetMayHaveTheOtherByteOrder)
{
    TemporaryFolder const folder;
    std::string bytes = std::string("MM\0*", 4) + std::string("\0\0\0\x08\0\x04", 6);
    bytes += std::string("\x01\0\0\x03\0\0\0\x01\0\x64\0\0", 12);   // 100 pixels
    bytes += std::string("\x01\x01\0\x04\0\0\0\x01\0\0\0\xc8", 12); // 200 pixels
    bytes += std::string("\x01\x1a\0\x05\0\0\0\x01\0\0\0\x3e", 12); // at 62
    bytes += std::string("\x01\x1b\0\x05\0\0\0\x01\0\0\0\x3e", 12);
    bytes += std::string(4, '\0') + std::string("\0\0\0\x64\0\0\0\x01", 8); // 100 to an inch
    folder.write("sheet.tif", bytes);
    RealSize const size = tiffSheetSize(folder.path() / "sheet.tif").value_or(RealSize{});
    EXPECT_NEAR(size.width, 25.4, 1e-9);
    EXPECT_NEAR(size.height, 50.8, 1e-9);
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        folder.write("cut.tif", bytes.substr(0, length));
        EXPECT_FALSE(tiffSheetSize(folder.path() / "cut.tif")) << length;
    }
}

// 72 points are an inch.
TEST(SheetMeasures, APdfDocumentHasTheSizesOfItsPages)
{
    std::string const pdf = "%PDF-1.7\n4 0 obj\n<< /MediaBox [ 0 0 72 144 ] /Type /Page >>\nendobj\n"
                            "5 0 obj\n<< /MediaBox [ 0 0 36 7.2 ] /Type /Page >>\nendobj\n"
                            "8 0 obj\n<< /Length 9 >>\nstream\n/MediaBox [ 0 0 1 1 ]";
    auto const sizes = pdfSheetSizes(pdf);
    ASSERT_EQ(sizes.size(), 2U);
    EXPECT_NEAR(sizes[0].width, 25.4, 1e-9);
    EXPECT_NEAR(sizes[0].height, 50.8, 1e-9);
    EXPECT_NEAR(sizes[1].width, 12.7, 1e-9);
    EXPECT_NEAR(sizes[1].height, 2.54, 1e-9);
    EXPECT_TRUE(pdfSheetSizes("").empty());
    EXPECT_TRUE(pdfSheetSizes("/MediaBox [ 0 0 1 1 ]").empty());
    EXPECT_TRUE(pdfSheetSizes("%PDF-1.7 /MediaBox [ 0 0 ").empty());
}

TEST(SheetMeasures, AFileThatIsNoTiffHasNoSize)
{
    TemporaryFolder const folder;
    folder.write("text", "no picture at all");
    EXPECT_FALSE(tiffSheetSize(folder.path() / "text"));
    EXPECT_FALSE(tiffSheetSize(folder.path() / "missing"));
    EXPECT_FALSE(tiffSheetSize(folder.path()));
}
