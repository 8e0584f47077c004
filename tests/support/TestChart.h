// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartLayout.h"
#include "ColorEntry.h"
#include "MeasurementLayout.h"
#include "PageLayout.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// Prepares the colour transforms for all tests of a program and releases them at its end:
///     auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);
class ColorConversions : public testing::Environment
{
public:
    void SetUp() override { ColorEntry::prepareColorConversions(); }
    void TearDown() override { ColorEntry::endColorConversions(); }
};

/// The entry that a line of channel values gives.
ColorEntry entryOf(ColorSpace colorSpace, std::string const& line);

/// The entries that lines of channel values give, in the lines' order.
GrowingArray<ColorEntry> entriesOf(ColorSpace colorSpace, std::vector<std::string> const& lines);

/// `count` entries of grey steps from black to white.
GrowingArray<ColorEntry> greyEntries(int count);

MeasurementLayout instrument(MeasurementLayoutPreset preset);

/// An instrument that no preset offers: the given one, scanning along x.
MeasurementLayout scanningAlongX(MeasurementLayout from);

PageLayout paper(PageLayoutPreset preset);

/// A sheet of any size and printable area, mm.
PageLayout sheetOf(RealSize size, RealRect content);

/// A sheet that has room for a chart page of a ruler with exactly this grid, and a tenth of a step to spare.
///
/// \param grid  columns and rows
/// \param step  a patch with its gap, mm
PageLayout rulerSheetFor(IntSize grid, RealSize step);

/// A chart of entries, ready to be computed.
ChartLayout chartOf(Array<ColorEntry>& entries, MeasurementLayout instrument, PageLayout sheet, RealSize patch);
