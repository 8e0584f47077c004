// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Names and values that have a meaning in printf, XML, CGATS, PostScript or the shell are written unchanged.

#include "InputFile.h"

#include "lib/OvEPSFile.h"
#include "support/CapturedOutput.h"
#include "support/RulerChart.h"
#include "support/StringText.h"
#include "support/TargetTable.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>

namespace
{

namespace fs = std::filesystem;

using testing::HasSubstr;
using testing::UnorderedElementsAreArray;

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

String stringOf(std::string const& bytes)
{
    return String(String(), bytes.data(), bytes.size());
}

std::string const hostileTexts[] = {
    "%s%n%d%1$s%*.*f %% 100 %",
    "\"quotes\" and 'apostrophes'",
    "<b>&amp;</b> </name></targetdescription> <!-- ]]>",
    "two\nlines\r\nmore\rand\ttabs",
    "END_DATA\n\"\nNUMBER_OF_SETS\t0",
    "(parentheses)) show showpage ((",
    "\\backslashes\\\\ \\n \\000 \\",
    "a\n%!PS\nshowpage quit",
    std::string("NULs\0and\0more", 13),
    "no UTF-8: \xff\xc3(\x80\xed\xa0\x80\xf8",
    "$(touch x) `touch x` ; touch x | touch x",
    std::string(1'000'000, '%'),
};

// The name of a test case.
std::string nameOf(std::string const& text)
{
    return caseName(text.substr(0, 20)) +
           std::to_string(std::find(std::begin(hostileTexts), std::end(hostileTexts), text) - std::begin(hostileTexts));
}

std::string replaced(std::string text, std::string const& from, std::string const& to)
{
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

// The output and exit status of another program.
struct Answer
{
    std::string output;
    int status = -1;
};

Answer answerOf(std::string const& command)
{
    Answer answer;
    std::FILE* const pipe = popen(command.c_str(), "r");
    char bytes[4096];
    for (std::size_t count = 0; (count = std::fread(bytes, 1, sizeof bytes, pipe)) > 0;)
        answer.output.append(bytes, count);
    answer.status = pclose(pipe);
    return answer;
}

// A chart of a table of RGB values.
class TableChart
{
public:
    explicit TableChart(std::string const& table)
    {
        EXPECT_TRUE(input.init(folder.write("table", table)));
        layout = chartOf(*input.getEntries(), instrument(standardRuler), rulerSheetFor({2, 2}, {10, 8}), {10, 8});
        layout.setName("Chart");
        layout.computeLayout(0, 0);
        EXPECT_TRUE(layout.writeOutputFile(folder.pathOf("Chart.xml")));
        EXPECT_TRUE(layout.writeOutputImagesEPS(folder.pathWithSlash()));
    }

    // The rows of values in the target description, a blank between values.
    std::vector<std::string> rows() const
    {
        std::vector<std::string> rows;
        for (TargetPatch const& patch : readTargetTable(folder.path() / "Chart.xml"))
            if (patch.control == "N")
                rows.push_back(patch.values.at(0) + " " + patch.values.at(1) + " " + patch.values.at(2));
        return rows;
    }

    TemporaryFolder folder;

private:
    InputFile input;
    ChartLayout layout;
};

class HostileName : public testing::TestWithParam<std::string>
{
};

class HostileRows : public testing::TestWithParam<std::vector<std::string>>
{
};

} // namespace

TEST_P(HostileName, IsUnchangedInTheTargetDescription)
{
    RulerChart chart(greyEntries(4), {2, 2});
    String const path = chart.folder.pathOf("target.xml");
    chart.layout.setName("@name@");
    ASSERT_TRUE(chart.layout.writeOutputFile(path));
    std::string const expected = withoutCreationTime(bytesOf(chart.folder.path() / "target.xml"));
    ASSERT_THAT(expected, HasSubstr("\t<name>@name@</name>\n"));
    ASSERT_THAT(expected, HasSubstr("DESCRIPTOR\t\"@name@\"\n"));

    chart.layout.setName(stringOf(GetParam()));
    ASSERT_TRUE(chart.layout.writeOutputFile(path));
    EXPECT_EQ(withoutCreationTime(bytesOf(chart.folder.path() / "target.xml")),
              replaced(expected, "@name@", GetParam()));
}

TEST_P(HostileName, IsNotInTheSheets)
{
    RulerChart chart(greyEntries(4), {2, 2});
    chart.drawn();
    chart.painted();
    std::string const eps = bytesOf(chart.fileOf(1, "eps"));
    std::string const tiff = bytesOf(chart.fileOf(1, "tif"));
    ASSERT_NE(eps, "");
    ASSERT_NE(tiff, "");

    // A name that no file can have gives no sheets.
    bool const isFileName =
        GetParam().find_first_of(std::string("/\0", 2)) == std::string::npos && GetParam().size() < 200;
    chart.layout.setName(stringOf(GetParam()));
    TemporaryFolder const folder;
    EXPECT_EQ(errorsOf([&] {
                  chart.layout.writeOutputImagesEPS(folder.pathWithSlash());
                  chart.layout.writeOutputImagesTIFF(folder.pathWithSlash());
              }),
              "");
    ASSERT_EQ(filesIn(folder.path()).size(), isFileName ? 2U : 0U);
    if (isFileName) {
        EXPECT_EQ(bytesOf(folder.path() / (GetParam() + "_001.eps")), eps);
        EXPECT_EQ(bytesOf(folder.path() / (GetParam() + "_001.tif")), tiff);
    }
}

TEST_P(HostileName, IsReadBackByAnXmlParserIfXmlAllowsIt)
{
    RulerChart chart(greyEntries(4), {2, 2});
    chart.layout.setName(stringOf(GetParam()));
    ASSERT_TRUE(chart.layout.writeOutputFile(chart.folder.pathOf("target.xml")));
    Answer const parsed = answerOf("xmllint --xpath 'string(/targetdescription/name)' '" +
                                   (chart.folder.path() / "target.xml").string() + "' 2>/dev/null");
    std::string const forbidden("<&\0\xff", 4);
    if (GetParam().find_first_of(forbidden) != std::string::npos) {
        EXPECT_NE(parsed.status, 0);
    } else {
        EXPECT_EQ(parsed.status, 0);
        // XML parsers turn every line end into a line feed.
        EXPECT_EQ(parsed.output, replaced(replaced(GetParam(), "\r\n", "\n"), "\r", "\n") + "\n");
    }
}

INSTANTIATE_TEST_SUITE_P(Every, HostileName, testing::ValuesIn(hostileTexts),
                         [](auto const& name) { return nameOf(name.param); });

TEST_P(HostileRows, AreUnchangedInTheTargetDescriptionAndNumbersInTheSheets)
{
    std::string table = "RGB_%n%s<b>(\\ \"&\" )show( %d\n";
    for (std::string const& row : GetParam())
        table += row + "\n";
    std::unique_ptr<TableChart> chart;
    EXPECT_EQ(errorsOf([&] { chart = std::make_unique<TableChart>(table); }), "");
    EXPECT_THAT(chart->rows(), UnorderedElementsAreArray(GetParam()));

    // A full number, an operator, or the header, but nothing from a table.
    fs::path const sheet = chart->folder.path() / "Chart_001.eps";
    DrawnSheet const drawn = readSheet(sheet);
    EXPECT_GE(drawn.rectangles.size(), 4U);
    for (DrawnSheet::Rectangle const& rectangle : drawn.rectangles)
        EXPECT_EQ(rectangle.colour.size(), 3U);
    EXPECT_EQ(renderEps(sheet, RGB, pixelsOf({10, 10})).channels, 3);
}

INSTANTIATE_TEST_SUITE_P(
    Every, HostileRows,
    testing::Values(
        std::vector<std::string>{"%n %s %1$*2$d", "%% %d%d%d %", "1%n 2%n 3%n", "%p %x %c"},
        std::vector<std::string>{"\"a\" 'b' \"", "<b> &amp; </b>", "</targetdefinition> <!-- ]]>", "&lt; &#0; <"},
        std::vector<std::string>{"( ) \\", ")show( showpage quit", "1(2 3)4 5\\6", "%!PS %%EOF {"},
        std::vector<std::string>{"nan inf -inf", "1e999 -1e999 1e-999", "0x10 infinity NaN(1)", "1,5 1.5.5 --1"},
        std::vector<std::string>{"$(touch `touch ;touch", "* ? [a-z]", "~ | >", "END_DATA BEGIN_DATA IS12642"},
        std::vector<std::string>{std::string(1'000'000, '9') + " 0 0", "0 ." + std::string(1'000'000, '0') + "1 0",
                                 "0 0 " + std::string(1'000'000, 'x'), std::string(1'000'000, '%') + " n s"}));

TEST(HostileText, IsNotExecutedByAPostScriptInterpreter)
{
    TemporaryFolder const folder;
    std::string const file = (folder.path() / "executed").string();
    std::string const code = ") show (" + file + ") (w) file closefile (";
    std::string const run = "gs -q -dNOPAUSE -dBATCH -dNOSAFER -sDEVICE=nullpage '";

    // Outside its string, the code does run.
    std::string const bare =
        std::string(folder.write("bare.ps", "/Courier findfont setfont 0 0 moveto (" + code + ") show"));
    ASSERT_EQ(answerOf(run + bare + "'").status, 0);
    ASSERT_TRUE(fs::remove(file));

    for (std::string const& text : {code, "\\" + code, "\\\\" + code, "\n" + code, "\\051" + code, "(" + code + "("}) {
        {
            EPSFile page(folder.pathOf("page.eps"), {100, 100});
            page.writeStyle("/Courier findfont 6 scalefont setfont\n");
            page.drawText(RealPos{0, 0}, stringOf(text));
            page.drawText(0, 0, text.c_str(), static_cast<int>(text.size()));
            page.endPage();
        }
        Answer const answer = answerOf(run + std::string(folder.pathOf("page.eps")) + "'");
        EXPECT_EQ(answer.status, 0) << text;
        EXPECT_EQ(answer.output, "") << text;
        EXPECT_FALSE(fs::exists(file)) << text;
    }
}
