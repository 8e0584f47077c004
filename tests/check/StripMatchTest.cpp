// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "StripMatch.h"

#include "support/CheckedChart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace
{

using testing::ElementsAre;

std::size_t const nothing = Assignment::nothing;

// What a reading costs that has nothing to do with its patch, for a spread of 1. Student's density of three components
// and three degrees of freedom has at its centre
//     Gamma(3) / (Gamma(3/2) (3 pi)^(3/2)) = 2 / (0.886227 * 28.9352) = 0.077993.
// One reading in a hundred lies anywhere in 500,000 cubic units: a density of 0.01 / 500,000.
double const mostCost = std::log(0.077993 * 500'000 / 0.01);

// The rounding of the density to 0.078 makes a difference of 0.0001 a reading.
constexpr double rounding = 0.001;

// Odds of a fault before any reading is seen, as natural logarithms.
constexpr double faultPrior = 12;
constexpr double secondFaultPrior = 5;

// Four columns of eight patches. No colour is like another: each wrong reading costs the most.
class StripMatchTest : public testing::Test
{
protected:
    StripMatchTest()
    {
        model.spread = 1;
        for (std::size_t i = 0; i < chart.patches.size(); ++i)
            model.expected.push_back({100 * static_cast<double>(i), 0, 0});
        readings.assign(model.expected.begin(), model.expected.end());
    }

    StripMatch matchOf(std::size_t strip) const { return matchStrips(chart, readings, model, base)[strip]; }

    void swapStrips(std::size_t p, std::size_t q)
    {
        auto const first = readings.begin() + static_cast<std::ptrdiff_t>(8 * p);
        std::swap_ranges(first, first + 8, readings.begin() + static_cast<std::ptrdiff_t>(8 * q));
    }

    void reverseStrip(std::size_t strip)
    {
        auto const first = readings.begin() + static_cast<std::ptrdiff_t>(8 * strip);
        std::reverse(first, first + 8);
    }

    // Leaves out a reading: those behind it stand one place before their own, and the last place is empty.
    void loseReading(std::size_t strip, std::size_t row)
    {
        for (std::size_t i = 8 * strip + row; i < 8 * strip + 7; ++i)
            readings[i] = readings[i + 1];
        readings[8 * strip + 7].reset();
    }

    ChartReference chart = checkedChart({1, 4, 8});
    DeviceModel model;
    Readings readings;
    std::vector<StripMatch> base = faultlessExplanation(chart).base;
};

TEST_F(StripMatchTest, ShowsItsPatchesFromEitherEnd)
{
    StripMatch match;
    match.source = 2; // patches 16 to 23
    EXPECT_EQ(match.patchAt(chart, 0), 16U);
    EXPECT_EQ(match.patchAt(chart, 7), 23U);
    match.isReversed = true;
    EXPECT_EQ(match.patchAt(chart, 0), 23U);
    EXPECT_EQ(match.patchAt(chart, 7), 16U);
}

TEST_F(StripMatchTest, ShowsNothingBeyondTheEndsOfAShiftedStrip)
{
    StripMatch match;
    match.shifts = {1, 1, 1, 1, 0, 0, -2, -2};
    EXPECT_EQ(match.patchAt(chart, 0), nothing);
    EXPECT_EQ(match.patchAt(chart, 1), 0U);
    EXPECT_EQ(match.patchAt(chart, 5), 5U);
    EXPECT_EQ(match.patchAt(chart, 6), nothing);
}

TEST_F(StripMatchTest, ShowsNothingBeyondTheEndOfAShorterStrip)
{
    chart.strips[3].count = 6;
    StripMatch match;
    match.source = 3;
    EXPECT_EQ(match.patchAt(chart, 5), 29U);
    EXPECT_EQ(match.patchAt(chart, 6), nothing);
}

// The density falls as (1 + d^2 / (3 spread^2))^-3: at d^2 = 3 spread^2 to an eighth.
TEST(ReadingCost, IsTheLogarithmOfStudentsDensity)
{
    EXPECT_DOUBLE_EQ(ReadingCost(1).of(0), 0);
    EXPECT_DOUBLE_EQ(ReadingCost(1).of(3), std::log(8));
    EXPECT_DOUBLE_EQ(ReadingCost(2).of(12), std::log(8));
}

TEST(ReadingCost, IsAtMostThatOfAReadingWithoutItsPatch)
{
    EXPECT_NEAR(ReadingCost(1).most(), mostCost, rounding);
    EXPECT_NEAR(ReadingCost(2).most(), mostCost - std::log(8),
                rounding); // the density's volume is eight times as large
    EXPECT_EQ(ReadingCost(1).of(1e6), ReadingCost(1).most());
}

TEST(ReadingCost, TellsReadingsApartForAnySpread)
{
    EXPECT_EQ(ReadingCost(1e4).most(), 4);
}

TEST_F(StripMatchTest, IsCertainOfNothingWhereAllIsRight)
{
    for (StripMatch const& match : matchStrips(chart, readings, model, base)) {
        EXPECT_TRUE(match.isClear);
        EXPECT_EQ(match.logOdds, 0);
    }
    EXPECT_EQ(assignmentOf(chart, matchStrips(chart, readings, model, base)), Assignment(32));
}

TEST_F(StripMatchTest, FindsAReversedStripWithTheOddsOfEightReadings)
{
    reverseStrip(1);
    StripMatch const match = matchOf(1);
    EXPECT_TRUE(match.isReversed);
    EXPECT_EQ(match.source, 1U);
    EXPECT_NEAR(match.logOdds, 8 * mostCost - faultPrior, 8 * rounding);
}

TEST_F(StripMatchTest, FindsStripsThatHoldEachOthersReadings)
{
    swapStrips(0, 2);
    EXPECT_EQ(matchOf(0).source, 2U);
    EXPECT_EQ(matchOf(1).source, 1U);
    EXPECT_EQ(matchOf(2).source, 0U);
    EXPECT_NEAR(matchOf(2).logOdds, 8 * mostCost - faultPrior - std::log(4), 8 * rounding); // one of four strips
}

TEST_F(StripMatchTest, FindsAnExchangedStripThatIsAlsoReversed)
{
    swapStrips(0, 2);
    reverseStrip(0);
    StripMatch const match = matchOf(0);
    EXPECT_EQ(match.source, 2U);
    EXPECT_TRUE(match.isReversed);
    EXPECT_NEAR(match.logOdds, 8 * mostCost - faultPrior - std::log(4) - secondFaultPrior, 8 * rounding);
}

// Rows 3 to 6 hold wrong readings. A shift begins at one of eight rows, and one row further costs 1.
TEST_F(StripMatchTest, FindsTheRowWhereAReadingIsLost)
{
    loseReading(1, 3);
    StripMatch const match = matchOf(1);
    EXPECT_THAT(match.shifts, ElementsAre(0, 0, 0, -1, -1, -1, -1, -1));
    EXPECT_TRUE(match.isExact);
    EXPECT_NEAR(match.logOdds, 4 * mostCost - faultPrior - std::log(8) - 1, 8 * rounding);
}

TEST_F(StripMatchTest, FindsShiftsOfUpToFourRows)
{
    Readings const right = readings;
    for (std::size_t const shift : {4U, 5U}) {
        for (std::size_t row = shift; row < 8; ++row)
            readings[8 + row] = right[8 + row - shift];
        for (std::size_t row = 0; row < shift; ++row)
            readings[8 + row].reset();
        readings[8] = LabColor{-1000, 0, 0}; // fits nothing, so that there are four readings
        EXPECT_EQ(matchOf(1).isShifted(), shift == 4) << shift;
    }
}

// The patches of rows 2 and 3 are alike: either may be lost.
TEST_F(StripMatchTest, DoesNotKnowWhichOfTwoLikePatchesIsLost)
{
    model.expected[11] = model.expected[10];
    readings[11] = readings[10];
    loseReading(1, 3);
    StripMatch const match = matchOf(1);
    EXPECT_TRUE(match.isShifted());
    EXPECT_FALSE(match.isExact);
}

TEST_F(StripMatchTest, JudgesAStripByFourReadingsButNotByThree)
{
    reverseStrip(1);
    for (std::size_t row = 4; row < 8; ++row)
        readings[8 + row].reset();
    EXPECT_TRUE(matchOf(1).isReversed);
    readings[8].reset();
    EXPECT_FALSE(matchOf(1).isReversed);
}

// Readings that fit nothing may cost 60 % of the most: 4 of 8 cost 50 %, and 5 cost 63 %.
TEST_F(StripMatchTest, IsClearIfFourReadingsOfEightFitAndNotIfThreeDo)
{
    for (std::size_t row = 0; row < 4; ++row)
        readings[8 + row] = LabColor{-1000, 0, 0};
    EXPECT_TRUE(matchOf(1).isClear);
    readings[12] = LabColor{-1000, 0, 0};
    EXPECT_FALSE(matchOf(1).isClear);
}

TEST_F(StripMatchTest, ComparesWithTheStripOfTheSheetThatWasRead)
{
    swapStrips(0, 2);
    std::swap(base[0], base[2]);
    EXPECT_EQ(matchOf(0).source, 2U);
    EXPECT_EQ(matchOf(0).logOdds, 0);
}

TEST_F(StripMatchTest, FindsAStripOfItsOwnPlaceOnASheetThatIsExchanged)
{
    std::swap(base[0], base[2]);
    EXPECT_EQ(matchOf(0).source, 0U);
    EXPECT_GT(matchOf(0).logOdds, 0);
}

TEST_F(StripMatchTest, AssignsReadingsToThePatchesThatTheyShow)
{
    base[1].isReversed = true;
    base[2].shifts = {1, 1, 1, 1, 1, 1, 1, 1};
    base[3].isClear = false;
    Assignment const assignment = assignmentOf(chart, base);
    EXPECT_THAT(patchesOf(assignment),
                ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 15, 14, 13, 12, 11, 10, 9, 8, nothing, 16, 17, 18, 19, 20, 21, 22,
                            nothing, nothing, nothing, nothing, nothing, nothing, nothing, nothing));
}

} // namespace
