// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Differences.h"

#include "support/CheckedChart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::ElementsAre;

// Differences of 1 to 20 in L*: 95 % are at most 19.
TEST(Differences, HaveAMeanA95thPercentileAndALargest)
{
    std::vector<ColorPair> pairs;
    for (int i = 20; i > 0; --i)
        pairs.push_back({{50, 0, 0}, {50.0 + i, 0, 0}});
    DifferenceStatistics const statistics = statisticsOf(pairs);
    EXPECT_EQ(statistics.count, 20U);
    EXPECT_DOUBLE_EQ(statistics.mean76, 10.5);
    EXPECT_DOUBLE_EQ(statistics.highest95, 19);
    EXPECT_DOUBLE_EQ(statistics.largest76, 20);
    EXPECT_LT(statistics.largest2000, 20);
}

TEST(Differences, OfNothingAreZero)
{
    EXPECT_EQ(statisticsOf({}).count, 0U);
    EXPECT_EQ(statisticsOf({}).largest76, 0);
}

// The two whites of the sheets: 90 and 94, with the mean 92.
TEST(Differences, OfRepeatsAreThoseFromTheirMean)
{
    ChartReference const chart = checkedChart({2, 3, 4});
    Readings readings(chart.patches.size());
    readings[0] = LabColor{90, 0, 0};
    readings[12] = LabColor{94, 0, 0};
    auto const pairs = repeatsOf(chart, readings);
    ASSERT_EQ(pairs.size(), 2U);
    EXPECT_EQ(pairs[0].first, (LabColor{92, 0, 0}));
    EXPECT_DOUBLE_EQ(statisticsOf(pairs).mean76, 2);
}

TEST(Differences, OfTwoMeasurementsNameTheColumnsThatDiffer)
{
    ChartReference const chart = checkedChart({1, 5, 4});
    Readings const first = plainPrint(chart);
    Readings second = first;
    for (std::size_t const patch : columnOf(chart, "D"))
        change(second, patch, {0, 8, 0});
    MeasurementComparison const comparison = compareMeasurements(chart, first, second);
    EXPECT_THAT(comparison.columns, ElementsAre("D"));
    EXPECT_DOUBLE_EQ(comparison.differences.mean76, 8.0 / 5);
}

} // namespace
