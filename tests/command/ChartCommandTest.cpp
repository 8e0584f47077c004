// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The program as it is started: files, words and exit status.

#include "command/ChartCommand.h"

#include "StartedCommand.h"
#include "support/ChartCase.h"
#include "support/TargetTable.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>

namespace
{

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using Strings = std::vector<std::string>;

class ChartCommandTest : public CommandTest
{
protected:
    ChartCommandTest() { work.write("table.txt", rgbTable(24)); }

    std::string errorOf(Strings const& arguments, int exitStatus) const
    {
        Outcome const outcome = run(arguments);
        EXPECT_EQ(outcome.exitStatus, exitStatus) << outcome.errors;
        EXPECT_EQ(outcome.output, "");
        EXPECT_THAT(outcome.errors, StartsWith("patchloom-cli: "));
        return outcome.errors;
    }
};

} // namespace

TEST_F(ChartCommandTest, MakesTheChartsFolderHereAndTellsWhatCameOfIt)
{
    Outcome const made = run({"chart", "table.txt"});
    EXPECT_EQ(made.exitStatus, 0);
    EXPECT_EQ(made.errors, "");
    EXPECT_THAT(filesIn(pathOf("table")), ElementsAre("table.xml", "table_001.eps"));
    EXPECT_THAT(filesIn(work.path()), ElementsAre("table", "table.txt"));
    for (char const* line :
         {"table", "  patches      24 RGB", "  device       GB+ Spot",
          "  paper        A4 Portrait, 210 x 297 mm, margins 5, 5, 15, 5 mm",
          "  cells        24 = 8 columns x 3 rows = 24 of the table + 0 white + 0 hidden",
          "  sheets       1 (1 chart page)", "  patch size   8 x 8 mm", "  difference   nothing is scanned",
          "  files        ./table/table.xml", "               ./table/table_001.eps"})
        EXPECT_THAT(linesOf(made.output), Contains(line));
}

TEST_F(ChartCommandTest, HasEveryMemberInItsJson)
{
    Outcome const made = run({"chart", "table.txt", "--json", "-d", "standard-ruler", "-p", "credit-card-portrait",
                              "--gaps", "always", "-f", "tiff,eps", "-n", "Caf\xC3\xA9 \xFF"});
    EXPECT_EQ(made.exitStatus, 0) << made.errors;
    auto const json = nlohmann::json::parse(made.output);
    EXPECT_EQ(json["name"], "Caf\xC3\xA9 \xEF\xBF\xBD");
    EXPECT_EQ(json["colorSpace"], "RGB");
    EXPECT_EQ(json["patches"], 24);
    int const columns = json["columns"];
    int const rows = json["rows"];
    EXPECT_EQ(columns * rows, 24 + json["fillers"].get<int>() + json["hidden"].get<int>());
    EXPECT_EQ(json["chartPages"], json["sheets"]);
    EXPECT_EQ(json["patchSize"], (std::vector<double>{8, 8}));
    EXPECT_EQ(json["gap"], 1);
    EXPECT_GT(json["smallestDeltaE"].get<double>(), 0);
    EXPECT_EQ(json["order"], "standard");
    EXPECT_EQ(json["device"], "VT-30 Standard Ruler");
    EXPECT_EQ(json["paper"]["name"], "Credit Card Portrait");
    EXPECT_EQ(json["paper"]["width"], 54);
    EXPECT_EQ(json["paper"]["height"], 85);
    EXPECT_EQ(json["paper"]["margins"], (std::vector<double>{0, 0, 0, 0}));
    EXPECT_EQ(json["files"].size(), 1 + 2 * json["sheets"].get<std::size_t>());
    EXPECT_EQ(json.size(), 17u); // those, and the notes
    EXPECT_EQ(filesIn(pathOf("Caf\xC3\xA9 \xFF")).size(), json["files"].size());
}

TEST_F(ChartCommandTest, HasNoDifferenceInItsJsonWhereNothingIsScanned)
{
    auto const json = nlohmann::json::parse(run({"chart", "table.txt", "--json"}).output);
    EXPECT_TRUE(json["smallestDeltaE"].is_null());
    EXPECT_EQ(json["gap"], 0);
}

TEST_F(ChartCommandTest, TakesATableFromStandardInput)
{
    Surroundings piped = around;
    piped.input = pathOf("table.txt");
    Outcome const made = runIn(piped, {"chart", "-", "-n", "piped", "-q"});
    EXPECT_EQ(made.exitStatus, 0);
    EXPECT_EQ(made.output, "");
    EXPECT_EQ(made.errors, "");
    fs::create_directory(pathOf("out"));
    EXPECT_EQ(run({"chart", "table.txt", "-n", "piped", "-o", "out", "-q"}).exitStatus, 0);
    EXPECT_EQ(withoutCreationTime(bytesOf(pathOf("piped/piped.xml"))),
              withoutCreationTime(bytesOf(pathOf("out/piped/piped.xml"))));
    EXPECT_THAT(runIn(piped, {"chart", "-"}).errors, HasSubstr("--name"));
    EXPECT_THAT(errorOf({"chart", "-", "-n", "empty"}, 1),
                "patchloom-cli: standard input: is empty: a table has a line that names the columns, and a line for "
                "each patch\n");
}

