// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "report/CheckReport.h"

#include "lib/Folders.h"
#include "support/CheckedChart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::HasSubstr;
using testing::Not;

class CheckReportTest : public testing::Test
{
protected:
    CheckReportTest() { respath = PATCHLOOM_RESOURCES; }

    std::string page() const
    {
        PairedMeasurement const measurement = measurementOf(readings);
        MeasurementCheck const check = checkMeasurement(chart, measurement, candidateOrders(chart));
        PageText const text = checkReport({chart, measurement, check, "a <b>.txt"});
        EXPECT_TRUE(std::holds_alternative<std::string>(text));
        return std::get<std::string>(text);
    }

    ChartReference const chart = checkedChart({2, 8, 12});
    Readings readings = plainPrint(chart);
};

std::size_t countIn(std::string const& text, std::string const& part)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

TEST_F(CheckReportTest, ShowsEveryPatchMeasuredAndInATable)
{
    std::string const text = page();
    EXPECT_EQ(countIn(text, " data-patch=\""), 192U);
    EXPECT_EQ(countIn(text, "<tr id=\"patch-"), 192U);
    EXPECT_EQ(countIn(text, "width=\"4\" height=\"4\""), 192U); // the expected colours
    EXPECT_THAT(text, HasSubstr("<h3>Sheet 2</h3>8 columns, I to P"));
    EXPECT_THAT(text, HasSubstr("Nothing was found"));
    EXPECT_THAT(text, Not(HasSubstr("{{")));
}

TEST_F(CheckReportTest, ShowsTheFirstPatchAtTheUpperRightAsOnThePrint)
{
    std::string const text = page();
    for (char const* label : {"A1", "I1"}) {
        std::size_t const end = text.find("data-patch=\"" + std::string(label) + "\"");
        ASSERT_NE(end, std::string::npos);
        EXPECT_THAT(text.substr(text.rfind("<rect", end), 40), HasSubstr("x=\"80\" y=\"10\"")) << label;
    }
    EXPECT_THAT(text, HasSubstr("<text x=\"85\" y=\"7\" text-anchor=\"middle\" fill=\"#000000\">A</text>"));
}

TEST_F(CheckReportTest, MarksAFindingWhereItIs)
{
    auto const patches = columnOf(chart, "C");
    for (std::size_t row = 0; row < patches.size() / 2; ++row)
        std::swap(readings[patches[row]], readings[patches[patches.size() - 1 - row]]);
    std::string const text = page();
    EXPECT_THAT(text, HasSubstr("<a href=\"#finding-1\">1</a></th><td>reversed</td>"
                                "<td>column C was read backwards</td><td class=\"n\">99.9999 %</td>"));
    EXPECT_EQ(countIn(text, "id=\"finding-1\""), 1U);
    // Column C is the third of 8 from the right: 10 units from the edge, and 5 patches of 10 units.
    EXPECT_THAT(text, HasSubstr("<rect class=\"pair\" x=\"60\" y=\"10\" width=\"10\" height=\"120\"/>"));
}

TEST_F(CheckReportTest, ShowsReadingsAsNumbers)
{
    readings[1] = LabColor{12.34, -5.06, 7};
    EXPECT_THAT(page(),
                HasSubstr("<tr id=\"patch-A2\"><th scope=\"row\">A2</th><td>12.3</td><td>-5.1</td><td>7.0</td>"));
    readings[1].reset();
    EXPECT_THAT(page(), HasSubstr("<th scope=\"row\">A2</th><td>–</td><td>–</td><td>–</td>"));
}

TEST_F(CheckReportTest, EscapesNames)
{
    EXPECT_THAT(page(), HasSubstr("measured in a &lt;b&gt;.txt."));
}

TEST_F(CheckReportTest, GivesTheStatisticsOfRepeatsAndPaper)
{
    std::string const text = page();
    EXPECT_THAT(text, HasSubstr("<tr><th scope=\"row\">Repeats from their mean</th><td class=\"n\">2</td>"));
    EXPECT_EQ(countIn(text.substr(text.find("id=\"papers\"")), "<tr><th scope=\"row\">"), 2U);
}

} // namespace
