// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PreviewDrawing.h"

#include "support/CapturedOutput.h"
#include "support/GeometryValues.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

constexpr RealSize view{500, 280};

struct Shape
{
    RealRect rect;
    PreviewColor color;
    bool isOutline = false;
};

bool operator==(Shape const& a, Shape const& b)
{
    return a.rect == b.rect && a.color.red == b.color.red && a.color.green == b.color.green &&
           a.color.blue == b.color.blue && a.isOutline == b.isOutline;
}

void PrintTo(Shape const& shape, std::ostream* stream)
{
    PrintTo(shape.rect, stream);
    *stream << " (" << shape.color.red << ' ' << shape.color.green << ' ' << shape.color.blue
            << (shape.isOutline ? ") outline" : ")");
}

/// Records the drawing.
struct Recording
{
    std::vector<RealSize> views;
    std::vector<PreviewColor> backgrounds;
    std::vector<RealRect> planes;
    std::vector<Shape> shapes;
    std::vector<RealPos> ring;
    double dotWidth = 0;

    void begin(RealSize size, PreviewColor background)
    {
        views.push_back(size);
        backgrounds.push_back(background);
    }
    void show(RealRect const& plane) { planes.push_back(plane); }
    void fill(RealRect const& rect, PreviewColor color) { shapes.push_back({rect, color}); }
    void outline(RealRect const& rect, PreviewColor color) { shapes.push_back({rect, color, true}); }
    void dots(std::vector<RealPos> const& places, double width)
    {
        ring = places;
        dotWidth = width;
    }
};

/// The rectangles of the sheets, in drawing order.
std::vector<RealRect> sheetsOf(Recording const& recording)
{
    std::vector<RealRect> sheets;
    for (Shape const& shape : recording.shapes)
        if (shape.isOutline)
            sheets.push_back(shape.rect);
    return sheets;
}

Recording drawn(ChartLayout const& chart, RealSize size = view)
{
    Recording recording;
    paintChart(recording, size, chart);
    return recording;
}

constexpr PreviewColor white{1, 1, 1};
constexpr PreviewColor lightGrey{0.8f, 0.8f, 0.8f};
constexpr PreviewColor outlineGrey{0.7f, 0.7f, 0.7f};

PreviewColor colorAt(ChartLayout const& chart, IntPos position)
{
    float const* color = chart.getColorEntry(position)->getDisplayColor();
    return {color[0], color[1], color[2]};
}

/// A computed chart of a number of greys, with its entries.
struct Chart
{
    GrowingArray<ColorEntry> entries;
    ChartLayout layout;

    Chart(int count, MeasurementLayout const& device, PageLayout const& sheet, RealSize patch = {10, 10}, float gap = 0)
        : entries(greyEntries(count)), layout(chartOf(entries, device, sheet, patch))
    {
        layout.computeLayout(gap, 0);
    }
};

/// On A4 Portrait with the standard ruler, a chart page holds 18 x 25 patches of 1 cm; its sheet begins at (-21, -17).
Chart rulerChart(int count)
{
    return Chart(count, instrument(standardRuler), paper(a4Portrait));
}

/// On credit cards with the scan table, 8 x 3 sheets hold 23 x 21 patches of 1 cm; the first begins at (-14, 81).
Chart cardChart(int count)
{
    return Chart(count, instrument(tableSpot), paper(creditCardPortrait));
}

void expectPlane(RealRect const& plane, RealRect const& expected)
{
    constexpr double tolerance = 1e-9;
    EXPECT_NEAR(plane.x, expected.x, tolerance);
    EXPECT_NEAR(plane.y, expected.y, tolerance);
    EXPECT_NEAR(plane.width, expected.width, tolerance);
    EXPECT_NEAR(plane.height, expected.height, tolerance);
}

} // namespace

TEST(PreviewPlane, ShowsANarrowChartInTheMiddleWithTenMillimetresAboveAndBelow)
{
    // 317 mm are 280 pixels, and so 500 pixels are 317 * 500 / 280 mm around the sheet's middle at 105 - 21.
    double const width = 158500.0 / 280;
    expectPlane(visiblePlane(view, rulerChart(1).layout), {84 - width / 2, -27, width, 317});
}

