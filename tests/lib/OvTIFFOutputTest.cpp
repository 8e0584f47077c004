// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvTIFFOutput.h"

#include "support/CapturedOutput.h"
#include "support/TIFFFileTest.h"

#include <gmock/gmock.h>

#include <limits>

namespace
{

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

class TIFFOutputTest : public TIFFFileTest
{
};

} // namespace

TEST_F(TIFFOutputTest, RoundsChannelsDownToBytes)
{
    EXPECT_EQ(toChannelByte(0), 0);
    EXPECT_EQ(toChannelByte(0.5), 127); // 127.5
    EXPECT_EQ(toChannelByte(0.999), 254);
    EXPECT_EQ(toChannelByte(1), 255);
    for (int byte = 0; byte <= 255; ++byte)
        EXPECT_EQ(toChannelByte((byte + 0.25) / 255), byte);
}

TEST_F(TIFFOutputTest, HoldsChannelsAtTheirLimits)
{
    for (double const low : {-0.0, -0.001, -1e300, -infinity, notANumber})
        EXPECT_EQ(toChannelByte(low), 0) << low;
    for (double const high : {1.001, 1e300, infinity})
        EXPECT_EQ(toChannelByte(high), 255) << high;
}

TEST_F(TIFFOutputTest, RoundsPixelNumbersTowardsZeroAndHoldsThemAtTheirLimits)
{
    EXPECT_EQ(toPixelNumber(2.9), 2);
    EXPECT_EQ(toPixelNumber(-2.9), -2);
    EXPECT_EQ(toPixelNumber(highest), highest);
    for (double const high : {2147483648.0, 1e300, infinity})
        EXPECT_EQ(toPixelNumber(high), highest);
    for (double const low : {-2147483649.0, -1e300, -infinity})
        EXPECT_EQ(toPixelNumber(low), lowest);
    EXPECT_EQ(toPixelNumber(notANumber), 0);
}

TEST_F(TIFFOutputTest, OpensNothingWithoutAFile)
{
    std::filesystem::create_directory(path);
    WholeFile file(name);
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(openTIFF(file, name), nullptr); }), "");
}

TEST_F(TIFFOutputTest, TellsTheChannelsOfAColourSpace)
{
    EXPECT_EQ(setTIFFColorSpace(nullptr, CMYK), 4);
    EXPECT_EQ(setTIFFColorSpace(nullptr, RGB), 3);
    EXPECT_EQ(setTIFFColorSpace(nullptr, undefined), 0);
    setTIFFSize(nullptr, 1, 1, 300);
}

TEST_F(TIFFOutputTest, SetsTheTagsOfColourSpaceAndSize)
{
    for (ColorSpace const colorSpace : {CMYK, RGB}) {
        WholeFile file(name);
        tiff* const handle = openTIFF(file, name);
        ASSERT_TRUE(handle);
        int const channels = setTIFFColorSpace(handle, colorSpace);
        setTIFFSize(handle, 2, 1, 304.8);
        unsigned char const pixels[8] = {1, 2, 3, 4, 5, 6, 7, 8};
        EXPECT_EQ(TIFFWriteEncodedStrip(handle, 0, const_cast<unsigned char*>(pixels), 2 * channels), 2 * channels);
        TIFFClose(handle);
        EXPECT_TRUE(file.close());
        ReadBack const image(path);
        EXPECT_EQ(image.width, 2u);
        EXPECT_EQ(image.height, 1u);
        EXPECT_EQ(image.floatTag(TIFFTAG_XRESOLUTION), 304.8F);
        EXPECT_EQ(image.floatTag(TIFFTAG_YRESOLUTION), 304.8F);
        EXPECT_EQ(image.shortTag(TIFFTAG_RESOLUTIONUNIT), RESUNIT_INCH);
        EXPECT_EQ(image.shortTag(TIFFTAG_BITSPERSAMPLE), 8);
        EXPECT_EQ(image.shortTag(TIFFTAG_PLANARCONFIG), PLANARCONFIG_CONTIG);
        EXPECT_EQ(image.shortTag(TIFFTAG_SAMPLESPERPIXEL), channels);
        EXPECT_EQ(image.shortTag(TIFFTAG_PHOTOMETRIC), colorSpace == CMYK ? PHOTOMETRIC_SEPARATED : PHOTOMETRIC_RGB);
        EXPECT_EQ(image.shortTag(TIFFTAG_INKSET), colorSpace == CMYK ? INKSET_CMYK : -1);
        EXPECT_EQ(image.raw, std::vector<unsigned char>(pixels, pixels + 2 * channels));
    }
}

TEST_F(TIFFOutputTest, ReportsAFileThatCannotBeWritten)
{
    EXPECT_THAT(errorsOf(reportUnwrittenTIFF), testing::HasSubstr("TIFF file could not be written."));
}
