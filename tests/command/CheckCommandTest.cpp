// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// check, as the program is started.

#include "command/CheckCommand.h"

#include "StartedCommand.h"
#include "lib/OvFile.h"
#include "support/CheckedChart.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace
{

using testing::EndsWith;
using testing::HasSubstr;
using Strings = std::vector<std::string>;

class CheckCommandTest : public CommandTest
{
protected:
    CheckCommandTest()
    {
        std::filesystem::create_directory(pathOf("Chart"));
        work.write("Chart/Chart.xml", checkedDescription({2, 8, 12}));
        write("good.txt", readings);
    }

    void write(std::string const& name, Readings const& values) const
    {
        work.write(name, measurementText(chart, values));
    }

    // A measurement with column C backwards.
    void writeReversed() const
    {
        Readings values = readings;
        auto const patches = columnOf(chart, "C");
        std::reverse(values.begin() + static_cast<std::ptrdiff_t>(patches.front()),
                     values.begin() + static_cast<std::ptrdiff_t>(patches.back()) + 1);
        write("reversed.txt", values);
    }

    std::string contentsOf(std::string const& name) const
    {
        String const text = RFile::readContents(work.pathOf(name));
        return {text.begin(), text.end()};
    }

    ChartReference const chart = checkedChart({2, 8, 12});
    Readings const readings = plainPrint(chart);
};

TEST_F(CheckCommandTest, EndsWith0WhereNothingIsFound)
{
    for (char const* place : {"Chart", "Chart/Chart.xml", "Chart/"}) {
        Outcome const outcome = run({"check", place, "good.txt"});
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
        EXPECT_THAT(outcome.output, HasSubstr("findings: none\n"));
        EXPECT_EQ(outcome.errors, "");
    }
}

TEST_F(CheckCommandTest, EndsWith1AndNamesWhatItFinds)
{
    writeReversed();
    Outcome const outcome = run({"check", "Chart", "reversed.txt"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(outcome.output, HasSubstr("  reversed: column C was read backwards (99.9999 % sure)\n"));
}

TEST_F(CheckCommandTest, PrintsJson)
{
    writeReversed();
    auto const json = nlohmann::json::parse(run({"check", "Chart", "reversed.txt", "--json"}).output);
    ASSERT_EQ(json["findings"].size(), 1U);
    auto const& finding = json["findings"][0];
    EXPECT_EQ(finding["kind"], "reversed");
    EXPECT_EQ(finding["columns"], (Strings{"C"}));
    EXPECT_EQ(finding["sheet"], 1);
    EXPECT_GT(finding["certainty"], 0.999);
    EXPECT_EQ(finding["text"], "column C was read backwards");
    EXPECT_EQ(json["statistics"]["measurements"][0]["readings"], 192);
    EXPECT_EQ(json["statistics"]["measurements"][0]["repeats"]["readings"], 2);
    EXPECT_EQ(json["chart"]["sheets"], 2);
}

TEST_F(CheckCommandTest, RepairsIntoANewFile)
{
    writeReversed();
    Outcome const outcome = run({"check", "Chart", "reversed.txt", "--repair", "repaired.txt"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(outcome.output, HasSubstr("repaired: repaired.txt\n  put right: column C was read backwards\n"));
    EXPECT_EQ(run({"check", "Chart", "repaired.txt"}).exitStatus, 0);
    std::string const repaired = contentsOf("repaired.txt");
    EXPECT_EQ(run({"check", "Chart", "good.txt", "--repair", "of-good.txt"}).exitStatus, 0);
    std::string const ofGood = contentsOf("of-good.txt");
    EXPECT_EQ(repaired.substr(repaired.find("BEGIN_DATA\n")), ofGood.substr(ofGood.find("BEGIN_DATA\n")));
}

TEST_F(CheckCommandTest, OverwritesNothing)
{
    Outcome const outcome = run({"check", "Chart", "good.txt", "--repair", "good.txt"});
    EXPECT_EQ(outcome.exitStatus, 2);
    EXPECT_THAT(outcome.errors, HasSubstr("good.txt: is there already"));
    EXPECT_EQ(contentsOf("good.txt"), measurementText(chart, readings));
}

TEST_F(CheckCommandTest, WritesAPage)
{
    writeReversed();
    EXPECT_EQ(run({"check", "Chart", "reversed.txt", "--report", "page.html"}).exitStatus, 1);
    std::string const page = contentsOf("page.html");
    EXPECT_THAT(page, HasSubstr("<h1>Checked</h1>"));
    EXPECT_THAT(page, HasSubstr("column C was read backwards"));
    EXPECT_EQ(run({"check", "Chart", "good.txt", "--report", "page.html"}).exitStatus, 2);
    EXPECT_EQ(contentsOf("page.html"), page);
}

TEST_F(CheckCommandTest, ComparesMeasurements)
{
    writeReversed();
    Outcome const outcome = run({"check", "Chart", "good.txt", "reversed.txt", "good.txt"});
    EXPECT_THAT(outcome.output, HasSubstr("measurement 2 from measurement 1: mean 0.00"));
    EXPECT_THAT(outcome.output, HasSubstr("measurement 3 from measurement 1"));
    auto const json = nlohmann::json::parse(run({"check", "Chart", "good.txt", "reversed.txt", "--json"}).output);
    EXPECT_EQ(json["findings"][0]["measurement"], 2);
    EXPECT_EQ(json["statistics"]["comparisons"][0]["measurements"], (std::vector<int>{1, 2}));
    EXPECT_EQ(run({"check", "Chart", "good.txt", "reversed.txt", "--repair", "r.txt"}).exitStatus, 2);
}

TEST_F(CheckCommandTest, EndsWith2ForWhatCannotBeRead)
{
    work.write("table.txt", "RGB_R RGB_G RGB_B\n1 2 3\n");
    work.write("other.txt", "CGATS.17\nBEGIN_DATA_FORMAT\nSAMPLE_LOC\tLAB_L\tLAB_A\tLAB_B\nEND_DATA_FORMAT\n"
                            "BEGIN_DATA\nX1\t1\t2\t3\nEND_DATA\n");
    std::filesystem::create_directory(pathOf("empty"));
    for (Strings const& arguments : {Strings{"check"},
                                     {"check", "Chart"},
                                     {"check", "none", "good.txt"},
                                     {"check", "empty", "good.txt"},
                                     {"check", "good.txt", "good.txt"},
                                     {"check", "Chart", "none.txt"},
                                     {"check", "Chart", "table.txt"},
                                     {"check", "Chart", "other.txt"},
                                     {"check", "Chart", "good.txt", "--like", "table.txt"},
                                     {"check", "Chart", "good.txt", "--like", "none.txt"},
                                     {"check", "Chart", "good.txt", "--repair", "none/repaired.txt"}}) {
        Outcome const outcome = run(arguments);
        EXPECT_EQ(outcome.exitStatus, 2) << testing::PrintToString(arguments);
        EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
        EXPECT_THAT(outcome.errors, EndsWith("\n"));
        EXPECT_EQ(outcome.output, "");
    }
}

TEST_F(CheckCommandTest, FindsTheFaultsOfTheExample)
{
    std::string const examples = PATCHLOOM_EXAMPLES;
    ASSERT_EQ(run({"chart", examples + "rgb-cube-897.txt", "-d", "gb-scan", "-n", "Cube", "-q"}).exitStatus, 0);
    auto const json = nlohmann::json::parse(run({"check", "Cube", examples + "rgb-cube-897-measured.txt", "--json",
                                                 "--repair", "repaired.txt", "--like", examples + "rgb-cube-897.txt"})
                                                .output);
    ASSERT_EQ(json["findings"].size(), 3U);
    EXPECT_EQ(json["findings"][0]["kind"], "reversed");
    EXPECT_EQ(json["findings"][0]["columns"], (Strings{"F"}));
    EXPECT_EQ(json["findings"][1]["kind"], "shifted");
    EXPECT_EQ(json["findings"][1]["columns"], (Strings{"S"}));
    EXPECT_EQ(json["findings"][1]["by"], -1);
    EXPECT_EQ(json["findings"][2]["patches"], (Strings{"Z8"}));
    EXPECT_EQ(json["repair"]["missing"], (Strings{"S12"}));
    EXPECT_THAT(contentsOf("repaired.txt"), HasSubstr("NUMBER_OF_SETS\t896\n"));
}

} // namespace
