// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartPage.h"

#include "support/CapturedOutput.h"
#include "support/GeometryValues.h"
#include "support/TestChart.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>
#include <vector>

namespace
{

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// The printable areas within the border for labels, without a gap.
PageLayout const usableA4 = sheetOf({210, 297}, {21, 17, 182, 269});
PageLayout const usableCreditCard = sheetOf({54, 85}, {16, 2, 36, 77});

ChartPage pageOf(MeasurementLayout instrument, PageLayout const& sheet, IntSize maxSize = {})
{
    instrument.setGap(0, 0);
    ChartPage page;
    page.init(instrument, {0, 0}, sheet, {10, 10}, maxSize);
    return page;
}

OutputPage const& sheetOn(ChartPage const& page, unsigned long long index)
{
    return (*page.getOutputPages())[index];
}

bool ownsItsSheets(ChartPage const& page)
{
    for (OutputPage const& sheet : *page.getOutputPages())
        if (sheet.getChartPage() != &page)
            return false;
    return page.getOutputPages()->getCount() > 0;
}

} // namespace

TEST(ChartPage, IsOneSheetForARuler)
{
    ChartPage page;
    MeasurementLayout ruler = instrument(standardRuler);
    ruler.setGap(0, 0);
    page.init(ruler, {230, 5}, usableA4, {10, 10}, {});
    EXPECT_EQ(page.getOrigin(), (RealPos{230, 5}));
    EXPECT_EQ(page.getPagesSize(), (IntSize{1, 1}));
    EXPECT_EQ(page.getContent(), (RealRect{0, 0, 210, 297}));
    EXPECT_EQ(page.getSize(), (RealSize{210, 297}));
    EXPECT_EQ(page.getCoordRect(), (IntRect{0, 0, 18, 25}));
    EXPECT_EQ(page.getUsableCoordRect(), (IntRect{0, 0, 18, 25}));
    EXPECT_EQ(page.countOutputPages(), 1);
    ASSERT_EQ(page.getOutputPages()->getCount(), 1U);
    EXPECT_EQ(sheetOn(page, 0).getCoordRect(), (IntRect{0, 0, 18, 25}));
    EXPECT_EQ(page.getFirstPageOrigin(), (RealPos{-21, -17}));
}

TEST(ChartPage, LeavesTheInstrumentsMarginsFreeAtTheEndsOfAScan)
{
    // Along y, 12.5 mm above and 6.5 mm below stay free: 90 of 109 mm.
    PageLayout const sheet = sheetOf({109, 109}, {0, 0, 109, 109});
    EXPECT_EQ(sheetOn(pageOf(instrument(tableScan), sheet), 0).getContentRect(), (RealRect{0, 6.5, 100, 90}));
    // Along x, the margins above and below do not count.
    EXPECT_EQ(sheetOn(pageOf(scanningAlongX(instrument(tableScan)), sheet), 0).getContentRect(),
              (RealRect{0, 0, 100, 100}));
}

TEST(ChartPage, TilesASpotInstrumentsReachWithSheetsOnOnePatchGrid)
{
    ChartPage const page = pageOf(instrument(tableSpot), usableA4);
    EXPECT_EQ(page.getPagesSize(), (IntSize{2, 1}));
    EXPECT_EQ(page.getContent(), (RealRect{0, 0, 420, 297}));
    ASSERT_EQ(page.getOutputPages()->getCount(), 2U);
    // The first sheet's patches fill x 2 to 182. The second sheet's begin at 212, which is column 21.
    EXPECT_EQ(sheetOn(page, 0).getOrigin(), (RealPos{-19, 66}));
    EXPECT_EQ(sheetOn(page, 0).getCoordRect(), (IntRect{0, 0, 18, 26}));
    EXPECT_EQ(sheetOn(page, 1).getOrigin(), (RealPos{191, 66}));
    EXPECT_EQ(sheetOn(page, 1).getCoordRect(), (IntRect{21, 0, 18, 26}));
    EXPECT_EQ(sheetOn(page, 1).getContentRect(), (RealRect{21, 17, 180, 260}));
    EXPECT_EQ(page.getCoordRect(), (IntRect{0, 0, 39, 26}));
    EXPECT_EQ(page.getUsableCoordRect(), (IntRect{0, 0, 36, 26}));
    EXPECT_EQ(page.countOutputPages(), 2);
}

