// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "OutputPage.h"
#include "support/ChartCase.h"
#include "support/DrawnSheet.h"
#include "support/Picture.h"
#include "support/TemporaryFolder.h"
#include "support/TestChart.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

/// A chart of a ruler named "Chart" on sheets that hold the given grid, and the folder that its sheets go to. The block
/// of patches stands at (16, 8.5) mm, or at (16, 9.5) with a gap of 1 mm.
class RulerChart
{
public:
    RulerChart(GrowingArray<ColorEntry> const& patches, IntSize grid, RealSize gap = {0, 0}, RealSize patch = {10, 8})
        : entries(patches),
          layout(chartOf(entries, rulerWith(gap),
                         rulerSheetFor(grid, {patch.width + gap.width, patch.height + gap.height}), patch))
    {
        layout.setName(String("Chart"));
        layout.computeMultiPageLayout(0);
    }

    OutputPage& sheet(unsigned long long chartPage = 0)
    {
        return (*(*layout.getChartPages())[chartPage].getOutputPages())[0];
    }

    DrawnSheet drawn(int number = 1) const
    {
        EXPECT_TRUE(layout.writeOutputImagesEPS(folder.pathWithSlash()));
        return readSheet(fileOf(number, "eps"));
    }

    Picture painted(int number = 1) const
    {
        EXPECT_TRUE(layout.writeOutputImagesTIFF(folder.pathWithSlash()));
        return readTiff(fileOf(number, "tif"));
    }

    std::filesystem::path fileOf(int number, std::string const& suffix) const
    {
        return folder.path() / ("Chart_00" + std::to_string(number) + "." + suffix);
    }

    std::vector<std::string> files() const { return filesIn(folder.path()); }

private:
    static MeasurementLayout rulerWith(RealSize gap)
    {
        MeasurementLayout ruler = instrument(standardRuler);
        ruler.setGap(static_cast<float>(gap.width), static_cast<float>(gap.height));
        return ruler;
    }

    GrowingArray<ColorEntry> entries;

public:
    TemporaryFolder folder;
    ChartLayout layout;
};
