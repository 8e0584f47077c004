// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LocalModel.h"

#include "support/CheckedChart.h"
#include "support/SimulatedPrint.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

// The model is exact unless a test says otherwise.
class LocalModelTest : public testing::Test
{
protected:
    LocalModelTest()
    {
        model.spread = 1;
        for (auto const& reading : readings)
            model.expected.push_back(reading.value_or(LabColor{}));
    }

    std::vector<PatchExpectation> expect() const { return expectPatches(chart, readings, model); }

    bool hasMuchRed(std::size_t patch) const { return chart.patches[patch].device[0] > 0.5; }

    // The mean spread of the patches with much or little red.
    double meanSpread(std::vector<PatchExpectation> const& expectations, bool ofMuchRed) const
    {
        double sum = 0;
        double count = 0;
        for (std::size_t i = 0; i < expectations.size(); ++i)
            if (hasMuchRed(i) == ofMuchRed) {
                sum += expectations[i].spread;
                ++count;
            }
        return sum / count;
    }

    ChartReference chart = checkedChart({1, 20, 12});
    Readings readings = plainPrint(chart);
    DeviceModel model;
};

TEST_F(LocalModelTest, ChangesNoExpectationsThatAreExact)
{
    auto const expectations = expect();
    for (std::size_t i = 0; i < expectations.size(); ++i) {
        EXPECT_EQ(expectations[i].lab, model.expected[i]);
        EXPECT_EQ(expectations[i].score, 0);
    }
}

// The model is 10 too dark for all patches with much red.
TEST_F(LocalModelTest, LearnsWhereTheModelIsWrongFromSimilarPatches)
{
    double without = 0;
    double with = 0;
    for (std::size_t i = 0; i < readings.size(); ++i)
        if (hasMuchRed(i))
            model.expected[i][0] -= 10;
    auto const expectations = expect();
    for (std::size_t i = 0; i < readings.size(); ++i) {
        without += deltaE76(readings[i].value_or(LabColor{}), model.expected[i]);
        with += deltaE76(readings[i].value_or(LabColor{}), expectations[i].lab);
    }
    EXPECT_LT(with, without / 2);
}

TEST_F(LocalModelTest, LearnsNothingFromTheReadingItself)
{
    auto const right = expect();
    change(readings, 100, {0, 40, 0});
    EXPECT_LT(deltaE76(expect()[100].lab, right[100].lab), 0.5);
}

TEST_F(LocalModelTest, LearnsNothingFromAReadingFarOff)
{
    auto const right = expect();
    change(readings, 100, {0, 40, 0});
    auto const expectations = expect();
    for (std::size_t i = 0; i < expectations.size(); ++i)
        EXPECT_LT(deltaE76(expectations[i].lab, right[i].lab), 0.5);
}

// Forty times the noise of the others.
TEST_F(LocalModelTest, ScoresAReadingFarOffHigherThanAllOthers)
{
    SimulationRandom random(3);
    for (std::size_t i = 0; i < readings.size(); ++i)
        change(readings, i, {random.normal(), random.normal(), random.normal()});
    change(readings, 100, {0, 40, 0});
    auto const expectations = expect();
    auto const highest = std::max_element(expectations.begin(), expectations.end(),
                                          [](auto const& a, auto const& b) { return a.score < b.score; });
    EXPECT_EQ(highest - expectations.begin(), 100);
    EXPECT_GT(highest->score, 4);
}

TEST_F(LocalModelTest, ExpectsAPatchThatWasNotReadAndGivesItNoScore)
{
    readings[100].reset();
    PatchExpectation const expectation = expect()[100];
    EXPECT_EQ(expectation.lab, model.expected[100]);
    EXPECT_EQ(expectation.score, 0);
    EXPECT_GT(expectation.spread, 0);
}

// Errors without any order, so that no other patch predicts them.
TEST_F(LocalModelTest, IsLessSureAmongPatchesThatArePredictedBadly)
{
    SimulationRandom random(3);
    for (std::size_t i = 0; i < readings.size(); ++i)
        if (hasMuchRed(i))
            change(readings, i, {5 * random.normal(), 5 * random.normal(), 5 * random.normal()});
    auto const expectations = expect();
    EXPECT_GT(meanSpread(expectations, true), 2 * meanSpread(expectations, false));
}

// All other patches have little blue.
TEST_F(LocalModelTest, IsLessSureOfAPatchFarFromAllOthers)
{
    for (ChartPatch& patch : chart.patches)
        patch.device[2] *= 0.3;
    chart.patches[100].device = {0, 0, 1, 0};
    auto const expectations = expect();
    for (std::size_t i = 0; i < expectations.size(); ++i)
        if (i != 100) {
            EXPECT_GT(expectations[100].spread, expectations[i].spread);
        }
}

} // namespace
