// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SheetDrawing.h"

#include "OutputPage.h"
#include "lib/OvEPSFile.h"
#include "lib/OvTIFFFile.h"
#include "support/ChartCase.h"
#include "support/DecimalCommaLocale.h"
#include "support/DrawnSheet.h"
#include "support/GeometryValues.h"
#include "support/Picture.h"
#include "support/RulerChart.h"
#include "support/TemporaryFolder.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

using testing::DoubleNear;
using testing::ElementsAre;
using testing::Pointwise;

// Rounds to the six digits of an EPS file.
constexpr double asPrinted = 0.000001;

auto isRect(double x, double y, double width, double height)
{
    return testing::AllOf(testing::Field("x", &RealRect::x, DoubleNear(x, asPrinted)),
                          testing::Field("y", &RealRect::y, DoubleNear(y, asPrinted)),
                          testing::Field("width", &RealRect::width, DoubleNear(width, 2 * asPrinted)),
                          testing::Field("height", &RealRect::height, DoubleNear(height, 2 * asPrinted)));
}

auto isColour(DrawnSheet::Colour const& colour)
{
    return Pointwise(DoubleNear(asPrinted), colour);
}

void expectRectangle(DrawnSheet::Rectangle const& drawn, RealRect rect, DrawnSheet::Colour const& colour)
{
    EXPECT_THAT(drawn.rect, isRect(rect.x, rect.y, rect.width, rect.height));
    EXPECT_THAT(drawn.colour, isColour(colour));
}

void expectText(DrawnSheet::Text const& drawn, std::string const& text, RealPos position,
                DrawnSheet::Colour const& colour)
{
    EXPECT_EQ(drawn.text, text);
    EXPECT_NEAR(drawn.position.x, position.x, asPrinted) << text;
    EXPECT_NEAR(drawn.position.y, position.y, asPrinted) << text;
    EXPECT_THAT(drawn.colour, isColour(colour)) << text;
}

DrawnSheet::Colour const blackCmyk{0, 0, 0, 1};
DrawnSheet::Colour const redCmyk{0, 1, 1, 0};
DrawnSheet::Colour const blackRgb{0, 0, 0};
DrawnSheet::Colour const redRgb{1, 0, 0};

// The start bar and the crosses, of two bars each, come before the patches of a sheet.
constexpr std::size_t rectanglesBeforePatches = 9;

// The colour of a sheet's only patch.
DrawnSheet::Colour onlyPatchOf(ColorSpace colorSpace, std::string const& values)
{
    DrawnSheet const sheet = RulerChart(entriesOf(colorSpace, {values}), {1, 1}).drawn();
    EXPECT_EQ(sheet.rectangles.size(), rectanglesBeforePatches + 1);
    return sheet.lastRectangle().colour;
}

Picture::Pixel onlyPixelOf(ColorSpace colorSpace, std::string const& values)
{
    return RulerChart(entriesOf(colorSpace, {values}), {1, 1}).painted().at(RealPos{16 + 5, 8.5 + 4});
}

void nameGap(ColorEntry* entry, RelativePosition side, double mark)
{
    std::fill_n(entry->getGap(side)->getOutColor(), 4, mark);
}

class ChartFixtures : public testing::TestWithParam<std::filesystem::path>
{
};

} // namespace

TEST_P(ChartFixtures, HaveTheExpectedSheets)
{
    ChartCase chart(GetParam());
    chart.layout.setName(String("expected"));
    TemporaryFolder const folder;

    EXPECT_TRUE(chart.layout.writeOutputImagesEPS(folder.pathWithSlash()));

    std::vector<std::string> expected = filesIn(GetParam());
    std::erase_if(expected, [](std::string const& name) { return name.find(".eps") == std::string::npos; });
    EXPECT_EQ(filesIn(folder.path()), expected);
    for (std::string const& name : expected)
        EXPECT_EQ(bytesOf(folder.path() / name), bytesOf(GetParam() / name)) << name;
}

INSTANTIATE_TEST_SUITE_P(, ChartFixtures, testing::ValuesIn(chartCases()),
                         [](auto const& test) { return caseName(test.param); });

