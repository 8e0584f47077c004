// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvTIFFStripFile.h"

#include "support/CapturedOutput.h"
#include "support/FailingSystem.h"
#include "support/Picture.h"
#include "support/TIFFFileTest.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <limits>
#include <random>

namespace
{

namespace fs = std::filesystem;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;

using Rows = std::vector<std::string>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr TIFFCompression compressions[] = {TIFFCompression::none, TIFFCompression::lzw, TIFFCompression::deflate};

class TIFFStripFileTest : public TIFFFileTest
{
protected:
    ~TIFFStripFileTest() override { systemFaults = {}; }

    template <typename Draw>
    Picture drawn(RealSize size, ColorSpace colorSpace, TIFFFormat format, Draw const& draw) const
    {
        TIFFStripFile file(name, size, colorSpace, format);
        draw(file);
        file.endPage();
        file.Close();
        EXPECT_FALSE(file.hasFailed());
        return readTiff(path);
    }

    // The same drawing by the file that keeps all pixels, at 300 dots per inch.
    template <typename Draw>
    Picture drawnWhole(RealSize size, ColorSpace colorSpace, Draw const& draw) const
    {
        TIFFFile file(name, size);
        file.setColorSpace(colorSpace);
        file.setResolution(300);
        file.startPage("");
        draw(file);
        file.endPage();
        file.Close();
        EXPECT_FALSE(file.hasFailed());
        return readTiff(path);
    }

    // Draws white on an RGB page of black with ten pixels a millimetre. Rows from the top; '#' is white.
    template <typename Draw>
    Rows picture(int columns, int rows, Draw const& draw) const
    {
        Picture const image =
            drawn(pixelSizeOf(columns, rows), RGB, {tenPerMillimetre, TIFFCompression::lzw}, [&](TIFFStripFile& file) {
                file.setRGB(1, 1, 1);
                draw(file);
            });
        Rows lines;
        for (int y = rows - 1; y >= 0; --y) {
            std::string line;
            for (int x = 0; x < columns; ++x)
                line += image.at(x, y) == Picture::Pixel{255, 255, 255} ? '#' : '.';
            lines.push_back(line);
        }
        return lines;
    }

    static RealSize pixelSizeOf(int columns, int rows) { return {columns / 10.0, rows / 10.0}; }

    // A page that is not written to its end leaves no file.
    void expectNoFile(RealSize size, ColorSpace colorSpace, TIFFFormat format) const
    {
        TIFFStripFile file(name, size, colorSpace, format);
        file.setRGB(1, 1, 1);
        file.drawRectangle({0, 0, 1, 1});
        file.drawText({0, 0}, String("a"));
        file.endPage();
        file.Close();
        EXPECT_TRUE(file.hasFailed());
        EXPECT_FALSE(fs::exists(path));
    }
};

} // namespace

TEST_F(TIFFStripFileTest, StartsWithEveryChannelAtZero)
{
    for (TIFFCompression const compression : compressions)
        EXPECT_THAT(drawn({10, 10}, CMYK, {300, compression}, [](TIFFStripFile&) {}).bytes, Each(0));
}

TEST_F(TIFFStripFileTest, CountsRowsFromTheBottom)
{
    EXPECT_THAT(picture(4, 3,
                        [](TIFFStripFile& file) {
                            file.drawRectangle({0.1, 0, 0.2, 0.1});
                        }),
                ElementsAre("....", "....", ".##."));
}

TEST_F(TIFFStripFileTest, PutsEdgesOnTheNearestEdgeBetweenPixels)
{
    EXPECT_THAT(picture(6, 1,
                        [](TIFFStripFile& file) {
                            file.drawRectangle({0.14, 0, 0.22, 0.1});
                        }),
                ElementsAre(".###..")); // 1.4 to 3.6
    EXPECT_THAT(picture(6, 1,
                        [](TIFFStripFile& file) {
                            file.drawRectangle({0.16, 0, 0.18, 0.1});
                        }),
                ElementsAre("..#...")); // 1.6 to 3.4
    EXPECT_THAT(picture(1, 3,
                        [](TIFFStripFile& file) {
                            file.drawRectangle({0, 0.06, 0.1, 0.08});
                        }),
                ElementsAre(".", ".", ".")); // 0.6 to 1.4: no height
}

