// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvTIFFFile.h"

#include "support/CapturedOutput.h"
#include "support/TIFFFileTest.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace
{

using testing::Each;
using testing::ElementsAre;

using Bytes = std::vector<unsigned char>;
using Rows = std::vector<std::string>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// A glyph file of the test. All pixels are background (not 0) until they get ink.
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

class TIFFFileDrawingTest : public TIFFFileTest
{
protected:
    void installGlyphs(Glyphs const& glyphs) { folder.write("ascii.raw", glyphs.bytes); }

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

    // The bytes of a page of one pixel in a colour.
    template <typename Drawing>
    Bytes pixelOf(ColorSpace colorSpace, Drawing const& setColor)
    {
        drawPage(colorSpace, 1, 1, [&](TIFFFile& file) {
            setColor(file);
            file.drawRectangle(pixelRect(0, 0, 1, 1));
        });
        return ReadBack(path).raw;
    }
};

// A page drawn pixel by pixel from the documented rules. Nothing outside the raster is written.
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

TEST_F(TIFFFileDrawingTest, StartsWithEveryChannelAtZero)
{
    drawPage(CMYK, 30, 20, [](TIFFFile&) {});
    EXPECT_THAT(ReadBack(path).raw, Each(0));
}

TEST_F(TIFFFileDrawingTest, CoversElevenColumnsWithAMillimetreAtTheLeftEdge)
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

TEST_F(TIFFFileDrawingTest, FillsTheRowsBetweenTheEdgesOfARectangle)
{
    EXPECT_EQ(picture(6, 4, [](TIFFFile& file) { file.drawRectangle(pixelRect(1, 0, 3, 2)); }),
              (Rows{"......", "......", ".###..", ".###.."}));
}

TEST_F(TIFFFileDrawingTest, TakesTheCornersOfARectangleInEitherOrder)
{
    EXPECT_EQ(picture(6, 4, [](TIFFFile& file) { file.drawRectangle(pixelRect(4, 2, -3, -2)); }),
              (Rows{"......", "......", ".###..", ".###.."}));
}

TEST_F(TIFFFileDrawingTest, LeavesNeitherGapNorOverlapBetweenNeighbours)
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
        // Rectangle i starts at column floor(2 i mm at 300 dots per inch). The last one that starts at or before this
        // column covers it.
        std::size_t i = 9;
        while (i * 2 * 3000 / 254 > column)
            --i;
        EXPECT_EQ(image.raw[column * 3], i + 1) << column;
    }
}

TEST_F(TIFFFileDrawingTest, DrawsNothingBetweenEqualEdges)
{
    EXPECT_EQ(picture(4, 3,
                      [](TIFFFile& file) {
                          file.drawRectangle(pixelRect(1, 1, 2, 0));
                          file.drawRectangle(pixelRect(1, 1, 0, 2));
                      }),
              (Rows{"....", "....", "...."}));
}

TEST_F(TIFFFileDrawingTest, StartsARectangleFromTheLeftInTheFirstColumnWithAllItsWidth)
{
    EXPECT_EQ(picture(6, 3, [](TIFFFile& file) { file.drawRectangle(pixelRect(-2, 1, 3, 1)); }),
              (Rows{"......", "###...", "......"}));
}

TEST_F(TIFFFileDrawingTest, ContinuesInTheRowBelowPastTheRightEdge)
{
    EXPECT_EQ(picture(6, 4, [](TIFFFile& file) { file.drawRectangle(pixelRect(4, 1, 5, 2)); }),
              (Rows{"......", "....##", "###.##", "###..."}));
    EXPECT_EQ(picture(6, 3, [](TIFFFile& file) { file.drawRectangle(pixelRect(9, 2, 2, 1)); }),
              (Rows{".....#", "#.....", "......"}));
    EXPECT_EQ(picture(6, 2, [](TIFFFile& file) { file.drawRectangle(pixelRect(4, 0, 5, 1)); }),
              (Rows{"......", "....##"}));
}

TEST_F(TIFFFileDrawingTest, PutsRowsAboveAndBelowThePageOntoItsEdges)
{
    EXPECT_EQ(picture(4, 4, [](TIFFFile& file) { file.drawRectangle(pixelRect(1, 3, 2, 5)); }),
              (Rows{".##.", "....", "....", "...."}));
    EXPECT_EQ(picture(4, 4, [](TIFFFile& file) { file.drawRectangle(pixelRect(1, 9, 2, 1)); }),
              (Rows{".##.", "....", "....", "...."}));
    EXPECT_EQ(picture(4, 4, [](TIFFFile& file) { file.drawRectangle(pixelRect(1, -5, 2, 3)); }),
              (Rows{"....", "....", "....", ".##."}));
}

TEST_F(TIFFFileDrawingTest, DrawsHugeRectanglesAtOnce)
{
    auto const at = [&](RealRect r) { return picture(4, 3, [=](TIFFFile& file) { file.drawRectangle(r); }); };
    EXPECT_EQ(at({-1, -5e8, 1e9, 1e9}), (Rows{"####", "####", "####"}));
    EXPECT_EQ(at({-1, -5e299, 1e300, 1e300}), (Rows{"####", "####", "####"}));
    EXPECT_EQ(at({0.25, 0.15, infinity, infinity}), (Rows{"..##", "####", "####"}));
    // Rows below the page fall on its last row, and every run starts in the first column.
    EXPECT_EQ(at({0.25, 0.15, -infinity, -infinity}), (Rows{"....", "....", "####"}));
}

TEST_F(TIFFFileDrawingTest, TreatsNotANumberAsTheFirstPixel)
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