TEST(SheetDrawing, StandsWhereTheLayoutPutIt)
{
    DrawnSheet const sheet = RulerChart(entriesOf(CMYK, {"100 0 0 0", "0 100 0 0"}), {2, 1}).drawn();

    // 2.1 columns of 10 mm and 18 mm; 1.1 rows of 8 mm and 27 mm.
    EXPECT_NEAR(sheet.page.width, 39 * 72 / 25.4, asPrinted);
    EXPECT_NEAR(sheet.page.height, 35.8 * 72 / 25.4, asPrinted);

    // Columns: 16 + 1 + 5 - 2.4 and 10 mm on; 8.5 + 8 + 12.5 + 1.2 up. Row: 16 - 9; 8.5 + 1.2 + 4 - 3.
    ASSERT_EQ(sheet.texts.size(), 4u);
    expectText(sheet.texts.at(0), "B", {19.6, 30.2}, blackCmyk);
    expectText(sheet.texts.at(1), "A", {29.6, 30.2}, blackCmyk);
    expectText(sheet.texts.at(2), "1", {7, 10.7}, blackCmyk);
    expectText(sheet.texts.at(3), "1", {16 - 6 - 2.4, 30.2}, redCmyk);

    ASSERT_EQ(sheet.rectangles.size(), rectanglesBeforePatches + 2);
    expectRectangle(sheet.rectangles.at(0), {16, 8.5, 20, 0}, blackCmyk);
    RealPos const crosses[] = {{15.75, 8.25}, {15.75, 16.75}, {36.25, 16.75}, {36.25, 8.25}};
    for (std::size_t i = 0; i < 4; ++i) {
        auto const [x, y] = crosses[i];
        expectRectangle(sheet.rectangles.at(1 + 2 * i), {x - 1.5, y - 0.25, 3, 0.5}, redCmyk);
        expectRectangle(sheet.rectangles.at(2 + 2 * i), {x - 0.25, y - 1.5, 0.5, 3}, redCmyk);
    }
    EXPECT_THAT(sheet.rectangles.at(9).rect, isRect(26, 8.5, 10, 8));
    EXPECT_THAT(sheet.rectangles.at(10).rect, isRect(16, 8.5, 10, 8));
}

TEST(SheetDrawing, PutsABlackBarOfHalfAGapUnderThePatches)
{
    DrawnSheet const sheet = RulerChart(greyEntries(2), {2, 1}, {0, 1}).drawn();
    expectRectangle(sheet.rectangles.at(0), {16, 9, 20, 0.5}, blackRgb);
    // The lower crosses make room for the gap under the patches: 9.5 - 0.25 - 1.
    expectRectangle(sheet.rectangles.at(1), {15.75 - 1.5, 8.25 - 0.25, 3, 0.5}, redRgb);
    // The upper ones stand above the gap that ends the last row: 9.5 + 9 + 0.25.
    expectRectangle(sheet.rectangles.at(3), {15.75 - 1.5, 18.75 - 0.25, 3, 0.5}, redRgb);
}

TEST(SheetDrawing, KeepsLabelsOutOfTheSheetsOwnMargin)
{
    RulerChart chart(entriesOf(RGB, {"1 2 3"}), {1, 1});
    PageLayout const sheet = sheetOf({100, 100}, {10, 20, 60, 50});
    OutputPage page;
    RealPos firstPatch;
    // The margin moves the block to (10 + 7, 20 + 5); 60 - 7 - 3 = 50 mm hold 5 columns, 50 - 4 - 5 = 41 mm 5 rows.
    page.init(nullptr, sheet, {0, 0}, instrument(longRuler), {10, 7}, firstPatch, {4, 3, 5, 7}, {1, 1});
    ASSERT_TRUE(page.writeEPS(chart.folder.pathWithSlash(), String("Chart"), 0, &chart.layout));
    DrawnSheet const drawn = readSheet(chart.fileOf(1, "eps"));

    // The ruler's gap of 1 mm makes the block 10 x 8 mm.
    ASSERT_EQ(drawn.texts.size(), 3u);
    expectText(drawn.texts.at(0), "A", {17 + 1 + 5 - 2.4, 25 + 8 + 4 + 1.2}, blackRgb);
    expectText(drawn.texts.at(1), "1", {17 - 7 - 9, 25 + 1.2 + 4 - 3}, blackRgb);
    expectText(drawn.texts.at(2), "1", {17 - 7 - 6 - 2.4, 25 + 8 + 4 + 1.2}, redRgb);
}

TEST(SheetDrawing, MovesLongerLabelsFurtherLeft)
{
    // The 53rd column from the right is the first one.
    DrawnSheet const sheet = RulerChart(greyEntries(53), {53, 1}).drawn();
    expectText(sheet.texts.at(0), "AA", {16 + 1 + 5 - 4.8, 30.2}, blackRgb);
    expectText(sheet.texts.at(1), "z", {16 + 1 + 15 - 2.4, 30.2}, blackRgb);
}