TEST_F(TIFFStripFileTest, TakesRectanglesWithNegativeSides)
{
    EXPECT_THAT(picture(4, 2,
                        [](TIFFStripFile& file) {
                            file.drawRectangle({0.3, 0.2, -0.2, -0.1});
                        }),
                ElementsAre(".##.", "...."));
}

TEST_F(TIFFStripFileTest, DrawsOnlyWhatLiesOnThePage)
{
    EXPECT_THAT(picture(3, 3,
                        [](TIFFStripFile& file) {
                            file.drawRectangle({-0.2, -0.2, 0.3, 0.3});
                        }),
                ElementsAre("...", "...", "#.."));
    EXPECT_THAT(picture(3, 3,
                        [](TIFFStripFile& file) {
                            file.drawRectangle({0.2, 0.2, 5000, 5000});
                        }),
                ElementsAre("..#", "...", "..."));
    EXPECT_THAT(picture(2, 2,
                        [](TIFFStripFile& file) {
                            file.drawRectangle({0.2, 0, 1, 1});
                            file.drawRectangle({-1, 0, 1, 1});
                            file.drawRectangle({0, 0.2, 1, 1});
                            file.drawRectangle({0, -1, 1, 1});
                        }),
                ElementsAre("..", ".."));
}

TEST_F(TIFFStripFileTest, TakesAnyNumbers)
{
    EXPECT_THAT(picture(2, 2,
                        [](TIFFStripFile& file) {
                            file.drawRectangle({-infinity, -1e300, infinity, 1e301});
                        }),
                ElementsAre("..", "..")); // The right edge is no number: it counts as 0.
    EXPECT_THAT(picture(2, 2,
                        [](TIFFStripFile& file) {
                            file.drawRectangle({-1e300, -1e300, 2e300, 2e300});
                        }),
                ElementsAre("##", "##"));
    EXPECT_THAT(picture(2, 2,
                        [](TIFFStripFile& file) {
                            file.drawRectangle({notANumber, notANumber, notANumber, notANumber});
                            file.drawText({notANumber, infinity}, String("a"));
                            file.drawText({-1e300, -infinity}, String("a"));
                        }),
                ElementsAre("..", ".."));
}

TEST_F(TIFFStripFileTest, CoversWhatWasDrawnBefore)
{
    // Three blocks of 40 rows overlap across the strips of 16, in an order that is not theirs from the top.
    Picture const image =
        drawn(pixelSizeOf(3, 100), RGB, {tenPerMillimetre, TIFFCompression::lzw}, [](TIFFStripFile& file) {
            file.setRGB(1, 0, 0);
            file.drawRectangle({0, 3, 0.3, 4});
            file.setRGB(0, 1, 0);
            file.drawRectangle({0.1, 5, 0.2, 4});
            file.setRGB(0, 0, 1);
            file.drawRectangle({0.2, 1, 0.1, 4.5});
        });
    Picture::Pixel const black{0, 0, 0};
    Picture::Pixel const red{255, 0, 0};
    Picture::Pixel const green{0, 255, 0};
    Picture::Pixel const blue{0, 0, 255};
    for (int y = 0; y < 100; ++y) {
        bool const isRed = y >= 30 && y < 70;
        bool const isGreen = y >= 50 && y < 90;
        bool const isBlue = y >= 10 && y < 55;
        EXPECT_EQ(image.at(0, y), isRed ? red : black) << y;
        EXPECT_EQ(image.at(1, y), isGreen ? green : isRed ? red : black) << y;
        EXPECT_EQ(image.at(2, y), isBlue ? blue : isGreen ? green : isRed ? red : black) << y;
    }
}