TEST_F(TIFFFileDrawingTest, DrawsAGlyphFromItsCell)
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

TEST_F(TIFFFileDrawingTest, SetsGlyphsFortyPixelsApart)
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

TEST_F(TIFFFileDrawingTest, DrawsTheLowestRowsOfATextAtTheBottomOntoRowZero)
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

TEST_F(TIFFFileDrawingTest, PutsTextPastEveryEdgeOntoIt)
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

TEST_F(TIFFFileDrawingTest, LeavesTheBackgroundOfATextUntouched)
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

TEST_F(TIFFFileDrawingTest, DrawsNoTextWithoutGlyphs)
{
    EXPECT_EQ(errorsOf([&] {
                  EXPECT_EQ(picture(3, 3, [](TIFFFile& file) { file.drawText(pixelPos(0, 24), "x"); }),
                            (Rows{"...", "...", "..."}));
              }),
              "");
}

TEST_F(TIFFFileDrawingTest, DrawsOnlyTheGlyphsThatAShortFileHas)
{
    // The first row of cells is complete. The second one has 62 pixel rows: its lowest two are missing.
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

TEST_F(TIFFFileDrawingTest, DrawsALongTextInBoundedTime)
{
    Glyphs glyphs;
    glyphs.ink('x', 1, 63);
    installGlyphs(glyphs);
    std::string text(100'000, 'x');
    EXPECT_EQ(picture(45, 1,
                      [&](TIFFFile& file) { file.drawText(pixelPos(0, 24), String(text.data(), false, text.size())); }),
              (Rows{".#.......................................#..#"}));
}

TEST_F(TIFFFileDrawingTest, AgreesWithADrawingPixelByPixel)
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
                // Half a step more, so that value * 255 never rounds down below the byte.
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

TEST_F(TIFFFileDrawingTest, TruncatesColoursToBytes)
{
    EXPECT_THAT(pixelOf(CMYK, [](TIFFFile& file) { file.setCMYK(0, 0.5, 0.999, 1); }), ElementsAre(0, 127, 254, 255));
    EXPECT_THAT(pixelOf(RGB, [](TIFFFile& file) { file.setRGB(1, 128 / 255.0, 0); }), ElementsAre(255, 128, 0));
    double const values[] = {0.25, 0.5, 0.75, 1};
    EXPECT_THAT(pixelOf(CMYK, [&](TIFFFile& file) { file.setCMYK(values); }), ElementsAre(63, 127, 191, 255));
    EXPECT_THAT(pixelOf(RGB, [&](TIFFFile& file) { file.setRGB(values); }), ElementsAre(63, 127, 191));
}

TEST_F(TIFFFileDrawingTest, HoldsColoursAtTheLimitsOfTheirRange)
{
    EXPECT_THAT(pixelOf(CMYK, [](TIFFFile& file) { file.setCMYK(-0.1, 1.1, 1e300, notANumber); }),
                ElementsAre(0, 255, 255, 0));
    EXPECT_THAT(pixelOf(RGB, [](TIFFFile& file) { file.setRGB(infinity, -infinity, 1e10); }), ElementsAre(255, 0, 255));
}

TEST_F(TIFFFileDrawingTest, SetsAllChannelsToAGray)
{
    EXPECT_THAT(pixelOf(CMYK, [](TIFFFile& file) { file.setGray(0.5); }), ElementsAre(127, 127, 127, 127));
    EXPECT_THAT(pixelOf(RGB, [](TIFFFile& file) { file.setGray(1); }), ElementsAre(255, 255, 255));
}

TEST_F(TIFFFileDrawingTest, WrapsAGrayOutsideItsRangeAround)
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

TEST_F(TIFFFileDrawingTest, KeepsTheFourthInkWhenRGBIsSet)
{
    EXPECT_THAT(pixelOf(CMYK,
                        [](TIFFFile& file) {
                            file.setCMYK(1, 1, 1, 1);
                            file.setRGB(0, 0, 0);
                        }),
                ElementsAre(0, 0, 0, 255));
}

TEST_F(TIFFFileDrawingTest, DrawsTextsOfHalfTheHeightWithEverySecondPixel)
{
    Glyphs glyphs;
    // At half the size, pixel n shows column 2n + 1. Rows count from the top: 40 of 64 is 23 from the bottom.
    glyphs.ink('A', 1, 40);
    glyphs.ink('A', 2, 40);
    glyphs.ink('A', 7, 40);
    installGlyphs(glyphs);
    EXPECT_THAT(picture(30, 3,
                        [](TIFFFile& file) {
                            file.setTextHeight(3);
                            file.drawText(pixelPos(2, 1), String("AA"));
                        }),
                ElementsAre("..............................", "..............................",
                            "..#..#................#..#...."));
}

TEST_F(TIFFFileDrawingTest, DrawsTextsOfSixMillimetresAsByDefault)
{
    Glyphs glyphs;
    for (int k = 0; k < 64; k += 3)
        for (int r = 0; r < 64; r += 2)
            glyphs.ink('A', k, r);
    installGlyphs(glyphs);
    auto const text = [](TIFFFile& file) { file.drawText(pixelPos(5, 30), String("AAA")); };
    Rows const before = picture(200, 80, text);
    EXPECT_EQ(picture(200, 80,
                      [&](TIFFFile& file) {
                          file.setTextHeight(3);
                          file.setTextHeight(6);
                          text(file);
                      }),
              before);
}

TEST_F(TIFFFileDrawingTest, DrawsNeitherLinesNorOutlines)
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