TEST(SheetDrawing, LongRowLabelsStayInPlace)
{
    DrawnSheet const sheet = RulerChart(greyEntries(10), {1, 10}).drawn();
    expectText(sheet.texts.at(1), "10", {7, 8.5 + 1.2 + 4 - 3}, blackRgb);
    expectText(sheet.texts.at(10), "1", {7, 8.5 + 1.2 + 76 - 3}, blackRgb);
}

TEST(SheetDrawing, PaintsPatchesInTheirOwnColours)
{
    EXPECT_THAT(onlyPatchOf(CMYK, "100 0 0 0"), ElementsAre(1, 0, 0, 0));
    EXPECT_THAT(onlyPatchOf(CMYK, "12.5 0.25 1e1 99.99"), isColour({0.125, 0.0025, 0.1, 0.9999}));
    EXPECT_THAT(onlyPatchOf(RGB, "255 128 0"), isColour({1, 128 / 255.0, 0}));
}

TEST(SheetDrawing, PassesOutOfRangeChannelsOnUnchanged)
{
    EXPECT_THAT(onlyPatchOf(CMYK, "300 -5 none 1e2x"), isColour({3, -0.05, 0, 1}));
    EXPECT_THAT(onlyPatchOf(RGB, "510 -51 255.0"), isColour({2, -0.2, 1}));
}

TEST(SheetDrawing, PrintsFiniteNumbersOnly)
{
    for (ColorSpace const colorSpace : {CMYK, RGB}) {
        std::string const values = std::string("1e400 -1e400 nan") + (colorSpace == CMYK ? " 1e300" : "");
        RulerChart const chart(entriesOf(colorSpace, {values}), {1, 1});
        DrawnSheet::Colour const colour = chart.drawn().lastRectangle().colour;
        ASSERT_EQ(colour.size(), colorSpace == CMYK ? 4u : 3u);
        EXPECT_GE(colour[0], 1);
        EXPECT_LE(colour[1], 0);
        EXPECT_EQ(colour[2], 0);
        std::string const bytes = bytesOf(chart.fileOf(1, "eps"));
        EXPECT_EQ(bytes.find("inf"), std::string::npos);
        EXPECT_EQ(bytes.find("nan"), std::string::npos);
        // The renderer treats such numbers as full ink or none: cyan or red, and black.
        Picture const picture =
            renderEps(chart.fileOf(1, "eps"), colorSpace, pixelsOf(chart.layout.getPageLayout().getSize()));
        EXPECT_THAT(picture.at(RealPos{21, 12.5}), colorSpace == CMYK
                                                       ? ElementsAre(255, 0, 0, 255)
                                                       : testing::Matcher<Picture::Pixel>(ElementsAre(255, 0, 0)));
    }
}

TEST(SheetDrawing, LimitsByteColoursTo0To255)
{
    EXPECT_THAT(onlyPixelOf(RGB, "300 -5 1e400"), ElementsAre(255, 0, 255));
    EXPECT_THAT(onlyPixelOf(CMYK, "300 -5 none 1e400"), ElementsAre(255, 0, 0, 255));
    EXPECT_THAT(onlyPixelOf(CMYK, "50 33.3333 0.39 99.9"), ElementsAre(127, 84, 0, 254));
}

TEST(SheetDrawing, FollowsTheEntrysOwnColourSpaceForItsPatchAndGaps)
{
    RulerChart chart(entriesOf(CMYK, {"0 0 0 50"}), {1, 1}, {0, 1});
    chart.layout.setColorSpace(RGB);
    DrawnSheet const sheet = chart.drawn();
    EXPECT_THAT(sheet.texts.at(0).colour, isColour(blackRgb));
    ASSERT_EQ(sheet.rectangles.size(), rectanglesBeforePatches + 3);
    EXPECT_EQ(sheet.rectangles.at(9).colour.size(), 4u);
    EXPECT_THAT(sheet.lastRectangle().colour, isColour({0, 0, 0, 0.5}));
}

