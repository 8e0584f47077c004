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
            printed.push_back(reading.value_or(LabColor{}));
        model.expected = printed;
    }

    std::vector<PatchExpectation> expect() const { return expectPatches(chart, readings, model); }

    bool hasMuchRed(std::size_t patch) const { return chart.patches[patch].device[0] > 0.5; }

    // The model is wrong for half of the patches.
    void makeModelTooDark()
    {
        for (std::size_t i = 0; i < model.expected.size(); ++i)
            if (hasMuchRed(i))
                model.expected[i][0] -= 10;
    }

    double differenceOfModel() const
    {
        double sum = 0;
        for (std::size_t i = 0; i < printed.size(); ++i)
            sum += deltaE76(printed[i], model.expected[i]);
        return sum;
    }

    double differenceFrom(std::vector<PatchExpectation> const& expectations) const
    {
        double sum = 0;
        for (std::size_t i = 0; i < printed.size(); ++i)
            sum += deltaE76(printed[i], expectations[i].lab);
        return sum;
    }

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
    std::vector<LabColor> printed; // the readings as they should be
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

TEST_F(LocalModelTest, LearnsWhereTheModelIsWrongFromSimilarPatches)
{
    makeModelTooDark();
    EXPECT_LT(differenceFrom(expect()), differenceOfModel() / 2);
}

TEST_F(LocalModelTest, LearnsNothingFromTheReadingItself)
{
    makeModelTooDark();
    auto const right = expect();
    change(readings, 100, {0, 5, 0});
    EXPECT_LT(deltaE76(expect()[100].lab, right[100].lab), 0.5);
}

TEST_F(LocalModelTest, LearnsFromAReadingFarOffNoMoreThanIfItWereMissing)
{
    makeModelTooDark();
    change(readings, 100, {0, 60, 0});
    auto const expectations = expect();
    readings[100].reset();
    auto const without = expect();
    for (std::size_t i = 0; i < expectations.size(); ++i)
        EXPECT_LT(deltaE76(expectations[i].lab, without[i].lab), 0.5);
}

TEST_F(LocalModelTest, LearnsNothingFromPatchesThatWereNotRead)
{
    makeModelTooDark();
    for (std::size_t i = 0; i < readings.size(); i += 3)
        if (hasMuchRed(i)) {
            readings[i].reset();
            readings[i + 1].reset();
        }
    EXPECT_LT(differenceFrom(expect()), differenceOfModel() / 2);
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

// Patches that are all alike: only their places in the reading tell them apart, and the ends lie outside all others.
TEST_F(LocalModelTest, IsLessSureAtTheEndsOfTheReading)
{
    chart = checkedChart({1, 5, 4});
    for (ChartPatch& patch : chart.patches)
        patch = chart.patches[0];
    for (std::size_t i = 0; i < chart.patches.size(); ++i)
        chart.patches[i].strip = i / 4;
    readings.assign(20, LabColor{95, 0, 0});
    model.expected.assign(20, {95, 0, 0});
    auto const expectations = expect();
    EXPECT_GT(expectations.front().spread, expectations[10].spread);
    EXPECT_GT(expectations.back().spread, expectations[10].spread);
}

} // namespace