TEST_F(ChartCommandTest, WritesToTheFolderAskedFor)
{
    fs::create_directory(pathOf("out"));
    EXPECT_EQ(run({"chart", "table.txt", "-o", "out", "-n", "c"}).exitStatus, 0);
    EXPECT_THAT(filesIn(pathOf("out/c")), ElementsAre("c.xml", "c_001.eps"));
    EXPECT_THAT(errorOf({"chart", "table.txt", "-o", "none"}, 1),
                "patchloom-cli: none: is no folder (No such file or directory); make it, or give another with "
                "--output\n");
    EXPECT_THAT(errorOf({"chart", "table.txt", "-o", "table.txt"}, 1), HasSubstr("table.txt: is no folder"));
}

TEST_F(ChartCommandTest, ReplacesAChartOnlyWhenForced)
{
    EXPECT_EQ(run({"chart", "table.txt", "-q", "-f", "eps,tiff"}).exitStatus, 0);
    EXPECT_THAT(errorOf({"chart", "table.txt"}, 1),
                "patchloom-cli: ./table: is there already; give --force to replace it, or another name with --name\n");
    EXPECT_EQ(filesIn(pathOf("table")).size(), 3u);
    EXPECT_EQ(run({"chart", "table.txt", "-q", "--force"}).exitStatus, 0);
    EXPECT_THAT(filesIn(pathOf("table")), ElementsAre("table.xml", "table_001.eps"));
    EXPECT_THAT(filesIn(work.path()), ElementsAre("table", "table.txt"));
}

TEST_F(ChartCommandTest, ReplacesNothingButCharts)
{
    fs::create_directory(pathOf("table"));
    for (char const* name : {"notes.txt", "table_x.eps", "table_.eps", "other.xml", "table_001.tiff"}) {
        work.write("table/" + std::string(name), "mine");
        EXPECT_THAT(errorOf({"chart", "table.txt", "--force"}, 1), HasSubstr(std::string("holds ") + name));
        EXPECT_THAT(filesIn(pathOf("table")), ElementsAre(name));
        fs::remove(pathOf("table") / name);
    }
    fs::remove(pathOf("table"));
    work.write("table", "a file");
    EXPECT_THAT(errorOf({"chart", "table.txt", "--force"}, 1), HasSubstr("./table: is no folder"));
    EXPECT_EQ(bytesOf(pathOf("table")), "a file");
}

TEST_F(ChartCommandTest, TellsEachFaultOfATableByItsPlace)
{
    struct
    {
        char const* line;
        char const* place;
        char const* what;
    } const cases[] = {
        {"abc 1 1", "2:1", "\"abc\", which is no number"}, {"1 256 1", "2:3", "\"256\", which is above 255"},
        {"-1 1 1", "2:1", "\"-1\", which is below 0"},     {"1 2,5 3", "2:3", "a decimal comma"},
        {"1 2", "2:1", "2 values where 3 columns"},        {"1 2 3 4", "2:7", "one too many"},
    };
    for (auto const& [line, place, what] : cases) {
        work.write("bad.txt", "RGB_R RGB_G RGB_B\n" + std::string(line) + "\n");
        std::string const error = errorOf({"chart", "bad.txt"}, 1);
        EXPECT_THAT(error, StartsWith("patchloom-cli: bad.txt:" + std::string(place) + ": "));
        EXPECT_THAT(error, HasSubstr(what));
        EXPECT_EQ(linesOf(error).size(), 2u);
    }
    work.write("bad.txt", "CMYK_C CMYK_M CMYK_Y CMYK_K\n0 0 0 100.5\n");
    EXPECT_THAT(errorOf({"chart", "bad.txt"}, 1), StartsWith("patchloom-cli: bad.txt:2:7: "));
    work.write("bad.txt", "LAB_L LAB_A LAB_B\n0 0 0\n");
    EXPECT_THAT(errorOf({"chart", "bad.txt"}, 1), StartsWith("patchloom-cli: bad.txt:1:1: "));
    work.write("bad.txt", "RGB_R RGB_G RGB_B\n");
    EXPECT_THAT(errorOf({"chart", "bad.txt"}, 1), StartsWith("patchloom-cli: bad.txt:1:1: the table has no rows"));
    EXPECT_THAT(errorOf({"chart", "none.txt"}, 1), "patchloom-cli: none.txt: cannot be read: No such file or "
                                                   "directory\n");
    EXPECT_THAT(filesIn(work.path()), ElementsAre("bad.txt", "table.txt"));
}

