// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "report/ChartReport.h"

#include "lib/Folders.h"
#include "support/DecimalCommaLocale.h"
#include "support/RulerChart.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <regex>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

using testing::HasSubstr;
using testing::Not;

ReportSubject subjectOf(ChartLayout const& chart)
{
    return {.chart = chart,
            .devices = {"Ruler"},
            .paper = "A4",
            .withoutGaps = std::nullopt,
            .isGapRuleKnown = true,
            .bound = 0,
            .isBoundLoose = false,
            .notes = {}};
}

std::string pageOf(ReportSubject const& subject)
{
    respath = PATCHLOOM_RESOURCES;
    PageText const page = chartReport(subject);
    EXPECT_TRUE(std::holds_alternative<std::string>(page));
    return std::holds_alternative<std::string>(page) ? std::get<std::string>(page) : "";
}

std::string pageOf(ChartLayout const& chart)
{
    return pageOf(subjectOf(chart));
}

std::ptrdiff_t countOf(std::string const& text, std::string const& pattern)
{
    std::regex const regex(pattern);
    return std::distance(std::sregex_iterator(text.begin(), text.end(), regex), std::sregex_iterator());
}

} // namespace

TEST(ChartReport, ShowsEachCellOnceOnASheetAndOnceInATable)
{
    RulerChart const chart(greyEntries(7), {2, 2});
    std::string const page = pageOf(chart.layout);
    EXPECT_EQ(countOf(page, "data-patch=\"[A-D][12]\""), 8);
    EXPECT_EQ(countOf(page, "<tr id=\"patch-[A-D][12]\">"), 8);
    EXPECT_EQ(countOf(page, "<figure class=\"sheet\""), 2);
}

TEST(ChartReport, CountsTheCells)
{
    RulerChart const chart(greyEntries(7), {2, 2});
    std::string const page = pageOf(chart.layout);
    EXPECT_THAT(page, HasSubstr("<dt>7</dt><dd>patches of the table</dd>"));
    EXPECT_THAT(page, HasSubstr("<dt>+ 1</dt><dd>white patches"));
    EXPECT_THAT(page, HasSubstr("= 8</dt><dd class=\"total\">cells = 4 columns × 2 rows</dd>"));
}

TEST(ChartReport, MarksTheTenWeakestPairsOnTheSheets)
{
    RulerChart const chart(greyEntries(12), {2, 3});
    std::string const page = pageOf(chart.layout);
    for (int rank = 1; rank <= 10; ++rank) {
        EXPECT_EQ(countOf(page, "<g class=\"mark\" id=\"weak-" + std::to_string(rank) + "\">"), 1);
        EXPECT_EQ(countOf(page, "<a href=\"#weak-" + std::to_string(rank) + "\""), 1);
    }
    EXPECT_THAT(page, Not(HasSubstr("weak-11")));
}

TEST(ChartReport, GivesTheBoundOnlyWhereItIsKnown)
{
    RulerChart const chart(greyEntries(6), {2, 3});
    EXPECT_THAT(pageOf(chart.layout), Not(HasSubstr("Bound</th>")));
    ReportSubject subject = subjectOf(chart.layout);
    subject.bound = 80.001f;
    EXPECT_THAT(pageOf(subject), HasSubstr("Bound</th><td class=\"n\">80.01</td>"));
}

TEST(ChartReport, OfSpotsHasNoWeakPairs)
{
    auto entries = greyEntries(6);
    ChartLayout spots = chartOf(entries, instrument(tableSpot), paper(a4Portrait), {10, 10});
    spots.computeLayout(0, 0);
    std::string const page = pageOf(spots);
    EXPECT_THAT(page, Not(HasSubstr("Weakest pairs")));
    EXPECT_EQ(countOf(page, "data-patch="), 6);
}

TEST(ChartReport, OfRgbHasNoInks)
{
    RulerChart const rgb(greyEntries(3), {1, 3});
    EXPECT_THAT(pageOf(rgb.layout), Not(HasSubstr("id=\"inks\"")));
    RulerChart const cmyk(entriesOf(CMYK, {"100 90 80 70", "0 0 0 0"}), {1, 2});
    EXPECT_THAT(pageOf(cmyk.layout), HasSubstr("The largest sum of all inks is 340 %."));
}

TEST(ChartReport, EscapesNamesDevicesPapersNotesAndValues)
{
    std::string const hostile = "</title><script>alert('x')</script>\"&\xff\xc3\xa9";
    RulerChart chart(entriesOf(RGB, {"<b>1</b> 2\" 3", "0 0 0", "<b>1</b> 2\" 3"}), {1, 3});
    chart.layout.setName(String(hostile.c_str()));
    ReportSubject subject = subjectOf(chart.layout);
    subject.devices = {hostile};
    subject.paper = hostile;
    subject.notes = {hostile};
    std::string const page = pageOf(subject);
    std::string const shown = "&lt;/title&gt;&lt;script&gt;alert(&#39;x&#39;)&lt;/script&gt;&quot;&amp;?\xc3\xa9";
    EXPECT_THAT(page, HasSubstr("<h1>" + shown + "</h1>"));
    EXPECT_THAT(page, HasSubstr("Note: " + shown));
    EXPECT_THAT(page, HasSubstr("<dd class=\"device\">" + shown));
    EXPECT_THAT(page, HasSubstr("<td>&lt;b&gt;1&lt;/b&gt;</td><td>2&quot;</td>"));
    EXPECT_THAT(page, Not(HasSubstr("<b>")));
    EXPECT_EQ(countOf(page, "<script>"), 1);
}

TEST(ChartReport, SurvivesValuesThatNoColourHas)
{
    RulerChart const chart(entriesOf(CMYK, {"1e300 1e300 -1e300 0", "nan 0 0 0", "-5 0 0 0", "1e99 0 0 0"}), {2, 2});
    EXPECT_EQ(countOf(pageOf(chart.layout), "data-patch="), 4);
}

TEST(ChartReport, ListsOnlyTheFirstPlacesOfAColour)
{
    RulerChart const chart(entriesOf(RGB, std::vector<std::string>(103, "1 2 3")), {10, 11});
    std::string const page = pageOf(chart.layout);
    EXPECT_THAT(page, HasSubstr("and 3 more</td>"));
    EXPECT_EQ(countOf(page, "<a href=\"#patch-"), 100);
}

TEST(ChartReport, RefusesAChartThatNoBrowserShows)
{
    auto entries = greyEntries(400);
    ChartLayout chart = chartOf(entries, instrument(standardRuler), rulerSheetFor({1, 1}, {250, 250}), {250, 250});
    for (int i = 0; i < 2001; ++i)
        entries.add(entries[0]);
    chart.setOriginalEntries(&entries);
    chart.setOrderMethod({OrderMethod::given, 1, {}});
    chart.computeLayout(0, 0);
    ASSERT_EQ(chart.countOutputPages(), 2401);
    PageText const page = chartReport(subjectOf(chart));
    ASSERT_TRUE(std::holds_alternative<PageFault>(page));
    EXPECT_THAT(std::get<PageFault>(page).text, HasSubstr("2,401 cells on 2,401 sheets"));
}

TEST(ChartReport, IsTheSameUnderALocaleWithADecimalComma)
{
    RulerChart const chart(greyEntries(7), {2, 2}, {0, 0.5});
    std::string const page = pageOf(chart.layout);
    DecimalCommaLocale const locale;
    EXPECT_EQ(pageOf(chart.layout), page);
}
