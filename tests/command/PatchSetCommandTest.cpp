// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The command that makes a table, as it is started.

#include "command/PatchSetCommand.h"

#include "StartedCommand.h"
#include "lib/OvFile.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace
{

constexpr char rgbProfile[] = PATCHLOOM_RESOURCES "RGBgeneric.icc";

using testing::HasSubstr;
using testing::StartsWith;
using Strings = std::vector<std::string>;

class PatchSetCommandTest : public CommandTest
{
protected:
    std::string contentsOf(std::string const& name) const
    {
        String const text = RFile::readContents(String(pathOf(name).c_str()));
        return {text.begin(), text.end()};
    }

    Outcome table(Strings arguments) const
    {
        arguments.insert(arguments.begin(), "table");
        return run(arguments);
    }

    void expectWrongUse(Strings const& arguments, std::string const& reason) const
    {
        Outcome const outcome = table(arguments);
        EXPECT_EQ(outcome.exitStatus, 2);
        EXPECT_EQ(outcome.output, "");
        EXPECT_THAT(outcome.errors, StartsWith("patchloom-cli: " + reason));
        EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1);
    }

    void expectNotMade(Strings const& arguments, std::string const& reason) const
    {
        Outcome const outcome = table(arguments);
        EXPECT_EQ(outcome.exitStatus, 1);
        EXPECT_EQ(outcome.output, "");
        EXPECT_THAT(outcome.errors, HasSubstr(reason));
        EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1);
    }
};

std::ptrdiff_t linesOf(std::string const& text)
{
    return std::count(text.begin(), text.end(), '\n');
}

} // namespace

