// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColumnNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

using testing::ElementsAre;

namespace
{

ColumnNames namesOf(std::string const& words)
{
    std::vector<Field> fields;
    std::istringstream stream(words);
    for (std::string word; stream >> word;)
        fields.push_back({word, 0});
    return ColumnNames(fields);
}

std::vector<std::string> foreignSpacesOf(std::string const& words)
{
    std::vector<std::string> found;
    for (ForeignSpace const& space : namesOf(words).foreignSpaces)
        found.push_back(space.name);
    return found;
}

TEST(ColumnNames, FindCmykInEverySpellingAndOrder)
{
    for (char const* words :
         {"X CMYK_K CMYK_C CMYK_M CMYK_Y", "X Black cyan MAGENTA Yellow", "X k c m y", "X cmyk_k CmykC CMYK__M cmyky",
          "X 4CLR_4 4CLR_1 4CLR_2 4CLR_3", "X PC4_4 PC4_1 PC4_2 PC4_3"}) {
        auto const cmyk = namesOf(words).cmyk;
        ASSERT_TRUE(cmyk) << words;
        EXPECT_THAT(cmyk->columns, ElementsAre(2, 3, 4, 1)) << words;
    }
}

TEST(ColumnNames, FindRgbInEverySpellingAndOrder)
{
    for (char const* words : {"RGB_B X RGB_R RGB_G", "blue X Red GREEN", "b X r g"}) {
        auto const rgb = namesOf(words).rgb;
        ASSERT_TRUE(rgb) << words;
        EXPECT_EQ(rgb->columns[0], 2U);
        EXPECT_EQ(rgb->columns[1], 3U);
        EXPECT_EQ(rgb->columns[2], 0U);
    }
}

TEST(ColumnNames, CountOnlyAsAWhole)
{
    EXPECT_FALSE(namesOf("RGB_R1 MY_RGB_G RGB_B").rgb);
    EXPECT_FALSE(namesOf("X Y Z L a b C h").hasDeviceValues());
    EXPECT_FALSE(namesOf("D_RED D_GREEN D_BLUE D_VIS").hasDeviceValues());
    EXPECT_TRUE(namesOf("D_RED D_GREEN D_BLUE D_VIS").hasMeasurements);
}

TEST(ColumnNames, TellOtherColourSpacesByName)
{
    EXPECT_THAT(foreignSpacesOf("7CLR_1 7CLR_2 7CLR_7"), ElementsAre("seven inks (7CLR)"));
    EXPECT_THAT(foreignSpacesOf("3CLR_1 3CLR_2 3CLR_3"), ElementsAre("three inks (3CLR)"));
    EXPECT_THAT(foreignSpacesOf("5CLR_1 5CLR_2 5CLR_3 5CLR_4 5CLR_5"), ElementsAre("five inks (5CLR)"));
    EXPECT_THAT(foreignSpacesOf("10CLR_1 10CLR_10"), ElementsAre("ten inks (10CLR)"));
    EXPECT_THAT(foreignSpacesOf("PCA_1 PCA_A"), ElementsAre("ten inks (PCA)"));
    EXPECT_THAT(foreignSpacesOf("CMY_C CMY_M CMY_Y"), ElementsAre("CMY"));
    EXPECT_THAT(foreignSpacesOf("CMYKOG_C CMYKOG_M CMYKOG_Y CMYKOG_K CMYKOG_O CMYKOG_G"),
                ElementsAre("six inks (CMYKOG)"));
    EXPECT_THAT(foreignSpacesOf("GRAY_K"), ElementsAre("gray"));
    EXPECT_THAT(foreignSpacesOf("CMYK_C CMYK_M CMYK_Y CMYK_K RGB_R RGB_G RGB_B LAB_L"), testing::IsEmpty());
}

TEST(ColumnNames, TellWhatIsMissing)
{
    ColumnNames const names = namesOf("CMYK_C CMYK_Y CMYK_K");
    ASSERT_EQ(names.incompleteSpaces.size(), 1U);
    EXPECT_EQ(names.incompleteSpaces[0].missing, "CMYK_M");
    ColumnNames const unnamed = namesOf("4CLR_1 4CLR_2 4CLR_4");
    ASSERT_EQ(unnamed.incompleteSpaces.size(), 1U);
    EXPECT_EQ(unnamed.incompleteSpaces[0].missing, "4CLR_3");
}

TEST(ColumnNames, TellWhatIsThereTwice)
{
    EXPECT_THAT(namesOf("RGB_R RGB_G RGB_G RGB_B").repeated, ElementsAre("RGB_G"));
    EXPECT_THAT(namesOf("SPECTRAL_NM SPECTRAL_DEC SPECTRAL_NM SPECTRAL_DEC RGB_R RGB_G RGB_B").repeated,
                testing::IsEmpty());
}

TEST(ColumnNames, FindLabels)
{
    ColumnNames const names = namesOf("SAMPLE_NO SampleID Sample_Name SAMPLE_LOC CONTROL");
    EXPECT_EQ(names.id, 1U);
    EXPECT_EQ(names.name, 2U);
    EXPECT_EQ(names.location, 3U);
    EXPECT_EQ(names.control, 4U);
    EXPECT_EQ(namesOf("INDEX RGB_R").id, 0U);
    EXPECT_FALSE(namesOf("IDENT").id);
}

TEST(ColumnNames, KnowMeasuredValues)
{
    for (char const* words : {"LAB_L", "Lab_a", "XYZ_X", "XYY_Y", "SPECTRAL_NM400", "SPECTRAL_NM_400", "SPECTRAL_400",
                              "NM_400", "nm400", "SPEC_400", "400nm", "400_NM", "SPECTRAL_DEC"})
        EXPECT_TRUE(namesOf(words).hasMeasurements) << words;
    for (char const* words : {"SPECTRAL", "NM", "NORM_400", "X"})
        EXPECT_FALSE(namesOf(words).hasMeasurements) << words;
}

} // namespace
