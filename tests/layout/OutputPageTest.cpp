// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OutputPage.h"

#include "ChartPage.h"
#include "support/CapturedOutput.h"
#include "support/GeometryValues.h"
#include "support/TestChart.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

MeasurementLayout withoutGap(MeasurementLayoutPreset preset)
{
    MeasurementLayout layout = instrument(preset);
    layout.setGap(0, 0);
    return layout;
}

// The values that a sheet is made from. The defaults suit most tests: 100 x 100 mm without margins, the standard ruler
// without gaps, patches of 10 x 10 mm.
struct Inputs
{
    PageLayout sheet = sheetOf({100, 100}, {0, 0, 100, 100});
    RealPos position{0, 0};
    MeasurementLayout instrument = withoutGap(standardRuler);
    RealSize patch{10, 10};
    RealPos firstPatch;
    RealBorder margin{0, 0, 0, 0};
    IntSize maxSize;
};

OutputPage pageOf(Inputs& inputs)
{
    OutputPage page;
    page.init(nullptr, inputs.sheet, inputs.position, inputs.instrument, inputs.patch, inputs.firstPatch, inputs.margin,
              inputs.maxSize);
    return page;
}

} // namespace

TEST(OutputPage, FitsAnA4SheetUnderTheStandardRuler)
{
    Inputs inputs;
    inputs.sheet = sheetOf({210, 297}, {21, 17, 182, 269});
    inputs.margin = {12.5, 0, 6.5, 0};
    OutputPage const page = pageOf(inputs);
    EXPECT_EQ(page.getOrigin(), (RealPos{-21, -17}));
    EXPECT_EQ(inputs.firstPatch, (RealPos{0, 6.5}));
    EXPECT_EQ(page.getCoordRect(), (IntRect{0, 0, 18, 25}));
    EXPECT_EQ(page.getContentRect(), (RealRect{21, 23.5, 180, 250}));
    EXPECT_EQ(page.getContentSize(), (RealSize{180, 250}));
    EXPECT_EQ(page.getSize(), (RealSize{210, 297}));
    EXPECT_EQ(page.getPatchesPerPage(), (IntSize{18, 25}));
    EXPECT_EQ(page.getMaxXCoord(), 17);
    EXPECT_EQ(page.getMaxYCoord(), 24);
    EXPECT_TRUE(page.hasPatches());
}

TEST(OutputPage, KeepsTheValuesThatItWasMadeFrom)
{
    ChartPage const owner;
    Inputs inputs;
    inputs.instrument.setGap(0.5F, 0.25F);
    OutputPage page;
    page.init(&owner, inputs.sheet, {3, 4}, inputs.instrument, {7, 8}, inputs.firstPatch, inputs.margin,
              inputs.maxSize);
    EXPECT_EQ(page.getChartPage(), &owner);
    EXPECT_EQ(page.getPatchSize(), (RealSize{7, 8}));
    EXPECT_EQ(page.getGapSize(), (RealSize{0.5, 0.25}));
    EXPECT_EQ(page.getOrigin(), (RealPos{3, 4}));
    page.setOrigin({-1, -2});
    EXPECT_EQ(page.getOrigin(), (RealPos{-1, -2}));
}

TEST(OutputPage, KeepsEachMarginFree)
{
    Inputs inputs;
    inputs.margin = {1, 2, 3, 4}; // top, right, bottom, left: 94 x 96 mm are left
    EXPECT_EQ(pageOf(inputs).getContentRect(), (RealRect{4, 3, 90, 90}));
    EXPECT_EQ(inputs.firstPatch, (RealPos{4, 3}));
    inputs.margin.right = 6.5; // 89.5 mm
    EXPECT_EQ(pageOf(inputs).getPatchesPerPage(), (IntSize{8, 9}));
    inputs.margin.top = 7.5; // 89.5 mm
    EXPECT_EQ(pageOf(inputs).getPatchesPerPage(), (IntSize{8, 8}));
}

