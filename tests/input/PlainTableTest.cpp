// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PlainTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

TEST(PlainTable, IsToldByItsFirstWord)
{
    for (char const* text : {"CMYK_C CMYK_M CMYK_Y CMYK_K", "CMYK", "CMYK_anything", "\n\n RGB_R\tRGB_G RGB_B\n1 2 3",
                             "RGB values of my printer"})
        EXPECT_TRUE(isPlainTable(text)) << text;
    for (char const* text : {"", "cmyk_C", "CMYKX", "SAMPLE_ID RGB_R RGB_G RGB_B", "RGB_R,RGB_G,RGB_B", "\"RGB\"",
                             "CMYK_K CMYK_C CMYK_M CMYK_Y", "RGB_R RGB_G RGB_B NAME"})
        EXPECT_FALSE(isPlainTable(text)) << text;
}

TEST(PlainTable, TellsNamesInAnotherOrderThanTheWindows)
{
    EXPECT_TRUE(hasReorderedPlainHeader("CMYK_K CMYK_C CMYK_M CMYK_Y"));
    EXPECT_FALSE(hasReorderedPlainHeader("CMYK_C CMYK_M CMYK_Y CMYK_K"));
    EXPECT_FALSE(hasReorderedPlainHeader("SAMPLE_ID RGB_R RGB_G RGB_B"));
}

TEST(PlainTable, ReadsRowsOfAsManyValuesAsTheSpaceHas)
{
    TableFile file;
    file.text = "RGB\n1 2 3\n\n1 2\n 4\t5  6 \n";
    readPlainTable(file);
    DataTable const& table = file.tables[0];
    EXPECT_EQ(table.fields.size(), 3U);
    EXPECT_EQ(table.rows.size(), 2U);
    EXPECT_EQ(table.unreadRows, 1U);
    ASSERT_EQ(table.faults.total(), 1U);
    EXPECT_EQ(table.faults.kept()[0].place, (TextPlace{4, 1}));
    EXPECT_EQ(table.lastLine, 5U);
}

} // namespace
