// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The kinds of sheets that the program writes: their files, what they cannot hold, and its warnings.

#include "command/ChartCommand.h"

#include "StartedCommand.h"
#include "support/ChartCase.h"
#include "support/Picture.h"
#include "support/ReadPDF.h"
#include "support/TargetTable.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace
{

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Strings = std::vector<std::string>;

class ChartSheetsTest : public CommandTest
{
protected:
    ChartSheetsTest() { work.write("table.txt", rgbTable(24)); }

    // Runs with an error in one line, and leaves nothing.
    std::string refusalOf(Strings const& options, int exitStatus = 1) const
    {
        Strings arguments = {"chart", "table.txt"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        Outcome const outcome = run(arguments);
        EXPECT_EQ(outcome.exitStatus, exitStatus);
        EXPECT_EQ(outcome.output, "");
        EXPECT_FALSE(fs::exists(pathOf("table")));
        return outcome.errors;
    }
};

} // namespace

TEST_F(ChartSheetsTest, AreOnePDFDocument)
{
    Outcome const made = run({"chart", "table.txt", "-f", "pdf", "-p", "credit-card-portrait"});
    EXPECT_EQ(made.exitStatus, 0);
    EXPECT_EQ(made.errors, "");
    EXPECT_THAT(filesIn(pathOf("table")), ElementsAre("table.pdf", "table.xml"));
    EXPECT_THAT(linesOf(made.output), Contains("  files        ./table/table.pdf"));
    ReadPDF pdf(pathOf("table/table.pdf"));
    EXPECT_GT(pdf.countPages(), 1u);
    EXPECT_EQ(pdf.infoText("/Title"), "table");
    EXPECT_EQ(pdf.infoText("/CreationDate"), "D:19700101000000Z");
}

TEST_F(ChartSheetsTest, AreOfSeveralKindsAtOnce)
{
    Outcome const made = run({"chart", "table.txt", "-f", "tiff,pdf,eps", "--scale-mark", "--compression", "lzw"});
    EXPECT_EQ(made.exitStatus, 0);
    EXPECT_EQ(made.errors, "");
    EXPECT_THAT(filesIn(pathOf("table")), ElementsAre("table.pdf", "table.xml", "table_001.eps", "table_001.tif"));
    EXPECT_THAT(bytesOf(pathOf("table/table_001.eps")), HasSubstr("(100 mm) show"));
    EXPECT_THAT(ReadPDF(pathOf("table/table.pdf")).content(0), HasSubstr("(100 mm) Tj"));
}

TEST_F(ChartSheetsTest, HaveTheSameBytesEachTime)
{
    Strings const arguments = {"chart",   "table.txt",    "-f",      "eps,tiff,pdf", "--compression",
                               "deflate", "--scale-mark", "--force", "--resolution", "150",
                               "-q"};
    Strings const names = {"table.pdf", "table_001.eps", "table_001.tif"};
    Strings first;
    ASSERT_EQ(run(arguments).exitStatus, 0);
    for (std::string const& name : names)
        first.push_back(bytesOf(pathOf("table/" + name)));
    ASSERT_EQ(run(arguments).exitStatus, 0);
    for (std::size_t i = 0; i < names.size(); ++i)
        EXPECT_TRUE(bytesOf(pathOf("table/" + names[i])) == first[i]) << names[i];
}

TEST_F(ChartSheetsTest, KeepTheirPlainBytesUnlessAsked)
{
    ASSERT_EQ(run({"chart", "table.txt", "-f", "tiff"}).exitStatus, 0);
    std::string const plain = bytesOf(pathOf("table/table_001.tif"));
    ASSERT_EQ(
        run({"chart", "table.txt", "-f", "tiff", "--compression", "none", "--resolution", "300", "--force"}).exitStatus,
        0);
    EXPECT_TRUE(bytesOf(pathOf("table/table_001.tif")) == plain);
}

TEST_F(ChartSheetsTest, HaveTheResolutionAskedFor)
{
    // 210 x 297 mm: 1240.2 x 1753.9 pixels.
    ASSERT_EQ(run({"chart", "table.txt", "-f", "tiff", "--resolution", "150"}).exitStatus, 0);
    Picture const picture = readTiff(pathOf("table/table_001.tif"));
    EXPECT_EQ(picture.width, 1240);
    EXPECT_EQ(picture.height, 1754);
}

TEST_F(ChartSheetsTest, AreReplacedWithTheirChart)
{
    ASSERT_EQ(run({"chart", "table.txt", "-f", "pdf"}).exitStatus, 0);
    ASSERT_EQ(run({"chart", "table.txt", "-f", "eps"}).exitStatus, 1);
    EXPECT_THAT(filesIn(pathOf("table")), ElementsAre("table.pdf", "table.xml"));
    ASSERT_EQ(run({"chart", "table.txt", "-f", "eps", "--force"}).exitStatus, 0);
    EXPECT_THAT(filesIn(pathOf("table")), ElementsAre("table.xml", "table_001.eps"));
    ASSERT_EQ(run({"chart", "table.txt", "-f", "pdf", "--force"}).exitStatus, 0);
    EXPECT_THAT(filesIn(pathOf("table")), ElementsAre("table.pdf", "table.xml"));
}

TEST_F(ChartSheetsTest, AreNotReplacedBesideOtherDocuments)
{
    for (char const* const foreign : {"other.pdf", "table_001.pdf", "table.pdf.pdf"}) {
        ASSERT_EQ(run({"chart", "table.txt", "-f", "pdf"}).exitStatus, 0);
        work.write(std::string("table/") + foreign, "precious");
        Outcome const outcome = run({"chart", "table.txt", "-f", "pdf", "--force"});
        EXPECT_EQ(outcome.exitStatus, 1);
        EXPECT_THAT(outcome.errors, HasSubstr(foreign));
        EXPECT_EQ(bytesOf(pathOf(std::string("table/") + foreign)), "precious");
        fs::remove_all(pathOf("table"));
    }
}

TEST_F(ChartSheetsTest, AreAtMostFiveMetresAndEightCentimetresLongInPDF)
{
    EXPECT_EQ(
        refusalOf({"-f", "eps,pdf", "-p", "300x5080.5"}),
        "patchloom-cli: a sheet of 300 x 5080.5 mm is too large for PDF, whose pages have at most 5080 mm a side; "
        "take a smaller paper or another --format\n");
    EXPECT_EQ(run({"chart", "table.txt", "-f", "pdf", "-p", "300x5080"}).exitStatus, 0);
    ReadPDF pdf(pathOf("table/table.pdf"));
    EXPECT_NEAR(numbersOf(pdf.page(0).getKey("/MediaBox")).at(3), 14400, 0.001);
}

TEST_F(ChartSheetsTest, AreClippedBeforeTheirSizeCounts)
{
    EXPECT_EQ(run({"chart", "table.txt", "-f", "pdf", "-p", "300x6000", "--clip"}).exitStatus, 0);
}

TEST_F(ChartSheetsTest, HaveAtMostFourGigabytesOfPixelsInPlainTIFF)
{
    // 5000 mm at 300 dots per inch are 59,055 pixels: 10.5 GB.
    EXPECT_EQ(
        refusalOf({"-f", "tiff", "-p", "5000x5000"}),
        "patchloom-cli: a sheet of 5000 x 5000 mm has too many pixels for TIFF at 300 dots per inch; take a lower "
        "--resolution, --compression lzw or another --format\n");
    EXPECT_EQ(
        refusalOf({"-f", "tiff", "-p", "5000x5000", "--compression", "lzw", "--resolution", "2400"}),
        "patchloom-cli: a sheet of 5000 x 5000 mm has too many pixels for TIFF at 2400 dots per inch; take a lower "
        "--resolution or another --format\n");
    EXPECT_EQ(run({"chart", "table.txt", "-f", "tiff", "-p", "5000x5000", "--compression", "lzw", "--resolution", "72"})
                  .exitStatus,
              0);
}

TEST_F(ChartSheetsTest, RefuseOptionsThatChangeNothingAsWrongUse)
{
    EXPECT_THAT(refusalOf({"--resolution", "600"}, 2),
                HasSubstr("patchloom-cli: --resolution: is for TIFF sheets; add tiff to --format"));
    EXPECT_THAT(refusalOf({"--compression", "lzw", "-f", "pdf"}, 2), HasSubstr("--compression: is for TIFF sheets"));
    EXPECT_THAT(refusalOf({"-f", "svg"}, 2), HasSubstr("\"svg\" is no format: write eps, tiff, pdf"));
}

TEST_F(ChartSheetsTest, WarnWhereAMarkHasNoRoom)
{
    Outcome const made = run({"chart", "table.txt", "--scale-mark", "-p", "credit-card-portrait"});
    EXPECT_EQ(made.exitStatus, 0);
    EXPECT_EQ(
        made.errors,
        "patchloom-cli: warning: no room for the mark of 100 mm across on any sheet; take a larger paper or fewer "
        "patches\n"
        "patchloom-cli: warning: no room for the mark of 100 mm up on any sheet; take a larger paper or fewer "
        "patches\n");
    EXPECT_THAT(bytesOf(pathOf("table/table_001.eps")), Not(HasSubstr("100 mm")));
    EXPECT_EQ(run({"chart", "table.txt", "-p", "credit-card-portrait", "--force"}).errors, "");
    EXPECT_EQ(run({"chart", "table.txt", "-p", "a4-portrait", "--scale-mark", "--force"}).errors, "");
}

TEST_F(ChartSheetsTest, WarnOfTheSheetsWhoseMarksHaveNoRoom)
{
    // The first sheets are full from side to side. The last one has few columns.
    work.write("many.txt", rgbTable(200));
    Outcome const made = run({"chart", "many.txt", "--scale-mark", "-p", "130x130", "-q"});
    EXPECT_EQ(made.exitStatus, 0);
    EXPECT_EQ(made.errors, "patchloom-cli: warning: no room for the mark of 100 mm up on sheet 2; take a larger paper "
                           "or fewer patches\n");
    auto const countMarks = [this](char const* sheet) {
        std::string const drawn = bytesOf(pathOf(std::string("many/") + sheet));
        return drawn.find("(100 mm)") == std::string::npos         ? 0
               : drawn.find("(100 mm)") == drawn.rfind("(100 mm)") ? 1
                                                                   : 2;
    };
    EXPECT_EQ(filesIn(pathOf("many")).size(), 3u);
    EXPECT_EQ(countMarks("many_001.eps"), 2);
    EXPECT_EQ(countMarks("many_002.eps"), 1);
}

TEST_F(ChartSheetsTest, NeedTheFontOnlyForPDF)
{
    // A copy of the program beside resources without the font.
    fs::path const program = PATCHLOOM_COMMAND_PROGRAM;
    fs::create_directories(pathOf("copy/bin"));
    fs::copy_file(program, pathOf("copy/bin/patchloom-cli"));
    fs::copy(program.parent_path().parent_path() / "Resources", pathOf("copy/Resources"), fs::copy_options::recursive);
    fs::remove(pathOf("copy/Resources/labels.ttf"));
    auto const statusOf = [this](std::string const& format) {
        return std::system(("cd '" + work.path().string() + "' && copy/bin/patchloom-cli chart table.txt -q -f " +
                            format + " 2>errors")
                               .c_str());
    };
    EXPECT_EQ(WEXITSTATUS(statusOf("pdf")), 1);
    EXPECT_THAT(bytesOf(pathOf("errors")),
                HasSubstr("labels.ttf: the font for labels in PDF is missing; install the program again\n"));
    EXPECT_FALSE(fs::exists(pathOf("table")));
    EXPECT_EQ(statusOf("eps,tiff"), 0);
    EXPECT_EQ(bytesOf(pathOf("errors")), "");
}

TEST_F(ChartSheetsTest, KeepNamesInAnyScriptInTheirTitle)
{
    for (std::string const name : {"(", "f(x)", "Größe", "色票", "مخطط", "a b", "%s %d"}) {
        ASSERT_EQ(run({"chart", "table.txt", "-f", "pdf", "-n", name}).exitStatus, 0) << name;
        EXPECT_EQ(ReadPDF(pathOf(name + "/" + name + ".pdf")).infoText("/Title"), name);
    }
}

TEST_F(ChartSheetsTest, AreNotMadeWherePDFHasNoSpace)
{
    Surroundings limited = around;
    limited.mostFileBytes = 4000;
    Outcome const outcome = runIn(limited, {"chart", "table.txt", "-q", "-f", "pdf"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("table.pdf: cannot be written (File too large); no chart was made\n"));
    EXPECT_FALSE(fs::exists(pathOf("table")));
}