TEST_F(TIFFStripFileTest, HasTheColoursBytesRoundedDown)
{
    double const channels[] = {0.1, 0.5, 0.9, 2};
    auto const fill = [&](TIFFStripFile& file) {
        file.setCMYK(channels);
        file.drawRectangle({0, 0, 10, 10});
    };
    EXPECT_EQ(drawn({1, 1}, CMYK, {300, TIFFCompression::lzw}, fill).at(0, 0), (Picture::Pixel{25, 127, 229, 255}));
    EXPECT_EQ(drawn({1, 1}, RGB, {300, TIFFCompression::deflate},
                    [&](TIFFStripFile& file) {
                        file.setRGB(channels);
                        file.drawRectangle({0, 0, 10, 10});
                    })
                  .at(0, 0),
              (Picture::Pixel{25, 127, 229}));
}

TEST_F(TIFFStripFileTest, HasTheTagsThatReadersWant)
{
    struct
    {
        TIFFCompression compression;
        int tag;
    } const cases[] = {{TIFFCompression::none, COMPRESSION_NONE},
                       {TIFFCompression::lzw, COMPRESSION_LZW},
                       {TIFFCompression::deflate, COMPRESSION_ADOBE_DEFLATE}};
    for (ColorSpace const colorSpace : {CMYK, RGB})
        for (auto const& [compression, tag] : cases) {
            drawn({10, 10}, colorSpace, {304.8, compression}, [](TIFFStripFile&) {});
            ReadBack const image(path);
            EXPECT_EQ(image.width, 120u);
            EXPECT_EQ(image.height, 120u);
            EXPECT_EQ(image.strips, 8u); // 7 of 16 rows and one of 8
            EXPECT_EQ(image.shortTag(TIFFTAG_COMPRESSION), tag);
            EXPECT_EQ(image.shortTag(TIFFTAG_PREDICTOR),
                      compression == TIFFCompression::none ? -1 : PREDICTOR_HORIZONTAL);
            EXPECT_EQ(image.shortTag(TIFFTAG_ORIENTATION), ORIENTATION_TOPLEFT);
            EXPECT_EQ(image.shortTag(TIFFTAG_PLANARCONFIG), PLANARCONFIG_CONTIG);
            EXPECT_EQ(image.shortTag(TIFFTAG_BITSPERSAMPLE), 8);
            EXPECT_EQ(image.shortTag(TIFFTAG_SAMPLESPERPIXEL), colorSpace == CMYK ? 4 : 3);
            EXPECT_EQ(image.shortTag(TIFFTAG_PHOTOMETRIC),
                      colorSpace == CMYK ? PHOTOMETRIC_SEPARATED : PHOTOMETRIC_RGB);
            EXPECT_EQ(image.shortTag(TIFFTAG_INKSET), colorSpace == CMYK ? INKSET_CMYK : -1);
            EXPECT_EQ(image.shortTag(TIFFTAG_RESOLUTIONUNIT), RESUNIT_INCH);
            EXPECT_EQ(image.floatTag(TIFFTAG_XRESOLUTION), 304.8F);
            EXPECT_EQ(image.floatTag(TIFFTAG_YRESOLUTION), 304.8F);
            TIFF* const tiff = TIFFOpen(path.c_str(), "r");
            ASSERT_TRUE(tiff);
            std::uint32_t rows = 0;
            EXPECT_TRUE(TIFFGetField(tiff, TIFFTAG_ROWSPERSTRIP, &rows));
            EXPECT_EQ(rows, 16u);
            TIFFClose(tiff);
        }
}

TEST_F(TIFFStripFileTest, HasLowerStripsOnVeryWidePages)
{
    // 1 MB has 4 rows of 65,536 pixels of four bytes.
    double const side = 65'536 / 10.0;
    drawn({side, 2}, CMYK, {tenPerMillimetre, TIFFCompression::deflate}, [](TIFFStripFile&) {});
    EXPECT_EQ(ReadBack(path).strips, 5u);
}

