// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Whole charts as packed TIFF: the pixels of the plain files, for every reader.

#include "SheetFiles.h"

#include "support/ChartCase.h"
#include "support/Picture.h"
#include "support/RandomChart.h"
#include "support/TemporaryFolder.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <string>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

ChartLayout laidOut(GrowingArray<ColorEntry>& entries, int device, int preset, float gap, bool clips)
{
    ChartLayout chart = chartOf(entries, instrument(static_cast<MeasurementLayoutPreset>(device)),
                                paper(static_cast<PageLayoutPreset>(preset)), {8, 8});
    chart.computeLayout(gap, 0);
    chart.setClipToContent(clips);
    chart.setName(String("Chart"));
    return chart;
}

// Expects all compressions to have the pixels of the plain files at 300 dots per inch.
void expectSamePixels(ChartLayout const& chart, bool hasScaleMark)
{
    TemporaryFolder const plain;
    ASSERT_FALSE(writeSheets(tiffImages, chart, plain.pathWithSlash(), {}, {{}, hasScaleMark}));
    for (TIFFCompression const compression : {TIFFCompression::lzw, TIFFCompression::deflate}) {
        TemporaryFolder const packed;
        ASSERT_FALSE(writeSheets(tiffImages, chart, packed.pathWithSlash(), {}, {{300, compression}, hasScaleMark}));
        ASSERT_EQ(filesIn(packed.path()), filesIn(plain.path()));
        for (std::string const& name : filesIn(plain.path())) {
            Picture const expected = readTiff(plain.path() / name);
            Picture const found = readTiff(packed.path() / name);
            ASSERT_GT(expected.width, 0);
            EXPECT_EQ(found.width, expected.width);
            EXPECT_EQ(found.height, expected.height);
            EXPECT_EQ(found.channels, expected.channels);
            EXPECT_TRUE(found.bytes == expected.bytes) << name;
        }
    }
}

} // namespace

TEST(StripSheets, HaveThePixelsOfThePlainFilesOnEveryPaperWithEveryDevice)
{
    for (int preset = 0; preset <= creditCardLandscape; ++preset)
        for (int device = 0; device <= longRuler; ++device) {
            bool const clips = (preset + device) % 2 == 0;
            ColorSpace const colorSpace = preset % 2 == 0 ? CMYK : RGB;
            auto entries = distinctEntries(colorSpace, preset < creditCardPortrait ? 90 : 12);
            ChartLayout const chart = laidOut(entries, device, preset, device % 2 == 0 ? 1.0F : 0.0F, clips);
            SCOPED_TRACE(testing::Message() << "paper " << preset << ", device " << device);
            expectSamePixels(chart, true);
        }
}

TEST(StripSheets, HaveThePixelsOfThePlainFilesForTheChartsOfTheFixtures)
{
    for (auto const& folder : chartCases()) {
        ChartCase chart(folder);
        chart.layout.setName(String("Chart"));
        SCOPED_TRACE(caseName(folder));
        expectSamePixels(chart.layout, false);
    }
}

TEST(StripSheets, HaveTheirPatchesInPlaceAtAnyResolution)
{
    // A row of A3, in colours of their own.
    auto entries = distinctEntries(RGB, 1200);
    for (float const gap : {0.0F, 1.0F}) {
        ChartLayout const chart = laidOut(entries, longRuler, a3Landscape, gap, false);
        ASSERT_EQ(chart.countOutputPages(), 1);
        SheetFrame const frame = frameOf(*sheetsOf(chart).at(0).page, chart);
        double const pitchX = frame.patch.width + frame.gap.width;
        double const pitchY = frame.patch.height + frame.gap.height;
        for (double const resolution : {72.0, 150.0, 304.8, 600.0}) {
            TemporaryFolder const folder;
            ASSERT_FALSE(writeSheets(tiffImages, chart, folder.pathWithSlash(), {},
                                     {{resolution, TIFFCompression::deflate}, false}));
            Picture const picture = readTiff(folder.path() / "Chart_001.tif");
            ASSERT_GT(picture.width, 0);
            double const pixels = resolution / 25.4;
            auto const edge = [&](double millimetres) { return static_cast<int>(std::lround(millimetres * pixels)); };
            for (int column = 0; column < frame.coordRect.width; ++column)
                for (int row = 0; row < frame.coordRect.height; ++row) {
                    double const x = frame.content.x + column * pitchX;
                    double const y = frame.content.y + row * pitchY;
                    int const left = edge(x);
                    int const right = edge(x + frame.patch.width) - 1;
                    int const bottom = edge(y);
                    int const top = edge(y + frame.patch.height) - 1;
                    Picture::Pixel const colour = picture.at((left + right) / 2, (bottom + top) / 2);
                    EXPECT_EQ(picture.at(left, bottom), colour) << column << ' ' << row << ' ' << resolution;
                    EXPECT_EQ(picture.at(right, top), colour) << column << ' ' << row << ' ' << resolution;
                }
        }
    }
}

TEST(StripSheets, AreReadAlikeByOtherPrograms)
{
    auto const textOf = [](String const& path) { return std::string(path.begin(), path.end()); };
    for (ColorSpace const colorSpace : {CMYK, RGB})
        for (TIFFFormat const format :
             {TIFFFormat{150, TIFFCompression::none}, TIFFFormat{150, TIFFCompression::lzw},
              TIFFFormat{150, TIFFCompression::deflate}, TIFFFormat{300, TIFFCompression::lzw}}) {
            auto entries = distinctEntries(colorSpace, 60);
            ChartLayout const chart = laidOut(entries, standardRuler, a4Portrait, 1, false);
            TemporaryFolder const folder;
            ASSERT_FALSE(writeSheets(tiffImages, chart, folder.pathWithSlash(), {}, {format, true}));
            std::string const sheet = textOf(folder.pathOf("Chart_001.tif"));
            Picture const picture = readTiff(sheet);
            ASSERT_GT(picture.width, 0);
            ASSERT_EQ(
                std::system(("tiffcp -c none '" + sheet + "' '" + textOf(folder.pathOf("copy.tif")) + "'").c_str()), 0);
            EXPECT_TRUE(readTiff(folder.path() / "copy.tif").bytes == picture.bytes);
            ASSERT_EQ(
                std::system(("/usr/bin/python3 -c 'import sys; from PIL import Image; image = Image.open(sys.argv[1]); "
                             "assert image.mode == sys.argv[3]; open(sys.argv[2], \"wb\").write(image.tobytes())' '" +
                             sheet + "' '" + textOf(folder.pathOf("pixels")) + "' " +
                             (colorSpace == CMYK ? "CMYK" : "RGB"))
                                .c_str()),
                0);
            std::string const pixels = bytesOf(folder.path() / "pixels");
            ASSERT_EQ(pixels.size(), picture.bytes.size());
            EXPECT_TRUE(std::equal(pixels.begin(), pixels.end(), picture.bytes.begin(),
                                   [](char a, unsigned char b) { return static_cast<unsigned char>(a) == b; }));
        }
}
