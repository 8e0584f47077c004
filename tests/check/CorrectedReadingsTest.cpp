// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CorrectedReadings.h"

#include "support/CheckedChart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::ElementsAre;

std::size_t const nothing = Assignment::nothing;

// Natural logarithms of odds: an error probability of one in a million is 13.8.
constexpr double certainOdds = 14;
constexpr double doubtfulOdds = 13;

// Columns of two patches:   0 2 4
//                           1 3 5
class CorrectedReadingsTest : public testing::Test
{
protected:
    void match(std::size_t strip, std::size_t source, double logOdds)
    {
        explanation.matches[strip].source = source;
        explanation.matches[strip].logOdds = logOdds;
    }

    ReadingPlaces places(bool onlyCertain = true) const { return correctedPlaces(chart, explanation, onlyCertain); }

    ChartReference chart = checkedChart({1, 3, 2});
    StripExplanation explanation = faultlessExplanation(chart);
};

TEST_F(CorrectedReadingsTest, StayWhereNothingIsWrong)
{
    EXPECT_THAT(places(), ElementsAre(0, 1, 2, 3, 4, 5));
}

TEST_F(CorrectedReadingsTest, TurnAColumnOnlyIfItsErrorIsRarerThanOneInAMillion)
{
    explanation.matches[1].isReversed = true;
    explanation.matches[1].logOdds = certainOdds;
    EXPECT_THAT(places(), ElementsAre(0, 1, 3, 2, 4, 5));
    explanation.matches[1].logOdds = doubtfulOdds;
    EXPECT_THAT(places(), ElementsAre(0, 1, 2, 3, 4, 5));
    EXPECT_THAT(places(false), ElementsAre(0, 1, 3, 2, 4, 5));
}

TEST_F(CorrectedReadingsTest, LeaveAShiftAloneThatMayBeginAtAnotherRow)
{
    explanation.matches[1].shifts = {1, 1};
    explanation.matches[1].logOdds = certainOdds;
    explanation.matches[1].isExact = false;
    EXPECT_THAT(places(), ElementsAre(0, 1, 2, 3, 4, 5));
    EXPECT_THAT(places(false), ElementsAre(0, 1, 3, nothing, 4, 5));
}

TEST_F(CorrectedReadingsTest, LeaveBothColumnsAloneWhereOneIsDoubtful)
{
    match(0, 2, certainOdds);
    match(2, 0, certainOdds);
    EXPECT_THAT(places(), ElementsAre(4, 5, 2, 3, 0, 1));
    match(2, 0, doubtfulOdds);
    EXPECT_THAT(places(), ElementsAre(0, 1, 2, 3, 4, 5));
}

// Column 0 holds column 1, column 1 holds column 2, and column 2 holds column 0.
TEST_F(CorrectedReadingsTest, LeaveAWholeCircleAloneWhereOneColumnIsDoubtful)
{
    match(0, 1, certainOdds);
    match(1, 2, certainOdds);
    match(2, 0, doubtfulOdds);
    EXPECT_THAT(places(), ElementsAre(0, 1, 2, 3, 4, 5));
}

TEST_F(CorrectedReadingsTest, KeepTheFirstReadingOfAColumnThatWasReadTwice)
{
    match(0, 2, certainOdds);
    EXPECT_THAT(places(), ElementsAre(nothing, nothing, 2, 3, 4, 5));
}

TEST_F(CorrectedReadingsTest, StayInAColumnThatFitsNothing)
{
    explanation.matches[1].isReversed = true;
    explanation.matches[1].isClear = false;
    EXPECT_THAT(places(false), ElementsAre(0, 1, 2, 3, 4, 5));
}

// Two sheets of one column each:   0   2
//                                  1   3
TEST_F(CorrectedReadingsTest, ExchangeSheetsOnlyIfThatIsCertain)
{
    chart = checkedChart({2, 1, 2});
    explanation = faultlessExplanation(chart);
    std::swap(explanation.base[0], explanation.base[1]);
    explanation.matches = explanation.base;
    explanation.sheetLogOdds = certainOdds;
    EXPECT_THAT(places(), ElementsAre(2, 3, 0, 1));
    explanation.sheetLogOdds = doubtfulOdds;
    EXPECT_THAT(places(), ElementsAre(0, 1, 2, 3));
}

// The table was read from patch 1 on, and patch 0 last. Then column 0 is turned: patch 0 stands at the place of patch 1
// in the chart's order, and that was read first.
TEST_F(CorrectedReadingsTest, StandWhereTheyWereReadInAnotherOrder)
{
    explanation.order.text = "from the second patch on";
    explanation.orderLogOdds = certainOdds;
    for (std::size_t i = 0; i < 6; ++i)
        explanation.order.assignment[i] = (i + 1) % 6;
    explanation.matches[0].isReversed = true;
    explanation.matches[0].logOdds = certainOdds;
    EXPECT_THAT(places(), ElementsAre(0, 5, 1, 2, 3, 4));
}

TEST_F(CorrectedReadingsTest, StayInADoubtfulOrder)
{
    explanation.order.text = "from the last patch to the first";
    explanation.orderLogOdds = doubtfulOdds;
    for (std::size_t i = 0; i < 6; ++i)
        explanation.order.assignment[i] = 5 - i;
    EXPECT_THAT(places(), ElementsAre(0, 1, 2, 3, 4, 5));
    EXPECT_THAT(places(false), ElementsAre(5, 4, 3, 2, 1, 0));
}

TEST_F(CorrectedReadingsTest, StayWhereTheReadingsFitNoOrder)
{
    explanation.isExplained = false;
    explanation.matches[0].isReversed = true;
    explanation.matches[0].logOdds = certainOdds;
    EXPECT_THAT(places(false), ElementsAre(0, 1, 2, 3, 4, 5));
}

} // namespace
