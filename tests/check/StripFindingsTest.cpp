// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "StripFindings.h"

#include "support/CheckedChart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<std::string> textsOf(std::vector<Finding> const& findings)
{
    std::vector<std::string> texts;
    for (Finding const& finding : findings)
        texts.push_back(finding.text);
    return texts;
}

class StripFindingsTest : public testing::Test
{
protected:
    void useChart(CheckedChartSize const& size)
    {
        chart = checkedChart(size);
        explanation = faultlessExplanation(chart);
    }

    // Says whose readings the strips hold, from the first strip on.
    void hold(std::vector<std::size_t> const& sources)
    {
        for (std::size_t strip = 0; strip < sources.size(); ++strip)
            explanation.matches[strip].source = sources[strip];
    }

    // Says whose readings the sheets hold. There is one column on each.
    void holdSheets(std::vector<std::size_t> const& sources)
    {
        useChart({static_cast<int>(sources.size()), 1, 2});
        hold(sources);
        explanation.base = explanation.matches;
    }

    std::vector<Finding> findings() const { return stripFindings(chart, explanation); }

    // Two sheets of two columns: A and B, C and D.
    ChartReference chart = checkedChart({2, 2, 5});
    StripExplanation explanation = faultlessExplanation(chart);
};

TEST_F(StripFindingsTest, AreNoneWhereNothingIsWrong)
{
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(StripFindingsTest, NameAColumnThatWasReadBackwards)
{
    explanation.matches[2].isReversed = true;
    explanation.matches[2].logOdds = std::log(2);
    auto const found = findings();
    ASSERT_THAT(textsOf(found), ElementsAre("column C was read backwards"));
    EXPECT_EQ(found[0].kind, FindingKind::reversed);
    EXPECT_EQ(found[0].sheet, 2U);
    EXPECT_EQ(found[0].certainty, certaintyOf(std::log(2)));
}

TEST_F(StripFindingsTest, NameThePatchesBehindALostOne)
{
    explanation.matches[1].shifts = {0, 0, -1, -1, -1};
    auto const found = findings();
    ASSERT_THAT(textsOf(found), ElementsAre("column B: the readings from B3 to B5 belong a patch behind their places; "
                                            "a patch was lost"));
    EXPECT_EQ(found[0].by, -1);
    EXPECT_THAT(found[0].patches, ElementsAre("B3", "B4", "B5"));
}

TEST_F(StripFindingsTest, NameThePatchesBehindOneThatWasCountedTwice)
{
    explanation.matches[1].shifts = {0, 2, 2, 2, 0};
    EXPECT_THAT(textsOf(findings()), ElementsAre("column B: the readings from B2 to B4 belong 2 patches before their "
                                                 "places; a patch was counted twice"));
}

TEST_F(StripFindingsTest, NameACircleOfColumnsOnceAndInOrder)
{
    hold({3, 0, 2, 1}); // A holds D, D holds B, B holds A
    auto const found = findings();
    ASSERT_THAT(textsOf(found), ElementsAre("the readings of columns A, B and D are exchanged"));
    EXPECT_EQ(found[0].kind, FindingKind::exchanged);
    EXPECT_EQ(found[0].sheet, 0U); // of two sheets
}

TEST_F(StripFindingsTest, AreAsSureOfACircleAsOfItsLeastSureColumn)
{
    hold({1, 0});
    explanation.matches[0].logOdds = 9;
    explanation.matches[1].logOdds = 3;
    auto const found = findings();
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_EQ(found[0].certainty, certaintyOf(3));
    EXPECT_EQ(found[0].sheet, 1U);
}

TEST_F(StripFindingsTest, NameExchangedColumnsThatWereAlsoReadBackwards)
{
    hold({1, 0});
    explanation.matches[1].isReversed = true;
    EXPECT_THAT(textsOf(findings()), ElementsAre("the readings of columns A and B are exchanged, those in place of B "
                                                 "also backwards"));
}

TEST_F(StripFindingsTest, NameASecondReadingOfAColumn)
{
    hold({1});
    explanation.matches[0].isReversed = true;
    auto const found = findings();
    ASSERT_THAT(textsOf(found), ElementsAre("column A holds a reading of column B, backwards; its own is not there"));
    EXPECT_EQ(found[0].kind, FindingKind::repeated);
    EXPECT_EQ(found[0].of, "B");
}

// A holds B, and B and C hold each other.
TEST_F(StripFindingsTest, TellASecondReadingFromTheCircleThatItLeadsInto)
{
    hold({1, 2, 1});
    EXPECT_THAT(textsOf(findings()), ElementsAre("column A holds a reading of column B; its own is not there",
                                                 "the readings of columns B and C are exchanged"));
}

TEST_F(StripFindingsTest, SayNothingAboutAColumnThatFitsNothing)
{
    explanation.matches[1].isReversed = true;
    explanation.matches[1].isClear = false;
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(StripFindingsTest, NameTwelveColumnsAtMost)
{
    useChart({1, 14, 2});
    hold({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 0});
    auto const found = findings();
    EXPECT_THAT(textsOf(found), ElementsAre("the readings of columns A, B, C, D, E, F, G, H, I, J, K, L and 2 more are "
                                            "exchanged"));
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_THAT(found[0].columns, SizeIs(14));
}

// Seven columns of ten are clear.
TEST_F(StripFindingsTest, NameASheetThatLayUpsideDownByMostOfItsColumns)
{
    useChart({1, 10, 2});
    hold({9, 8, 7, 6, 5, 4, 3, 2, 1, 0});
    for (std::size_t strip = 0; strip < 10; ++strip) {
        explanation.matches[strip].isReversed = true;
        explanation.matches[strip].isClear = strip < 7;
    }
    auto const found = findings();
    ASSERT_THAT(textsOf(found), ElementsAre("sheet 1 was read upside down"));
    EXPECT_EQ(found[0].kind, FindingKind::order);
    EXPECT_THAT(found[0].columns, ElementsAre("A", "B", "C", "D", "E", "F", "G"));
    explanation.matches[6].isClear = false;
    EXPECT_THAT(textsOf(findings()), testing::Not(testing::Contains("sheet 1 was read upside down")));
}

TEST_F(StripFindingsTest, NameExchangedSheetsAndNotTheirColumns)
{
    holdSheets({1, 0, 2});
    explanation.sheetLogOdds = 5;
    auto const found = findings();
    ASSERT_THAT(textsOf(found), ElementsAre("the readings of sheets 1 and 2 are exchanged"));
    EXPECT_EQ(found[0].kind, FindingKind::sheets);
    EXPECT_THAT(found[0].columns, ElementsAre("A", "B"));
    EXPECT_EQ(found[0].certainty, certaintyOf(5));
}

TEST_F(StripFindingsTest, NameASheetWhosePlaceHoldsAnother)
{
    holdSheets({1, 1});
    auto const found = findings();
    ASSERT_THAT(textsOf(found), ElementsAre("the readings of sheet 1 are of sheet 2"));
    EXPECT_EQ(found[0].sheet, 1U);
    EXPECT_THAT(found[0].columns, ElementsAre("A"));
}

TEST_F(StripFindingsTest, NameEverySheetOfAChainByItself)
{
    holdSheets({1, 2, 2});
    EXPECT_THAT(textsOf(findings()),
                ElementsAre("the readings of sheet 1 are of sheet 2", "the readings of sheet 2 are of sheet 3"));
}

// Sheets 2 and 3 hold each other's readings, and sheet 1 holds a second reading of sheet 2.
TEST_F(StripFindingsTest, TellASecondReadingOfASheetFromTheCircleThatItLeadsInto)
{
    holdSheets({1, 2, 1});
    EXPECT_THAT(textsOf(findings()),
                ElementsAre("the readings of sheet 1 are of sheet 2", "the readings of sheets 2 and 3 are exchanged"));
}

// Sheets 2, 10 and 5 in a circle.
TEST_F(StripFindingsTest, NameExchangedSheetsInTheOrderOfTheirNumbers)
{
    holdSheets({0, 9, 2, 3, 1, 5, 6, 7, 8, 4});
    auto const found = findings();
    ASSERT_THAT(textsOf(found), ElementsAre("the readings of sheets 2, 5 and 10 are exchanged"));
    EXPECT_THAT(found[0].columns, ElementsAre("B", "E", "J"));
}

TEST_F(StripFindingsTest, NameAnotherOrderBeforeAllElse)
{
    explanation.order.text = "the chart was read row by row";
    explanation.orderLogOdds = 4;
    explanation.matches[0].isReversed = true;
    auto const found = findings();
    ASSERT_THAT(textsOf(found), ElementsAre("the table is in another order: the chart was read row by row",
                                            "column A was read backwards"));
    EXPECT_EQ(found[0].certainty, certaintyOf(4));
}

TEST_F(StripFindingsTest, SayOnlyThatReadingsFitNoOrder)
{
    explanation.isExplained = false;
    explanation.matches[0].isReversed = true;
    auto const found = findings();
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_EQ(found[0].kind, FindingKind::order);
    EXPECT_THAT(found[0].columns, IsEmpty());
}

// Odds of 2 to 1 are a probability of two thirds.
TEST(Certainty, IsTheProbabilityOfItsOddsRoundedDown)
{
    EXPECT_DOUBLE_EQ(certaintyOf(std::log(2)), 0.666666);
    EXPECT_DOUBLE_EQ(certaintyOf(0), 0.5);
    EXPECT_DOUBLE_EQ(certaintyOf(-std::log(2)), 0.333333);
}

TEST(Certainty, IsNeverFull)
{
    EXPECT_DOUBLE_EQ(certaintyOf(1e308), 0.999999);
    EXPECT_DOUBLE_EQ(certaintyOf(-1e308), 0);
}

} // namespace