TEST(SheetDrawing, DrawsInBlackRgbWithoutAColourSpace)
{
    RulerChart chart(entriesOf(RGB, {"1 2 3"}), {1, 1});
    chart.layout.setColorSpace(undefined);
    DrawnSheet const sheet = chart.drawn();
    for (DrawnSheet::Text const& text : sheet.texts)
        EXPECT_THAT(text.colour, isColour(blackRgb));
    for (std::size_t i = 0; i < rectanglesBeforePatches; ++i)
        EXPECT_THAT(sheet.rectangles.at(i).colour, isColour(blackRgb));
    EXPECT_THAT(sheet.lastRectangle().colour, isColour({1 / 255.0, 2 / 255.0, 3 / 255.0}));
    EXPECT_TRUE(chart.layout.writeOutputImagesTIFF(chart.folder.pathWithSlash()));
}

TEST(SheetDrawing, DrawsWhiteFillersWithoutInk)
{
    // Five patches take 2 x 3 cells.
    DrawnSheet const rgb = RulerChart(entriesOf(RGB, std::vector<std::string>(5, "9 9 9")), {2, 3}).drawn();
    DrawnSheet const cmyk = RulerChart(entriesOf(CMYK, std::vector<std::string>(5, "9 9 9 9")), {2, 3}).drawn();
    auto const countOf = [](DrawnSheet const& sheet, DrawnSheet::Colour const& colour) {
        return std::count_if(sheet.rectangles.begin(), sheet.rectangles.end(),
                             [&](auto const& drawn) { return drawn.colour == colour; });
    };
    EXPECT_EQ(countOf(rgb, {1, 1, 1}), 1);
    EXPECT_EQ(countOf(cmyk, {0, 0, 0, 0}), 1);
}

TEST(SheetDrawing, PaintsPatchesFromTheLastColumnAndRowOn)
{
    DrawnSheet const sheet = RulerChart(greyEntries(6), {2, 3}).drawn();
    ASSERT_EQ(sheet.rectangles.size(), rectanglesBeforePatches + 6);
    RealPos const places[] = {{26, 24.5}, {26, 16.5}, {26, 8.5}, {16, 24.5}, {16, 16.5}, {16, 8.5}};
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_THAT(sheet.rectangles.at(rectanglesBeforePatches + i).rect, isRect(places[i].x, places[i].y, 10, 8));
}

TEST(SheetDrawing, PaintsNoGapsWhereThereAreNone)
{
    EXPECT_EQ(RulerChart(greyEntries(6), {2, 3}).drawn().rectangles.size(), rectanglesBeforePatches + 6);
}

TEST(SheetDrawing, PaintsAPatchesGapsRightLeftAboveAndBelowBeforeThePatch)
{
    for (ColorSpace const colorSpace : {CMYK, RGB}) {
        RulerChart chart(entriesOf(colorSpace, {colorSpace == CMYK ? "1 1 1 1" : "1 1 1"}), {1, 1}, {2, 1});
        ColorEntry* const entry = chart.layout.getColorEntry({0, 0});
        nameGap(entry, Right, 0.1);
        nameGap(entry, Left, 0.3);
        nameGap(entry, Below, 0.2);
        nameGap(entry, Above, 0.4);
        DrawnSheet const sheet = chart.drawn();

        std::size_t const channels = colorSpace == CMYK ? 4 : 3;
        ASSERT_EQ(sheet.rectangles.size(), rectanglesBeforePatches + 5);
        auto const drawn = sheet.rectangles.begin() + rectanglesBeforePatches;
        expectRectangle(drawn[0], {26, 9.5, 2, 9}, DrawnSheet::Colour(channels, 0.1));
        expectRectangle(drawn[1], {14, 9.5, 2, 9}, DrawnSheet::Colour(channels, 0.3));
        expectRectangle(drawn[2], {16, 17.5, 12, 1}, DrawnSheet::Colour(channels, 0.2));
        expectRectangle(drawn[3], {16, 8.5, 12, 1}, DrawnSheet::Colour(channels, 0.4));
        expectRectangle(drawn[4], {16, 9.5, 10, 8},
                        DrawnSheet::Colour(channels, colorSpace == CMYK ? 0.01 : 1 / 255.0));
    }
}

