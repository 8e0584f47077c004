// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SheetMeasures.h"

#include "support/ChartCase.h"
#include "support/RulerChart.h"
#include "support/TestChart.h"

#include <gtest/gtest.h>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

// The measures of a written sheet of two columns and three rows.
void expectMeasures(RealSize gap)
{
    RulerChart chart(greyEntries(6), {2, 3}, gap);
    chart.drawn();
    auto const measures = sheetMeasures(bytesOf(chart.fileOf(1, "eps")));
    ASSERT_TRUE(measures);
    EXPECT_NEAR(measures->size.width, chart.sheet().getSize().width, 1e-5);
    EXPECT_NEAR(measures->size.height, chart.sheet().getSize().height, 1e-5);
    RealRect const block = chart.sheet().getContentRect();
    EXPECT_NEAR(measures->block.x, block.x, 1e-5);
    EXPECT_NEAR(measures->block.y, block.y, 1e-5);
    EXPECT_NEAR(measures->block.width, block.width, 1e-5);
    EXPECT_NEAR(measures->block.height, block.height, 1e-5);
}

} // namespace

TEST(SheetMeasures, AreThoseOfTheWrittenSheet)
{
    expectMeasures({0, 0});
}

TEST(SheetMeasures, AreThoseOfASheetWithGaps)
{
    expectMeasures({0, 1});
}

TEST(SheetMeasures, OfOtherTextsAreNone)
{
    EXPECT_FALSE(sheetMeasures(""));
    EXPECT_FALSE(sheetMeasures("II*"));
    EXPECT_FALSE(sheetMeasures("%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 100 100\n"));
    EXPECT_FALSE(sheetMeasures("%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 nan 100\nnewpath 1 2 moveto fill"));
}

TEST(SheetMeasures, OfACutFileAreNone)
{
    RulerChart chart(greyEntries(6), {2, 3});
    chart.drawn();
    std::string const bytes = bytesOf(chart.fileOf(1, "eps"));
    for (std::size_t length = 0; length < 900; length += 7)
        EXPECT_FALSE(sheetMeasures(std::string_view(bytes).substr(0, length))) << length;
}