TEST(ChartPage, DoesNotShowTheColumnsBetweenTwoSheets)
{
    ChartPage const page = pageOf(instrument(tableSpot), usableA4);
    for (int const x : {18, 19, 20}) {
        EXPECT_TRUE(page.containsPatch({x, 0}));
        EXPECT_FALSE(page.isVisible({x, 0}));
    }
    EXPECT_TRUE(page.isVisible({17, 25}));
    EXPECT_TRUE(page.isVisible({21, 0}));
    EXPECT_TRUE(page.isVisible({38, 25}));
    EXPECT_FALSE(page.containsPatch({39, 0}));
    EXPECT_FALSE(page.isVisible({39, 0}));
}

TEST(ChartPage, TilesTheScanTableWithCreditCardsRowAfterRow)
{
    ChartPage const page = pageOf(instrument(tableSpot), usableCreditCard);
    EXPECT_EQ(page.getPagesSize(), (IntSize{8, 3})); // 460 / 54 = 8.5 and 320 / 85 = 3.8
    EXPECT_EQ(page.getContent(), (RealRect{0, 0, 432, 255}));
    ASSERT_EQ(page.getOutputPages()->getCount(), 24U);
    // Card i has room from 54 i to 54 i + 36, card row j from 85 j to 85 j + 77, counted from the first patch.
    constexpr int firstColumn[] = {0, 6, 11, 17, 22, 27, 33, 38};
    constexpr int columns[] = {3, 3, 3, 2, 3, 3, 3, 3};
    constexpr int firstRow[] = {0, 9, 17};
    for (unsigned i = 0; i < 24; ++i)
        EXPECT_EQ(sheetOn(page, i).getCoordRect(), (IntRect{firstColumn[i % 8], firstRow[i / 8], columns[i % 8], 7}))
            << i;
    EXPECT_EQ(page.getUsableCoordRect(), (IntRect{0, 0, 23, 21}));
    EXPECT_EQ(page.getCoordRect(), (IntRect{0, 0, 41, 24}));
    EXPECT_EQ(page.countOutputPages(), 24);
    EXPECT_EQ(page.getFirstPageOrigin(), (RealPos{2.0 - 16, 83.0 - 2}));
}

TEST(ChartPage, SpreadsTheWantedColumnsOverTheSheetsOfARow)
{
    ChartPage const page = pageOf(instrument(tableSpot), usableA4, {20, 10});
    EXPECT_EQ(sheetOn(page, 0).getCoordRect(), (IntRect{0, 0, 18, 10}));
    EXPECT_EQ(sheetOn(page, 1).getCoordRect(), (IntRect{21, 0, 2, 10}));
    EXPECT_EQ(page.getCoordRect(), (IntRect{0, 0, 23, 10}));
    EXPECT_EQ(page.getUsableCoordRect(), (IntRect{0, 0, 20, 10}));
}

TEST(ChartPage, LeavesSheetsBeyondTheWantedColumnsAndRowsBlank)
{
    ChartPage const page = pageOf(instrument(tableSpot), usableCreditCard, {10, 9});
    // 3 + 3 + 3 + 1 columns; 7 + 2 rows.
    EXPECT_EQ(sheetOn(page, 2).getCoordRect(), (IntRect{11, 0, 3, 7}));
    EXPECT_EQ(sheetOn(page, 3).getCoordRect(), (IntRect{17, 0, 1, 7}));
    EXPECT_FALSE(sheetOn(page, 4).hasPatches());
    EXPECT_EQ(sheetOn(page, 8 + 3).getCoordRect(), (IntRect{17, 9, 1, 2}));
    EXPECT_FALSE(sheetOn(page, 16).hasPatches());
    EXPECT_EQ(page.getCoordRect(), (IntRect{0, 0, 18, 11}));
    EXPECT_EQ(page.getUsableCoordRect(), (IntRect{0, 0, 10, 9}));
    EXPECT_EQ(page.countOutputPages(), 8);
}