TEST_F(TIFFStripFileTest, HasThePixelsOfTheWholeRasterAt300DotsPerInch)
{
    std::mt19937 random(1);
    auto const upTo = [&](int most) { return static_cast<int>(random() % static_cast<unsigned>(most + 1)); };
    folder.write("ascii.raw", [&] {
        std::string glyphs(1024 * 1024, '\1');
        for (char& pixel : glyphs)
            pixel = static_cast<char>(upTo(2));
        return glyphs;
    }());
    for (int round = 0; round < 30; ++round) {
        // Sides in steps of a hundredth of a millimetre; everything lies on the page.
        RealSize const size{15 + upTo(3000) / 100.0, 15 + upTo(3000) / 100.0};
        std::vector<RealRect> rectangles;
        std::vector<RealPos> texts;
        for (int i = 0; i < 40; ++i) {
            RealRect rect{upTo(1400) / 100.0, upTo(1400) / 100.0, 0, 0};
            rect.width = upTo(static_cast<int>((size.width - 0.1 - rect.x) * 100)) / 100.0;
            rect.height = upTo(static_cast<int>((size.height - 0.1 - rect.y) * 100)) / 100.0;
            rectangles.push_back(rect);
            texts.push_back({upTo(500) / 100.0, 3 + upTo(500) / 100.0});
        }
        ColorSpace const colorSpace = round % 2 == 0 ? CMYK : RGB;
        auto const draw = [&](auto& file) {
            for (std::size_t i = 0; i < rectangles.size(); ++i) {
                double const shade = static_cast<double>(i) / 40;
                if (colorSpace == CMYK)
                    file.setCMYK(shade, 1 - shade, 0.3, 0.01);
                else
                    file.setRGB(shade, 1 - shade, 0.3);
                file.drawRectangle(rectangles[i]);
                file.setTextHeight(i % 2 == 0 ? 6 : 3);
                file.drawText(texts[i], String("W7"));
            }
        };
        Picture const whole = drawnWhole(size, colorSpace, draw);
        ASSERT_GT(whole.width, 0);
        for (TIFFCompression const compression : compressions) {
            Picture const strips = drawn(size, colorSpace, {300, compression}, draw);
            EXPECT_EQ(strips.width, whole.width);
            EXPECT_EQ(strips.height, whole.height);
            EXPECT_EQ(strips.channels, whole.channels);
            EXPECT_TRUE(strips.bytes == whole.bytes) << round;
        }
    }
}

TEST_F(TIFFStripFileTest, KeepsEdgesWithinHalfAPixelOverAWholeRow)
{
    // Patches of 7.3 mm with gaps of 1.1 mm over 420 mm, each with a colour of its own.
    constexpr double patch = 7.3;
    constexpr double pitch = 8.4;
    constexpr int count = 49;
    for (double const resolution : {72.0, 150.0, 304.8, 600.0, 1200.0, 2400.0, 100.01}) {
        Picture const image = drawn({420, 1}, RGB, {resolution, TIFFCompression::lzw}, [](TIFFStripFile& file) {
            for (int i = 0; i < count; ++i) {
                file.setRGB((i + 1) / 255.0 + 1e-9, 0, 0);
                file.drawRectangle({i * pitch, 0, patch, 1});
            }
        });
        ASSERT_GT(image.width, 0) << resolution;
        EXPECT_NEAR(image.width, 420 / 25.4 * resolution, 0.5 + 1e-9);
        std::vector<int> first(count + 1, -1);
        std::vector<int> past(count + 1, -1);
        for (int x = 0; x < image.width; ++x)
            if (int const number = image.at(x, 0)[0]; number > 0) {
                auto const index = static_cast<std::size_t>(number);
                first.at(index) = first[index] < 0 ? x : first[index];
                past[index] = x + 1;
            }
        for (int i = 0; i < count; ++i) {
            auto const index = static_cast<std::size_t>(i + 1);
            EXPECT_NEAR(first[index], i * pitch / 25.4 * resolution, 0.5 + 1e-6) << resolution << ' ' << i;
            EXPECT_NEAR(past[index], (i * pitch + patch) / 25.4 * resolution, 0.5 + 1e-6) << resolution << ' ' << i;
        }
    }
}

