// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvRaster.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

// Makes AddressSanitizer return null when memory runs out, as the system does.
extern "C" char const* __asan_default_options();
extern "C" char const* __asan_default_options()
{
    return "allocator_may_return_null=1";
}

namespace
{

constexpr unsigned char ink[] = {'#', '#', '#', '#'};
constexpr auto furthest = std::numeric_limits<std::int64_t>::max();
constexpr auto nearest = std::numeric_limits<std::int64_t>::min();

// The raster's rows from the top, one character for each pixel: '.' for black.
std::vector<std::string> pictureOf(Raster const& raster, std::size_t width, std::size_t channels)
{
    std::vector<std::string> rows;
    for (std::size_t i = 0; i < raster.getSize(); i += channels) {
        if (i % (width * channels) == 0)
            rows.emplace_back();
        auto const byte = raster.getBytes()[i];
        rows.back() += byte == 0 ? '.' : static_cast<char>(byte);
        for (std::size_t channel = 1; channel < channels; ++channel)
            EXPECT_EQ(raster.getBytes()[i + channel], byte);
    }
    return rows;
}

using Rows = std::vector<std::string>;

// A picture of 5 x 4 pixels after one fill.
Rows filled(std::int64_t x, std::int64_t bottom, std::int64_t top, std::int64_t count)
{
    Raster raster;
    EXPECT_TRUE(raster.init(5, 4, 3, 60));
    raster.fill(x, bottom, top, count, ink);
    return pictureOf(raster, 5, 3);
}

} // namespace

TEST(Raster, StartsBlack)
{
    Raster raster;
    ASSERT_TRUE(raster.init(5, 4, 4, 80));
    EXPECT_FALSE(raster.isEmpty());
    EXPECT_EQ(raster.getSize(), 80u);
    EXPECT_EQ(pictureOf(raster, 5, 4), (Rows{".....", ".....", ".....", "....."}));
}

TEST(Raster, HasNoPixelsWithoutASideOrAChannel)
{
    Raster raster;
    EXPECT_TRUE(raster.init(0, 4, 3, 1000));
    EXPECT_TRUE(raster.isEmpty());
    EXPECT_TRUE(raster.init(5, 0, 3, 1000));
    EXPECT_TRUE(raster.isEmpty());
    EXPECT_TRUE(raster.init(5, 4, 0, 1000));
    EXPECT_TRUE(raster.isEmpty());
    EXPECT_TRUE(raster.init(-5, -4, 3, 1000));
    EXPECT_TRUE(raster.isEmpty());
    EXPECT_EQ(raster.getSize(), 0u);
    EXPECT_EQ(raster.getBytes(), nullptr);
}

TEST(Raster, IsRefusedAboveItsLimit)
{
    Raster raster;
    EXPECT_TRUE(raster.init(5, 4, 3, 60));
    EXPECT_FALSE(raster.init(5, 4, 3, 59));
    EXPECT_TRUE(raster.isEmpty());
}

TEST(Raster, IsRefusedWhenMemoryCannotHoldIt)
{
    constexpr auto longestSide = std::numeric_limits<std::int32_t>::max();
    Raster raster;
    EXPECT_FALSE(raster.init(longestSide, longestSide, 4, std::numeric_limits<std::uint64_t>::max()));
    EXPECT_TRUE(raster.isEmpty());
    EXPECT_EQ(raster.getSize(), 0u);
}

TEST(Raster, DrawsNothingWithoutPixels)
{
    Raster raster;
    raster.fill(0, 0, 10, 10, ink);
    raster.fillSpan(0, 10, 0, ink);
    EXPECT_TRUE(raster.isEmpty());
}

TEST(Raster, StoresItsTopRowFirst)
{
    Raster raster;
    ASSERT_TRUE(raster.init(5, 4, 3, 60));
    EXPECT_EQ(raster.getPixel(0, 3), raster.getBytes());
    EXPECT_EQ(raster.getPixel(2, 3), raster.getBytes() + 6);
    EXPECT_EQ(raster.getPixel(0, 2), raster.getBytes() + 15);
    EXPECT_EQ(raster.getPixel(4, 0), raster.getBytes() + 57);
}