TEST_F(ChartCommandTest, TellsTwentyFaultsAndHowManyMoreThereAre)
{
    std::string table = "RGB_R RGB_G RGB_B\n";
    for (int i = 0; i < 23; ++i)
        table += "0 0 999\n";
    work.write("bad.txt", table);
    Strings const lines = linesOf(errorOf({"chart", "bad.txt"}, 1));
    ASSERT_EQ(lines.size(), 22u);
    EXPECT_THAT(lines[0], StartsWith("patchloom-cli: bad.txt:2:5: "));
    EXPECT_THAT(lines[19], StartsWith("patchloom-cli: bad.txt:21:5: "));
    EXPECT_EQ(lines[20], "patchloom-cli: bad.txt: and 3 more faults");
}

TEST_F(ChartCommandTest, TakesWhatTheWindowTakesWhenLenient)
{
    work.write("odd.txt", "RGB_R RGB_G RGB_B\nabc 300 2,5\n0 0 0\n");
    EXPECT_EQ(linesOf(errorOf({"chart", "odd.txt"}, 1)).size(), 4u);
    Outcome const made = run({"chart", "odd.txt", "--lenient", "-q", "-n", "a<b"});
    EXPECT_EQ(made.exitStatus, 0);
    EXPECT_EQ(made.errors, "");
    std::string const target = bytesOf(pathOf("a<b/a<b.xml"));
    EXPECT_THAT(target, HasSubstr("abc\t300\t2,5"));
    EXPECT_THAT(target, HasSubstr("<name>a<b</name>"));
    // The window refuses a table with a short line: the faults are told all the same.
    work.write("short.txt", "RGB_R RGB_G RGB_B\n0 0\n");
    EXPECT_THAT(errorOf({"chart", "short.txt", "--lenient"}, 1), StartsWith("patchloom-cli: short.txt:2:1: "));
}

TEST_F(ChartCommandTest, RefusesNamesThatBreakFolderOrDescription)
{
    for (char const* name : {"a<b", "a&b", "a\"b", "a'b", "a\\b", "a\nb", "a\x7f", "a/b", "..", "."}) {
        std::string const error = errorOf({"chart", "table.txt", "-n", name}, 2);
        EXPECT_THAT(error, HasSubstr("--name: "));
        EXPECT_EQ(linesOf(error).size(), 2u) << error;
    }
    // No chart comes of a slash in the window either, and the sheets would lie elsewhere.
    for (char const* name : {"a/b", "../b", "/b", ".."})
        errorOf({"chart", "table.txt", "-n", name, "--lenient"}, 2);
    work.write("a&b.txt", rgbTable(1));
    EXPECT_THAT(errorOf({"chart", "a&b.txt"}, 2), HasSubstr("give another with --name"));
    EXPECT_THAT(filesIn(work.path()), ElementsAre("a&b.txt", "table.txt"));
    EXPECT_FALSE(fs::exists(work.path().parent_path() / "b_001.eps"));
}

TEST_F(ChartCommandTest, SaysWhatRoomThereIsForAPatch)
{
    EXPECT_EQ(errorOf({"chart", "table.txt", "-p", "25x20", "-d", "gb-spot"}, 1),
              "patchloom-cli: no room for a single patch: Custom leaves 7 x 12 mm for GB+ Spot, one patch needs 8 x 8 "
              "mm; take a larger paper, smaller margins or smaller patches\n");
}

TEST_F(ChartCommandTest, WarnsWhereGapsAreNeededAndForbidden)
{
    std::string greys = "RGB_R RGB_G RGB_B\n";
    for (int i = 0; i < 40; ++i)
        greys += std::to_string(i) + " " + std::to_string(i) + " " + std::to_string(i) + "\n";
    work.write("greys.txt", greys);
    Outcome const never = run({"chart", "greys.txt", "-d", "gb-scan", "--gaps", "never", "-n", "never"});
    EXPECT_EQ(never.exitStatus, 0);
    EXPECT_EQ(never.errors, "patchloom-cli: warning: patches along the scan differ by less than 18 delta E, and the "
                            "chart has no gaps\n");
    EXPECT_THAT(never.output, HasSubstr("8 x 8 mm, no gaps"));
    Outcome const automatic = run({"chart", "greys.txt", "-d", "gb-scan"});
    EXPECT_EQ(automatic.errors, "");
    EXPECT_THAT(automatic.output, HasSubstr("gaps of 1 mm"));
    EXPECT_THAT(automatic.output, HasSubstr("below 18"));
}

