// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvTIFFFile.h"

#include "support/CapturedOutput.h"
#include "support/FileSizeLimit.h"
#include "support/GeometryValues.h"
#include "support/TIFFFileTest.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace
{

namespace fs = std::filesystem;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;

using Bytes = std::vector<unsigned char>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// The tags of the first directory of a little-endian file, in their order.
std::vector<int> tagsOf(std::string const& file)
{
    auto const number = [&](std::size_t at, int bytes) {
        std::size_t value = 0;
        for (int i = bytes; i-- > 0;)
            value = value << 8 | static_cast<unsigned char>(file.at(at + static_cast<std::size_t>(i)));
        return value;
    };
    std::size_t const directory = number(4, 4);
    std::vector<int> tags;
    for (std::size_t i = 0; i < number(directory, 2); ++i)
        tags.push_back(static_cast<int>(number(directory + 2 + i * 12, 2)));
    return tags;
}

} // namespace

TEST_F(TIFFFileTest, GivesAnA4PageItsPixels)
{
    {
        TIFFFile file(name, {210, 297});
        file.setColorSpace(CMYK);
        file.setResolution(300);
        file.startPage("page");
        file.endPage();
    }
    ReadBack const image(path);
    ASSERT_TRUE(image.isImage());
    EXPECT_EQ(image.width, 2480u);
    EXPECT_EQ(image.height, 3507u);
    EXPECT_EQ(image.floatTag(TIFFTAG_XRESOLUTION), 300);
    EXPECT_EQ(image.floatTag(TIFFTAG_YRESOLUTION), 300);
    EXPECT_EQ(image.shortTag(TIFFTAG_RESOLUTIONUNIT), RESUNIT_INCH);
}

TEST_F(TIFFFileTest, WritesCMYKAsFourSeparatedInks)
{
    drawPage(CMYK, 3, 2, [](TIFFFile&) {});
    ReadBack const image(path);
    ASSERT_TRUE(image.isImage());
    EXPECT_EQ(image.shortTag(TIFFTAG_SAMPLESPERPIXEL), 4);
    EXPECT_EQ(image.shortTag(TIFFTAG_INKSET), INKSET_CMYK);
    EXPECT_EQ(image.shortTag(TIFFTAG_PHOTOMETRIC), PHOTOMETRIC_SEPARATED);
    EXPECT_EQ(image.shortTag(TIFFTAG_BITSPERSAMPLE), 8);
    EXPECT_EQ(image.shortTag(TIFFTAG_COMPRESSION), COMPRESSION_NONE);
    EXPECT_EQ(image.shortTag(TIFFTAG_PLANARCONFIG), PLANARCONFIG_CONTIG);
    EXPECT_THAT(tagsOf(contentsOf(path)), ElementsAre(256, 257, 258, 259, 262, 273, 277, 279, 282, 283, 284, 296, 332));
}

TEST_F(TIFFFileTest, WritesRGBAsThreeSamples)
{
    drawPage(RGB, 3, 2, [](TIFFFile&) {});
    ReadBack const image(path);
    ASSERT_TRUE(image.isImage());
    EXPECT_EQ(image.shortTag(TIFFTAG_SAMPLESPERPIXEL), 3);
    EXPECT_EQ(image.shortTag(TIFFTAG_PHOTOMETRIC), PHOTOMETRIC_RGB);
    EXPECT_EQ(image.shortTag(TIFFTAG_INKSET), -1);
    EXPECT_THAT(tagsOf(contentsOf(path)), ElementsAre(256, 257, 258, 259, 262, 273, 277, 279, 282, 283, 284, 296));
}

TEST_F(TIFFFileTest, HoldsTheWholeImageInOneStrip)
{
    drawPage(CMYK, 300, 200, [](TIFFFile&) {});
    ReadBack const image(path);
    ASSERT_TRUE(image.isImage());
    EXPECT_EQ(image.strips, 1u);
    EXPECT_EQ(image.raw.size(), 300u * 200 * 4);
    EXPECT_EQ(image.rawSize, 300 * 200 * 4);
}

