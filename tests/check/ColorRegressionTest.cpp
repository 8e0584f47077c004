// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColorRegression.h"

#include <gtest/gtest.h>

namespace
{

// L* = 10 + 2 x, a* = x - 3 y, b* = 5 y.
LabColor colorAt(double x, double y)
{
    return {10 + 2 * x, x - 3 * y, 5 * y};
}

ColorRegression regressionOver(int first, int last)
{
    ColorRegression regression(3);
    for (int x = first; x <= last; ++x)
        for (int y = 0; y < 3; ++y) {
            double const features[] = {1, static_cast<double>(x), static_cast<double>(y)};
            regression.add({{features, colorAt(x, y), 1}});
        }
    return regression;
}

TEST(ColorRegression, FindsALinearMap)
{
    double const features[] = {1, 7, -2};
    LabColor const lab = regressionOver(0, 3).solve(1e-9).at(features);
    LabColor const expected = colorAt(7, -2);
    for (std::size_t k = 0; k < 3; ++k)
        EXPECT_NEAR(lab[k], expected[k], 1e-6);
}

// Seven observations: a group of four, and three one by one.
TEST(ColorRegression, AddsManyObservationsAsItAddsEach)
{
    double const features[][3] = {{1, 0, 2}, {1, 1, -1}, {1, 2, 3}, {1, 3, 1}, {1, 4, 0}, {1, 5, 2}, {1, 6, -2}};
    ColorRegression together(3);
    ColorRegression oneByOne(3);
    std::vector<Observation> all;
    for (std::size_t i = 0; i < 7; ++i)
        all.push_back(
            {features[i], {static_cast<double>(i * i), 5, -static_cast<double>(i)}, 1.0 / static_cast<double>(i + 1)});
    together.add(all);
    for (Observation const& observation : all)
        oneByOne.add({observation});
    double const place[] = {1, 2, 3};
    LabColor const lab = together.solve(0.01).at(place);
    LabColor const expected = oneByOne.solve(0.01).at(place);
    for (std::size_t k = 0; k < 3; ++k)
        EXPECT_NEAR(lab[k], expected[k], 1e-12);
}

TEST(ColorRegression, SubtractsAPartOfTheData)
{
    ColorRegression regression = regressionOver(0, 3);
    ColorRegression strange(3);
    double const features[] = {1, 100, 100};
    regression.add({{features, {0, 0, 0}, 2}});
    strange.add({{features, {0, 0, 0}, 2}});
    regression.subtract(strange);
    double const place[] = {1, 1, 1};
    EXPECT_NEAR(regression.solve(1e-9).at(place)[0], 12, 1e-4);
}

// Two features that are always the same: the ridge shares their effect.
TEST(ColorRegression, BearsFeaturesThatDoNotDiffer)
{
    ColorRegression regression(2);
    for (int i = 1; i < 5; ++i) {
        double const features[] = {static_cast<double>(i), static_cast<double>(i)};
        regression.add({{features, {4.0 * i, 0, 0}, 1}});
    }
    double const features[] = {2, 2};
    EXPECT_NEAR(regression.solve(1e-6).at(features)[0], 8, 1e-4);
}

// Of a line through n points the leverage is 1/n + (x - mean)^2 / sum of squares: here 1/4 + (x - 1.5)^2 / 5.
TEST(ColorRegression, HasTheLeverageOfALine)
{
    ColorRegression regression(2);
    for (int x = 0; x < 4; ++x) {
        double const features[] = {1, static_cast<double>(x)};
        regression.add({{features, {}, 1}});
    }
    RegressionFactor const factor = regression.factor(0);
    double const among[] = {1, 1};
    double const beside[] = {1, 10};
    EXPECT_NEAR(factor.leverage(among), 0.3, 1e-12);
    EXPECT_NEAR(factor.leverage(beside), 14.7, 1e-12);
}

TEST(ColorRegression, OfNoDataPredictsNothing)
{
    double const features[] = {1, 1};
    EXPECT_EQ(ColorRegression(2).solve(0.01).at(features), LabColor{});
}

} // namespace