TEST(SheetDrawing, PaintsOnlyTheGapsThatHaveAWidth)
{
    DrawnSheet const across = RulerChart(greyEntries(1), {1, 1}, {2, 0}).drawn();
    ASSERT_EQ(across.rectangles.size(), rectanglesBeforePatches + 3);
    EXPECT_THAT(across.rectangles.at(9).rect, isRect(26, 8.5, 2, 8));
    EXPECT_THAT(across.rectangles.at(10).rect, isRect(14, 8.5, 2, 8));

    DrawnSheet const along = RulerChart(greyEntries(1), {1, 1}, {0, 1}).drawn();
    ASSERT_EQ(along.rectangles.size(), rectanglesBeforePatches + 3);
    EXPECT_THAT(along.rectangles.at(9).rect, isRect(16, 17.5, 10, 1));
    EXPECT_THAT(along.rectangles.at(10).rect, isRect(16, 8.5, 10, 1));
}

TEST(SheetDrawing, PaintsGapsBlackBetweenLightPatchesAndWhiteBetweenDarkOnes)
{
    // Paper is beyond both ends of a column. Its mean with a dark grey of L* 40 is light. The mean of two such greys is
    // dark.
    DrawnSheet const light = RulerChart(entriesOf(RGB, {"250 250 250"}), {1, 1}, {0, 1}).drawn();
    EXPECT_THAT(light.rectangles.at(9).colour, isColour({0, 0, 0}));
    EXPECT_THAT(light.rectangles.at(10).colour, isColour({0, 0, 0}));

    DrawnSheet const dark = RulerChart(entriesOf(CMYK, {"0 0 0 80", "0 0 0 85"}), {1, 2}, {0, 1}).drawn();
    ASSERT_EQ(dark.rectangles.size(), rectanglesBeforePatches + 6);
    expectRectangle(dark.rectangles.at(9), {16, 26.5, 10, 1}, blackCmyk);
    expectRectangle(dark.rectangles.at(10), {16, 17.5, 10, 1}, {0, 0, 0, 0});
    expectRectangle(dark.rectangles.at(12), {16, 17.5, 10, 1}, {0, 0, 0, 0});
    expectRectangle(dark.rectangles.at(13), {16, 8.5, 10, 1}, blackCmyk);
}

TEST(SheetDrawing, CutsAClippedSheetDownToContentBordersAndMargins)
{
    RulerChart chart(greyEntries(2), {4, 3}, {0, 1});
    chart.layout.setClipToContent(true);
    DrawnSheet const sheet = chart.drawn();

    // Two patches narrow a page of 4 x 3 cells to 1 x 3 and then shorten it to 1 x 2. Labels take 16 mm at the left, 2
    // at the right, 5 above and 3 below, the ruler 12.5 above and 6.5 below.
    EXPECT_NEAR(sheet.page.width, (10 + 18) * 72 / 25.4, asPrinted);
    EXPECT_NEAR(sheet.page.height, (18 + 8 + 19) * 72 / 25.4, asPrinted);
    EXPECT_THAT(sheet.rectangles.at(0).rect, isRect(16, 9.5 - 0.5, 10, 0.5));
    EXPECT_THAT(sheet.lastRectangle().rect, isRect(16, 9.5, 10, 8));
    EXPECT_NEAR(sheet.texts.at(0).position.y, 9.5 + 18 + 12.5 + 1.2, asPrinted);

    Picture const picture = chart.painted();
    EXPECT_EQ(picture.width, static_cast<int>(std::floor(28 * 300 / 25.4)));
    EXPECT_EQ(picture.height, static_cast<int>(std::floor(45 * 300 / 25.4)));
}

TEST(SheetDrawing, ClipsChartsOfASpotInstrumentToo)
{
    GrowingArray<ColorEntry> entries = greyEntries(1);
    ChartLayout chart = chartOf(entries, instrument(tableSpot), paper(a4Portrait), {6, 6});
    chart.computeLayout(1, 0);
    chart.setName(String("Spot"));
    chart.setClipToContent(true);
    TemporaryFolder const folder;
    chart.writeOutputImagesEPS(folder.pathWithSlash());
    ASSERT_THAT(filesIn(folder.path()), ElementsAre("Spot_001.eps"));
    DrawnSheet const sheet = readSheet(folder.path() / "Spot_001.eps");

    // One patch without gap, for the spot instrument keeps its own: 16 and 2 mm in x, 2 and 6 in y.
    EXPECT_NEAR(sheet.page.width, (6 + 18) * 72 / 25.4, asPrinted);
    EXPECT_NEAR(sheet.page.height, (6 + 8) * 72 / 25.4, asPrinted);
    EXPECT_THAT(sheet.lastRectangle().rect, isRect(16, 2, 6, 6));
    expectText(sheet.texts.at(0), "A", {16 + 1 + 3 - 2.4, 2 + 6 + 1.2}, blackRgb);
}

