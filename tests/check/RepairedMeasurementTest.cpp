// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "RepairedMeasurement.h"

#include "input/PatchImport.h"
#include "support/CheckedChart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class RepairedMeasurementTest : public testing::Test
{
protected:
    RepairedMeasurement repair(std::optional<SourceTable> const& source = {})
    {
        files = {readMeasurement(text, "m.txt")};
        Pairing const pairing = pairMeasurements(chart, files);
        EXPECT_EQ(pairing.fault, "");
        MeasurementCheck const check = checkMeasurement(chart, pairing.measurements.at(0), candidateOrders(chart));
        return repairMeasurement(chart, files, pairing.measurements[0], check, source);
    }

    // The readings of a repaired text.
    Readings readingsIn(std::string const& repaired) const
    {
        return pairMeasurements(chart, {readMeasurement(repaired, "r.txt")}).measurements.at(0).readings;
    }

    ChartReference chart = checkedChart({1, 12, 12});
    Readings readings = plainPrint(chart);
    std::string text;
    std::vector<Measurement> files;
};

TEST_F(RepairedMeasurementTest, GivesBackTheCleanMeasurement)
{
    text = measurementText(chart, readings);
    Readings const clean = readingsIn(text);
    auto const patches = columnOf(chart, "F");
    std::reverse(readings.begin() + static_cast<std::ptrdiff_t>(patches.front()),
                 readings.begin() + static_cast<std::ptrdiff_t>(patches.back()) + 1);
    text = measurementText(chart, readings);
    RepairedMeasurement const repaired = repair();
    EXPECT_EQ(readingsIn(repaired.text), clean);
    EXPECT_THAT(repaired.changes, ElementsAre("column F was read backwards"));
    EXPECT_THAT(repaired.text, HasSubstr("# put right: column F was read backwards\n"));
    EXPECT_THAT(repaired.missing, IsEmpty());
}

TEST_F(RepairedMeasurementTest, LeavesOutAPatchThatWasLost)
{
    auto const patches = columnOf(chart, "F");
    for (std::size_t row = 3; row + 1 < patches.size(); ++row)
        readings[patches[row]] = readings[patches[row + 1]];
    readings[patches.back()].reset();
    text = measurementText(chart, readings);
    RepairedMeasurement const repaired = repair();
    EXPECT_THAT(repaired.missing, ElementsAre("F4"));
    EXPECT_THAT(repaired.text, HasSubstr("# no reading: F4\n"));
    EXPECT_THAT(repaired.text, Not(HasSubstr("\tF4\t")));
    EXPECT_THAT(repaired.text, HasSubstr("NUMBER_OF_SETS\t143\n"));
}

// Spectra, comments and spellings of numbers stay as they are.
TEST_F(RepairedMeasurementTest, KeepsColumnsAsTheyAreWritten)
{
    text = "CGATS.17\nFILTER\t\"D50 \"\"UV\"\"\"\nBEGIN_DATA_FORMAT\nSAMPLE_NAME\tLAB_L\tLAB_A\tLAB_B\tNOTE\n"
           "END_DATA_FORMAT\nBEGIN_DATA\nA1\t50.0\t+1\t2e0\ttwo words\nEND_DATA\n";
    RepairedMeasurement const repaired = repair();
    EXPECT_THAT(repaired.text, HasSubstr("SAMPLE_ID\tSAMPLE_LOC\tRGB_R\tRGB_G\tRGB_B\tLAB_L\tLAB_A\tLAB_B\tNOTE\n"));
    EXPECT_THAT(repaired.text, HasSubstr("1\tA1\t255\t255\t255\t50.0\t+1\t2e0\t\"two words\"\n"));
    EXPECT_THAT(repaired.text, HasSubstr("FILTER\t"));
}

TEST_F(RepairedMeasurementTest, KeepsMeasuredColumnsWhoseNamesHaveBlanks)
{
    text = "SAMPLE_LOC,Lab L,Lab a,Lab b\n";
    for (ChartPatch const& patch : chart.patches)
        text += patch.label + "," + std::to_string(10 + text.size() % 80) + ",1,2\n";
    Readings const written = readingsIn(text);
    RepairedMeasurement const repaired = repair();
    EXPECT_THAT(repaired.text, HasSubstr("\tLABL\tLABA\tLABB\nEND_DATA_FORMAT\n"));
    EXPECT_EQ(readingsIn(repaired.text), written);
}

TEST_F(RepairedMeasurementTest, KeepsATextOfSeveralLinesInItsRow)
{
    text = "SAMPLE_LOC,Remark,LAB_L,LAB_A,LAB_B\n";
    for (ChartPatch const& patch : chart.patches)
        text += patch.label + ",\"two\nlines\"," + std::to_string(10 + text.size() % 80) + ",1,2\n";
    Readings const written = readingsIn(text);
    RepairedMeasurement const repaired = repair();
    EXPECT_THAT(repaired.text, HasSubstr("\t\"two lines\"\t"));
    EXPECT_EQ(readingsIn(repaired.text), written);
}

TEST_F(RepairedMeasurementTest, GivesRowsInTheOrderOfATable)
{
    text = measurementText(chart, readings);
    std::string table = "CGATS.17\nBEGIN_DATA_FORMAT\nSAMPLE_ID\tSAMPLE_NAME\tRGB_R\tRGB_G\tRGB_B\nEND_DATA_FORMAT\n"
                        "BEGIN_DATA\n";
    for (std::size_t const patch : {std::size_t{5}, std::size_t{2}}) {
        auto const& values = chart.patches[patch].values;
        table += "id" + std::to_string(patch) + "\tName " + std::to_string(patch) + "\t" + values[0] + "\t" +
                 values[1] + "\t" + values[2] + "\n";
    }
    TableImport const import = importTable(table + "END_DATA\n", {DeviceScale::eightBit, RGB, 0, false});
    ASSERT_TRUE(import.isGood());
    SourceTable const source = findSourceTable(chart, import.patches);
    ASSERT_EQ(source.fault, "");
    EXPECT_THAT(source.patches, ElementsAre(5, 2));
    std::string const repaired = repair(source).text;
    EXPECT_LT(repaired.find("id5\tA6\t\"Name 5\"\t"), repaired.find("id2\tA3\t\"Name 2\"\t"));
    EXPECT_THAT(repaired, HasSubstr("NUMBER_OF_SETS\t2\n"));
}

TEST_F(RepairedMeasurementTest, RefusesATableThatTheChartWasNotMadeFrom)
{
    TableImport const import = importTable("RGB_R RGB_G RGB_B\n1 2 3\n");
    EXPECT_THAT(findSourceTable(chart, import.patches).fault, HasSubstr("another table"));
}

} // namespace
