// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "DeviceModel.h"

#include "support/CheckedChart.h"
#include "support/SimulatedPrint.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace
{

using testing::DoubleNear;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

// The sums of a regression have a ridge of 0.01, so that readings come back nearly.
constexpr double nearly = 0.2;

// Readings that are a linear function of the device values.
LabColor linearColor(ChartPatch const& patch)
{
    auto const [red, green, blue, unused] = patch.device;
    return {20 + 30 * red + 40 * green + 5 * blue, 50 * red - 40 * green, 30 * green - 60 * blue};
}

class DeviceModelTest : public testing::Test
{
protected:
    explicit DeviceModelTest(CheckedChartSize const& size = {1, 10, 12}) : chart(checkedChart(size))
    {
        for (ChartPatch& patch : chart.patches) {
            patch.lab = {50, 0, 0}; // tells nothing: its features are 0
            readings.emplace_back(linearColor(patch));
        }
    }

    DeviceModel learn(int tier = 1) const
    {
        return learnModel(chart, readings, Assignment(readings.size()), PatchFeatures(chart, tier), tier);
    }

    int bestTier() const
    {
        std::vector<PatchFeatures> const features{{chart, 0}, {chart, 1}, {chart, 2}};
        return learnBestModel(chart, readings, Assignment(readings.size()), features).tier;
    }

    // The largest difference between what is expected and what a perfect reading is.
    double worstExpectation(DeviceModel const& model) const
    {
        double worst = 0;
        for (std::size_t i = 0; i < chart.patches.size(); ++i)
            worst = std::max(worst, deltaE76(model.expected[i], linearColor(chart.patches[i])));
        return worst;
    }

    void addNoise(double deviation)
    {
        SimulationRandom random(11);
        for (std::size_t i = 0; i < readings.size(); ++i)
            change(readings, i,
                   {deviation * random.normal(), deviation * random.normal(), deviation * random.normal()});
    }

    ChartReference chart;
    Readings readings;
};

TEST_F(DeviceModelTest, GivesBackALinearPrinter)
{
    EXPECT_LT(worstExpectation(learn()), nearly);
}

// The readings of every seventh patch are 60 too light.
TEST_F(DeviceModelTest, HeedsNoReadingsFarOff)
{
    for (std::size_t i = 0; i < readings.size(); i += 7)
        change(readings, i, {60, 0, 0});
    EXPECT_LT(worstExpectation(learn()), nearly);
}

TEST_F(DeviceModelTest, LeavesOutReadingsThatShowNothing)
{
    Assignment assignment(readings.size());
    for (std::size_t i = 0; i < readings.size(); i += 2) {
        readings[i] = LabColor{0, 0, 0};
        assignment[i] = Assignment::nothing;
    }
    EXPECT_LT(worstExpectation(learnModel(chart, readings, assignment, PatchFeatures(chart, 1), 1)), nearly);
}

TEST_F(DeviceModelTest, TakesReadingsForThePatchesThatTheyShow)
{
    std::reverse(readings.begin(), readings.end());
    Assignment assignment(readings.size());
    for (std::size_t i = 0; i < readings.size(); ++i)
        assignment[i] = readings.size() - 1 - i;
    EXPECT_LT(worstExpectation(learnModel(chart, readings, assignment, PatchFeatures(chart, 1), 1)), nearly);
}

// Only column C has a blue colour, and it alone is 30 lighter than the others. They cannot tell that.
TEST_F(DeviceModelTest, ExpectsAStripWithoutItsOwnReadings)
{
    std::fill(readings.begin(), readings.end(), LabColor{50, 0, 0});
    for (std::size_t const patch : columnOf(chart, "C")) {
        chart.patches[patch].lab[2] = -50;
        change(readings, patch, {30, 0, 0});
    }
    DeviceModel const model = learn(0);
    for (std::size_t const patch : columnOf(chart, "C"))
        EXPECT_NEAR(model.expected[patch][0], 50, nearly);
}

// Half of the change lies before the middle of the reading, and half behind it.
TEST_F(DeviceModelTest, MeasuresTheDriftFromTheFirstPatchToTheLast)
{
    for (std::size_t i = 0; i < readings.size(); ++i) {
        double const way = static_cast<double>(i) / static_cast<double>(readings.size() - 1);
        change(readings, i, {4 * way, -2 * way, way});
    }
    EXPECT_THAT(learn().drift, ElementsAre(DoubleNear(4, nearly), DoubleNear(-2, nearly), DoubleNear(1, nearly)));
}

TEST_F(DeviceModelTest, HasACostOfAlmostNothingForReadingsThatItExpects)
{
    EXPECT_LT(learn().cost, 0.001);
}

// One reading in 120 is 30 off: log(1 + 30^2 / 3^2) / 120, for 3 is usual.
TEST_F(DeviceModelTest, HasACostThatGrowsWithTheLogarithmOfDifferences)
{
    change(readings, 17, {0, 30, 0});
    EXPECT_NEAR(learn().cost, std::log(101) / 120, 0.001);
}

TEST_F(DeviceModelTest, HasASpreadOfAFifthAtLeast)
{
    EXPECT_EQ(learn().spread, 0.2);
}

TEST_F(DeviceModelTest, PrefersTheRicherModelThatExplainsThePrinter)
{
    EXPECT_EQ(bestTier(), 1);
}

// The 20 features of tier 2 would explain a sixth of the noise in 120 readings, and predict none of it.
TEST_F(DeviceModelTest, PrefersASimplerModelWhereARicherOneWouldLearnNoise)
{
    std::fill(readings.begin(), readings.end(), LabColor{50, 0, 0});
    addNoise(3);
    EXPECT_LT(bestTier(), 2);
}

TEST_F(DeviceModelTest, CostsLeastIfReadingsAreAssignedToTheirPatches)
{
    Assignment exchanged(readings.size());
    std::swap(exchanged[3], exchanged[100]);
    PatchFeatures const features(chart, 1);
    double const right = costOfAssignment(chart, readings, Assignment(readings.size()), features);
    EXPECT_LT(right, 0.001);
    EXPECT_GT(costOfAssignment(chart, readings, exchanged, features), right);
}

TEST_F(DeviceModelTest, CostsNothingWithoutReadings)
{
    EXPECT_EQ(costOfAssignment(chart, Readings(readings.size()), Assignment(readings.size()), PatchFeatures(chart, 1)),
              0);
}

class LargeDeviceModelTest : public DeviceModelTest
{
protected:
    LargeDeviceModelTest() : DeviceModelTest({1, 40, 24}) {}
};

// The deviation of a median is about 3 % of it, for 960 readings.
TEST_F(LargeDeviceModelTest, HasTheSpreadOfNormalNoise)
{
    addNoise(2);
    EXPECT_NEAR(learn().spread, 2, 0.15);
}

class SmallDeviceModelTest : public DeviceModelTest
{
protected:
    SmallDeviceModelTest() : DeviceModelTest({1, 6, 4}) {}
};

// The model of tier 1 has 8 features: the constant, the place, L*, a*, b*, and three channels.
TEST_F(SmallDeviceModelTest, HasThreeReadingsForEachFeature)
{
    EXPECT_EQ(bestTier(), 1);
    readings[5].reset();
    EXPECT_EQ(bestTier(), 0);
}

// Two columns of two patches. Their places are -1, -1/3, 1/3, 1. The other features of tier 0 are 0, but for the
// constant. The leverage of the first patch by the other column is x' A^-1 x for x = (1, -1) and
//     A = (2 + r, 1/3 + 1; 1/3 + 1, 1/9 + 1 + r), with the ridge r.
TEST(Leverages, AreThoseOfARegressionWithoutTheStrip)
{
    ChartReference chart = checkedChart({1, 2, 2});
    for (ChartPatch& patch : chart.patches)
        patch.lab = {50, 0, 0};
    DeviceModel model;
    model.expected.assign(4, {60, 0, 0});
    Readings const readings(4, LabColor{60, 0, 0});
    constexpr double ridge = 0.01;
    constexpr double a = 2 + ridge;
    constexpr double b = 4.0 / 3;
    constexpr double c = 10.0 / 9 + ridge;
    auto const leverageAt = [](double place) { return (c - 2 * b * place + a * place * place) / (a * c - b * b); };
    EXPECT_THAT(leverages(chart, readings, model),
                ElementsAre(DoubleNear(leverageAt(-1), 1e-9), DoubleNear(leverageAt(-1.0 / 3), 1e-9),
                            DoubleNear(leverageAt(-1.0 / 3), 1e-9), DoubleNear(leverageAt(-1), 1e-9)));
}

TEST(PatchFeatures, AreAsManyAsTheirCountForEveryTier)
{
    ChartReference const chart = checkedChart({1, 1, 2});
    for (int tier = 0; tier < modelTiers; ++tier)
        EXPECT_EQ(PatchFeatures(chart, tier).count(), PatchFeatures::countOf(3, tier)) << tier;
}

// Of three channels there are 1, 3, 6 and 10 products of degree 0, 1, 2 and 3.
TEST(PatchFeatures, HaveEveryProductOfChannels)
{
    constexpr std::size_t placeAndLab = 4;
    constexpr std::size_t productsOfLab = 6;
    EXPECT_EQ(PatchFeatures::countOf(3, 0), placeAndLab + 1);
    EXPECT_EQ(PatchFeatures::countOf(3, 1), placeAndLab + 4);
    EXPECT_EQ(PatchFeatures::countOf(3, 2), placeAndLab + 10 + productsOfLab);
    EXPECT_EQ(PatchFeatures::countOf(3, 3), placeAndLab + 20 + productsOfLab);
    EXPECT_EQ(PatchFeatures::countOf(4, 2), placeAndLab + 15 + productsOfLab);
}

// Device values -1, 0 and 1; L*, a* and b* 1/2, 1/2 and -1.
TEST(PatchFeatures, AreValuesAndProductsFromMinusOneToOne)
{
    ChartReference chart = checkedChart({1, 1, 3});
    chart.patches[1].device = {0, 0.5, 1, 0};
    chart.patches[1].lab = {75, 25, -50};
    PatchFeatures const features(chart, 2);
    double const* const middle = features.of(1);
    EXPECT_THAT(std::vector<double>(middle, middle + features.count()),
                UnorderedElementsAre(1, 0,                              // the constant and the place
                                     0.5, 0.5, -1,                      // L*, a*, b*
                                     -1, 0, 1,                          // channels
                                     1, 0, -1, 0, 0, 1,                 // their products
                                     0.25, 0.25, -0.5, 0.25, -0.5, 1)); // products of L*, a* and b*
}

TEST(PatchFeatures, TellThePlaceInTheReading)
{
    PatchFeatures const features(checkedChart({1, 1, 5}), 0);
    EXPECT_EQ(features.of(0)[PatchFeatures::place], -1);
    EXPECT_EQ(features.of(1)[PatchFeatures::place], -0.5);
    EXPECT_EQ(features.of(4)[PatchFeatures::place], 1);
}

} // namespace
