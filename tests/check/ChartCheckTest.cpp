// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartCheck.h"

#include "support/CheckedChart.h"
#include "support/SimulatedFaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// Exchanges the readings of two columns.
void swapColumns(ChartReference const& chart, Readings& readings, std::string const& p, std::string const& q)
{
    auto const first = columnOf(chart, p);
    auto const second = columnOf(chart, q);
    for (std::size_t row = 0; row < first.size(); ++row)
        std::swap(readings[first[row]], readings[second[row]]);
}

void reverseColumn(ChartReference const& chart, Readings& readings, std::string const& label)
{
    auto const patches = columnOf(chart, label);
    for (std::size_t row = 0; row < patches.size() / 2; ++row)
        std::swap(readings[patches[row]], readings[patches[patches.size() - 1 - row]]);
}

class ChartCheckTest : public testing::Test
{
protected:
    std::vector<Finding> findings() const { return checkOf(chart, readings).findings; }

    // The only finding; one of the kind `repeats` stands for none.
    Finding onlyFinding() const
    {
        auto const found = findings();
        EXPECT_EQ(found.size(), 1U);
        Finding none;
        none.kind = FindingKind::repeats;
        return found.size() == 1 ? found[0] : none;
    }

    ChartReference chart = checkedChart({2, 10, 12});
    Readings readings = plainPrint(chart);
};

TEST_F(ChartCheckTest, FindsNothingInAGoodMeasurement)
{
    EXPECT_THAT(findings(), IsEmpty());
}

