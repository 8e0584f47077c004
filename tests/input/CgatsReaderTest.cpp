// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CgatsReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

TableFile fileOf(std::string text)
{
    TableFile file;
    file.text = std::move(text);
    readCgats(file, {0, 0, 1}, file.text.size());
    return file;
}

std::vector<std::string> namesOf(DataTable const& table)
{
    std::vector<std::string> names;
    for (Field const& field : table.fields)
        names.push_back(field.name);
    return names;
}

std::vector<std::string> rowOf(TableFile const& file, std::size_t table, std::size_t row)
{
    std::vector<Cell> cells;
    file.split(file.tables[table], file.tables[table].rows[row], cells);
    std::vector<std::string> contents;
    for (Cell const& cell : cells)
        contents.push_back(cell.content());
    return contents;
}

TEST(CgatsReader, IsForTextsWithAFormatOrData)
{
    EXPECT_TRUE(isCgats("x\nBEGIN_DATA_FORMAT\n"));
    EXPECT_TRUE(isCgats("\"BEGIN_DATA\",,,\n"));
    EXPECT_TRUE(isCgats("  begin_data\t\t"));
    EXPECT_FALSE(isCgats("CGATS.17\nBEGIN_DATA_SET\nEND_DATA\n"));
}

TEST(CgatsReader, ReadsKeywordsWithTheirValues)
{
    TableFile const file = fileOf("CGATS.17\tAverage of 2\n"
                                  "ORIGINATOR\t\"Test press\"\n"
                                  "CREATED\t\t\"8/20/2009\"  # Time: 14:42\n"
                                  "PRINT_CONDITIONS Sheet-fed offset printing\t\t\t\n"
                                  "MEASUREMENT_SOURCE \"MeasurementCondition=M1\tFilter=D50\"\n"
                                  "EMPTY\n"
                                  "BEGIN_DATA_FORMAT\nA\nEND_DATA_FORMAT\nBEGIN_DATA\n1\nEND_DATA\n");
    ASSERT_EQ(file.tables.size(), 1U);
    DataTable const& table = file.tables[0];
    EXPECT_EQ(table.identifier, "CGATS.17");
    ASSERT_NE(table.findKeyword("originator"), nullptr);
    EXPECT_EQ(table.findKeyword("ORIGINATOR")->value, "Test press");
    EXPECT_EQ(table.findKeyword("ORIGINATOR")->line, 2U);
    EXPECT_EQ(table.findKeyword("CREATED")->value, "8/20/2009");
    EXPECT_EQ(table.findKeyword("PRINT_CONDITIONS")->value, "Sheet-fed offset printing");
    EXPECT_EQ(table.findKeyword("MEASUREMENT_SOURCE")->value, "MeasurementCondition=M1\tFilter=D50");
    EXPECT_EQ(table.findKeyword("EMPTY")->value, "");
    EXPECT_EQ(table.findKeyword("MISSING"), nullptr);
}

TEST(CgatsReader, TakesAKeywordInTheFirstLineForOne)
{
    TableFile const file = fileOf("LGOROWLENGTH\t3\nBEGIN_DATA_FORMAT\nA\nEND_DATA_FORMAT\nBEGIN_DATA\n1\nEND_DATA\n");
    EXPECT_EQ(file.tables[0].identifier, "");
    EXPECT_EQ(file.tables[0].findKeyword("LGOROWLENGTH")->value, "3");
}

TEST(CgatsReader, TakesNoKeywordForAnIdentifier)
{
    TableFile const file =
        fileOf("CTI3\nCALIBRATED_BY \"x\"\nSPECTRAL_NORM 100\nBEGIN_DATA_FORMAT\nA\nBEGIN_DATA\n1\n");
    EXPECT_EQ(file.tables[0].identifier, "CTI3");
    EXPECT_NE(file.tables[0].findKeyword("CALIBRATED_BY"), nullptr);
    EXPECT_NE(file.tables[0].findKeyword("SPECTRAL_NORM"), nullptr);
}

