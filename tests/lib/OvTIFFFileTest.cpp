// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvTIFFFile.h"

#include "Folders.h"
#include "support/CapturedOutput.h"
#include "support/FileSizeLimit.h"
#include "support/GeometryValues.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <tiffio.h>
#include <vector>

namespace
{

namespace fs = std::filesystem;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;

using Bytes = std::vector<unsigned char>;
using Rows = std::vector<std::string>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// At this resolution a millimetre has ten pixels.
constexpr double tenPerMillimetre = 254;

// A rectangle that covers `columns` x `rows` pixels; its edges lie in the middle of pixels, away from rounding.
RealRect pixelRect(double x, double y, double columns, double rows)
{
    return {(x + 0.5) / 10, (y + 0.5) / 10, columns / 10, rows / 10};
}

RealPos pixelPos(double x, double y)
{
    return {(x + 0.5) / 10, (y + 0.5) / 10};
}

RealSize pixelSize(double columns, double rows)
{
    return {(columns + 0.5) / 10, (rows + 0.5) / 10};
}

std::string contentsOf(fs::path const& path)
{
    std::ostringstream contents;
    contents << std::ifstream(path, std::ios::binary).rdbuf();
    return contents.str();
}

// What libtiff reads from a file.
class ReadBack
{
public:
    // "c" keeps libtiff from showing a strip as many small ones.
    explicit ReadBack(fs::path const& path) : handle(TIFFOpen(path.c_str(), "rc"))
    {
        if (!handle)
            return;
        TIFFGetField(handle, TIFFTAG_IMAGEWIDTH, &width);
        TIFFGetField(handle, TIFFTAG_IMAGELENGTH, &height);
        strips = TIFFNumberOfStrips(handle);
        raw.resize(static_cast<std::size_t>(TIFFStripSize(handle)));
        rawSize = TIFFReadRawStrip(handle, 0, raw.data(), static_cast<tmsize_t>(raw.size()));
    }
    ~ReadBack()
    {
        if (handle)
            TIFFClose(handle);
    }
    ReadBack(ReadBack const&) = delete;
    ReadBack& operator=(ReadBack const&) = delete;

    bool isImage() const { return handle; }

    // A tag's value of 16 bits; -1 where the file does not have it.
    int shortTag(std::uint32_t tag) const
    {
        std::uint16_t value = 0;
        return TIFFGetField(handle, tag, &value) ? value : -1;
    }

    float floatTag(std::uint32_t tag) const
    {
        float value = -1;
        TIFFGetField(handle, tag, &value);
        return value;
    }

    // The picture's pixels as other programs show them, from the top.
    std::vector<std::uint32_t> rgba() const
    {
        std::vector<std::uint32_t> pixels(std::size_t{width} * height);
        EXPECT_TRUE(TIFFReadRGBAImageOriented(handle, width, height, pixels.data(), ORIENTATION_TOPLEFT, 1));
        return pixels;
    }

    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t strips = 0;
    Bytes raw;
    long rawSize = -1;

private:
    TIFF* const handle;
};

// The tags of the first directory of a little-endian file, in its order.
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

// Glyphs of the test's own: a cell is background (any byte but 0) unless it is given ink.
class Glyphs
{
public:
    void ink(unsigned char character, int k, int r) { bytes[index(character, k, r)] = '\0'; }
    bool isInk(unsigned char character, int k, int r) const { return bytes[index(character, k, r)] == '\0'; }

    std::string bytes = std::string(1024 * 1024, '\1');

private:
    static std::size_t index(unsigned char character, int k, int r)
    {
        return static_cast<std::size_t>((character / 16 * 64 + r) * 1024 + character % 16 * 64 + k);
    }
};

class TIFFFileTest : public testing::Test
{
protected:
    TIFFFileTest() { respath = folder.pathWithSlash(); }
    ~TIFFFileTest() override { respath = resources; }

    void installGlyphs(Glyphs const& glyphs) { folder.write("ascii.raw", glyphs.bytes); }