TEST(PreviewPlane, ShowsAWideChartWithTenMillimetresAtBothSides)
{
    // Three sheets with 20 mm between them are 670 mm; their middle is at 148.5 - 17.
    Chart const chart = rulerChart(1000);
    ASSERT_EQ(chart.layout.getChartPagesSize(), (IntSize{3, 1}));
    double const height = 690.0 * 280 / 500;
    expectPlane(visiblePlane(view, chart.layout), {-31, 131.5 - height / 2, 690, height});
}

TEST(PreviewPlane, FitsTheHeightOfAChartShapedLikeTheView)
{
    // The view has the sheet's proportions, but not those of the sheet with its border.
    double const width = 317.0 * 210 / 297;
    expectPlane(visiblePlane({210, 297}, rulerChart(1).layout), {84 - width / 2, -27, width, 317});
}

TEST(PreviewPlane, ShowsAllSheetsOfAChartPage)
{
    // Two sheets side by side, the first at (-19, 66).
    Chart const chart(1, instrument(tableSpot), paper(a4Portrait));
    double const width = 158500.0 / 280;
    expectPlane(visiblePlane(view, chart.layout), {191 - width / 2, 56, width, 317});
}

TEST(PreviewPlane, ShowsChartPagesAboveEachOther)
{
    // With the table's own gap of 1 mm, 18 x 24 patches fit into 182 x 269 mm; the first sheet begins at (-21, -18).
    Chart const chart(18 * 24 + 1, scanningAlongX(instrument(tableScan)), paper(a4Portrait));
    ASSERT_EQ(chart.layout.getChartPagesSize(), (IntSize{1, 2}));
    double const height = 10 + 297 + 20 + 297 + 10;
    double const width = height * 500 / 280;
    expectPlane(visiblePlane(view, chart.layout), {84 - width / 2, -28, width, height});
}

TEST(PreviewPlane, DependsOnTheViewsProportionsOnly)
{
    Chart const chart = rulerChart(1000);
    expectPlane(visiblePlane({1000, 560}, chart.layout), visiblePlane(view, chart.layout));
}

TEST(PreviewPlane, IsNotDrawnIfSinglePrecisionCannotHoldIt)
{
    EXPECT_TRUE(isDrawable({-1e38, 0, 1e38, 1}));
    for (double const nowhere : {1e39, -1e39, infinity, REAL_NOPOS, notANumber}) {
        EXPECT_FALSE(isDrawable({nowhere, 0, 1, 1}));
        EXPECT_FALSE(isDrawable({0, nowhere, 1, 1}));
        EXPECT_FALSE(isDrawable({0, 0, nowhere, 1}));
        EXPECT_FALSE(isDrawable({0, 0, 1, nowhere}));
    }
}

TEST(PreviewSheet, IsAsLargeAsThePaper)
{
    Chart const chart = rulerChart(100);
    OutputPage const& sheet = (*(*chart.layout.getChartPages())[0].getOutputPages())[0];
    EXPECT_EQ(drawnSize(sheet, chart.layout), (RealSize{210, 297}));
}

TEST(PreviewSheet, IsTheContentWithEqualBordersWhenClippedToContent)
{
    // 4 x 25 patches of 1 cm stand at (21, 23.5).
    Chart chart = rulerChart(100);
    chart.layout.setClipToContent(true);
    OutputPage const& sheet = (*(*chart.layout.getChartPages())[0].getOutputPages())[0];
    EXPECT_EQ(drawnSize(sheet, chart.layout), (RealSize{40 + 2 * 21, 250 + 2 * 23.5}));
    EXPECT_EQ(sheetsOf(drawn(chart.layout)), (std::vector<RealRect>{{-21, -17, 82, 297}}));
}

TEST(PreviewSheet, ShowsPaperThenOutlineThenThePatchesFromTheLastOne)
{
    // The printable area begins at (16, 2) on the sheet, and 6.5 mm above it the patches.
    Chart const chart(4, instrument(standardRuler), rulerSheetFor({2, 2}, {10, 8}), {10, 8});
    ASSERT_EQ(chart.layout.getPatchesX(), 2);
    ASSERT_EQ(chart.layout.getPatchesY(), 2);
    RealRect const sheet{-16, -2, 18 + 2.1 * 10, 27 + 2.1 * 8};
    EXPECT_THAT(drawn(chart.layout).shapes, ElementsAre(Shape{sheet, white}, Shape{sheet, outlineGrey, true},
                                                        Shape{{10, 14.5, 10, 8}, colorAt(chart.layout, {1, 1})},
                                                        Shape{{10, 6.5, 10, 8}, colorAt(chart.layout, {1, 0})},
                                                        Shape{{0, 14.5, 10, 8}, colorAt(chart.layout, {0, 1})},
                                                        Shape{{0, 6.5, 10, 8}, colorAt(chart.layout, {0, 0})}));
}

