// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// report, and chart --report, as the program is started.

#include "command/ReportCommand.h"

#include "StartedCommand.h"
#include "support/ChartCase.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <regex>

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using Strings = std::vector<std::string>;

class ReportCommandTest : public CommandTest
{
protected:
    ReportCommandTest()
    {
        work.write("rgb.txt", rgbTable(200));
        work.write("cmyk.txt", cmykTable(200));
    }

    Outcome good(Strings const& arguments) const
    {
        Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
        EXPECT_EQ(outcome.errors, "");
        return outcome;
    }

    std::string page(std::string const& name) const { return bytesOf(pathOf(name)); }

    // What stands between two texts of a page.
    static std::string between(std::string const& text, std::string const& before, std::string const& after)
    {
        std::size_t const start = text.find(before);
        EXPECT_NE(start, std::string::npos) << before;
        std::size_t const first = start + before.size();
        return text.substr(first, text.find(after, first) - first);
    }
};

} // namespace

TEST_F(ReportCommandTest, WritesAPageNamedAfterTheTable)
{
    good({"report", "rgb.txt"});
    EXPECT_THAT(page("rgb.html"), StartsWith("<!DOCTYPE html>"));
    EXPECT_THAT(page("rgb.html"), HasSubstr("<h1>rgb</h1>"));
}

TEST_F(ReportCommandTest, PrintsThePage)
{
    EXPECT_THAT(good({"report", "rgb.txt", "-o", "-"}).output, StartsWith("<!DOCTYPE html>"));
}

TEST_F(ReportCommandTest, ReplacesAPageOnlyIfAsked)
{
    work.write("out.html", "precious");
    Outcome const refused = run({"report", "rgb.txt", "-o", "out.html"});
    EXPECT_EQ(refused.exitStatus, 1);
    EXPECT_EQ(refused.errors, "patchloom-cli: out.html: is there already; give --force to replace it\n");
    EXPECT_EQ(page("out.html"), "precious");
    good({"report", "rgb.txt", "-o", "out.html", "--force"});
    EXPECT_THAT(page("out.html"), StartsWith("<!DOCTYPE html>"));
}

TEST_F(ReportCommandTest, LaysATableOutAsChartDoes)
{
    Strings const options{"-d", "gb-scan", "-p", "a4-landscape", "-s", "9", "--gaps", "always", "--name", "Named"};
    Strings chart{"chart", "cmyk.txt", "--json"};
    Strings report{"report", "cmyk.txt"};
    chart.insert(chart.end(), options.begin(), options.end());
    report.insert(report.end(), options.begin(), options.end());
    auto const json = nlohmann::json::parse(good(chart).output);
    good(report);
    std::string const text = page("Named.html");
    EXPECT_EQ(between(text, "<dd id=\"patches\">", " "), std::to_string(json["patches"].get<int>()));
    EXPECT_EQ(between(text, "<dd id=\"sheet-count\">", " "), std::to_string(json["sheets"].get<int>()));
    EXPECT_NEAR(std::stod(between(text, "<dd id=\"smallest\">", " ")), json["smallestDeltaE"].get<double>(), 0.00501);
    EXPECT_THAT(text, HasSubstr("+ " + std::to_string(json["fillers"].get<int>()) + "</dt>"));
    EXPECT_THAT(text, HasSubstr("gaps of 1 mm along the scan"));
    EXPECT_THAT(text, HasSubstr("They were asked for."));
}

TEST_F(ReportCommandTest, ShowsAChartsFolderAsItsTable)
{
    good({"chart", "cmyk.txt", "-d", "gb-scan", "-q"});
    good({"report", "cmyk"});
    good({"report", "cmyk.txt", "-d", "gb-scan", "-o", "table.html"});
    std::regex const patches("<(rect [^>]*data-patch|tr id=\"patch-)[^\n]*");
    auto const all = [&patches](std::string const& text) {
        Strings found;
        for (std::sregex_iterator next(text.begin(), text.end(), patches), end; next != end; ++next)
            found.push_back(next->str());
        return found;
    };
    EXPECT_FALSE(all(page("cmyk.html")).empty());
    EXPECT_EQ(all(page("cmyk.html")), all(page("table.html")));
}

TEST_F(ReportCommandTest, TheBestOrderIsShownWithItsBound)
{
    auto const json =
        nlohmann::json::parse(good({"chart", "cmyk.txt", "-d", "gb-scan", "--order", "best", "--json"}).output);
    good({"report", "cmyk.txt", "-d", "gb-scan", "--order", "best"});
    good({"report", "cmyk", "-o", "folder.html"});
    for (char const* name : {"cmyk.html", "folder.html"})
        EXPECT_NEAR(std::stod(between(page(name), "Bound</th><td class=\"n\">", "<")), json["bound"].get<double>(),
                    0.0101)
            << name;
}