TEST_F(TIFFFileTest, IsDescribedByAnotherProgram)
{
    drawPage(CMYK, 300, 200, [](TIFFFile&) {});
    std::string const report = (folder.path() / "report").string();
    ASSERT_EQ(std::system(("tiffinfo -s '" + path.string() + "' > '" + report + "' 2>&1").c_str()), 0);
    std::string const text = contentsOf(report);
    EXPECT_THAT(text, HasSubstr("  Image Width: 300 Image Length: 200\n"
                                "  Resolution: 254, 254 pixels/inch\n"
                                "  Bits/Sample: 8\n"
                                "  Compression Scheme: None\n"
                                "  Photometric Interpretation: separated\n"
                                "  Samples/Pixel: 4\n"
                                "  Planar Configuration: single image plane\n"
                                "  InkSet: 1\n"
                                "  1 Strips:\n"
                                "      0: [       8,   240000]\n"));
    EXPECT_THAT(text, testing::Not(HasSubstr("arning")));
}

TEST_F(TIFFFileTest, IsShownInItsColoursByAnotherReader)
{
    drawPage(RGB, 2, 2, [](TIFFFile& file) {
        file.setRGB(1, 0, 0);
        file.drawRectangle(pixelRect(0, 1, 1, 1));
        file.setRGB(0, 1, 0);
        file.drawRectangle(pixelRect(1, 1, 1, 1));
        file.setRGB(0, 0, 1);
        file.drawRectangle(pixelRect(0, 0, 1, 1));
    });
    EXPECT_THAT(ReadBack(path).rgba(), ElementsAre(0xff0000ff, 0xff00ff00, 0xffff0000, 0xff000000));
    drawPage(CMYK, 2, 2, [](TIFFFile& file) {
        file.setCMYK(1, 0, 0, 0);
        file.drawRectangle(pixelRect(0, 1, 1, 1));
        file.setCMYK(0, 0, 1, 0);
        file.drawRectangle(pixelRect(1, 1, 1, 1));
        file.setCMYK(0, 0, 0, 1);
        file.drawRectangle(pixelRect(0, 0, 1, 1));
    });
    EXPECT_THAT(ReadBack(path).rgba(), ElementsAre(0xffffff00, 0xff00ffff, 0xff000000, 0xffffffff));
}

TEST_F(TIFFFileTest, IsTheSameFileEveryTime)
{
    auto const draw = [](TIFFFile& file) { file.drawRectangle(pixelRect(1, 1, 3, 1)); };
    drawPage(CMYK, 6, 4, draw);
    std::string const first = contentsOf(path);
    drawPage(CMYK, 6, 4, draw);
    EXPECT_EQ(contentsOf(path), first);
}

TEST_F(TIFFFileTest, FindsThePixelOfAPosition)
{
    TIFFFile file(name, {210, 297});
    file.setResolution(300);
    EXPECT_EQ(file.getSafeIntCoord({1, 2}), (IntPos{11, 23}));
    EXPECT_EQ(file.getSafeIntCoord({0, -0.01}), (IntPos{0, -1}));
    EXPECT_EQ(file.getSafeIntCoord({1e9, -1e9}), (IntPos{2147483647, INT_NOPOS}));
    EXPECT_EQ(file.getSafeIntCoord({infinity, REAL_NOPOS}), (IntPos{2147483647, INT_NOPOS}));
    EXPECT_EQ(file.getSafeIntCoord({notANumber, notANumber}), (IntPos{0, 0}));
}

TEST_F(TIFFFileTest, AddressesPixelsFromTheTopLeft)
{
    drawPage(CMYK, 5, 4, [](TIFFFile& file) {
        auto const* const first = file.getBufPtr({0, 3});
        EXPECT_EQ(file.getBufPtr({2, 3}), first + 8);
        EXPECT_EQ(file.getBufPtr({0, 2}), first + 20);
        EXPECT_EQ(file.getBufPtr({4, 0}), first + 76);
        EXPECT_EQ(file.getBufPtr({9, -9}), first + 76);
        EXPECT_EQ(file.getBufPtr({-1, 4}), first);
        EXPECT_EQ(file.getBufPtr({INT_NOPOS, INT_NOPOS}), first + 60);
        *file.getBufPtr({1, 2}) = 99;
    });
    EXPECT_EQ(ReadBack(path).raw.at(24), 99);
}