TEST(Raster, UsesTheNearestPixelForPositionsOutside)
{
    Raster raster;
    ASSERT_TRUE(raster.init(5, 4, 3, 60));
    EXPECT_EQ(raster.getPixel(-1, 1), raster.getPixel(0, 1));
    EXPECT_EQ(raster.getPixel(5, 1), raster.getPixel(4, 1));
    EXPECT_EQ(raster.getPixel(2, -1), raster.getPixel(2, 0));
    EXPECT_EQ(raster.getPixel(2, 4), raster.getPixel(2, 3));
    EXPECT_EQ(raster.getPixel(nearest, furthest), raster.getPixel(0, 3));
    EXPECT_EQ(raster.getPixel(furthest, nearest), raster.getPixel(4, 0));
}

TEST(Raster, FillsARunInEachRow)
{
    EXPECT_EQ(filled(1, 1, 2, 3), (Rows{".....", ".###.", ".###.", "....."}));
    EXPECT_EQ(filled(0, 0, 3, 5), (Rows{"#####", "#####", "#####", "#####"}));
    EXPECT_EQ(filled(4, 3, 3, 1), (Rows{"....#", ".....", ".....", "....."}));
}

TEST(Raster, FillsNothingWithoutRowsOrPixels)
{
    Rows const black{".....", ".....", ".....", "....."};
    EXPECT_EQ(filled(1, 1, 2, 0), black);
    EXPECT_EQ(filled(1, 1, 2, -3), black);
    EXPECT_EQ(filled(1, 2, 1, 3), black);
}

TEST(Raster, ContinuesALongRunInTheRowBelow)
{
    EXPECT_EQ(filled(3, 2, 2, 4), (Rows{".....", "...##", "##...", "....."}));
    EXPECT_EQ(filled(3, 1, 3, 4), (Rows{"...##", "##.##", "##.##", "##..."}));
    EXPECT_EQ(filled(2, 2, 3, 9), (Rows{"..###", "#####", "#####", "#...."}));
}

TEST(Raster, EndsEveryRunAtItsLastPixel)
{
    EXPECT_EQ(filled(3, 0, 0, 4), (Rows{".....", ".....", ".....", "...##"}));
    EXPECT_EQ(filled(3, 0, 1, 4), (Rows{".....", ".....", "...##", "##.##"}));
    EXPECT_EQ(filled(4, 1, 1, furthest), (Rows{".....", ".....", "....#", "#####"}));
}

TEST(Raster, FillsItsNearestPixelsForRunsOutside)
{
    EXPECT_EQ(filled(-3, 1, 1, 2), (Rows{".....", ".....", "##...", "....."}));
    EXPECT_EQ(filled(9, 2, 2, 2), (Rows{".....", "....#", "#....", "....."}));
    EXPECT_EQ(filled(1, -9, -5, 2), (Rows{".....", ".....", ".....", ".##.."}));
    EXPECT_EQ(filled(1, 7, 8, 2), (Rows{".##..", ".....", ".....", "....."}));
    EXPECT_EQ(filled(1, nearest, furthest, 2), (Rows{".##..", ".##..", ".##..", ".##.."}));
}

TEST(Raster, FillsEveryPixelOfALongRun)
{
    Raster raster;
    ASSERT_TRUE(raster.init(20000, 2, 3, 120000));
    unsigned char const color[] = {1, 2, 3};
    raster.fill(1, 1, 1, 39998, color);
    std::vector<unsigned char> expected(120000);
    for (std::size_t i = 3; i < 119997; ++i)
        expected[i] = static_cast<unsigned char>(i % 3 + 1);
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), raster.getBytes()));
}

TEST(Raster, KeepsASpanInItsRow)
{
    Raster raster;
    ASSERT_TRUE(raster.init(5, 4, 4, 80));
    raster.fillSpan(1, 2, 3, ink);
    raster.fillSpan(3, 9, 1, ink);
    raster.fillSpan(-9, 0, -1, ink);
    raster.fillSpan(8, 9, 9, ink);
    raster.fillSpan(2, 1, 2, ink);
    EXPECT_EQ(pictureOf(raster, 5, 4), (Rows{".##.#", ".....", "...##", "#...."}));
}

TEST(Raster, StartsBlackAgain)
{
    Raster raster;
    ASSERT_TRUE(raster.init(5, 4, 3, 60));
    raster.fill(0, 0, 3, 5, ink);
    ASSERT_TRUE(raster.init(5, 4, 3, 60));
    EXPECT_EQ(pictureOf(raster, 5, 3), (Rows{".....", ".....", ".....", "....."}));
    raster.clear();
    EXPECT_TRUE(raster.isEmpty());
}