TEST(ChartPage, HasOneSheetIfTheSheetIsLargerThanTheReach)
{
    ChartPage const page = pageOf(instrument(tableSpot), sheetOf({600, 500}, {0, 0, 600, 500}));
    EXPECT_EQ(page.getPagesSize(), (IntSize{1, 1}));
    EXPECT_EQ(page.getContent(), (RealRect{0, 0, 600, 500}));
    EXPECT_EQ(page.getCoordRect(), (IntRect{0, 0, 46, 32}));
}

TEST(ChartPage, HasNoPatchesWithoutRoom)
{
    for (MeasurementLayoutPreset const preset : {tableSpot, tableScan, standardRuler, longRuler})
        for (PageLayout const& sheet : {sheetOf({210, 297}, {}), sheetOf({210, 297}, {0, 0, 9, 200}), PageLayout()}) {
            ChartPage page;
            EXPECT_EQ(errorsOf([&] { page = pageOf(instrument(preset), sheet); }), "");
            EXPECT_EQ(page.countOutputPages(), 0);
            EXPECT_FALSE(page.getUsableCoordRect().hasPatches());
            EXPECT_FALSE(page.isVisible({0, 0}));
        }
}

TEST(ChartPage, FinishesQuicklyWithSheetsOfAnySize)
{
    for (double const length : {0.0, -5.0, 1e-9, 1e-3, 1e300, infinity, -infinity, notANumber})
        for (MeasurementLayoutPreset const preset : {tableSpot, standardRuler})
            for (RealSize const size : {RealSize{length, 297}, RealSize{210, length}, RealSize{length, length}}) {
                SCOPED_TRACE(testing::Message() << size.width << " x " << size.height);
                ChartPage page;
                EXPECT_EQ(errorsOf([&] { page = pageOf(instrument(preset), sheetOf(size, {0, 0, 100, 100})); }), "");
                EXPECT_EQ(page.getOutputPages()->getCount(),
                          static_cast<unsigned long long>(page.getPagesSize().width) *
                              static_cast<unsigned long long>(page.getPagesSize().height));
            }
}

TEST(ChartPage, HasNoRoomIf32BitsCannotCountItsSheets)
{
    for (RealSize const size : {RealSize{1e-3, 1e-3}, RealSize{1e-9, 297}, RealSize{210, 1e-300}}) {
        ChartPage const page = pageOf(instrument(tableSpot), sheetOf(size, {0, 0, 100, 100}));
        EXPECT_EQ(page.countOutputPages(), 0);
        EXPECT_FALSE(page.getUsableCoordRect().hasPatches());
    }
}

TEST(ChartPage, TakesARowsHeightFromItsFirstSheetWithPatches)
{
    // From 2 to 302 mm a column of 240 mm fits; from 232 to the reach's end at 462 none.
    ChartPage page;
    page.init(instrument(tableSpot), {0, 0}, sheetOf({230, 320}, {0, 0, 300, 320}), {240, 10}, {});
    EXPECT_EQ(page.getPagesSize(), (IntSize{2, 1}));
    EXPECT_EQ(sheetOn(page, 0).getCoordRect(), (IntRect{0, 0, 1, 32}));
    EXPECT_EQ(sheetOn(page, 1).getCoordRect(), (IntRect{0, 0, 0, 0}));
    EXPECT_EQ(page.getUsableCoordRect(), (IntRect{0, 0, 1, 32}));
    EXPECT_EQ(page.getCoordRect(), (IntRect{0, 0, 1, 32}));
    EXPECT_EQ(page.countOutputPages(), 1);
}

TEST(ChartPage, MovesItsSheetsWithItself)
{
    ChartPage page = pageOf(instrument(tableSpot), usableA4, {20, 10});
    page.shiftCoords({100, 7});
    EXPECT_EQ(page.getCoordRect(), (IntRect{100, 7, 23, 10}));
    EXPECT_EQ(sheetOn(page, 0).getCoordRect(), (IntRect{100, 7, 18, 10}));
    EXPECT_EQ(sheetOn(page, 1).getCoordRect(), (IntRect{121, 7, 2, 10}));
    EXPECT_FALSE(page.isVisible({0, 0}));
    EXPECT_TRUE(page.isVisible({100, 7}));
    EXPECT_TRUE(page.containsPatch({118, 7}));
    EXPECT_FALSE(page.isVisible({118, 7}));
}