TEST(CgatsReader, LetsALaterTableInheritTheFormat)
{
    TableFile const file = fileOf("CTI1\nBEGIN_DATA_FORMAT\nA B\nEND_DATA_FORMAT\nBEGIN_DATA\n1 2\nEND_DATA\n"
                                  "BEGIN_DATA\n3 4\nEND_DATA\n"
                                  "CTI2\nBEGIN_DATA_FORMAT\nC\nEND_DATA_FORMAT\nBEGIN_DATA\n5\nEND_DATA\n");
    ASSERT_EQ(file.tables.size(), 3U);
    EXPECT_THAT(namesOf(file.tables[1]), ElementsAre("A", "B"));
    EXPECT_EQ(file.tables[1].identifier, "CTI1");
    EXPECT_THAT(rowOf(file, 1, 0), ElementsAre("3", "4"));
    EXPECT_THAT(namesOf(file.tables[2]), ElementsAre("C"));
    EXPECT_EQ(file.tables[2].identifier, "CTI2");
}

TEST(CgatsReader, ReadsNamesAndRowsOnTheLinesOfTheirMarkers)
{
    TableFile const file = fileOf("BEGIN_DATA_FORMAT A B END_DATA_FORMAT\nBEGIN_DATA 1 2\n3 4\nEND_DATA\n");
    EXPECT_THAT(namesOf(file.tables[0]), ElementsAre("A", "B"));
    EXPECT_THAT(rowOf(file, 0, 0), ElementsAre("1", "2"));
    EXPECT_EQ(file.tables[0].rows.size(), 2U);
}

TEST(CgatsReader, SkipsNamelessColumnsUnderBothSeparations)
{
    std::string const head = "BEGIN_DATA_FORMAT\nID\t\tA\tB\t\nEND_DATA_FORMAT\nBEGIN_DATA\n";
    TableFile const spreadsheet = fileOf(head + "1\t\tx y\t2\t\nEND_DATA\n");
    EXPECT_THAT(namesOf(spreadsheet.tables[0]), ElementsAre("ID", "", "A", "B"));
    EXPECT_THAT(rowOf(spreadsheet, 0, 0), ElementsAre("1", "", "x y", "2"));
    TableFile const standard = fileOf(head + "1\tx\t2\nEND_DATA\n");
    EXPECT_THAT(namesOf(standard.tables[0]), ElementsAre("ID", "A", "B"));
    EXPECT_THAT(rowOf(standard, 0, 0), ElementsAre("1", "x", "2"));
}

TEST(CgatsReader, ReadsTabbedRowsUnderNamesWithBlanks)
{
    TableFile const file =
        fileOf("BEGIN_DATA_FORMAT\nID NAME A\nEND_DATA_FORMAT\nBEGIN_DATA\n1\tdark skin\t2\nEND_DATA\n");
    EXPECT_THAT(rowOf(file, 0, 0), ElementsAre("1", "dark skin", "2"));
}

TEST(CgatsReader, ReadsDensitiesAndSpectraOfMeasurementFiles)
{
    TableFile const file =
        fileOf("LGOROWLENGTH\t2\nBEGIN_DATA_FORMAT\nSampleID\tSAMPLE_NAME\tnm380\tnm390\nEND_DATA_FORMAT\n"
               "BEGIN_DATA\n1\tA1\t0.1\t1.026\nEND_DATA\n");
    EXPECT_THAT(rowOf(file, 0, 0), ElementsAre("1", "A1", "0.1", "1.026"));
}

TEST(CgatsReader, TakesATableWithoutItsEndWithAWarning)
{
    TableFile const file = fileOf("BEGIN_DATA_FORMAT\nA\nEND_DATA_FORMAT\nBEGIN_DATA\n1\nBEGIN_DATA\n2\n");
    ASSERT_EQ(file.tables.size(), 2U);
    EXPECT_EQ(file.tables[0].warnings.total(), 1U);
    EXPECT_EQ(file.tables[0].warnings.kept()[0].place.line, 6U);
    EXPECT_EQ(file.tables[1].warnings.total(), 1U);
    EXPECT_EQ(file.tables[1].rows.size(), 1U);
}

TEST(CgatsReader, RefusesAFileWithoutData)
{
    TableFile const file = fileOf("CGATS.17\nBEGIN_DATA_FORMAT\nA\nEND_DATA_FORMAT\n");
    EXPECT_THAT(file.tables, IsEmpty());
    EXPECT_EQ(file.faults.total(), 1U);
}

TEST(CgatsReader, StopsAtTheEndThatItIsGiven)
{
    TableFile file;
    file.text = "BEGIN_DATA_FORMAT\nA\nEND_DATA_FORMAT\nBEGIN_DATA\n1\nEND_DATA\n</x>\n";
    readCgats(file, {0, 0, 1}, file.text.find("</x>"));
    EXPECT_THAT(file.tables[0].keywords, IsEmpty());
    EXPECT_EQ(file.tables[0].lastLine, 6U);
}

} // namespace