// No profile says that a print is green and faint.
TEST_F(ChartCheckTest, TakesACastForNoFault)
{
    for (auto& reading : readings) {
        LabColor const lab = reading.value_or(LabColor{});
        reading = LabColor{60 + 0.4 * lab[0], 0.5 * lab[1] - 25, 0.5 * lab[2] + 10};
    }
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(ChartCheckTest, FindsAColumnThatWasReadBackwards)
{
    reverseColumn(chart, readings, "C");
    Finding const finding = onlyFinding();
    EXPECT_EQ(finding.kind, FindingKind::reversed);
    EXPECT_THAT(finding.columns, ElementsAre("C"));
    EXPECT_EQ(finding.sheet, 1U);
    EXPECT_GT(finding.certainty, 0.999);
    EXPECT_LT(finding.certainty, 1);
    EXPECT_EQ(finding.text, "column C was read backwards");
}

TEST_F(ChartCheckTest, FindsAPatchThatWasLost)
{
    auto const patches = columnOf(chart, "N");
    for (std::size_t row = 4; row + 1 < patches.size(); ++row)
        readings[patches[row]] = readings[patches[row + 1]];
    readings[patches.back()].reset();
    Finding const finding = onlyFinding();
    EXPECT_EQ(finding.kind, FindingKind::shifted);
    EXPECT_THAT(finding.columns, ElementsAre("N"));
    EXPECT_EQ(finding.by, -1);
    EXPECT_EQ(finding.sheet, 2U);
    EXPECT_THAT(finding.text, HasSubstr("from N5 to N12"));
}

TEST_F(ChartCheckTest, FindsPatchesThatWereCountedTwice)
{
    auto const patches = columnOf(chart, "B");
    for (std::size_t row = patches.size() - 1; row >= 5; --row)
        readings[patches[row]] = readings[patches[row - 2]];
    Finding const finding = onlyFinding();
    EXPECT_EQ(finding.kind, FindingKind::shifted);
    EXPECT_EQ(finding.by, 2);
}

TEST_F(ChartCheckTest, FindsTwoColumnsThatAreExchanged)
{
    swapColumns(chart, readings, "B", "R");
    Finding const finding = onlyFinding();
    EXPECT_EQ(finding.kind, FindingKind::exchanged);
    EXPECT_THAT(finding.columns, ElementsAre("B", "R"));
    EXPECT_EQ(finding.sheet, 0U);
}

TEST_F(ChartCheckTest, FindsACircleOfColumns)
{
    swapColumns(chart, readings, "B", "D");
    swapColumns(chart, readings, "D", "H");
    EXPECT_THAT(onlyFinding().columns, ElementsAre("B", "D", "H"));
}

TEST_F(ChartCheckTest, FindsAColumnThatWasReadInPlaceOfAnother)
{
    auto const from = columnOf(chart, "E");
    auto const to = columnOf(chart, "P");
    for (std::size_t row = 0; row < to.size(); ++row)
        readings[to[row]] = readings[from[row]];
    Finding const finding = onlyFinding();
    EXPECT_EQ(finding.kind, FindingKind::repeated);
    EXPECT_THAT(finding.columns, ElementsAre("P"));
    EXPECT_EQ(finding.of, "E");
}

TEST_F(ChartCheckTest, FindsSheetsThatAreExchanged)
{
    std::rotate(readings.begin(), readings.begin() + static_cast<std::ptrdiff_t>(readings.size() / 2), readings.end());
    Finding const finding = onlyFinding();
    EXPECT_EQ(finding.kind, FindingKind::sheets);
    EXPECT_EQ(finding.text, "the readings of sheets 1 and 2 are exchanged");
    EXPECT_EQ(finding.columns.size(), 20U);
}

TEST_F(ChartCheckTest, FindsASheetThatLayUpsideDown)
{
    std::reverse(readings.begin(), readings.begin() + static_cast<std::ptrdiff_t>(readings.size() / 2));
    Finding const finding = onlyFinding();
    EXPECT_EQ(finding.kind, FindingKind::order);
    EXPECT_EQ(finding.sheet, 1U);
    EXPECT_EQ(finding.text, "sheet 1 was read upside down");
}

TEST_F(ChartCheckTest, FindsEveryOrderOfTheTableThatItKnows)
{
    for (ReadingOrder const& order : candidateOrders(chart)) {
        if (order.text.empty())
            continue;
        Readings const right = plainPrint(chart);
        for (std::size_t i = 0; i < right.size(); ++i)
            readings[i] = right[order.assignment[i]];
        Finding const finding = onlyFinding();
        EXPECT_EQ(finding.kind, FindingKind::order);
        EXPECT_THAT(finding.text, HasSubstr(order.text));
    }
}

TEST_F(ChartCheckTest, SaysThatReadingsFitInNoOrder)
{
    SimulationRandom random(5);
    for (std::size_t i = readings.size() - 1; i > 0; --i)
        std::swap(readings[i], readings[random.below(i + 1)]);
    EXPECT_THAT(onlyFinding().text, HasSubstr("in no order that is known"));
}

TEST_F(ChartCheckTest, FindsThreeFaultsAtOnce)
{
    reverseColumn(chart, readings, "A");
    swapColumns(chart, readings, "M", "T");
    reverseColumn(chart, readings, "J");
    EXPECT_EQ(findings().size(), 3U);
}

TEST_F(ChartCheckTest, FindsAMisreadPatch)
{
    std::size_t const patch = columnOf(chart, "G")[6];
    change(readings, patch, {25, 0, 0});
    Finding const finding = onlyFinding();
    EXPECT_EQ(finding.kind, FindingKind::patch);
    EXPECT_THAT(finding.patches, ElementsAre("G7"));
    EXPECT_GT(finding.certainty, 0.99);
}

// No other patch is as blue, so that the others tell little about this one.
TEST_F(ChartCheckTest, JudgesNoPatchThatTheOthersTellLittleAbout)
{
    std::size_t const patch = columnOf(chart, "G")[6];
    chart.patches[patch].device = {0, 0, 1, 0};
    for (std::size_t i = 0; i < chart.patches.size(); ++i)
        if (i != patch)
            chart.patches[i].device[2] *= 0.5;
    readings = plainPrint(chart);
    change(readings, patch, {-9, 9, 0});
    EXPECT_THAT(findings(), IsEmpty());
}

// A printer whose black is L* = 0.
TEST_F(ChartCheckTest, TakesNoiseBelowBlackForNoFault)
{
    for (auto& reading : readings)
        change(readings, static_cast<std::size_t>(&reading - readings.data()), {-20, 0, 0});
    std::size_t darkest = 0;
    for (std::size_t i = 0; i < readings.size(); ++i)
        if ((*readings[i])[0] < (*readings[darkest])[0])
            darkest = i;
    (*readings[darkest])[0] = -0.5;
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(ChartCheckTest, FindsAReadingBelowBlackThatIsNoBlackPatch)
{
    std::size_t const patch = columnOf(chart, "G")[6];
    readings[patch] = LabColor{-0.25, 0, 0};
    Finding const finding = onlyFinding();
    EXPECT_EQ(finding.kind, FindingKind::impossible);
    EXPECT_THAT(finding.patches, ElementsAre("G7"));
    EXPECT_EQ(finding.text, "patch G7: L* is -0.25, outside 0 to 110");
}

TEST_F(ChartCheckTest, FindsAColumnThatFitsNothing)
{
    SimulationRandom random(3);
    for (std::size_t const patch : columnOf(chart, "K"))
        readings[patch] = LabColor{100 * random.even(), 160 * random.even() - 80, 160 * random.even() - 80};
    Finding const finding = onlyFinding();
    EXPECT_EQ(finding.kind, FindingKind::patch);
    EXPECT_THAT(finding.columns, ElementsAre("K"));
    EXPECT_GT(finding.patches.size(), 6U);
}

TEST_F(ChartCheckTest, ReportsMissingPatchesColumnsAndSheets)
{
    readings[columnOf(chart, "A")[3]].reset();
    for (std::size_t const patch : columnOf(chart, "C"))
        readings[patch].reset();
    auto const found = findings();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_THAT(found[0].columns, ElementsAre("C"));
    EXPECT_THAT(found[1].patches, ElementsAre("A4"));
    for (std::size_t patch = readings.size() / 2; patch < readings.size(); ++patch)
        readings[patch].reset();
    EXPECT_EQ(findings().back().text, "sheet 2 has no readings");
}

// Instruments may leave out the white patches that fill up a chart.
TEST_F(ChartCheckTest, MissesNoFiller)
{
    std::size_t const patch = columnOf(chart, "A")[3];
    chart.patches[patch].isFiller = true;
    readings[patch].reset();
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(ChartCheckTest, FindsSheetsOfDifferentPaper)
{
    for (std::size_t patch = 0; patch < readings.size(); ++patch)
        if (chart.rowOf(patch) < 4) {
            chart.patches[patch].device = {1, 1, 1, 0};
            readings[patch] = LabColor{95, 0, chart.stripOf(patch).sheet == 0 ? 0.0 : 6.0};
        }
    auto const found = findings();
    auto const paper = std::find_if(found.begin(), found.end(),
                                    [](Finding const& finding) { return finding.kind == FindingKind::paper; });
    ASSERT_NE(paper, found.end());
    EXPECT_EQ(paper->text, "bare paper differs by 6.0 delta E between sheets 1 and 2");
}

TEST_F(ChartCheckTest, FindsAnotherPaperWithoutBarePaper)
{
    for (std::size_t patch = 0; patch < readings.size(); ++patch) {
        if (chart.isWhite(patch))
            chart.patches[patch].device[2] = 0.9;
        if (chart.stripOf(patch).sheet == 1)
            change(readings, patch, {-3, 0, 4});
    }
    Finding const finding = onlyFinding();
    EXPECT_EQ(finding.kind, FindingKind::paper);
    EXPECT_THAT(finding.text, HasSubstr("all colours differ by "));
    EXPECT_THAT(finding.text, HasSubstr(" delta E between sheets 1 and 2"));
}

// The white of each sheet tells that, so that nothing else has to.
TEST_F(ChartCheckTest, FindsAnotherPaperOnce)
{
    for (std::size_t patch = 0; patch < readings.size(); ++patch) {
        if (chart.rowOf(patch) < 2) {
            chart.patches[patch].device = {1, 1, 1, 0};
            readings[patch] = LabColor{95, 0, 0};
        }
        if (chart.stripOf(patch).sheet == 1)
            change(readings, patch, {-3, 0, 4});
    }
    EXPECT_EQ(onlyFinding().text, "bare paper differs by 5.0 delta E between sheets 1 and 2");
}

TEST_F(ChartCheckTest, FindsAStrongDriftAndMeasuresAWeakOne)
{
    auto const drifting = [&](double amount) {
        Readings drifted = readings;
        for (std::size_t i = 0; i < drifted.size(); ++i)
            change(drifted, i, {-amount * static_cast<double>(i) / static_cast<double>(drifted.size()), 0, 0});
        return checkOf(chart, drifted);
    };
    MeasurementCheck const weak = drifting(2);
    EXPECT_THAT(weak.findings, IsEmpty());
    EXPECT_NEAR(weak.drift, 2, 0.2);
    auto const strong = drifting(9).findings;
    ASSERT_EQ(strong.size(), 1U);
    EXPECT_EQ(strong[0].kind, FindingKind::drift);
}

// Ten whites that differ by 10 in L* from one to the next.
TEST_F(ChartCheckTest, FindsRepeatsThatDiffer)
{
    for (int i = 0; i < 10; ++i) {
        std::size_t const patch = columnOf(chart, "B")[static_cast<std::size_t>(i)];
        chart.patches[patch].device = {1, 1, 1, 0};
        readings[patch] = LabColor{i % 2 == 0 ? 90.0 : 100.0, 0, 0};
    }
    MeasurementCheck const check = checkOf(chart, readings);
    EXPECT_TRUE(std::any_of(check.findings.begin(), check.findings.end(),
                            [](Finding const& finding) { return finding.kind == FindingKind::repeats; }));
    EXPECT_EQ(check.repeats.count, 12U); // with the whites of the two sheets
}

TEST_F(ChartCheckTest, PutsReadingsRightOnlyWhereThatIsCertain)
{
    reverseColumn(chart, readings, "C");
    MeasurementCheck const check = checkOf(chart, readings);
    auto const patches = columnOf(chart, "C");
    for (std::size_t row = 0; row < patches.size(); ++row)
        EXPECT_EQ(check.places[patches[row]], patches[patches.size() - 1 - row]);
    EXPECT_EQ(check.places[columnOf(chart, "D")[0]], columnOf(chart, "D")[0]);
}

TEST_F(ChartCheckTest, MarksTheLostPatch)
{
    auto const patches = columnOf(chart, "N");
    for (std::size_t row = 4; row + 1 < patches.size(); ++row)
        readings[patches[row]] = readings[patches[row + 1]];
    readings[patches.back()].reset();
    MeasurementCheck const check = checkOf(chart, readings);
    EXPECT_EQ(check.places[patches[3]], patches[3]);
    EXPECT_EQ(check.places[patches[4]], Assignment::nothing);
    EXPECT_EQ(check.places[patches[5]], patches[4]);
    EXPECT_EQ(check.places[patches[11]], patches[10]);
}

TEST(ChartCheck, BearsChartsAndMeasurementsOfAnySize)
{
    for (CheckedChartSize const size : {CheckedChartSize{1, 1, 1}, {1, 1, 3}, {1, 3, 1}, {2, 1, 2}, {7, 1, 1}}) {
        ChartReference const chart = checkedChart(size);
        checkOf(chart, plainPrint(chart));
        checkOf(chart, Readings(chart.patches.size()));
        Readings huge = plainPrint(chart);
        huge[0] = LabColor{50, 1e308, -1e308};
        checkOf(chart, huge);
    }
}

} // namespace