TEST_F(PatchSetCommandTest, PrintsThePlainTableAndTellsTheSummaryBeside)
{
    Outcome const outcome = table({"--space", "cmyk", "--patches", "60"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_THAT(outcome.output, StartsWith("CMYK_C CMYK_M CMYK_Y CMYK_K\n0 0 0 0\n"));
    EXPECT_EQ(linesOf(outcome.output), 61);
    EXPECT_THAT(outcome.errors, HasSubstr("60 CMYK: 4 white"));
    EXPECT_THAT(outcome.errors, HasSubstr("at most 320 %"));
}

TEST_F(PatchSetCommandTest, WritesTheSameTableIntoAFile)
{
    std::string const printed = table({"--space", "rgb", "--patches", "30", "--seed", "5"}).output;
    Outcome const outcome = table({"--space", "rgb", "--patches", "30", "--seed", "5", "-o", "t.txt"});
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(outcome.output, StartsWith("t.txt\n"));
    EXPECT_EQ(contentsOf("t.txt"), printed);
    EXPECT_NE(table({"--space", "rgb", "--patches", "30", "--seed", "6"}).output, printed);
}

TEST_F(PatchSetCommandTest, ReplacesAFileOnlyWhenForced)
{
    work.write("t.txt", "mine");
    expectNotMade({"--space", "rgb", "--patches", "9", "-o", "t.txt"}, "t.txt: is there already; give --force");
    EXPECT_EQ(contentsOf("t.txt"), "mine");
    EXPECT_EQ(table({"--space", "rgb", "--patches", "9", "-o", "t.txt", "--force"}).exitStatus, 0);
    EXPECT_THAT(contentsOf("t.txt"), StartsWith("RGB_R RGB_G RGB_B\n255 255 255\n"));
}

TEST_F(PatchSetCommandTest, PrintsOneJsonObject)
{
    Outcome const outcome =
        table({"--space", "cmyk", "--patches", "50", "--json", "-o", "t.txt", "--ink-limit", "280"});
    auto const json = nlohmann::json::parse(outcome.output);
    EXPECT_EQ(json["file"], "t.txt");
    EXPECT_EQ(json["patches"], 50);
    EXPECT_EQ(json["inkLimit"], 280);
    EXPECT_EQ(json["round"], "0.1");
    EXPECT_EQ(json["kinds"]["white"], 4);
    EXPECT_GT(json["fillDistance"]["deltaE"]["largest"], json["fillDistance"]["deltaE"]["mean"]);
    EXPECT_GT(json["fillDistance"]["device"]["percentile99"], 0);
}

TEST_F(PatchSetCommandTest, TakesAnotherPrintersProfile)
{
    std::string const own = table({"--space", "rgb", "--patches", "80"}).output;
    Outcome const outcome = table({"--space", "rgb", "--patches", "80", "--profile", rgbProfile});
    EXPECT_EQ(outcome.output, own);
    EXPECT_THAT(outcome.errors, HasSubstr("RGBgeneric.icc"));
}

TEST_F(PatchSetCommandTest, TellsWhyAProfileCannotBeUsed)
{
    work.write("damaged.icc", "acsp");
    Strings const start{"--space", "cmyk", "--patches", "9", "--profile"};
    auto const with = [&](std::string const& path) {
        Strings words = start;
        words.push_back(path);
        return words;
    };
    expectNotMade(with("damaged.icc"), "--profile: damaged.icc: is no ICC profile, or a damaged one");
    expectNotMade(with("none.icc"), "--profile: none.icc: cannot be read: No such file");
    expectNotMade(with(rgbProfile), "is for RGB, not for CMYK");
}

TEST_F(PatchSetCommandTest, IncludesATableOfAnyKind)
{
    work.write("mine.csv", "CMYK_C,CMYK_M,CMYK_Y,CMYK_K\n12.345,0,0,0\n100,50,0,0\n");
    Outcome const outcome = table({"--space", "cmyk", "--patches", "40", "--include", "mine.csv"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
    EXPECT_THAT(outcome.output, HasSubstr("\n12.345 0 0 0\n"));
    EXPECT_THAT(outcome.output, HasSubstr("\n100 50 0 0\n"));
    EXPECT_EQ(linesOf(outcome.output), 41);
    EXPECT_THAT(outcome.errors, HasSubstr("2 included"));
}

TEST_F(PatchSetCommandTest, RefusesIncludedPatchesThatDoNotFit)
{
    work.write("rgb.txt", rgbTable(5));
    work.write("heavy.txt", "CMYK_C CMYK_M CMYK_Y CMYK_K\n10 10 10 10\n100 100 100 30\n");
    expectNotMade({"--space", "cmyk", "--patches", "40", "--include", "heavy.txt"},
                  "heavy.txt:3: the inks add up to more than the limit");
    EXPECT_EQ(table({"--space", "cmyk", "--patches", "40", "--include", "rgb.txt"}).exitStatus, 1);
    expectNotMade({"--space", "rgb", "--patches", "4", "--include", "rgb.txt"},
                  "the patches that must be in are 5: 5 included; the table is to have 4; give more --patches");
}

TEST_F(PatchSetCommandTest, RefusesImpossibleWishes)
{
    expectWrongUse({"--space", "cmyk"}, "say how many patches: give --patches N or --fit SHEETS");
    expectWrongUse({"--space", "cmyk", "--patches", "5", "--fit", "1"}, "--fit: the sheets say how many patches");
    expectWrongUse({"--space", "gray", "--patches", "5"}, "--space: \"gray\" is not cmyk or rgb");
    for (char const* const count : {"0", "-1", "20001", "5x", "", "1e3"})
        EXPECT_EQ(table({"--space", "cmyk", "--patches", count}).exitStatus, 2) << count;
    expectWrongUse({"--space", "cmyk", "--patches", "5", "--ink-limit", "99.9"},
                   "--ink-limit: 99.9 % leaves no full ink");
    expectWrongUse({"--space", "cmyk", "--patches", "5", "--ink-limit", "401"}, "--ink-limit: four inks are 400 %");
    expectWrongUse({"--space", "cmyk", "--patches", "5", "--ink-limit", "nan"},
                   "--ink-limit: \"nan\" is no percentage");
    expectWrongUse({"--space", "rgb", "--patches", "5", "--ink-limit", "300"}, "--ink-limit: only cmyk");
    expectWrongUse({"--space", "rgb", "--patches", "5", "--round", "2"}, "--round: \"2\" is not 1, 0.1 or 8bit");
    expectWrongUse({"--space", "rgb", "--patches", "5", "--neutral-weight", "0"},
                   "--neutral-weight: \"0\" is no number");
    expectWrongUse({"--space", "rgb", "--patches", "5", "--seed", "-1"}, "--seed: \"-1\" is no whole number");
    expectWrongUse({"--space", "rgb", "--patches", "5", "--whites", "x"}, "--whites: \"x\" is no whole number");
    expectNotMade({"--space", "rgb", "--patches", "5", "--whites", "6"}, "the patches that must be in are 6: 6 white");
}

TEST_F(PatchSetCommandTest, FillsSheetsExactly)
{
    Outcome const outcome =
        table({"--space", "cmyk", "--fit", "1", "-d", "gb-scan", "-s", "12", "-o", "t.txt", "--json"});
    ASSERT_EQ(outcome.exitStatus, 0) << outcome.errors;
    auto const summary = nlohmann::json::parse(outcome.output);
    EXPECT_EQ(summary["fit"]["sheets"], 1);
    EXPECT_EQ(linesOf(contentsOf("t.txt")), summary["patches"].get<int>() + 1);
    auto const sheetsOf = [&](std::string const& name) {
        Outcome const made = run({"chart", name, "-d", "gb-scan", "-s", "12", "--json"});
        EXPECT_EQ(made.exitStatus, 0) << made.errors;
        return nlohmann::json::parse(made.output)["sheets"].get<int>();
    };
    EXPECT_EQ(sheetsOf("t.txt"), 1);
    work.write("more.txt", contentsOf("t.txt") + "1 2 3 4\n");
    EXPECT_EQ(sheetsOf("more.txt"), 2);
}

TEST_F(PatchSetCommandTest, TellsWhyNoTableFillsTheSheets)
{
    expectNotMade({"--space", "cmyk", "--fit", "3"}, "--fit: no chart has exactly 3 sheets: ");
    expectNotMade({"--space", "cmyk", "--fit", "900"}, "--fit: 900 sheets hold more than 20000 patches");
    expectNotMade({"--space", "cmyk", "--fit", "1", "-p", "40x40", "-s", "100"}, "--fit: no chart fits on 1 sheet");
    expectWrongUse({"--space", "cmyk", "--fit", "1", "-d", "none"}, "--device: there is no device \"none\"");
}

// Numbers have decimal points in every locale.
TEST_F(PatchSetCommandTest, ReadsAndWritesNumbersTheSameInEveryLocale)
{
    Surroundings german = around;
    german.environment.emplace_back("LC_ALL=de_DE.UTF-8");
    Strings const words{"table", "--space", "cmyk", "--patches", "40", "--ink-limit", "250.5"};
    Outcome const outcome = runIn(german, words);
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
    EXPECT_EQ(outcome.output, run(words).output);
    EXPECT_THAT(outcome.errors, HasSubstr("250.5 %"));
}