TEST(PreviewSheet, FillsTheGapsWithTheirPatches)
{
    Chart const chart(2, instrument(standardRuler), rulerSheetFor({1, 2}, {10, 9}), {10, 8}, 1);
    ASSERT_EQ(chart.layout.getPatchesY(), 2);
    std::vector<Shape> const shapes = drawn(chart.layout).shapes;
    ASSERT_EQ(shapes.size(), 4u);
    EXPECT_EQ(shapes[2], (Shape{{0, 15.5, 10, 9}, colorAt(chart.layout, {0, 1})}));
    EXPECT_EQ(shapes[3], (Shape{{0, 6.5, 10, 9}, colorAt(chart.layout, {0, 0})}));
}

TEST(PreviewSheet, IsLightGreyAndBareWithoutPatches)
{
    // The only patch is on the first of the table's two sheets.
    Chart const chart(1, instrument(tableSpot), paper(a4Portrait));
    RealRect const first{-19, 66, 210, 297};
    RealRect const second{191, 66, 210, 297};
    EXPECT_THAT(drawn(chart.layout).shapes, ElementsAre(Shape{first, white}, Shape{first, outlineGrey, true},
                                                        Shape{{2, 83, 10, 10}, colorAt(chart.layout, {0, 0})},
                                                        Shape{second, lightGrey}, Shape{second, outlineGrey, true}));
}

TEST(PreviewSheet, LeavesOutPatchesThatWereNotPlaced)
{
    Chart chart = rulerChart(4);
    chart.layout.setDirection(static_cast<ChartDirection>(1));
    CapturedOutput const errors;
    chart.layout.computeLayout(0, 0);
    ASSERT_EQ(chart.layout.getColorEntry({0, 0}), nullptr);
    std::vector<Shape> const shapes = drawn(chart.layout).shapes;
    ASSERT_EQ(shapes.size(), 2u);
    EXPECT_EQ(shapes[0].color.red, 1);
}

TEST(PreviewSheet, ShowsTheGridColumnsOfItsOwnChartPage)
{
    // 450 patches fill the first chart page. The others are in the second page's single column.
    Chart const chart = rulerChart(451);
    ASSERT_EQ(chart.layout.getChartPagesSize(), (IntSize{2, 1}));
    std::vector<Shape> const shapes = drawn(chart.layout).shapes;
    int const columns = chart.layout.getPatchesX() / 2;
    std::size_t const perSheet = 2 + 25 * static_cast<std::size_t>(columns);
    ASSERT_EQ(shapes.size(), 2 * perSheet);
    EXPECT_EQ(shapes[perSheet - 1], (Shape{{0, 6.5, 10, 10}, colorAt(chart.layout, {0, 0})}));
    EXPECT_EQ(shapes[2 * perSheet - 1], (Shape{{230, 6.5, 10, 10}, colorAt(chart.layout, {columns, 0})}));
}

TEST(PreviewChart, ShowsItsSheetsRowByRowAndPageByPage)
{
    // A chart page is 432 mm wide, the next one begins 20 mm beside it.
    Chart const chart = cardChart(23 * 21 + 1);
    std::vector<RealRect> expected;
    for (int page = 0; page < 2; ++page)
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 8; ++column)
                expected.push_back({-14.0 + 54 * column + 452 * page, 81.0 + 85 * row, 54, 85});
    EXPECT_EQ(sheetsOf(drawn(chart.layout)), expected);
}

TEST(PreviewChart, BeginsItsViewWithMiddleGreyAndShowsItsPlane)
{
    Chart const chart = rulerChart(1000);
    Recording const recording = drawn(chart.layout);
    EXPECT_THAT(recording.views, ElementsAre(view));
    ASSERT_EQ(recording.backgrounds.size(), 1u);
    PreviewColor const background = recording.backgrounds[0];
    EXPECT_TRUE(background.red == 0.5f && background.green == 0.5f && background.blue == 0.5f);
    EXPECT_THAT(recording.planes, ElementsAre(visiblePlane(view, chart.layout)));
}

