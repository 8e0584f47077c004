// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Generators.h"
#include "support/ChartCase.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace
{

std::string const characterisationData = sourceFile("res/fogra39/FOGRA39L.ti3");

} // namespace

TEST(Generators, RebuildTheCmykProfile)
{
    TemporaryFolder const folder;
    ASSERT_EQ(run({MAKE_CMYK_PROFILE, characterisationData, folder.path() / "generic.icc"}), 0);
    expectSameBytes(folder.path() / "generic.icc", "res/generic.icc");
}

TEST(Generators, RebuildTheRgbProfile)
{
    TemporaryFolder const folder;
    ASSERT_EQ(run({MAKE_RGB_PROFILE, folder.path() / "RGBgeneric.icc"}), 0);
    expectSameBytes(folder.path() / "RGBgeneric.icc", "res/RGBgeneric.icc");
}

TEST(Generators, RebuildTheWarningSign)
{
    TemporaryFolder const folder;
    ASSERT_EQ(run({"rsvg-convert", "--width", "256", "--height", "256", sourceFile("res/warnsign.svg"), "--output",
                   folder.path() / "warnsign.png"}),
              0);
    expectSameBytes(folder.path() / "warnsign.png", "res/warnsign.png");
}

TEST(Generators, RebuildTheIcon)
{
    TemporaryFolder const folder;
    ASSERT_EQ(run({"rsvg-convert", sourceFile("res/icon.svg"), "--output", folder.path() / "icon.png"}), 0);
    expectSameBytes(folder.path() / "icon.png", "res/icon.png");
}

TEST(Generators, RebuildTheExamples)
{
    TemporaryFolder const folder;
    ASSERT_EQ(run({MAKE_EXAMPLES, characterisationData, folder.path()}), 0);
    for (char const* const name : {"it8.7-4-cmyk.txt", "rgb-cube-897.txt", "rgb-24.txt", "rgb-near-neutrals-231.txt"})
        expectSameBytes(folder.path() / name, std::string("examples/") + name);
}

TEST(Generators, FailWithoutTheirInput)
{
    TemporaryFolder const folder;
    EXPECT_EQ(run({MAKE_CMYK_PROFILE, folder.path() / "missing.ti3", folder.path() / "generic.icc"}), EXIT_FAILURE);
    EXPECT_EQ(run({MAKE_EXAMPLES, folder.path() / "missing.ti3", folder.path()}), EXIT_FAILURE);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(Generators, FailWhereTheyCannotWrite)
{
    TemporaryFolder const folder;
    EXPECT_EQ(run({MAKE_RGB_PROFILE, folder.path() / "missing/RGBgeneric.icc"}), EXIT_FAILURE);
    EXPECT_EQ(run({MAKE_EXAMPLES, characterisationData, folder.path() / "missing"}), EXIT_FAILURE);
}

TEST(WarningSign, IsASquarePngWithTransparency)
{
    std::string const bytes = bytesOf(sourceFile("res/warnsign.png"));
    ASSERT_GE(bytes.size(), 26U);
    EXPECT_EQ(bytes.substr(0, 8), "\x89PNG\r\n\x1a\n");
    std::string const widthAndHeight("\0\0\1\0\0\0\1\0", 8); // 256 each
    EXPECT_EQ(bytes.substr(16, 8), widthAndHeight);
    std::string const eightBitsWithAlpha = "\x08\x06";
    EXPECT_EQ(bytes.substr(24, 2), eightBitsWithAlpha);
}