    // Draws a page of whole pixels.
    template <typename Drawing>
    void drawPage(ColorSpace colorSpace, int columns, int rows, Drawing const& draw)
    {
        TIFFFile file(name, pixelSize(columns, rows));
        file.setColorSpace(colorSpace);
        file.setResolution(tenPerMillimetre);
        file.startPage("page");
        draw(file);
        file.endPage();
    }

    // Draws black on an RGB page of white and returns its rows from the top: '#' for black and '.' for white.
    template <typename Drawing>
    Rows picture(int columns, int rows, Drawing const& draw)
    {
        drawPage(RGB, columns, rows, [&](TIFFFile& file) {
            file.setRGB(1, 1, 1);
            file.drawRectangle(pixelRect(0, 0, columns, rows));
            file.setRGB(0, 0, 0);
            draw(file);
        });
        ReadBack const image(path);
        Rows lines;
        for (std::size_t i = 0; i < image.raw.size(); i += 3) {
            if (i % (image.width * 3) == 0)
                lines.emplace_back();
            Bytes const pixel(image.raw.begin() + static_cast<long>(i), image.raw.begin() + static_cast<long>(i) + 3);
            EXPECT_THAT(pixel, Each(pixel.front()));
            lines.back() += pixel.front() == 0 ? '#' : pixel.front() == 255 ? '.' : '?';
        }
        return lines;
    }

    // The bytes that a colour puts into a page of one pixel.
    template <typename Drawing>
    Bytes pixelOf(ColorSpace colorSpace, Drawing const& setColor)
    {
        drawPage(colorSpace, 1, 1, [&](TIFFFile& file) {
            setColor(file);
            file.drawRectangle(pixelRect(0, 0, 1, 1));
        });
        return ReadBack(path).raw;
    }

    TemporaryFolder folder;
    String name = folder.pathOf("page.tif");
    fs::path path = folder.path() / "page.tif";

private:
    String resources = respath;
};

// A page drawn pixel by pixel from the rules as they are told, with nothing outside the raster written.
class LiteralPage
{
public:
    LiteralPage(int columns, int rows, int bytesPerPixel)
        : width(columns), height(rows), channels(bytesPerPixel),
          raster(static_cast<std::size_t>(columns * rows * bytesPerPixel))
    {
    }

    void rectangle(RealRect r)
    {
        auto const [xmin, xmax] = std::minmax({pixel(r.x), pixel(r.x + r.width)});
        auto const [ymin, ymax] = std::minmax({pixel(r.y), pixel(r.y + r.height)});
        for (long y = ymin; y <= ymax - 1; ++y) {
            long const start =
                (height - 1 - std::clamp(y, 0L, height - 1)) * width + std::clamp(std::max(xmin, 0L), 0L, width - 1);
            for (long i = 0; i < xmax - xmin; ++i)
                put(start + i);
        }
    }

    void text(RealPos p, std::string const& characters, Glyphs const& glyphs)
    {
        for (std::size_t i = 0; i < characters.size(); ++i) {
            long const left = pixel(p.x) + 40 * static_cast<long>(i);
            long const bottom = pixel(p.y) - 24;
            for (int r = 0; r < 64; ++r)
                for (int k = 0; k < 64; ++k)
                    if (glyphs.isInk(static_cast<unsigned char>(characters[i]), k, 63 - r))
                        put((height - 1 - std::min(std::max(bottom + r, 0L), height - 1)) * width +
                            std::clamp(left + k, 0L, width - 1));
        }
    }

    std::array<unsigned char, 4> color = {};

    long const width;
    long const height;
    long const channels;
    Bytes raster;

private:
    static long pixel(double millimetres)
    {
        return static_cast<long>(std::floor(millimetres * tenPerMillimetre / 25.4));
    }