TEST_F(ReportCommandTest, AddsThePageToAChartsFolder)
{
    auto const json = nlohmann::json::parse(good({"chart", "rgb.txt", "--report", "--json"}).output);
    EXPECT_THAT(json["files"], ElementsAre("./rgb/rgb.html", "./rgb/rgb.xml", "./rgb/rgb_001.eps"));
    good({"report", "rgb.txt"});
    EXPECT_EQ(page("rgb/rgb.html"), page("rgb.html"));
}

TEST_F(ReportCommandTest, AFolderWithAPageIsReplaced)
{
    good({"chart", "rgb.txt", "--report", "-q"});
    good({"chart", "rgb.txt", "--force", "-q"});
    EXPECT_FALSE(std::filesystem::exists(pathOf("rgb/rgb.html")));
}

TEST_F(ReportCommandTest, EscapesANameThatLenientAllows)
{
    good({"report", "rgb.txt", "--lenient", "--name", "<script>alert(1)<&\"'", "-o", "out.html"});
    EXPECT_THAT(page("out.html"), HasSubstr("<h1>&lt;script&gt;alert(1)&lt;&amp;&quot;&#39;</h1>"));
}

TEST_F(ReportCommandTest, EscapesANameThatIsNotUtf8)
{
    good({"report", "rgb.txt", "--name", "caf\xe9", "-o", "out.html"});
    EXPECT_THAT(page("out.html"), HasSubstr("<h1>caf?</h1>"));
}

TEST_F(ReportCommandTest, RefusesOptionsOfTablesForAFolder)
{
    good({"chart", "rgb.txt", "-q"});
    Outcome const refused = run({"report", "rgb", "--order", "best"});
    EXPECT_EQ(refused.exitStatus, 2);
    EXPECT_THAT(refused.errors, HasSubstr("--order: is for tables; the chart in rgb is made already"));
}

TEST_F(ReportCommandTest, RefusesWrongDevicesAndPapersForAFolder)
{
    good({"chart", "rgb.txt", "-q"});
    EXPECT_THAT(run({"report", "rgb", "-d", "none"}).errors, HasSubstr("there is no device \"none\""));
    EXPECT_THAT(run({"report", "rgb", "-p", "none"}).errors, HasSubstr("\"none\" is neither a paper"));
    Outcome const other = run({"report", "rgb", "-p", "a3-portrait"});
    EXPECT_EQ(other.exitStatus, 1);
    EXPECT_THAT(other.errors, HasSubstr("no device and paper give this chart"));
}

TEST_F(ReportCommandTest, RefusesAFolderThatIsNoChart)
{
    std::filesystem::create_directory(pathOf("empty"));
    Outcome const refused = run({"report", "empty"});
    EXPECT_EQ(refused.exitStatus, 1);
    EXPECT_THAT(refused.errors, HasSubstr("empty: has no target description"));
}

TEST_F(ReportCommandTest, TellsFaultsOfTheTable)
{
    work.write("bad.txt", "RGB_R RGB_G RGB_B\n1 2\n");
    Outcome const refused = run({"report", "bad.txt"});
    EXPECT_EQ(refused.exitStatus, 1);
    EXPECT_THAT(refused.errors, HasSubstr("bad.txt:2"));
    EXPECT_FALSE(std::filesystem::exists(pathOf("bad.html")));
}

TEST_F(ReportCommandTest, LeavesNoPageThatCouldNotBeWrittenWhole)
{
    Surroundings small = around;
    small.mostFileBytes = 1000;
    Outcome const refused = runIn(small, {"report", "rgb.txt"});
    EXPECT_EQ(refused.exitStatus, 1);
    EXPECT_THAT(refused.errors, HasSubstr("rgb.html: cannot be written"));
    EXPECT_FALSE(std::filesystem::exists(pathOf("rgb.html")));
}

TEST_F(ReportCommandTest, IsSmallEnough)
{
    std::filesystem::path const example = PATCHLOOM_EXAMPLES "it8.7-4-cmyk.txt";
    good({"report", example.string(), "-d", "standard-ruler", "--gaps", "always", "-o", "example.html"});
    EXPECT_LT(page("example.html").size(), 1500000U);
    work.write("large.txt", cmykTable(5000));
    good({"report", "large.txt", "-d", "gb-scan"});
    EXPECT_LT(page("large.html").size(), 5000000U);
}
