// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SeparatedValuesReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace
{

TableFile fileOf(std::string text, ColorSpace space = undefined)
{
    TableFile file;
    file.text = std::move(text);
    readSeparatedValues(file, space);
    return file;
}

TEST(SeparatedValuesReader, TellsTheSeparationByTheHeader)
{
    for (auto const& [text, separation] : {std::pair{"RGB_R\tRGB_G\tRGB_B\n1\t2\t3\n", Separation::tab},
                                           std::pair{"RGB_R;RGB_G;RGB_B\n1;2;3\n", Separation::semicolon},
                                           std::pair{"RGB_R,RGB_G,RGB_B\n1,2,3\n", Separation::comma},
                                           std::pair{"rgb_r rgb_g rgb_b\n1 2 3\n", Separation::blanks},
                                           std::pair{"rgb_r\trgb_g\trgb_b\n1 2 3\n", Separation::blanks}}) {
        TableFile const file = fileOf(text);
        ASSERT_EQ(file.tables.size(), 1U) << text;
        EXPECT_EQ(file.tables[0].separation, separation) << text;
        EXPECT_EQ(file.tables[0].rows.size(), 1U) << text;
    }
}

TEST(SeparatedValuesReader, ReadsLineBreaksInQuotes)
{
    TableFile const file = fileOf("Name,R,G,B\n\"a\r\nb \"\"c\"\"\",1,2,3\nd,4,5,6\n");
    DataTable const& table = file.tables[0];
    ASSERT_EQ(table.rows.size(), 2U);
    EXPECT_EQ(table.rows[1].number, 4U);
    std::vector<Cell> cells;
    file.split(table, table.rows[0], cells);
    EXPECT_EQ(cells[0].content(), "a\r\nb \"c\"");
}

TEST(SeparatedValuesReader, DoesNotLetAnOpenQuoteSwallowTheRows)
{
    TableFile const file = fileOf("Name,R,G,B\n\"a,1,2,3\nb,4,5,6\n");
    ASSERT_EQ(file.tables[0].rows.size(), 2U);
}

TEST(SeparatedValuesReader, LeavesOutEmptyLinesAndTheLinesAboveTheHeader)
{
    TableFile const file = fileOf("Charts of May; all of them\n\nID;R;G;B\n\n1;2;3;4\n \n");
    EXPECT_EQ(file.tables[0].place.line, 3U);
    EXPECT_EQ(file.tables[0].rows.size(), 1U);
    EXPECT_EQ(file.notes.size(), 1U);
}

TEST(SeparatedValuesReader, AllowsEmptyCellsBehindTheLastColumn)
{
    TableFile const file = fileOf("R,G,B,,\n1,2,3,,\n4,5,6\n7,8,9,,x\n");
    EXPECT_EQ(file.tables[0].fields.size(), 3U);
    EXPECT_EQ(file.tables[0].rows.size(), 2U);
    EXPECT_EQ(file.tables[0].unreadRows, 1U);
}

TEST(SeparatedValuesReader, TakesColumnsWithoutNamesForTheSpaceThatIsSaid)
{
    TableFile const file = fileOf("0,1,2,3\n4,5,6,7\n", CMYK);
    ASSERT_EQ(file.tables.size(), 1U);
    EXPECT_EQ(file.tables[0].fields[3].name, "CMYK_K");
    EXPECT_EQ(file.tables[0].rows.size(), 2U);
}

TEST(SeparatedValuesReader, FindsMeasuredValuesToo)
{
    TableFile const file = fileOf("ID,LAB_L,LAB_A,LAB_B\n1,2,3,4\n");
    ASSERT_EQ(file.tables.size(), 1U);
    EXPECT_EQ(file.tables[0].rows.size(), 1U);
}

} // namespace
