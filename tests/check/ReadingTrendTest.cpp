// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ReadingTrend.h"

#include "support/CheckedChart.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

// Two sheets of 20 patches. The model expects grey of L* 50 everywhere.
class ReadingTrendTest : public testing::Test
{
protected:
    ReadingTrendTest()
    {
        model.expected.assign(chart.patches.size(), LabColor{50, 0, 0});
        model.spread = 0.5;
        readings.assign(chart.patches.size(), LabColor{50, 0, 0});
    }

    ReadingTrend trend() const { return trendOf(chart, readings, model); }

    ChartReference const chart = checkedChart({2, 4, 5});
    DeviceModel model;
    Readings readings;
};

// What the model takes for a drift is in what it expects: 3 in b* from the first patch to the last.
TEST_F(ReadingTrendTest, KeepsTheDriftOfTheModelWhereTheColoursDrift)
{
    model.drift = {0, 0, 3};
    for (std::size_t i = 0; i < readings.size(); ++i) {
        double const place = static_cast<double>(i) / 39 - 0.5;
        model.expected[i] = {50, 0, 3 * place};
        change(readings, i, {0, 0, 3 * place});
    }
    EXPECT_FALSE(trend().isSteps);
    EXPECT_EQ(trend().drift, (LabColor{0, 0, 3}));
    // The places 0/39 - 0.5 to 39/39 - 0.5 have a sum of squares of 40 (40^2 - 1) / (12 39^2) = 3.5043.
    EXPECT_NEAR(trend().chance, 0.5 / std::sqrt(3.5043), 1e-4);
}

// Sheet 2 has 4 more in L*. The drift that a line through these steps has is not there.
TEST_F(ReadingTrendTest, TellsSheetsOfAnotherPaperFromADrift)
{
    model.drift = {6, 0, 0};
    for (std::size_t i = 0; i < readings.size(); ++i) {
        model.expected[i][0] += 6 * (static_cast<double>(i) / 39 - 0.5);
        change(readings, i, {i < 20 ? 0.0 : 4.0, 0, 0});
    }
    ReadingTrend const found = trend();
    EXPECT_TRUE(found.isSteps);
    EXPECT_NEAR(found.drift[0], 0, 1e-9);
    EXPECT_NEAR(found.offsets[0][0], -2, 1e-9);
    EXPECT_NEAR(found.offsets[1][0], 2, 1e-9);
    EXPECT_EQ(found.counts, (std::vector<std::size_t>{20, 20}));
}

// 1 in a* from the first patch to the last, and 4 in L* from sheet to sheet.
TEST_F(ReadingTrendTest, MeasuresTheDriftWithinSheetsOfDifferentPaper)
{
    for (std::size_t i = 0; i < readings.size(); ++i)
        change(readings, i, {i < 20 ? 0.0 : 4.0, static_cast<double>(i) / 39, 0});
    EXPECT_TRUE(trend().isSteps);
    EXPECT_NEAR(trend().drift[0], 0, 1e-9);
    EXPECT_NEAR(trend().drift[1], 1, 1e-9);
}

TEST_F(ReadingTrendTest, BearsSheetsWithoutReadings)
{
    for (std::size_t i = 20; i < readings.size(); ++i)
        readings[i].reset();
    EXPECT_FALSE(trend().isSteps);
    readings.assign(readings.size(), std::nullopt);
    EXPECT_FALSE(trend().isSteps);
    EXPECT_EQ(trend().chance, 0);
}

} // namespace