TEST_F(TIFFFileTest, AddressesASparePixelWithoutAPage)
{
    TIFFFile file(name, {1, 1});
    std::fill_n(file.getBufPtr({5, 5}), 4, static_cast<unsigned char>(1));
    EXPECT_EQ(file.getBufPtr({0, 0}), file.getBufPtr({INT_NOPOS, 7}));
}

TEST_F(TIFFFileTest, MayBeReadByAllAndWrittenByItsOwner)
{
    auto const previous = umask(0);
    drawPage(RGB, 2, 2, [](TIFFFile&) {});
    umask(previous);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms{0644});
}

TEST_F(TIFFFileTest, ReplacesAFileOfTheSameName)
{
    drawPage(RGB, 2, 2, [](TIFFFile&) {});
    auto const size = fs::file_size(path);
    folder.write("page.tif", std::string(100'000, 'x'));
    drawPage(RGB, 2, 2, [](TIFFFile&) {});
    EXPECT_EQ(fs::file_size(path), size);
    EXPECT_TRUE(ReadBack(path).isImage());
}

TEST_F(TIFFFileTest, SaysNothingOfAFileThatCannotBeCreated)
{
    name = folder.pathOf("missing/page.tif");
    EXPECT_EQ(errorsOf([&] {
                  drawPage(CMYK, 5, 5, [](TIFFFile& file) { file.drawRectangle(pixelRect(0, 0, 5, 5)); });
                  TIFFFile file(name, {1e6, 1e6});
                  file.setColorSpace(CMYK);
                  file.setResolution(300);
                  file.startPage("page");
                  file.endPage();
              }),
              "");
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(TIFFFileTest, LeavesNoFileOfAPageTooLargeForTheFormat)
{
    for (RealSize const size : {RealSize{5000, 5000}, RealSize{1e9, 1}, RealSize{1e300, infinity}}) {
        EXPECT_EQ(errorsOf([&] {
                      TIFFFile file(name, size);
                      file.setColorSpace(CMYK);
                      file.setResolution(300);
                      file.startPage("page");
                      file.drawRectangle({0, 0, 10, 10});
                      file.drawText({0, 0}, "text");
                      file.endPage();
                  }),
                  "Page too large for a TIFF file.\n\r");
        EXPECT_TRUE(fs::is_empty(folder.path()));
    }
}

TEST_F(TIFFFileTest, LeavesNoFileOfAPageWithoutPixels)
{
    auto const draw = [&](RealSize size, ColorSpace colorSpace, double resolution) {
        EXPECT_EQ(errorsOf([&] {
                      TIFFFile file(name, size);
                      file.setColorSpace(colorSpace);
                      file.setResolution(resolution);
                      file.startPage("page");
                      file.setCMYK(1, 1, 1, 1);
                      file.drawRectangle({0, 0, 10, 10});
                      file.drawText({0, 0}, "text");
                      file.endPage();
                  }),
                  "");
        EXPECT_TRUE(fs::is_empty(folder.path()));
    };
    draw({0, 10}, CMYK, 300);
    draw({10, 0.01}, RGB, 300);
    draw({-10, -10}, CMYK, 300);
    draw({notANumber, 10}, CMYK, 300);
    draw({REAL_NOPOS, REAL_NOPOS}, CMYK, 300);
    draw({10, 10}, CMYK, 0);
    draw({10, 10}, CMYK, -300);
    draw({10, 10}, CMYK, notANumber);
    draw({10, 10}, undefined, 300);
    draw({10, 10}, static_cast<ColorSpace>(7), 300);
}

TEST_F(TIFFFileTest, DrawsNothingBeforeTheResolutionIsSet)
{
    EXPECT_EQ(errorsOf([&] {
                  TIFFFile file(name, {10, 10});
                  file.drawRectangle({0, 0, 10, 10});
                  file.drawText({0, 0}, "text");
                  EXPECT_EQ(file.getSafeIntCoord({5, 5}), (IntPos{0, 0}));
                  file.setColorSpace(RGB);
                  file.startPage("page");
                  file.drawRectangle({0, 0, 10, 10});
                  file.drawText({0, 0}, "text");
                  file.endPage();
              }),
              "");
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(TIFFFileTest, DrawsOnlyBetweenTheStartAndTheEndOfThePage)
{
    {
        TIFFFile file(name, pixelSize(2, 2));
        file.setColorSpace(RGB);
        file.setResolution(tenPerMillimetre);
        file.setRGB(1, 1, 1);
        file.drawRectangle(pixelRect(0, 0, 2, 2));
        file.startPage("page");
        file.endPage();
        file.drawRectangle(pixelRect(0, 0, 2, 2));
        file.drawText({0, 0}, "text");
        file.endPage();
    }
    EXPECT_EQ(ReadBack(path).raw, Bytes(12, 0));
}

TEST_F(TIFFFileTest, KeepsItsSizeAndColourSpaceOnceThePageHasStarted)
{
    {
        TIFFFile file(name, pixelSize(2, 2));
        file.setColorSpace(RGB);
        file.setResolution(tenPerMillimetre);
        file.startPage("page");
        file.setResolution(2540);
        file.setColorSpace(CMYK);
        file.setRGB(1, 1, 1);
        file.drawRectangle(pixelRect(0, 0, 1, 2));
        file.endPage();
        file.setResolution(25.4);
        file.setColorSpace(CMYK);
    }
    ReadBack const image(path);
    ASSERT_TRUE(image.isImage());
    EXPECT_EQ(image.width, 2u);
    EXPECT_EQ(image.height, 2u);
    EXPECT_EQ(image.raw, (Bytes{255, 255, 255, 0, 0, 0, 255, 255, 255, 0, 0, 0}));
}

TEST_F(TIFFFileTest, TakesTheLastSettingBeforeThePage)
{
    {
        TIFFFile file(name, {10, 10});
        file.setColorSpace(CMYK);
        file.setResolution(300);
        file.setColorSpace(RGB);
        file.setResolution(25.5);
        file.startPage("page");
        file.endPage();
    }
    ReadBack const image(path);
    ASSERT_TRUE(image.isImage());
    EXPECT_EQ(image.width, 10u);
    EXPECT_EQ(image.raw.size(), 300u);
}

TEST_F(TIFFFileTest, HoldsThePageDrawnLast)
{
    {
        TIFFFile file(name, pixelSize(2, 1));
        file.setColorSpace(RGB);
        file.setResolution(tenPerMillimetre);
        file.setRGB(1, 1, 1);
        file.startPage("first");
        file.drawRectangle(pixelRect(0, 0, 1, 1));
        file.endPage();
        file.startPage("second");
        file.drawRectangle(pixelRect(1, 0, 1, 1));
        file.endPage();
    }
    EXPECT_EQ(ReadBack(path).raw, (Bytes{0, 0, 0, 255, 255, 255}));
}

TEST_F(TIFFFileTest, LeavesNoFileOfAPageThatWasNotEnded)
{
    EXPECT_EQ(errorsOf([&] {
                  TIFFFile file(name, {10, 10});
                  file.setColorSpace(RGB);
                  file.setResolution(300);
                  file.startPage("page");
              }),
              "");
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(TIFFFileTest, IsNoImageWithoutAPage)
{
    {
        TIFFFile file(name, {10, 10});
        file.setColorSpace(RGB);
        file.setResolution(300);
    }
    TIFFErrorHandler const previous = TIFFSetErrorHandler(nullptr);
    EXPECT_FALSE(ReadBack(path).isImage());
    TIFFSetErrorHandler(previous);
}

TEST_F(TIFFFileTest, LeavesNoFileOnAFullDisk)
{
    // A page has 30000 bytes. The disk is full within the image, or within the tags.
    for (rlim_t const room : {10'000u, 30'020u}) {
        EXPECT_EQ(errorsOf([&] {
                      FileSizeLimit const limit(room);
                      drawPage(RGB, 100, 100, [](TIFFFile&) {});
                  }),
                  "TIFF file could not be written.\n\r")
            << room;
        EXPECT_TRUE(fs::is_empty(folder.path())) << room;
    }
}

TEST_F(TIFFFileTest, LeavesNoFileOnADiskTooFullForItsHeader)
{
    // The limit also cuts off the file that captures the message.
    EXPECT_EQ(errorsOf([&] {
                  FileSizeLimit const limit(4);
                  drawPage(RGB, 100, 100, [](TIFFFile&) {});
              }),
              "TIFF");
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(TIFFFileTest, IsOnDiskOnceItIsClosed)
{
    drawPage(RGB, 6, 4, [](TIFFFile&) {});
    std::string const expected = contentsOf(path);
    TIFFFile file(name, pixelSize(6, 4));
    file.setColorSpace(RGB);
    file.setResolution(tenPerMillimetre);
    file.startPage("page");
    file.endPage();
    file.Close();
    EXPECT_FALSE(file.hasFailed());
    EXPECT_EQ(contentsOf(path), expected);
    file.setResolution(300);
    file.startPage("page");
    file.endPage();
    file.Close();
    EXPECT_EQ(contentsOf(path), expected);
}

TEST_F(TIFFFileTest, IsTheSameFileWhenItIsPutOnItsDiskFirst)
{
    drawPage(CMYK, 6, 4, [](TIFFFile&) {});
    std::string const expected = contentsOf(path);
    {
        TIFFFile file(name, pixelSize(6, 4));
        file.setColorSpace(CMYK);
        file.setResolution(tenPerMillimetre);
        file.startPage("page");
        EXPECT_FALSE(file.sync()); // the page is not ended
        file.endPage();
        EXPECT_TRUE(file.sync());
        EXPECT_EQ(contentsOf(path), expected);
        EXPECT_TRUE(file.sync());
        file.Close();
        EXPECT_FALSE(file.sync());
        EXPECT_FALSE(file.hasFailed());
    }
    EXPECT_EQ(contentsOf(path), expected);
}

TEST_F(TIFFFileTest, HasFailedWhereItCannotBeCreated)
{
    TIFFFile file(folder.pathOf("missing/page.tif"), {1, 1});
    EXPECT_TRUE(file.hasFailed());
    EXPECT_FALSE(file.sync());
    file.Close();
    EXPECT_TRUE(file.hasFailed());
}

TEST_F(TIFFFileTest, HasFailedOnAFullDisk)
{
    for (rlim_t const room : {10'000u, 30'020u}) {
        errorsOf([&] {
            FileSizeLimit const limit(room);
            TIFFFile file(name, pixelSize(100, 100));
            file.setColorSpace(RGB);
            file.setResolution(tenPerMillimetre);
            file.startPage("page");
            file.endPage();
            file.Close();
            EXPECT_TRUE(file.hasFailed()) << room;
        });
    }
}

TEST_F(TIFFFileTest, CannotBePutOnADiskTooFullForItsTags)
{
    errorsOf([&] {
        FileSizeLimit const limit(30'020);
        TIFFFile file(name, pixelSize(100, 100));
        file.setColorSpace(RGB);
        file.setResolution(tenPerMillimetre);
        file.startPage("page");
        file.endPage();
        EXPECT_FALSE(file.hasFailed());
        EXPECT_FALSE(file.sync());
        EXPECT_TRUE(file.hasFailed());
    });
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(TIFFFileTest, HasFailedWhenItsPageIsNotEndedOrHasNoPixels)
{
    TIFFFile unfinished(name, {10, 10});
    unfinished.setColorSpace(RGB);
    unfinished.setResolution(300);
    unfinished.startPage("page");
    EXPECT_FALSE(unfinished.hasFailed());
    unfinished.Close();
    EXPECT_TRUE(unfinished.hasFailed());

    TIFFFile empty(name, {0, 10});
    empty.setColorSpace(RGB);
    empty.setResolution(300);
    empty.startPage("page");
    EXPECT_TRUE(empty.hasFailed());
}

TEST_F(TIFFFileTest, LeavesThePrintingOfMessagesToOtherUsersOfTheLibrary)
{
    drawPage(RGB, 2, 2, [](TIFFFile&) {});
    EXPECT_THAT(errorsOf([] { EXPECT_FALSE(TIFFOpen("/missing/page.tif", "r")); }), HasSubstr("/missing/page.tif"));
}