    void put(long index)
    {
        if (index < width * height)
            std::copy_n(color.begin(), channels, raster.begin() + index * channels);
    }
};

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

TEST_F(TIFFFileTest, StartsWithEveryChannelAtZero)
{
    drawPage(CMYK, 30, 20, [](TIFFFile&) {});
    EXPECT_THAT(ReadBack(path).raw, Each(0));
}

TEST_F(TIFFFileTest, CoversElevenColumnsWithAMillimetreAtTheLeftEdge)
{
    {
        TIFFFile file(name, {2, 1});
        file.setColorSpace(RGB);
        file.setResolution(300);
        file.startPage("page");
        file.setRGB(1, 1, 1);
        file.drawRectangle({0, 0, 1, 1});
        file.endPage();
    }
    ReadBack const image(path);
    ASSERT_EQ(image.width, 23u);
    ASSERT_EQ(image.height, 11u);
    for (std::size_t row = 0; row < 11; ++row)
        for (std::size_t column = 0; column < 23; ++column)
            EXPECT_EQ(image.raw[(row * 23 + column) * 3], column < 11 ? 255 : 0) << column << ", " << row;
}

TEST_F(TIFFFileTest, FillsTheRowsBetweenTheEdgesOfARectangle)
{
    EXPECT_EQ(picture(6, 4, [](TIFFFile& file) { file.drawRectangle(pixelRect(1, 0, 3, 2)); }),
              (Rows{"......", "......", ".###..", ".###.."}));
}

TEST_F(TIFFFileTest, TakesTheCornersOfARectangleInEitherOrder)
{
    EXPECT_EQ(picture(6, 4, [](TIFFFile& file) { file.drawRectangle(pixelRect(4, 2, -3, -2)); }),
              (Rows{"......", "......", ".###..", ".###.."}));
}

TEST_F(TIFFFileTest, LeavesNeitherGapNorOverlapBetweenNeighbours)
{
    {
        TIFFFile file(name, {20, 1});
        file.setColorSpace(RGB);
        file.setResolution(300);
        file.startPage("page");
        for (int i = 0; i < 10; ++i) {
            file.setRGB((i + 1) / 255.0, 0, 0);
            file.drawRectangle({i * 2.0, 0, 2, 1});
        }
        file.endPage();
    }
    ReadBack const image(path);
    ASSERT_EQ(image.width, 236u);
    for (std::size_t column = 0; column < 236; ++column) {
        // The rectangle whose first column, 2 i mm at 300 dots per inch taken down, is the last one not past this.
        std::size_t i = 9;
        while (i * 2 * 3000 / 254 > column)
            --i;
        EXPECT_EQ(image.raw[column * 3], i + 1) << column;
    }
}

TEST_F(TIFFFileTest, DrawsNothingBetweenEqualEdges)
{
    EXPECT_EQ(picture(4, 3,
                      [](TIFFFile& file) {
                          file.drawRectangle(pixelRect(1, 1, 2, 0));
                          file.drawRectangle(pixelRect(1, 1, 0, 2));
                      }),
              (Rows{"....", "....", "...."}));
}

TEST_F(TIFFFileTest, StartsARectangleFromTheLeftInTheFirstColumnWithAllItsWidth)
{
    EXPECT_EQ(picture(6, 3, [](TIFFFile& file) { file.drawRectangle(pixelRect(-2, 1, 3, 1)); }),
              (Rows{"......", "###...", "......"}));
}

TEST_F(TIFFFileTest, RunsOnInTheRowBelowPastTheRightEdge)
{
    EXPECT_EQ(picture(6, 4, [](TIFFFile& file) { file.drawRectangle(pixelRect(4, 1, 5, 2)); }),
              (Rows{"......", "....##", "###.##", "###..."}));
    EXPECT_EQ(picture(6, 3, [](TIFFFile& file) { file.drawRectangle(pixelRect(9, 2, 2, 1)); }),
              (Rows{".....#", "#.....", "......"}));
    EXPECT_EQ(picture(6, 2, [](TIFFFile& file) { file.drawRectangle(pixelRect(4, 0, 5, 1)); }),
              (Rows{"......", "....##"}));
}

TEST_F(TIFFFileTest, PutsRowsAboveAndBelowThePageOntoItsEdges)
{
    EXPECT_EQ(picture(4, 4, [](TIFFFile& file) { file.drawRectangle(pixelRect(1, 3, 2, 5)); }),
              (Rows{".##.", "....", "....", "...."}));
    EXPECT_EQ(picture(4, 4, [](TIFFFile& file) { file.drawRectangle(pixelRect(1, 9, 2, 1)); }),
              (Rows{".##.", "....", "....", "...."}));
    EXPECT_EQ(picture(4, 4, [](TIFFFile& file) { file.drawRectangle(pixelRect(1, -5, 2, 3)); }),
              (Rows{"....", "....", "....", ".##."}));
}

TEST_F(TIFFFileTest, DrawsHugeRectanglesAtOnce)
{
    auto const at = [&](RealRect r) { return picture(4, 3, [=](TIFFFile& file) { file.drawRectangle(r); }); };
    EXPECT_EQ(at({-1, -5e8, 1e9, 1e9}), (Rows{"####", "####", "####"}));
    EXPECT_EQ(at({-1, -5e299, 1e300, 1e300}), (Rows{"####", "####", "####"}));
    EXPECT_EQ(at({0.25, 0.15, infinity, infinity}), (Rows{"..##", "####", "####"}));
    // Below the page there is only its last row; every run starts in its first column.
    EXPECT_EQ(at({0.25, 0.15, -infinity, -infinity}), (Rows{"....", "....", "####"}));
}

TEST_F(TIFFFileTest, TakesWhatIsNotANumberForTheFirstPixel)
{
    EXPECT_EQ(picture(4, 3,
                      [](TIFFFile& file) {
                          file.drawRectangle({notANumber, notANumber, 1, 1});
                      }),
              (Rows{"....", "....", "...."}));
    EXPECT_EQ(picture(4, 3,
                      [](TIFFFile& file) {
                          file.drawRectangle({0.25, 0.15, notANumber, notANumber});
                      }),
              (Rows{"....", "....", "##.."}));
    EXPECT_EQ(picture(4, 3,
                      [](TIFFFile& file) {
                          file.drawRectangle({-infinity, 0.15, infinity, 0.1});
                      }),
              (Rows{"....", "####", "####"}));
}

TEST_F(TIFFFileTest, DrawsAGlyphFromItsCell)
{
    Glyphs glyphs;
    glyphs.ink('A', 0, 63); // the cell's lower left corner
    glyphs.ink('A', 1, 63);
    glyphs.ink('A', 63, 62);
    glyphs.ink('A', 5, 0);
    glyphs.ink('B', 0, 0);
    glyphs.ink('Q', 0, 0);
    installGlyphs(glyphs);
    Rows expected(70, std::string(70, '.'));
    expected[69 - 1][2] = expected[69 - 1][3] = '#';
    expected[69 - 2][65] = '#';
    expected[69 - 64][7] = '#';
    EXPECT_EQ(picture(70, 70, [](TIFFFile& file) { file.drawText(pixelPos(2, 25), "A"); }), expected);
}

TEST_F(TIFFFileTest, SetsGlyphsFortyPixelsApart)
{
    Glyphs glyphs;
    glyphs.ink('1', 3, 63);
    glyphs.ink('2', 4, 63);
    glyphs.ink(0xff, 5, 63);
    installGlyphs(glyphs);
    Rows expected(1, std::string(100, '.'));
    expected[0][3] = expected[0][44] = expected[0][85] = '#';
    EXPECT_EQ(picture(100, 1, [](TIFFFile& file) { file.drawText(pixelPos(0, 24), "12\xff"); }), expected);
}

TEST_F(TIFFFileTest, DrawsTheLowestRowsOfATextAtTheBottomOntoRowZero)
{
    Glyphs glyphs;
    for (int r = 0; r < 64; ++r)
        glyphs.ink('/', r, 63 - r); // a diagonal that rises to the right
    installGlyphs(glyphs);
    // With Y = -24 rows 0 to 24 of the cell fall on row 0, row 25 on row 1 and so on.
    Rows expected(3, std::string(30, '.'));
    expected[2] = "#########################.....";
    expected[1][25] = '#';
    expected[0] = "..........................####";
    EXPECT_EQ(picture(30, 3, [](TIFFFile& file) { file.drawText(pixelPos(0, 0), "/"); }), expected);
}

TEST_F(TIFFFileTest, PutsTextPastEveryEdgeOntoIt)
{
    Glyphs glyphs;
    glyphs.ink('x', 10, 30);
    installGlyphs(glyphs);
    auto const at = [&](double x, double y) {
        return picture(3, 3, [=](TIFFFile& file) { file.drawText({x, y}, "x"); });
    };
    EXPECT_EQ(at(-1e9, 1e9), (Rows{"#..", "...", "..."}));
    EXPECT_EQ(at(1e9, -1e9), (Rows{"...", "...", "..#"}));
    EXPECT_EQ(at(infinity, infinity), (Rows{"..#", "...", "..."}));
    EXPECT_EQ(at(-infinity, -infinity), (Rows{"...", "...", "#.."}));
    EXPECT_EQ(at(notANumber, 0.15), (Rows{"..#", "...", "..."}));
}

TEST_F(TIFFFileTest, LeavesTheBackgroundOfATextUntouched)
{
    Glyphs glyphs;
    glyphs.ink('x', 1, 63);
    installGlyphs(glyphs);
    drawPage(RGB, 3, 1, [](TIFFFile& file) {
        file.setRGB(1, 0, 0);
        file.drawRectangle(pixelRect(0, 0, 3, 1));
        file.setRGB(0, 1, 0);
        file.drawText(pixelPos(0, 24), "x");
    });
    EXPECT_THAT(ReadBack(path).raw, ElementsAre(255, 0, 0, 0, 255, 0, 255, 0, 0));
}

TEST_F(TIFFFileTest, DrawsNoTextWithoutGlyphs)
{
    EXPECT_EQ(errorsOf([&] {
                  EXPECT_EQ(picture(3, 3, [](TIFFFile& file) { file.drawText(pixelPos(0, 24), "x"); }),
                            (Rows{"...", "...", "..."}));
              }),
              "");
}

TEST_F(TIFFFileTest, DrawsOnlyTheGlyphsThatAShortFileHas)
{
    // Row 0 of the cells is whole; of row 1 there are 62 pixel rows, so that its lowest two are missing.
    folder.write("ascii.raw", std::string((64 + 62) * 1024, '\0'));
    EXPECT_EQ(errorsOf([&] {
                  EXPECT_EQ(picture(3, 4, [](TIFFFile& file) { file.drawText(pixelPos(0, 24), "\x0f"); }),
                            (Rows{"###", "###", "###", "###"}));
                  EXPECT_EQ(picture(3, 4, [](TIFFFile& file) { file.drawText(pixelPos(0, 24), "\x10"); }),
                            (Rows{"###", "###", "...", "..."}));
                  EXPECT_EQ(picture(3, 4, [](TIFFFile& file) { file.drawText(pixelPos(0, 24), "\x20"); }),
                            (Rows{"...", "...", "...", "..."}));
              }),
              "");
}

TEST_F(TIFFFileTest, DrawsALongTextInBoundedTime)
{
    Glyphs glyphs;
    glyphs.ink('x', 1, 63);
    installGlyphs(glyphs);
    std::string text(100'000, 'x');
    EXPECT_EQ(picture(45, 1,
                      [&](TIFFFile& file) { file.drawText(pixelPos(0, 24), String(text.data(), false, text.size())); }),
              (Rows{".#.......................................#..#"}));
}

TEST_F(TIFFFileTest, AgreesWithALiteralDrawingOnRectanglesAndTextsAnywhere)
{
    std::mt19937 random(1);
    auto const between = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
    Glyphs glyphs;
    for (int i = 0; i < 4000; ++i)
        glyphs.ink(static_cast<unsigned char>(between('a', 'd')), between(0, 63), between(0, 63));
    installGlyphs(glyphs);
    for (int page = 0; page < 200; ++page) {
        ColorSpace const colorSpace = page % 2 == 0 ? CMYK : RGB;
        LiteralPage expected(between(1, 90), between(1, 90), colorSpace == CMYK ? 4 : 3);
        auto const columns = static_cast<int>(expected.width);
        auto const rows = static_cast<int>(expected.height);
        drawPage(colorSpace, columns, rows, [&](TIFFFile& file) {
            for (int i = 0; i < 12; ++i) {
                for (auto& byte : expected.color)
                    byte = static_cast<unsigned char>(between(0, 255));
                // Half a step up: value * 255 must not fall short of the byte.
                auto const channel = [&](std::size_t c) { return (expected.color[c] + 0.5) / 255; };
                if (colorSpace == CMYK)
                    file.setCMYK(channel(0), channel(1), channel(2), channel(3));
                else
                    file.setRGB(channel(0), channel(1), channel(2));
                if (i % 3 == 2) {
                    RealPos const position = pixelPos(between(-100, 100), between(-100, 120));
                    file.drawText(position, "abcd");
                    expected.text(position, "abcd", glyphs);
                } else {
                    RealRect const rect =
                        pixelRect(between(-30, 120), between(-30, 120), between(-60, 60), between(-60, 60));
                    file.drawRectangle(rect);
                    expected.rectangle(rect);
                }
            }
        });
        ASSERT_EQ(ReadBack(path).raw, expected.raster) << columns << " x " << rows << ", page " << page;
    }
}

TEST_F(TIFFFileTest, TruncatesColoursToBytes)
{
    EXPECT_THAT(pixelOf(CMYK, [](TIFFFile& file) { file.setCMYK(0, 0.5, 0.999, 1); }), ElementsAre(0, 127, 254, 255));
    EXPECT_THAT(pixelOf(RGB, [](TIFFFile& file) { file.setRGB(1, 128 / 255.0, 0); }), ElementsAre(255, 128, 0));
    double const values[] = {0.25, 0.5, 0.75, 1};
    EXPECT_THAT(pixelOf(CMYK, [&](TIFFFile& file) { file.setCMYK(values); }), ElementsAre(63, 127, 191, 255));
    EXPECT_THAT(pixelOf(RGB, [&](TIFFFile& file) { file.setRGB(values); }), ElementsAre(63, 127, 191));
}

TEST_F(TIFFFileTest, HoldsColoursToTheirRange)
{
    EXPECT_THAT(pixelOf(CMYK, [](TIFFFile& file) { file.setCMYK(-0.1, 1.1, 1e300, notANumber); }),
                ElementsAre(0, 255, 255, 0));
    EXPECT_THAT(pixelOf(RGB, [](TIFFFile& file) { file.setRGB(infinity, -infinity, 1e10); }), ElementsAre(255, 0, 255));
}

TEST_F(TIFFFileTest, SetsAllChannelsToAGray)
{
    EXPECT_THAT(pixelOf(CMYK, [](TIFFFile& file) { file.setGray(0.5); }), ElementsAre(127, 127, 127, 127));
    EXPECT_THAT(pixelOf(RGB, [](TIFFFile& file) { file.setGray(1); }), ElementsAre(255, 255, 255));
}

TEST_F(TIFFFileTest, WrapsAGrayOutsideItsRangeAround)
{
    auto const grayOf = [&](double gray) { return pixelOf(RGB, [=](TIFFFile& file) { file.setGray(gray); }).at(0); };
    EXPECT_EQ(grayOf(257.5 / 255), 1);
    EXPECT_EQ(grayOf(-1.5 / 255), 255);
    EXPECT_EQ(grayOf(-0.5 / 255), 0);
    EXPECT_EQ(grayOf(std::ldexp(1.0, 60) + std::ldexp(1.0, 9)), 0); // 255 times a multiple of 512
    EXPECT_EQ(grayOf(1e300), 0);
    EXPECT_EQ(grayOf(infinity), 0);
    EXPECT_EQ(grayOf(notANumber), 0);
}

TEST_F(TIFFFileTest, KeepsTheFourthInkWhenRGBIsSet)
{
    EXPECT_THAT(pixelOf(CMYK,
                        [](TIFFFile& file) {
                            file.setCMYK(1, 1, 1, 1);
                            file.setRGB(0, 0, 0);
                        }),
                ElementsAre(0, 0, 0, 255));
}

TEST_F(TIFFFileTest, DrawsNeitherLinesNorOutlines)
{
    EXPECT_EQ(picture(4, 2,
                      [](TIFFFile& file) {
                          file.writeStyle("%d");
                          file.setScale(2);
                          file.setLineWidth(3);
                          file.drawLine(0, 0, 4, 2);
                          file.drawRectangleOutline(pixelRect(0, 0, 4, 2));
                      }),
              (Rows{"....", "...."}));
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
    // A page of 30000 bytes: the disk ends within the image or within the tags.
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
    // The message is captured in a file, which the limit cuts off too.
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