TEST(PreviewChart, IsAnEvenGreyBeforeThereAreEntries)
{
    Recording const recording = drawn(ChartLayout());
    EXPECT_THAT(recording.views, ElementsAre(view));
    EXPECT_THAT(recording.planes, IsEmpty());
    EXPECT_THAT(recording.shapes, IsEmpty());
}

TEST(PreviewChart, IsAnEvenGreyWithoutEntries)
{
    Chart chart = rulerChart(4);
    ASSERT_THAT(drawn(chart.layout).shapes, Not(IsEmpty()));
    chart.layout.setOriginalEntries(nullptr);
    Recording const recording = drawn(chart.layout);
    EXPECT_THAT(recording.views, ElementsAre(view));
    EXPECT_THAT(recording.shapes, IsEmpty());
}

TEST(PreviewChart, IsAnEvenGreyWithoutRoomForPatches)
{
    Chart const chart(4, instrument(standardRuler), sheetOf({18, 100}, {0, 0, 18, 100}));
    ASSERT_NE(chart.layout.getOriginalEntries(), nullptr);
    Recording const recording = drawn(chart.layout);
    EXPECT_THAT(recording.views, ElementsAre(view));
    EXPECT_THAT(recording.shapes, IsEmpty());
}

TEST(PreviewChart, IsAnEvenGreyInAViewOfSizeZeroOrInfinity)
{
    Chart const chart = rulerChart(4);
    for (RealSize const size : {RealSize{0, 280}, RealSize{500, 0}, RealSize{0, 0}, RealSize{}, RealSize{infinity, 280},
                                RealSize{500, infinity}, RealSize{notANumber, 280}, RealSize{1e300, 1e-300}}) {
        Recording const recording = drawn(chart.layout, size);
        EXPECT_EQ(recording.views.size(), 1u);
        EXPECT_THAT(recording.planes, IsEmpty()) << testing::PrintToString(size);
        EXPECT_THAT(recording.shapes, IsEmpty());
    }
}

TEST(PreviewChart, IsAnEvenGreyOnInfinitePaper)
{
    for (double const endless : {infinity, 1e300}) {
        Chart const chart(4, instrument(standardRuler), sheetOf({endless, 297}, {0, 0, 100, 200}));
        ASSERT_TRUE(chart.layout.hasSomethingToOutpot());
        EXPECT_THAT(drawn(chart.layout).shapes, IsEmpty());
    }
}

TEST(PreviewPlaceholder, IsARingOfTwelveDotsWithARadiusOf25Pixels)
{
    Recording recording;
    paintPlaceholder(recording, view, 1);
    EXPECT_THAT(recording.views, ElementsAre(view));
    EXPECT_THAT(recording.planes, ElementsAre(RealRect{-10, -5.6, 20, 11.2}));
    EXPECT_EQ(recording.dotWidth, 3);
    ASSERT_EQ(recording.ring.size(), 12u);
    // Cosines of 0, 30, 60 and 90 degrees; the full turn is a little less than a circle.
    constexpr double tolerance = 1e-5;
    EXPECT_EQ(recording.ring[0], (RealPos{1, 0}));
    EXPECT_NEAR(recording.ring[1].x, 0.8660254, tolerance);
    EXPECT_NEAR(recording.ring[1].y, 0.5, tolerance);
    EXPECT_NEAR(recording.ring[3].x, 0.00000133, 1e-8);
    EXPECT_NEAR(recording.ring[5].x, -0.8660254, tolerance);
    EXPECT_NEAR(recording.ring[5].y, 0.5, tolerance);
    EXPECT_NEAR(recording.ring[6].x, -1, tolerance);
    EXPECT_NEAR(recording.ring[9].y, -1, tolerance);
    EXPECT_NEAR(recording.ring[11].x, 0.8660254, tolerance);
    EXPECT_NEAR(recording.ring[11].y, -0.5, tolerance);
}

TEST(PreviewPlaceholder, HasTheSameSizeOnADenseScreen)
{
    Recording recording;
    paintPlaceholder(recording, {1000, 560}, 2);
    EXPECT_THAT(recording.planes, ElementsAre(RealRect{-10, -5.6, 20, 11.2}));
    EXPECT_EQ(recording.dotWidth, 6);
}