TEST(ChartPage, DoesNotShowCellsOfASheetOutsideItsOwnBlock)
{
    ChartPage page = pageOf(instrument(standardRuler), usableA4);
    (*page.getOutputPages())[0].shiftCoords({5, 0});
    EXPECT_TRUE(page.isVisible({17, 0}));
    EXPECT_FALSE(page.isVisible({18, 0}));
    EXPECT_FALSE(page.isVisible({4, 0}));
}

TEST(ChartPage, ReportsAMissingFirstSheetWhenNew)
{
    ChartPage const page;
    EXPECT_EQ(errorsOf([&] { page.getFirstPageOrigin(); }), "Array element out of bounds.\r");
    EXPECT_EQ(page.countOutputPages(), 0);
    EXPECT_FALSE(page.isVisible({0, 0}));
}

TEST(ChartPage, SheetsPointAtTheirChartPage)
{
    ChartPage page;
    page.init(instrument(tableSpot), {0, 0}, usableA4, {10, 10}, {});
    EXPECT_TRUE(ownsItsSheets(page));
}

TEST(ChartPage, SheetsOfACopyPointAtTheCopy)
{
    ChartPage original = pageOf(instrument(tableSpot), usableA4);
    ChartPage copy(original);
    ChartPage assigned;
    assigned = original;
    EXPECT_TRUE(ownsItsSheets(original));
    EXPECT_TRUE(ownsItsSheets(copy));
    EXPECT_TRUE(ownsItsSheets(assigned));

    std::vector<ChartPage> pages;
    for (int i = 0; i < 5; ++i)
        pages.push_back(original);
    std::swap(pages.front(), pages.back());
    ChartPage moved(std::move(pages[2]));
    pages.erase(pages.begin() + 1);
    EXPECT_TRUE(ownsItsSheets(moved));
    EXPECT_TRUE(ownsItsSheets(pages.front()));
    EXPECT_TRUE(ownsItsSheets(pages.back()));

    Array<ChartPage> array(2);
    array[0] = original;
    array[1] = copy;
    array.decouple();
    EXPECT_TRUE(ownsItsSheets(array[0]));
    EXPECT_TRUE(ownsItsSheets(array[1]));
}

TEST(ChartPage, StaysItselfWhenAssignedToItself)
{
    ChartPage page = pageOf(instrument(tableSpot), usableA4);
    ChartPage const& same = page;
    page = same;
    EXPECT_TRUE(ownsItsSheets(page));
    EXPECT_EQ(page.countOutputPages(), 2);
}

TEST(ChartPage, DoesNotChangeWhenACopyChanges)
{
    ChartPage const original = pageOf(instrument(tableSpot), usableA4);
    ChartPage copy(original);
    copy.shiftCoords({100, 100});
    (*copy.getOutputPages())[0].reduceCoordWidth(3);
    (*copy.getOutputPages())[0].setOrigin({0, 0});
    EXPECT_EQ(original.getCoordRect(), (IntRect{0, 0, 39, 26}));
    EXPECT_EQ(sheetOn(original, 0).getCoordRect(), (IntRect{0, 0, 18, 26}));
    EXPECT_EQ(original.getFirstPageOrigin(), (RealPos{-19, 66}));
    EXPECT_EQ(sheetOn(copy, 0).getCoordRect(), (IntRect{100, 100, 15, 26}));
}

TEST(ChartPage, ACopyDoesNotChangeWhenItsOriginalDoes)
{
    ChartPage original = pageOf(instrument(tableSpot), usableA4);
    ChartPage const copy(original);
    original.init(instrument(standardRuler), {0, 0}, usableA4, {10, 10}, {3, 2});
    EXPECT_EQ(copy.countOutputPages(), 2);
    EXPECT_EQ(sheetOn(copy, 1).getCoordRect(), (IntRect{21, 0, 18, 26}));
    EXPECT_TRUE(ownsItsSheets(copy));
}