TEST(SheetDrawing, ClippingDoesNotChangeTheLayout)
{
    RulerChart chart(greyEntries(5), {2, 2}, {0, 1});
    chart.drawn();
    std::string const unclipped = bytesOf(chart.fileOf(1, "eps"));
    OutputPage const before = chart.sheet();

    chart.layout.setClipToContent(true);
    chart.drawn();
    chart.painted();
    EXPECT_NE(bytesOf(chart.fileOf(1, "eps")), unclipped);
    EXPECT_EQ(chart.sheet().getSize(), before.getSize());
    EXPECT_EQ(chart.sheet().getContentRect(), before.getContentRect());
    EXPECT_EQ(chart.sheet().getOrigin(), before.getOrigin());
    EXPECT_EQ(chart.sheet().getCoordRect(), before.getCoordRect());

    chart.layout.setClipToContent(false);
    chart.drawn();
    EXPECT_EQ(bytesOf(chart.fileOf(1, "eps")), unclipped);
}

TEST(SheetDrawing, WritesTheSameBytesUnderADecimalCommaLocale)
{
    RulerChart const chart(entriesOf(CMYK, {"12.5 0.25 1e1 0", "0 0 0 99.5"}), {2, 1}, {0, 0.5});
    chart.drawn();
    std::string const sheet = bytesOf(chart.fileOf(1, "eps"));
    DecimalCommaLocale const german;
    ASSERT_TRUE(german.isInForce());
    EXPECT_TRUE(chart.layout.writeOutputImagesEPS(chart.folder.pathWithSlash()));
    EXPECT_EQ(bytesOf(chart.fileOf(1, "eps")), sheet);
}

TEST(SheetDrawing, DrawsACrossOfTwoBarsAroundItsPlace)
{
    TemporaryFolder const folder;
    {
        EPSFile file(folder.pathOf("cross.eps"), {100, 100});
        file.setRGB(1, 0, 0);
        OutputPage::drawEPSCross(&file, {10, 20});
    }
    DrawnSheet const drawn = readSheet(folder.path() / "cross.eps");
    ASSERT_EQ(drawn.rectangles.size(), 2u);
    expectRectangle(drawn.rectangles.at(0), {8.5, 19.75, 3, 0.5}, redRgb);
    expectRectangle(drawn.rectangles.at(1), {9.75, 18.5, 0.5, 3}, redRgb);

    {
        TIFFFile file(folder.pathOf("cross.tif"), {20, 30});
        file.setColorSpace(RGB);
        file.setResolution(300);
        file.startPage("");
        file.setRGB(1, 0, 0);
        OutputPage::drawTIFFCross(&file, {10, 20});
        file.endPage();
    }
    Picture const painted = readTiff(folder.path() / "cross.tif");
    for (RealPos const bar : {RealPos{8.6, 20}, {11.4, 20}, {10, 18.6}, {10, 21.4}, {10, 20}})
        EXPECT_THAT(painted.at(bar), ElementsAre(255, 0, 0));
    for (RealPos const corner : {RealPos{8.6, 18.6}, {11.4, 18.6}, {8.6, 21.4}, {11.4, 21.4}, {8.3, 20}, {10, 21.7}})
        EXPECT_THAT(painted.at(corner), ElementsAre(0, 0, 0));
}

TEST(SheetDrawing, FillsATiffSheetOf300DotsPerInchWithWhite)
{
    for (ColorSpace const colorSpace : {CMYK, RGB}) {
        RulerChart const chart(entriesOf(colorSpace, {colorSpace == CMYK ? "0 0 0 100" : "0 0 0"}), {1, 1});
        Picture const picture = chart.painted();
        // 1.1 columns of 10 mm and 18 mm; 1.1 rows of 8 mm and 27 mm.
        ASSERT_EQ(picture.width, 342);  // 29 * 300 / 25.4 = 342.52
        ASSERT_EQ(picture.height, 422); // 35.8 * 300 / 25.4 = 422.83
        Picture::Pixel const white = colorSpace == CMYK ? Picture::Pixel{0, 0, 0, 0} : Picture::Pixel{255, 255, 255};
        EXPECT_EQ(picture.at(0, 0), white);
        EXPECT_EQ(picture.at(341, 0), white);
        EXPECT_EQ(picture.at(0, 421), white);
        EXPECT_EQ(picture.at(341, 421), white);
    }
}