TEST_F(ChartCommandTest, ReportsAStandardOutputThatTakesNothing)
{
    Surroundings full = around;
    full.output = "/dev/full";
    Outcome const onFull = runIn(full, {"chart", "table.txt"});
    EXPECT_EQ(onFull.exitStatus, 1);
    EXPECT_EQ(onFull.errors, "patchloom-cli: standard output takes no more: No space left on device\n");
    Surroundings closed = around;
    closed.readsNobody = true;
    for (Strings const& arguments : {Strings{"list"}, Strings{"--help"}, Strings{"chart", "table.txt", "--force"}}) {
        Outcome const onClosed = runIn(closed, arguments);
        EXPECT_EQ(onClosed.exitStatus, 1);
        EXPECT_EQ(onClosed.errors, "patchloom-cli: standard output takes no more: Broken pipe\n");
    }
    EXPECT_EQ(runIn(closed, {"chart", "table.txt", "--force", "-q"}).exitStatus, 0);
    EXPECT_THAT(filesIn(work.path()), ElementsAre("table", "table.txt"));
}

TEST_F(ChartCommandTest, RunsInAnyEnvironment)
{
    for (Strings const& environment :
         {Strings{}, Strings{"HOME=/nowhere"}, Strings{"HOME=/proc"}, Strings{"HOME=relative"},
          Strings{"LC_ALL=de_DE.UTF-8", "TERM=dumb", "NO_COLOR=1"}, Strings{"LC_ALL=none", "LANG=\xFF"}}) {
        Surroundings other = around;
        other.environment = environment;
        Outcome const made = runIn(other, {"chart", "table.txt", "--force", "-q", "-s", "7.5x9"});
        EXPECT_EQ(made.exitStatus, 0) << made.errors;
        EXPECT_EQ(made.output + made.errors, "");
    }
}

TEST_F(ChartCommandTest, ReadsPresetsFromTheConfigurationFolder)
{
    std::string const preset = "[[paper]]\nname = \"Mine\"\nsize = [100, 150]\n";
    fs::create_directories(pathOf(".config/patchloom"));
    work.write(".config/patchloom/presets.toml", preset);
    EXPECT_THAT(run({"list", "papers"}).output, HasSubstr(pathOf(".config/patchloom/presets.toml").string()));
    EXPECT_EQ(run({"chart", "table.txt", "-p", "mine", "-q"}).exitStatus, 0);

    fs::create_directories(pathOf("own/patchloom"));
    work.write("own/patchloom/presets.toml", "[[paper]]\nname = \"Other\"\nsize = [100, 150]\n");
    Surroundings configured = around;
    configured.environment.push_back("XDG_CONFIG_HOME=" + pathOf("own").string());
    EXPECT_THAT(runIn(configured, {"list", "papers"}).output, HasSubstr("other"));
    configured.environment.back() = "XDG_CONFIG_HOME=own";
    std::string const ignored = runIn(configured, {"list", "papers"}).output;
    EXPECT_THAT(ignored, Not(HasSubstr("other")));
    EXPECT_THAT(ignored, HasSubstr("mine"));

    work.write(".config/patchloom/presets.toml", preset + "sise = 1\n");
    EXPECT_EQ(errorOf({"list"}, 1), "patchloom-cli: " + pathOf(".config/patchloom/presets.toml").string() +
                                        ":4: \"sise\" is no name of a setting here\n");
    work.write("empty.toml", "");
    EXPECT_EQ(run({"list", "--presets", "empty.toml"}).exitStatus, 0);
}

TEST_F(ChartCommandTest, HelpsOnStandardOutput)
{
    for (Strings const& arguments :
         {Strings{"--help"}, Strings{"chart", "--help"}, Strings{"list", "-h"}, Strings{"convert", "--help"},
          Strings{"describe", "--help"}, Strings{"--version"}}) {
        Outcome const help = run(arguments);
        EXPECT_EQ(help.exitStatus, 0);
        EXPECT_EQ(help.errors, "");
        EXPECT_THAT(help.output, EndsWith("\n"));
        EXPECT_THAT(help.output, HasSubstr(arguments[0] == "--version" ? "patchloom-cli " : arguments[0]));
    }
    EXPECT_THAT(errorOf({}, 2), HasSubstr("see 'patchloom-cli --help'"));
}

TEST_F(ChartCommandTest, NeedsNoWindowSystem)
{
    std::FILE* const listing = popen("ldd '" PATCHLOOM_COMMAND_PROGRAM "' 2>&1", "r");
    ASSERT_TRUE(listing);
    std::string libraries;
    std::array<char, 4096> text{};
    while (std::fgets(text.data(), text.size(), listing))
        libraries += text.data();
    pclose(listing);
    EXPECT_THAT(libraries, HasSubstr("liblcms2"));
    for (char const* name : {"libQt", "libGL", "libOpenGL", "libX11", "libEGL"})
        EXPECT_THAT(libraries, Not(HasSubstr(name)));
}
