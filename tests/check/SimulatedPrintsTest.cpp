// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The checks on simulated prints of a few charts. bench/CheckBench measures the rates over many.

#include "ChartCheck.h"
#include "ColorEntry.h"
#include "Folders.h"
#include "ReadingOrder.h"
#include "support/CheckedChart.h"
#include "support/SimulatedFaults.h"
#include "support/SimulatedPrint.h"

#include <gtest/gtest.h>

namespace
{

class SimulatedPrintsTest : public testing::TestWithParam<SimulatedChartSize>
{
protected:
    void SetUp() override
    {
        respath = String(PATCHLOOM_RESOURCES);
        ColorEntry::prepareColorConversions();
        chart = simulatedChart(CMYK, GetParam(), 1);
        SimulatedPrinter const printer("/usr/share/color/icc/ghostscript/default_cmyk.icc", CMYK, 0.15);
        ASSERT_TRUE(printer.isOpen());
        ASSERT_EQ(chart.sheetCount, static_cast<std::size_t>(GetParam().sheets));
        clean = simulatedReadings(printer.print(chart), {0.6, 2}, random);
    }

    void TearDown() override { ColorEntry::endColorConversions(); }

    void expectFound(void (FaultMaker::*make)())
    {
        FaultMaker maker(chart, clean, 0.6, random);
        (maker.*make)();
        MeasurementCheck const check = checkOf(chart, maker.result.stored);
        EXPECT_EQ(countFound(chart, maker.result, check.findings), 1U);
        EXPECT_EQ(check.findings.size(), 1U);
        RepairResult const repair = judgeRepair(chart, maker.result, check.places);
        EXPECT_GT(repair.right, 0U);
        EXPECT_EQ(repair.untouched, 0U);
        EXPECT_EQ(repair.wrong, 0U);
    }

    SimulationRandom random{7};
    ChartReference chart;
    Readings clean;
};

TEST_P(SimulatedPrintsTest, AreCleanWithoutFaults)
{
    EXPECT_TRUE(checkOf(chart, clean).findings.empty());
}

TEST_P(SimulatedPrintsTest, ShowEachFaultAndAreRepaired)
{
    expectFound(&FaultMaker::reverse);
    expectFound(&FaultMaker::shift);
    expectFound(&FaultMaker::exchange);
    expectFound(&FaultMaker::repeat);
    if (chart.sheetCount > 1)
        expectFound(&FaultMaker::exchangeSheets);
}

TEST_P(SimulatedPrintsTest, AreCheckedAlikeEveryTime)
{
    MeasurementCheck const first = checkOf(chart, clean);
    MeasurementCheck const second = checkOf(chart, clean);
    EXPECT_EQ(first.explanation.model.expected, second.explanation.model.expected);
    EXPECT_EQ(first.drift, second.drift);
}

INSTANTIATE_TEST_SUITE_P(Sizes, SimulatedPrintsTest,
                         testing::Values(SimulatedChartSize{100, 10, 1}, SimulatedChartSize{100, 25, 1},
                                         SimulatedChartSize{240, 12, 2}));

} // namespace
