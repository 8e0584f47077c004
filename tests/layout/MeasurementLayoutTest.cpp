// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "MeasurementLayout.h"

#include "support/GeometryValues.h"

#include <gtest/gtest.h>

namespace
{

struct Instrument
{
    char const* name;
    RealSize size;
    RealRect content;
    RealBorder minMargin; // top, right, bottom, left
    RealSize minPatchSize;
    RealSize gap;
    bool mustFit;
    bool multiPage;
    ScanDirection scanDirection;
};

constexpr Instrument instruments[] = {
    {"GB+ Spot", {500, 440}, {2, 83, 460, 320}, {0, 0, 0, 0}, {6, 6}, {0, 0}, true, true, none},
    {"GB+ Scan", {500, 440}, {0, 0, 460, 320}, {12.5, 0, 6.5, 0}, {6, 8}, {0, 1}, true, false, alongY},
    {"VT-30 Standard Ruler", {0, 257}, {0, 0, 0, 257}, {12.5, 0, 6.5, 0}, {7, 8}, {0, 1}, false, false, alongY},
    {"VT-30 Long Ruler", {0, 486}, {0, 0, 0, 486}, {12.5, 0, 6.5, 0}, {7, 8}, {0, 1}, false, false, alongY},
};

void expectValues(MeasurementLayout const& layout, Instrument const& expected)
{
    EXPECT_EQ(layout.getSize(), expected.size);
    EXPECT_EQ(layout.getContent(), expected.content);
    EXPECT_EQ(layout.getMinMargin(), expected.minMargin);
    EXPECT_EQ(layout.getMinPatchSize(), expected.minPatchSize);
    EXPECT_EQ(layout.getGap(), expected.gap);
    EXPECT_EQ(layout.mustFit(), expected.mustFit);
    EXPECT_EQ(layout.isMultiPage(), expected.multiPage);
    EXPECT_EQ(layout.getScanDirection(), expected.scanDirection);
}

MeasurementLayoutPreset preset(int number)
{
    return static_cast<MeasurementLayoutPreset>(number);
}

} // namespace

TEST(MeasurementLayout, OffersTheFourInstrumentsByNameAndNumber)
{
    ASSERT_EQ(std::size(measurementlayout_strings), std::size(instruments));
    for (int i = 0; i < 4; ++i) {
        SCOPED_TRACE(instruments[i].name);
        EXPECT_STREQ(measurementlayout_strings[i], instruments[i].name);
        MeasurementLayout layout;
        layout.initWithPreset(preset(i));
        EXPECT_EQ(layout.getPreset(), i);
        expectValues(layout, instruments[i]);
    }
}

TEST(MeasurementLayout, ScanDirectionsHaveTheirNumbers)
{
    EXPECT_EQ(none, 0);
    EXPECT_EQ(alongX, 1);
    EXPECT_EQ(alongY, 2);
}

TEST(MeasurementLayout, StartsWithEveryLengthUnset)
{
    MeasurementLayout const layout;
    EXPECT_EQ(layout.getSize(), RealSize());
    EXPECT_EQ(layout.getContent(), RealRect());
    EXPECT_EQ(layout.getMinMargin(), RealBorder());
    EXPECT_EQ(layout.getMinPatchSize(), RealSize());
    EXPECT_EQ(layout.getGap(), RealSize());
}

TEST(MeasurementLayout, AnUnknownNumberIsStoredAndChangesNothingElse)
{
    for (int const unknown : {4, -1, 2147483647}) {
        MeasurementLayout layout;
        layout.initWithPreset(tableScan);
        layout.initWithPreset(preset(unknown));
        EXPECT_EQ(layout.getPreset(), unknown);
        expectValues(layout, instruments[1]);
    }
}

TEST(MeasurementLayout, ReplacesEveryFieldWhenAnotherInstrumentIsChosen)
{
    MeasurementLayout layout;
    layout.initWithPreset(tableScan);
    layout.initWithPreset(tableSpot);
    expectValues(layout, instruments[0]);
}

TEST(MeasurementLayout, SettingTheGapChangesNothingElse)
{
    MeasurementLayout layout;
    layout.initWithPreset(tableScan);
    layout.setGap(0, 0.5F);
    Instrument expected = instruments[1];
    expected.gap = {0, 0.5};
    EXPECT_EQ(layout.getPreset(), tableScan);
    expectValues(layout, expected);
}

TEST(MeasurementLayout, ConvertsGapsFromSinglePrecision)
{
    // The single-precision number nearest to 0.1 is 13421773 / 2^27.
    MeasurementLayout layout;
    layout.setGap(0.1F, 0.1F);
    EXPECT_EQ(layout.getGap(), (RealSize{13421773.0 / 134217728.0, 13421773.0 / 134217728.0}));
}

TEST(MeasurementLayout, TakesAnotherSizeAndReach)
{
    MeasurementLayout layout;
    layout.initWithPreset(longRuler);
    layout.setSize({300, 200});
    layout.setContent({1, 2, 3, 4});
    Instrument expected = instruments[3];
    expected.size = {300, 200};
    expected.content = {1, 2, 3, 4};
    expectValues(layout, expected);
}

TEST(MeasurementLayout, RulersDoNotLimitX)
{
    for (MeasurementLayoutPreset const ruler : {standardRuler, longRuler}) {
        MeasurementLayout layout;
        layout.initWithPreset(ruler);
        EXPECT_EQ(layout.getSize().width, 0);
        EXPECT_EQ(layout.getContent().width, 0);
    }
}