TEST_F(TIFFStripFileTest, DrawsTextsInTheirHeightAtAnyResolution)
{
    // A character of ink all over: its cell of 64 pixels at 300 dots per inch is 5.41867 mm, 24 of them 2.032 mm.
    folder.write("ascii.raw", std::string(1024 * 1024, '\0'));
    for (double const resolution : {72.0, 254.0, 600.0})
        for (double const height : {6.0, 3.0}) {
            Picture const image = drawn({20, 20}, RGB, {resolution, TIFFCompression::lzw}, [&](TIFFStripFile& file) {
                file.setRGB(1, 1, 1);
                file.setTextHeight(height);
                file.drawText({5, 5}, String("a"));
            });
            double const perMillimetre = resolution / 25.4;
            int least = image.width;
            int most = -1;
            int lowest = image.height;
            int highest = -1;
            for (int y = 0; y < image.height; ++y)
                for (int x = 0; x < image.width; ++x)
                    if (image.at(x, y)[0] == 255) {
                        least = std::min(least, x);
                        most = std::max(most, x + 1);
                        lowest = std::min(lowest, y);
                        highest = std::max(highest, y + 1);
                    }
            double const share = height / 6;
            EXPECT_NEAR(least, 5 * perMillimetre, 1) << resolution;
            EXPECT_NEAR(most, (5 + 5.41867 * share) * perMillimetre, 1) << resolution;
            EXPECT_NEAR(lowest, (5 - 2.032 * share) * perMillimetre, 1) << resolution;
            EXPECT_NEAR(highest, (5 + 3.38667 * share) * perMillimetre, 1) << resolution;
        }
}

TEST_F(TIFFStripFileTest, TellsHowManyPixelsAPageHas)
{
    IntSize const plain = TIFFStripFile::pixelsOf({210, 297}, 300); // 2480.3 x 3507.9, rounded down
    EXPECT_EQ(plain.width, 2480);
    EXPECT_EQ(plain.height, 3507);
    IntSize const fine = TIFFStripFile::pixelsOf({210, 297}, 600); // 4960.6 x 7015.7, rounded
    EXPECT_EQ(fine.width, 4961);
    EXPECT_EQ(fine.height, 7016);
}

TEST_F(TIFFStripFileTest, HoldsFourGigabytesOfPixelsUnpackedAnd17BillionPixelsPacked)
{
    // 2^32 - 4096 = 65,536 x 65,535 + 61,440 bytes, at four bytes a pixel: 16,384 columns of 65,535 rows.
    EXPECT_TRUE(TIFFStripFile::canHold({16'384, 65'535}, 4, TIFFCompression::none));
    EXPECT_FALSE(TIFFStripFile::canHold({16'384, 65'536}, 4, TIFFCompression::none));
    EXPECT_TRUE(TIFFStripFile::canHold({16'384, 65'536}, 3, TIFFCompression::none));
    for (TIFFCompression const compression : {TIFFCompression::lzw, TIFFCompression::deflate}) {
        EXPECT_TRUE(TIFFStripFile::canHold({131'072, 131'072}, 4, compression)); // 2^34
        EXPECT_FALSE(TIFFStripFile::canHold({131'072, 131'073}, 3, compression));
        EXPECT_FALSE(TIFFStripFile::canHold({2'147'483'647, 2'147'483'647}, 4, compression));
    }
}

TEST_F(TIFFStripFileTest, HoldsSidesOf17MillionPixels)
{
    for (TIFFCompression const compression : compressions) {
        EXPECT_TRUE(TIFFStripFile::canHold({16'777'216, 1}, 4, compression));
        EXPECT_TRUE(TIFFStripFile::canHold({1, 16'777'216}, 4, compression));
        EXPECT_FALSE(TIFFStripFile::canHold({16'777'217, 1}, 4, compression));
        EXPECT_FALSE(TIFFStripFile::canHold({1, 16'777'217}, 4, compression));
    }
}