TEST(OutputPage, CountsAGapAfterEveryPatch)
{
    Inputs inputs;
    inputs.instrument.setGap(0.5F, 1);
    OutputPage const page = pageOf(inputs);
    // 9 x 10.5 = 94.5 and 9 x 11 = 99 mm; a tenth patch would end at 105 and 110.
    EXPECT_EQ(page.getContentRect(), (RealRect{0, 0, 94.5, 99}));
    EXPECT_EQ(page.getPatchesPerPage(), (IntSize{9, 9}));
}

TEST(OutputPage, IsCutToARulersLengthInYOnly)
{
    Inputs inputs;
    inputs.sheet = sheetOf({1000, 1000}, {0, 0, 1000, 1000});
    inputs.instrument.setContent({50, 30, 20, 257});
    OutputPage const page = pageOf(inputs);
    // Up to 287 mm: 25 rows and 7 mm more.
    EXPECT_EQ(page.getCoordRect(), (IntRect{0, 0, 100, 25}));
    EXPECT_EQ(page.getContentRect(), (RealRect{0, 30, 1000, 250}));
    EXPECT_EQ(inputs.firstPatch, (RealPos{0, 30}));
}

TEST(OutputPage, IsCutToASpotInstrumentsReachInBothDirections)
{
    Inputs inputs;
    inputs.sheet = sheetOf({600, 500}, {0, 0, 600, 500});
    inputs.instrument = instrument(tableSpot); // reaches x 2 to 462 and y 83 to 403
    OutputPage const page = pageOf(inputs);
    EXPECT_EQ(inputs.firstPatch, (RealPos{2, 83}));
    EXPECT_EQ(page.getCoordRect(), (IntRect{0, 0, 46, 32}));
    EXPECT_EQ(page.getContentRect(), (RealRect{2, 83, 460, 320}));
}

TEST(OutputPage, IsCutInXOnlyForAScanAlongX)
{
    Inputs inputs;
    inputs.sheet = sheetOf({600, 500}, {0, 0, 600, 500});
    inputs.instrument = scanningAlongX(instrument(tableSpot));
    ASSERT_EQ(inputs.instrument.getScanDirection(), alongX);
    OutputPage const page = pageOf(inputs);
    EXPECT_EQ(inputs.firstPatch, (RealPos{2, 0}));
    EXPECT_EQ(page.getCoordRect(), (IntRect{0, 0, 46, 50}));
    EXPECT_EQ(page.getContentRect(), (RealRect{2, 0, 460, 500}));
}

TEST(OutputPage, IsCutInChartPageCoordinates)
{
    Inputs inputs;
    inputs.instrument = instrument(tableSpot);
    inputs.sheet = sheetOf({100, 100}, {20, 10, 80, 80});
    inputs.position = {-30, 60};
    OutputPage const page = pageOf(inputs);
    // The printable area lies at -30 to 50 and 60 to 140: 32 mm are lost on the left and 23 below.
    EXPECT_EQ(page.getOrigin(), (RealPos{-50, 50}));
    EXPECT_EQ(inputs.firstPatch, (RealPos{2, 83}));
    EXPECT_EQ(page.getCoordRect(), (IntRect{0, 0, 4, 5}));
    EXPECT_EQ(page.getContentRect(), (RealRect{52, 33, 40, 50}));
}

TEST(OutputPage, HasNoPatchesWithLessRoomThanAPatchAndItsGap)
{
    for (RealSize const room : {RealSize{9.5, 100}, RealSize{100, 10.5}}) {
        Inputs inputs;
        inputs.sheet = sheetOf({100, 100}, {0, 0, room.width, room.height});
        inputs.instrument.setGap(0, 1);
        OutputPage const page = pageOf(inputs);
        EXPECT_EQ(page.getCoordRect(), (IntRect{0, 0, 0, 0}));
        EXPECT_FALSE(page.hasPatches());
        EXPECT_EQ(inputs.firstPatch, RealPos()) << "a sheet without room does not fix the patch grid";
    }
}

