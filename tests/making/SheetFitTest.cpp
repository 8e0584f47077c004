// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SheetFit.h"

#include "color/ColorEntry.h"
#include "layout/ChartLayout.h"

#include <gtest/gtest.h>

namespace
{

FitSettings settingsFor(MeasurementLayoutPreset instrument, PageLayoutPreset paper)
{
    FitSettings settings;
    settings.instrument.initWithPreset(instrument);
    settings.sheet.initWithPreset(paper);
    settings.patch = {8, 8};
    settings.colorSpace = CMYK;
    return settings;
}

// The sheets of a real chart with so many patches, each another one.
int sheetsOf(FitSettings const& settings, std::size_t patches, float gap)
{
    GrowingArray<ColorEntry> entries;
    for (std::size_t i = 0; i < patches; ++i) {
        ColorEntry entry;
        entry.initAsWhite(CMYK, false);
        entries.add(entry);
    }
    ChartLayout chart;
    chart.setDirection(mirrored);
    chart.setMeasurementLayout(settings.instrument);
    chart.setPageLayout(settings.sheet);
    chart.setPatchSize(settings.patch);
    chart.setColorSpace(CMYK);
    chart.setOriginalEntries(&entries);
    chart.computeLayout(gap, 0);
    return chart.countOutputPages();
}

} // namespace

TEST(SheetFitTest, OnePatchMoreNeedsAnotherSheet)
{
    for (MeasurementLayoutPreset const instrument : {tableSpot, tableScan, standardRuler})
        for (float const gap : {0.0F, 1.0F}) {
            FitSettings const settings = settingsFor(instrument, a4Portrait);
            SheetFit const fit = fitSheets(settings, 2, gap, 20'000);
            EXPECT_EQ(fit.sheets, 2);
            EXPECT_EQ(sheetsOf(settings, fit.patches, gap), 2);
            EXPECT_GT(sheetsOf(settings, fit.patches + 1, gap), 2);
        }
}

TEST(SheetFitTest, TellsHowManySheetsThereAreInstead)
{
    // Spots on this table stand on one, two or four sheets.
    SheetFit const fit = fitSheets(settingsFor(tableSpot, a4Portrait), 3, 0, 20'000);
    EXPECT_EQ(fit.sheets, 2);
    EXPECT_EQ(fit.patches, fitSheets(settingsFor(tableSpot, a4Portrait), 2, 0, 20'000).patches);
}

TEST(SheetFitTest, EndsAtTheMostPatches)
{
    EXPECT_EQ(fitSheets(settingsFor(tableScan, a4Portrait), 5, 0, 100).patches, 100U);
}

TEST(SheetFitTest, FindsNothingWhereNoPatchFits)
{
    FitSettings settings = settingsFor(tableScan, a4Portrait);
    settings.patch = {1000, 1000};
    EXPECT_EQ(fitSheets(settings, 1, 0, 100).patches, 0U);
}
