// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// convert, describe, and what chart takes of tables, as the program is started.

#include "command/TableCommands.h"

#include "StartedCommand.h"
#include "lib/OvFile.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace
{

using testing::HasSubstr;
using testing::StartsWith;
using Strings = std::vector<std::string>;

// Decimal commas, and 1 for full strength: 0.5 of 255 is 127.5.
constexpr char spreadsheet[] = "ID;Name;Red;Green;Blue\n7;sky;0;0,5;1\n8;paper;1;1;1\n";
constexpr char spreadsheetAsPlain[] = "RGB_R RGB_G RGB_B\n0 127.5 255\n255 255 255\n";

// All values between 0 and 100: percent or 8 bit.
constexpr char openScale[] = "CGATS.17\nNUMBER_OF_FIELDS 4\nBEGIN_DATA_FORMAT\nSAMPLE_ID RGB_R RGB_G RGB_B\n"
                             "END_DATA_FORMAT\nNUMBER_OF_SETS 2\nBEGIN_DATA\n1 20 40 60\n2 80 10 33\nEND_DATA\n";

class TableCommandsTest : public CommandTest
{
protected:
    TableCommandsTest()
    {
        work.write("export.csv", spreadsheet);
        work.write("open.txt", openScale);
    }

    std::string contentsOf(std::string const& name) const
    {
        String const text = RFile::readContents(work.pathOf(name));
        return {text.begin(), text.end()};
    }

    Outcome good(Strings const& arguments) const
    {
        Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
        EXPECT_EQ(outcome.errors, "");
        return outcome;
    }
};

} // namespace

TEST_F(TableCommandsTest, ConvertPrintsThePlainTable)
{
    EXPECT_EQ(good({"convert", "export.csv"}).output, spreadsheetAsPlain);
}

TEST_F(TableCommandsTest, ConvertWritesThePlainTableAndTheIdentifiers)
{
    EXPECT_EQ(good({"convert", "export.csv", "-o", "plain.txt", "--ids", "ids.csv"}).output, "");
    EXPECT_EQ(contentsOf("plain.txt"), spreadsheetAsPlain);
    EXPECT_EQ(contentsOf("ids.csv"), "LINE,SAMPLE_ID,SAMPLE_NAME\n2,7,sky\n3,8,paper\n");
}

TEST_F(TableCommandsTest, ConvertReplacesAFileOnlyWhenForced)
{
    work.write("plain.txt", "mine");
    Outcome const refused = run({"convert", "export.csv", "-o", "plain.txt"});
    EXPECT_EQ(refused.exitStatus, 1);
    EXPECT_EQ(refused.errors, "patchloom-cli: plain.txt: is there already; give --force to replace it\n");
    EXPECT_EQ(contentsOf("plain.txt"), "mine");
    good({"convert", "export.csv", "-o", "plain.txt", "--force"});
    EXPECT_EQ(contentsOf("plain.txt"), spreadsheetAsPlain);
}