TEST_F(TIFFStripFileTest, IsNoFileIfThePageHasNoPixelsOrTooMany)
{
    std::string const errors = errorsOf([this] {
        for (TIFFCompression const compression : compressions) {
            for (RealSize const size : {RealSize{0, 10}, RealSize{10, 0}, RealSize{-10, -10}, RealSize{0.01, 10},
                                        RealSize{notANumber, 10}, RealSize{1e300, 1e300}, RealSize{infinity, 1}})
                expectNoFile(size, RGB, {150, compression});
            for (double const resolution : {0.0, -300.0, notANumber, infinity, 1e300})
                expectNoFile({10, 10}, CMYK, {resolution, compression});
        }
        expectNoFile({5000, 5000}, CMYK, {300, TIFFCompression::none});
        expectNoFile({5000, 5000}, CMYK, {2400, TIFFCompression::deflate});
    });
    EXPECT_THAT(errors, testing::Not(HasSubstr("could not be written")));
}

TEST_F(TIFFStripFileTest, IsNoFileInAnotherColourSpace)
{
    expectNoFile({10, 10}, undefined, {300, TIFFCompression::lzw});
}

TEST_F(TIFFStripFileTest, IsNoFileIfItsPageWasNotEnded)
{
    for (bool const closes : {true, false}) {
        {
            TIFFStripFile file(name, {10, 10}, RGB, {300, TIFFCompression::lzw});
            EXPECT_TRUE(fs::exists(path));
            if (closes)
                file.Close();
        }
        EXPECT_FALSE(fs::exists(path));
    }
}

TEST_F(TIFFStripFileTest, KeepsItsPageWhenMoreIsDrawnAndItIsClosedTwice)
{
    TIFFStripFile file(name, {1, 1}, RGB, {300, TIFFCompression::lzw});
    file.endPage();
    file.setRGB(1, 1, 1);
    file.drawRectangle({0, 0, 1, 1});
    file.drawText({0, 0}, String("a"));
    file.endPage();
    file.Close();
    file.Close();
    EXPECT_FALSE(file.hasFailed());
    EXPECT_THAT(readTiff(path).bytes, Each(0));
    EXPECT_EQ(readTiff(path).width, 11);
}

TEST_F(TIFFStripFileTest, TellsThatItCannotBeCreated)
{
    fs::create_directory(path);
    TIFFStripFile file(name, {10, 10}, RGB, {300, TIFFCompression::lzw});
    file.drawRectangle({0, 0, 1, 1});
    file.endPage();
    file.Close();
    EXPECT_TRUE(file.hasFailed());
    EXPECT_EQ(file.getError(), EISDIR);
}

TEST_F(TIFFStripFileTest, IsNoFileWhereverTheDiskIsFull)
{
    for (TIFFCompression const compression : compressions) {
        auto const write = [&](std::size_t freeBytes) {
            systemFaults.freeBytes = freeBytes;
            TIFFStripFile file(name, {20, 20}, CMYK, {300, compression});
            file.endPage();
            file.Close();
            systemFaults = {};
            return file.getError();
        };
        ASSERT_EQ(write(~std::size_t{0}), 0);
        std::size_t const size = fs::file_size(path);
        std::string errors;
        for (std::size_t room = 0; room < 20; ++room) {
            errors += errorsOf([&] { EXPECT_EQ(write(room * (size - 1) / 19), ENOSPC); });
            EXPECT_FALSE(fs::exists(path));
        }
        EXPECT_THAT(errors, HasSubstr("TIFF file could not be written."));
    }
}

TEST_F(TIFFStripFileTest, IsNoFileIfTheDiskFailsAtTheEnd)
{
    TIFFStripFile file(name, {10, 10}, RGB, {300, TIFFCompression::lzw});
    file.endPage();
    systemFaults.closingError = EIO;
    EXPECT_THAT(errorsOf([&] { file.Close(); }), HasSubstr("TIFF file could not be written."));
    EXPECT_EQ(file.getError(), EIO);
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(TIFFStripFileTest, HasTheSameBytesEachTime)
{
    auto const draw = [](TIFFStripFile& file) {
        file.setRGB(0.5, 0.25, 0);
        file.drawRectangle({1, 1, 5, 5});
    };
    for (TIFFCompression const compression : compressions) {
        drawn({10, 10}, RGB, {600, compression}, draw);
        std::string const first = contentsOf(path);
        drawn({10, 10}, RGB, {600, compression}, draw);
        EXPECT_TRUE(contentsOf(path) == first);
    }
}