TEST(OutputPage, HasOnePatchWithRoomForOnePatchAndItsGap)
{
    Inputs inputs;
    inputs.sheet = sheetOf({100, 100}, {0, 0, 10, 11});
    inputs.instrument.setGap(0, 1);
    EXPECT_EQ(pageOf(inputs).getCoordRect(), (IntRect{0, 0, 1, 1}));
}

TEST(OutputPage, ContinuesThePatchGridOfAnEarlierSheet)
{
    Inputs inputs;
    inputs.firstPatch = {0, 0};
    inputs.position = {25, 12};
    inputs.sheet = sheetOf({50, 50}, {0, 0, 50, 50});
    OutputPage const page = pageOf(inputs);
    // x 25 to 75 holds the columns at 30, 40, 50 and 60; y 12 to 62 the rows at 20, 30, 40 and 50.
    EXPECT_EQ(page.getCoordRect(), (IntRect{3, 2, 4, 4}));
    EXPECT_EQ(page.getContentRect(), (RealRect{5, 8, 40, 40}));
    EXPECT_EQ(page.getMaxXCoord(), 6);
    EXPECT_EQ(page.getMaxYCoord(), 5);
    EXPECT_EQ(inputs.firstPatch, (RealPos{0, 0}));
}

TEST(OutputPage, HasNoPatchesBetweenTwoColumnsOfThePatchGrid)
{
    Inputs inputs;
    inputs.firstPatch = {0, 0};
    inputs.position = {25, 0};
    inputs.sheet = sheetOf({12, 50}, {0, 0, 12, 50});
    OutputPage const page = pageOf(inputs); // x 25 to 37
    EXPECT_EQ(page.getCoordRect(), (IntRect{3, 0, 0, 5}));
    EXPECT_FALSE(page.hasPatches());
}

TEST(OutputPage, StartsAtColumnAndRowZeroIfThePatchGridStartsLater)
{
    Inputs inputs;
    inputs.firstPatch = {50, 70};
    OutputPage const page = pageOf(inputs);
    EXPECT_EQ(page.getCoordRect(), (IntRect{0, 0, 5, 3}));
    EXPECT_EQ(page.getContentRect(), (RealRect{50, 70, 50, 30}));
}

TEST(OutputPage, ShowsNoMoreColumnsAndRowsThanWanted)
{
    Inputs inputs;
    inputs.maxSize = {3, 2};
    OutputPage const page = pageOf(inputs);
    EXPECT_EQ(page.getCoordRect(), (IntRect{0, 0, 3, 2}));
    EXPECT_EQ(page.getContentRect(), (RealRect{0, 0, 30, 20}));
    inputs.maxSize = {300, 200};
    EXPECT_EQ(pageOf(inputs).getCoordRect(), (IntRect{0, 0, 10, 10}));
    inputs.maxSize = {0, 200};
    EXPECT_EQ(pageOf(inputs).getCoordRect(), (IntRect{0, 0, 0, 10}));
}

TEST(OutputPage, ReportsANegativeNumberOfWantedColumnsOrRows)
{
    Inputs inputs;
    inputs.maxSize = {-1, 5};
    EXPECT_EQ(errorsOf([&] { pageOf(inputs); }), "Negative width but not INT_NOPOS.\n\r");
    inputs.maxSize = {5, -1};
    EXPECT_EQ(errorsOf([&] { pageOf(inputs); }), "Negative height but not INT_NOPOS.\n\r");
    inputs.maxSize = {};
    EXPECT_EQ(errorsOf([&] { pageOf(inputs); }), "");
}

