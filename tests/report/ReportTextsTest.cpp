// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "report/ReportTexts.h"

#include "support/RulerChart.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

using testing::Contains;
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

} // namespace

TEST(ReportTexts, ADifferenceBelowTheLimitDoesNotLookLikeIt)
{
    EXPECT_EQ(deltaText(17.996f), "17.99");
    EXPECT_EQ(deltaText(18), "18.00");
    EXPECT_EQ(deltaText(17.984f), "17.98");
    EXPECT_EQ(deltaText(58.906f), "58.91");
    EXPECT_EQ(flooredDeltaText(58.906f), "58.90");
}

TEST(ReportTexts, SeveralDevicesAreJoined)
{
    RulerChart const chart(greyEntries(3), {1, 3});
    ReportSubject subject = subjectOf(chart.layout);
    EXPECT_EQ(deviceText(subject), "Ruler");
    subject.devices = {"A", "B", "C"};
    EXPECT_EQ(deviceText(subject), "A, B or C");
}

TEST(ReportTexts, GapsAreNamed)
{
    EXPECT_EQ(gapText(RulerChart(greyEntries(3), {1, 3}).layout), "no gaps");
    EXPECT_EQ(gapText(RulerChart(greyEntries(3), {1, 3}, {0, 1.5}).layout), "gaps of 1.5 mm along the scan");
}

TEST(ReportTexts, SayWhyThereAreGaps)
{
    RulerChart const chart(greyEntries(3), {1, 3}, {0, 1});
    ReportSubject subject = subjectOf(chart.layout);
    EXPECT_THAT(gapReason(subject, 20), HasSubstr("asked for"));
    subject.isGapRuleKnown = false;
    EXPECT_THAT(gapReason(subject, 20), HasSubstr("do not say why"));
    subject.withoutGaps = 12.344f;
    EXPECT_THAT(gapReason(subject, 20), HasSubstr("Without gaps the smallest difference was 12.34"));
}

TEST(ReportTexts, SayWhyThereAreNoGaps)
{
    RulerChart const chart(greyEntries(3), {1, 3});
    ReportSubject const subject = subjectOf(chart.layout);
    EXPECT_THAT(gapReason(subject, 18), HasSubstr("needs no gaps"));
    EXPECT_THAT(gapReason(subject, 17.9f), HasSubstr("may not see where one patch ends"));
}

// Room for 2 columns of 10 mm and a tenth of one: 21 mm.
TEST(ReportTexts, SayWhatOneMoreColumnNeeds)
{
    RulerChart const full(greyEntries(6), {2, 3});
    EXPECT_THAT(sheetReasons(subjectOf(full.layout), countCells(full.layout)),
                Contains(HasSubstr("One more column would need 9 mm more")));
    RulerChart const half(greyEntries(3), {2, 3});
    EXPECT_THAT(sheetReasons(subjectOf(half.layout), countCells(half.layout)),
                Contains(HasSubstr("One more column would fit: 11 mm of the width are free.")));
}

TEST(ReportTexts, SayHowManyPatchesStillFit)
{
    RulerChart const chart(greyEntries(5), {2, 3});
    EXPECT_THAT(sheetReasons(subjectOf(chart.layout), countCells(chart.layout)), Contains(HasSubstr("1 cell is free")));
}

TEST(ReportTexts, InksAreCountedAboveTheirLimits)
{
    std::string const text = inkText({0, 300, 300.5, 321, 400});
    EXPECT_THAT(text, HasSubstr("largest sum of all inks is 400 %"));
    EXPECT_THAT(text, HasSubstr("3 patches above 300 %, 2 patches above 320 %, 0 patches above 400 %"));
}

TEST(ReportTexts, RepeatsAreCountedWithThoseOnSeveralSheets)
{
    RulerChart const chart(entriesOf(RGB, {"0 0 0", "0 0 0", "0 0 0", "99 99 99"}), {1, 2});
    EXPECT_THAT(repeatText(chart.layout, repeatsOf(chart.layout)),
                HasSubstr("1 colour more than once, with 3 patches"));
    EXPECT_THAT(repeatText(chart.layout, repeatsOf(chart.layout)), HasSubstr("1 colour lie on more than one sheet"));
    EXPECT_THAT(repeatText(chart.layout, {}), HasSubstr("different device values"));
}

// The block is 20 x 27 mm with its last gap. The crosses stand a quarter of a millimetre outside.
TEST(ReportTexts, GiveTheDistancesOfTheCrosses)
{
    RulerChart const chart(greyEntries(6), {2, 3}, {0, 1});
    std::string all;
    for (std::string const& step : printSteps(subjectOf(chart.layout)))
        all += step;
    auto const crosses = chart.drawn().rectangles;
    EXPECT_DOUBLE_EQ(crosses[5].rect.x - crosses[1].rect.x, 20.5);
    EXPECT_DOUBLE_EQ(crosses[3].rect.y - crosses[1].rect.y, 28.5);
    EXPECT_THAT(all, HasSubstr("must be 20.5 mm apart, and those of the lower and the upper cross 28.5 mm"));
}

TEST(ReportTexts, SpotsAreNotSwept)
{
    auto entries = greyEntries(6);
    ChartLayout spots = chartOf(entries, instrument(tableSpot), paper(a4Portrait), {10, 10});
    spots.computeLayout(0, 0);
    EXPECT_EQ(scanText(spots), "measures patch by patch");
    for (std::string const& step : measureSteps(subjectOf(spots)))
        EXPECT_THAT(step, Not(HasSubstr("Sweep")));
}

TEST(ReportTexts, FindTheSheetOfACell)
{
    RulerChart const chart(greyEntries(7), {2, 2});
    EXPECT_EQ(sheetNumberOf(chart.layout, {3, 0}), 1);
    EXPECT_EQ(sheetNumberOf(chart.layout, {0, 1}), 2);
    EXPECT_EQ(sheetNumberOf(chart.layout, {4, 0}), 0);
}
