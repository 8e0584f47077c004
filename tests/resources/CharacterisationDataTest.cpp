// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CharacterisationData.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>

namespace
{

std::vector<MeasuredPatch> read(std::string const& text)
{
    TemporaryFolder const folder;
    std::ofstream(folder.path() / "data.ti3") << text;
    return readCharacterisationData(folder.path() / "data.ti3");
}

} // namespace

TEST(CharacterisationData, IsReadByTheNamesOfItsFields)
{
    std::vector<MeasuredPatch> const patches = read("CTI3\n\n"
                                                    "BEGIN_DATA_FORMAT\r\n"
                                                    "LAB_B LAB_A SAMPLE_ID LAB_L CMYK_K CMYK_Y CMYK_M CMYK_C\r\n"
                                                    "END_DATA_FORMAT\r\n"
                                                    "BEGIN_DATA\r\n"
                                                    "-2.5 1.25 A1 95 4 3 2 1\r\n"
                                                    "0 0 A2 50 40 30 20 10.5\r\n"
                                                    "END_DATA\r\n"
                                                    "not data\r\n");
    ASSERT_EQ(patches.size(), 2U);
    EXPECT_EQ(patches[0].device, (Cmyk{1, 2, 3, 4}));
    EXPECT_EQ(patches[0].lab, (Lab{95, 1.25, -2.5}));
    EXPECT_EQ(patches[1].device, (Cmyk{10.5, 20, 30, 40}));
}

TEST(CharacterisationData, HasNoPatchesWhereAFieldIsMissing)
{
    EXPECT_TRUE(read("BEGIN_DATA_FORMAT\nCMYK_C CMYK_M CMYK_Y CMYK_K LAB_L LAB_A\nEND_DATA_FORMAT\n"
                     "BEGIN_DATA\n0 0 0 0 95 0\nEND_DATA\n")
                    .empty());
}

TEST(CharacterisationData, HasNoPatchesWhereALineIsShortOrNoNumber)
{
    std::string const format =
        "BEGIN_DATA_FORMAT\nCMYK_C CMYK_M CMYK_Y CMYK_K LAB_L LAB_A LAB_B\nEND_DATA_FORMAT\nBEGIN_DATA\n";
    EXPECT_EQ(read(format + "0 0 0 0 95 0 -2\nEND_DATA\n").size(), 1U);
    EXPECT_TRUE(read(format + "0 0 0 0 95 0 -2\n0 0 0\nEND_DATA\n").empty());
    EXPECT_TRUE(read(format + "0 0 0 0 95 0 -2x\nEND_DATA\n").empty());
}

TEST(CharacterisationData, HasNoPatchesWithoutAFile)
{
    EXPECT_TRUE(readCharacterisationData("/nonexistent/data.ti3").empty());
    EXPECT_TRUE(read("").empty());
}