TEST(OutputPage, MultipliesStepsInsteadOfAddingThemUp)
{
    // Seven steps of 0.1 add up to 0.7, while 7 x 0.1 lies above it in the last bit: the seventh patch ends outside.
    Inputs inputs;
    inputs.sheet = sheetOf({0.7, 0.7}, {0, 0, 0.7, 0.7});
    inputs.patch = {0.1, 0.1};
    EXPECT_EQ(pageOf(inputs).getCoordRect(), (IntRect{0, 0, 6, 6}));
    // For the same reason, the seventh column is the first column from 0.7 on.
    inputs.firstPatch = {0, 0};
    inputs.position = {0.7, 0};
    EXPECT_EQ(pageOf(inputs).getCoordRect().x, 7);
}

TEST(OutputPage, HasNoPatchesWithoutAPrintableArea)
{
    Inputs inputs;
    inputs.sheet = sheetOf({210, 297}, {});
    OutputPage page;
    EXPECT_EQ(errorsOf([&] { page = pageOf(inputs); }), "");
    EXPECT_EQ(page.getCoordRect(), (IntRect{0, 0, 0, 0}));
    EXPECT_FALSE(page.hasPatches());
    EXPECT_EQ(inputs.firstPatch, RealPos());
}

TEST(OutputPage, HasNoPatchesOfASizeThatCannotBeCounted)
{
    for (double const size : {0.0, -5.0, 1e-9, 1e-300, 1e300, infinity, -infinity, notANumber})
        for (RealSize const patch : {RealSize{size, 10}, RealSize{10, size}, RealSize{size, size}}) {
            Inputs inputs;
            inputs.patch = patch;
            EXPECT_FALSE(pageOf(inputs).hasPatches()) << size;
        }
}

TEST(OutputPage, HasNoPatchesOnAnAreaThatCannotBeCounted)
{
    for (double const length : {0.0, -5.0, 1e300, infinity, -infinity, notANumber})
        for (RealRect const area : {RealRect{0, 0, length, 100}, RealRect{0, 0, length, length}}) {
            Inputs inputs;
            inputs.sheet = sheetOf({area.width, area.height}, area);
            EXPECT_FALSE(pageOf(inputs).hasPatches()) << length;
        }
    for (double const place : {1e300, -1e300, infinity, notANumber}) {
        Inputs inputs;
        inputs.firstPatch = {0, 0};
        inputs.position = {place, 0};
        EXPECT_FALSE(pageOf(inputs).hasPatches()) << place;
        inputs.position = {0, 0};
        inputs.firstPatch = {place, 0};
        EXPECT_FALSE(pageOf(inputs).hasPatches()) << place;
    }
}

TEST(OutputPage, ShowsThePatchesOfItsBlock)
{
    Inputs inputs;
    inputs.maxSize = {3, 2};
    OutputPage page = pageOf(inputs);
    page.shiftCoords({10, 20});
    EXPECT_EQ(page.getCoordRect(), (IntRect{10, 20, 3, 2}));
    for (bool (OutputPage::*const shows)(IntPos) const : {&OutputPage::isVisible, &OutputPage::containsPatch}) {
        EXPECT_TRUE((page.*shows)({10, 20}));
        EXPECT_TRUE((page.*shows)({12, 21}));
        EXPECT_FALSE((page.*shows)({13, 21}));
        EXPECT_FALSE((page.*shows)({12, 22}));
        EXPECT_FALSE((page.*shows)({0, 0}));
    }
}

TEST(OutputPage, RemovingColumnsRemovesTheirWidthAndGaps)
{
    Inputs inputs;
    inputs.instrument.setGap(0.5F, 0);
    OutputPage page = pageOf(inputs);
    page.reduceCoordWidth(2);
    // Of 9 columns of 10.5 mm.
    EXPECT_EQ(page.getCoordRect(), (IntRect{0, 0, 7, 10}));
    EXPECT_EQ(page.getContentRect(), (RealRect{0, 0, 73.5, 100}));
}

TEST(OutputPage, HasNoPatchesWhenNew)
{
    OutputPage const page;
    EXPECT_EQ(errorsOf([&] { EXPECT_FALSE(page.hasPatches()); }), "");
    EXPECT_FALSE(page.isVisible({0, 0}));
    EXPECT_EQ(page.getChartPage(), nullptr);
}