TEST_F(TableCommandsTest, ConvertSaysWhichFileItCannotWrite)
{
    Outcome const outcome = run({"convert", "export.csv", "-o", "missing/plain.txt"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.errors, "patchloom-cli: missing/plain.txt: cannot be written (No such file or directory)\n");
}

TEST_F(TableCommandsTest, AScaleThatIsOpenIsAskedFor)
{
    Outcome const refused = run({"convert", "open.txt"});
    EXPECT_EQ(refused.exitStatus, 1);
    EXPECT_EQ(refused.output, "");
    EXPECT_THAT(refused.errors, StartsWith("patchloom-cli: open.txt:"));
    EXPECT_THAT(refused.errors, HasSubstr("--scale"));
    // 20 % of 255 is 51.
    EXPECT_EQ(good({"convert", "open.txt", "--scale", "100"}).output,
              "RGB_R RGB_G RGB_B\n51 102 153\n204 25.5 84.15\n");
    EXPECT_EQ(good({"convert", "open.txt", "--scale", "255"}).output, "RGB_R RGB_G RGB_B\n20 40 60\n80 10 33\n");
}

TEST_F(TableCommandsTest, TheSpaceOfATableWithoutColumnNamesIsAskedFor)
{
    work.write("values.csv", "10,20,30\n200,210,220\n");
    EXPECT_EQ(run({"convert", "values.csv"}).exitStatus, 1);
    EXPECT_EQ(good({"convert", "values.csv", "--space", "rgb"}).output, "RGB_R RGB_G RGB_B\n10 20 30\n200 210 220\n");
}

TEST_F(TableCommandsTest, OneOfSeveralTablesIsChosenByItsNumber)
{
    std::string const table = "NUMBER_OF_FIELDS 3\nBEGIN_DATA_FORMAT\nRGB_R RGB_G RGB_B\nEND_DATA_FORMAT\n"
                              "NUMBER_OF_SETS 1\nBEGIN_DATA\n";
    work.write("two.txt", "CGATS.17\n" + table + "255 0 0\nEND_DATA\nCGATS.17\n" + table + "0 0 255\nEND_DATA\n");
    EXPECT_EQ(good({"convert", "two.txt", "--table", "2"}).output, "RGB_R RGB_G RGB_B\n0 0 255\n");
    EXPECT_THAT(run({"convert", "two.txt", "--table", "0"}).errors, HasSubstr("--table"));
    EXPECT_EQ(run({"convert", "two.txt", "--table", "0"}).exitStatus, 2);
}

TEST_F(TableCommandsTest, DescribeTellsWhatIsInATable)
{
    std::string const text = good({"describe", "export.csv"}).output;
    for (char const* line : {"kind            separated values, UTF-8\n", "where           lines 2 to 3\n",
                             "colour space    RGB\n", "patches         2, 2 distinct colours, 0 repeats, 1 white\n",
                             "values          R 0 to 255, G 127.5 to 255, B 255 to 255\n"})
        EXPECT_THAT(text, HasSubstr(line));
}

TEST_F(TableCommandsTest, DescribeCountsTheRowsAboveEachSumOfInks)
{
    work.write("inks.txt", "CMYK\n100 100 100 0\n100 100 100 1\n100 100 100 30\n100 100 100 100\n0 0 0 0\n");
    auto const json = nlohmann::json::parse(good({"describe", "inks.txt", "--json"}).output);
    EXPECT_EQ(json["colorSpace"], "CMYK");
    EXPECT_EQ(json["patches"], 5);
    EXPECT_EQ(json["whites"], 1);
    EXPECT_EQ(json["largestInkSum"], 400);
    EXPECT_EQ(json["largestInkSumLine"], 5);
    EXPECT_EQ(json["inkExcesses"]["300"], 3);
    EXPECT_EQ(json["inkExcesses"]["320"], 2);
    EXPECT_EQ(json["inkExcesses"]["400"], 0);
}

TEST_F(TableCommandsTest, ChartMakesTheSameOfATableAndOfItsPlainForm)
{
    work.write("plain.txt", spreadsheetAsPlain);
    for (std::string const folder : {"a", "b"}) {
        std::filesystem::create_directory(pathOf(folder));
        good({"chart", folder == "a" ? "export.csv" : "plain.txt", "-n", "same", "-o", folder, "-q"});
    }
    EXPECT_EQ(contentsOf("a/same/same_001.eps"), contentsOf("b/same/same_001.eps"));
    EXPECT_THAT(contentsOf("a/same/same.xml"), HasSubstr("\t127.5\t255\n"));
}

TEST_F(TableCommandsTest, AChartsDescriptionIsATableAgain)
{
    std::string const table = rgbTable(24);
    work.write("table.txt", table);
    good({"chart", "table.txt", "-d", "long-ruler", "-q"});
    // The chart has the patches in another order, and white ones that fill it up.
    auto const json = nlohmann::json::parse(good({"describe", "table/table.xml", "--json"}).output);
    EXPECT_EQ(json["patches"], 24);
    EXPECT_EQ(json["colorSpace"], "RGB");
}

TEST_F(TableCommandsTest, TheBestOrderIsNotBelowTheStandardOneNorAboveItsBound)
{
    std::filesystem::copy(std::string(PATCHLOOM_EXAMPLES) + "rgb-near-neutrals-231.txt", work.path() / "grey.txt");
    auto const madeBy = [&](char const* order) {
        return nlohmann::json::parse(
            good({"chart", "grey.txt", "-d", "long-ruler", "-n", order, "--order", order, "--json"}).output);
    };
    auto const standard = madeBy("standard");
    auto const best = madeBy("best");
    EXPECT_EQ(standard["order"], "standard");
    EXPECT_FALSE(standard.contains("bound"));
    EXPECT_EQ(standard["gap"], 1);
    EXPECT_EQ(best["order"], "best");
    EXPECT_EQ(best["gap"], 0);
    EXPECT_GE(best["smallestDeltaE"], 18);
    EXPECT_LE(best["smallestDeltaE"], best["bound"]);
}
