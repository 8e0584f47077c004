// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "StripSearch.h"

#include "support/CheckedChart.h"
#include "support/SimulatedPrint.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

class StripSearchTest : public testing::Test
{
protected:
    void useChart(CheckedChartSize const& size)
    {
        chart = checkedChart(size);
        readings = plainPrint(chart);
    }

    StripExplanation explain() const { return explainStrips(chart, readings, candidateOrders(chart)); }

    void swapStrips(std::size_t p, std::size_t q)
    {
        for (std::size_t row = 0; row < chart.strips[p].count; ++row)
            std::swap(readings[chart.strips[p].first + row], readings[chart.strips[q].first + row]);
    }

    // The strips that were read: those of `matches` or of `base`.
    static std::vector<std::size_t> sourcesOf(std::vector<StripMatch> const& matches)
    {
        std::vector<std::size_t> sources;
        for (StripMatch const& match : matches)
            sources.push_back(match.source);
        return sources;
    }

    ChartReference chart = checkedChart({2, 5, 12});
    Readings readings = plainPrint(chart);
};

TEST_F(StripSearchTest, FindsEverythingInPlaceInAGoodMeasurement)
{
    StripExplanation const explanation = explain();
    EXPECT_TRUE(explanation.isExplained);
    EXPECT_EQ(explanation.order.text, "");
    EXPECT_EQ(explanation.readings, readings);
    EXPECT_THAT(sourcesOf(explanation.matches), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9));
    EXPECT_FALSE(explanation.hasExchangedSheets());
}

TEST_F(StripSearchTest, GivesTheReadingsOfAnotherOrderInTheChartsOwn)
{
    Readings const right = readings;
    std::reverse(readings.begin(), readings.end());
    StripExplanation const explanation = explain();
    EXPECT_EQ(explanation.order.text, "the chart was read from its last patch to its first");
    EXPECT_EQ(explanation.readings, right);
    EXPECT_GT(explanation.orderLogOdds, 14); // an error of less than one in a million
}

TEST_F(StripSearchTest, TriesNoOrdersThatItIsNotTold)
{
    std::reverse(readings.begin(), readings.end());
    StripExplanation const explanation = explainStrips(chart, readings, {candidateOrders(chart).front()});
    EXPECT_THAT(explanation.order.text, IsEmpty());
    EXPECT_EQ(explanation.readings, readings);
}

TEST_F(StripSearchTest, TakesSheetsForExchangedIfMostOfTheirStripsAre)
{
    for (std::size_t strip = 0; strip < 4; ++strip)
        swapStrips(strip, strip + 5);
    StripExplanation const explanation = explain();
    EXPECT_TRUE(explanation.hasExchangedSheets());
    EXPECT_THAT(sourcesOf(explanation.base), ElementsAre(5, 6, 7, 8, 9, 0, 1, 2, 3, 4));
    EXPECT_THAT(sourcesOf(explanation.matches), ElementsAre(5, 6, 7, 8, 4, 0, 1, 2, 3, 9));
    EXPECT_GT(explanation.sheetLogOdds, 14);
}

TEST_F(StripSearchTest, TakesStripsForExchangedIfFewOfASheetAre)
{
    for (std::size_t strip = 0; strip < 2; ++strip)
        swapStrips(strip, strip + 5);
    StripExplanation const explanation = explain();
    EXPECT_FALSE(explanation.hasExchangedSheets());
    EXPECT_EQ(explanation.sheetLogOdds, 0);
    EXPECT_THAT(sourcesOf(explanation.matches), ElementsAre(5, 6, 2, 3, 4, 0, 1, 7, 8, 9));
}

TEST_F(StripSearchTest, ComparesStripsWithTheSheetThatWasRead)
{
    for (std::size_t strip = 0; strip < 5; ++strip)
        swapStrips(strip, strip + 5);
    for (StripMatch const& match : explain().matches)
        EXPECT_EQ(match.logOdds, 0);
}

// A model learnt from these readings as they stand would explain nothing.
TEST_F(StripSearchTest, FindsTheOnlyTwoStripsExchanged)
{
    useChart({1, 2, 12});
    swapStrips(0, 1);
    EXPECT_THAT(sourcesOf(explain().matches), ElementsAre(1, 0));
}

TEST_F(StripSearchTest, FindsAllSheetsInACircle)
{
    useChart({3, 2, 24});
    std::rotate(readings.begin(), readings.begin() + 48, readings.end()); // two columns of 24
    EXPECT_THAT(sourcesOf(explain().base), ElementsAre(2, 3, 4, 5, 0, 1));
}

// Three quarters of the strips are exchanged with their neighbours. The first model explains a few of them.
TEST_F(StripSearchTest, FindsMoreStripsByWhatItHasLearnt)
{
    useChart({1, 16, 12});
    for (std::size_t strip = 0; strip < 12; strip += 2)
        swapStrips(strip, strip + 1);
    EXPECT_THAT(sourcesOf(explain().matches), ElementsAre(1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 12, 13, 14, 15));
}

TEST_F(StripSearchTest, LearnsTheModelFromReadingsAtTheirTruePlaces)
{
    Readings const right = readings;
    for (std::size_t const strip : {0U, 1U, 2U})
        swapStrips(strip, 9 - strip);
    DeviceModel const model = explain().model;
    double sum = 0;
    for (std::size_t i = 0; i < right.size(); ++i)
        sum += deltaE76(model.expected[i], right[i].value_or(LabColor{}));
    EXPECT_LT(sum / static_cast<double>(right.size()), 1);
}

TEST_F(StripSearchTest, ExplainsNoReadingsThatHaveNothingToDoWithTheChart)
{
    SimulationRandom random(9);
    for (auto& reading : readings)
        reading = LabColor{100 * random.even(), 200 * random.even() - 100, 200 * random.even() - 100};
    EXPECT_FALSE(explain().isExplained);
}

} // namespace
