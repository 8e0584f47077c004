// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PreviewPictures.h"
#include "WindowTest.h"

/// Pixels of the preview where the projection puts the chart into 500 x 280 pixels, with OpenGL and without. Pixels
/// count from the top left, as (px right of the view's left edge, px below its top edge).
class PreviewPixelsTest : public WindowTest
{
    Q_OBJECT

    ChartColors const colors;
    std::unique_ptr<PreviewViews> views;

    void compare(PreviewChart const& chart, std::vector<Probe> const& probes)
    {
        QImage const drawn = views->openGLPicture(&chart.layout, {500, 280});
        QCOMPARE(drawn.size(), QSize(500, 280));
        QCOMPARE(mistakesIn(drawn, probes), QString());
        QImage const painted = views->paintedPicture(&chart.layout, {500, 280});
        QCOMPARE(painted.size(), QSize(500, 280));
        QCOMPARE(mistakesIn(painted, probes), QString());
    }

private slots:
    void initTestCase() { views = std::make_unique<PreviewViews>(); }
    void cleanupTestCase() { views.reset(); }

    // 317 mm are 280 px: 0.88328 px a mm. The sheet spans 157.26 to 342.74 across and 8.83 to 271.17 down, the middle
    // of patch (0, 0) lies 26 mm and 28.5 mm inside it at (180.22, 245.99), and the patches stand 8.83 px apart.
    void showsAPortraitSheetBetweenTheUpperAndTheLowerEdge()
    {
        PreviewChart const chart(colorfulEntries(100), standardRuler, paper(a4Portrait));
        compare(chart, {{"corner", 0, 0, middleGrey},
                        {"opposite corner", 499, 279, middleGrey},
                        {"above the sheet", 250, 5, middleGrey},
                        {"below the sheet", 250, 275, middleGrey},
                        {"left of the sheet", 153, 140, middleGrey},
                        {"right of the sheet", 346, 140, middleGrey},
                        {"left outline", 157, 140, outlineGrey},
                        {"right outline", 342, 140, outlineGrey},
                        {"upper outline", 250, 8, outlineGrey},
                        {"lower outline", 250, 271, outlineGrey},
                        {"left margin", 165, 140, white},
                        {"right of the patches", 250, 140, white},
                        {"upper margin", 190, 20, white},
                        {"lower margin", 190, 262, white},
                        {"first patch", 180, 245, chart.colorAt(0, 0)},
                        {"above the first", 180, 237, chart.colorAt(0, 1)},
                        {"right of the first", 189, 245, chart.colorAt(1, 0)},
                        {"last patch", 206, 34, chart.colorAt(3, 24)}});
    }

    // 230 mm are 280 px: 1.21739 px a mm. The sheet spans 69.22 to 430.78 and 12.17 to 267.83. 17 patches fit above
    // each other, and so there are 6 columns; patch (0, 0) has its middle 26 mm and 18.5 mm inside at (100.87, 245.30).
    void showsALandscapeSheetBetweenTheUpperAndTheLowerEdge()
    {
        PreviewChart const chart(colorfulEntries(100), standardRuler, paper(a4Landscape));
        compare(chart, {{"above the sheet", 250, 8, middleGrey},
                        {"below the sheet", 250, 272, middleGrey},
                        {"left of the sheet", 65, 140, middleGrey},
                        {"right of the sheet", 434, 140, middleGrey},
                        {"left outline", 69, 140, outlineGrey},
                        {"right outline", 430, 140, outlineGrey},
                        {"upper outline", 250, 12, outlineGrey},
                        {"lower outline", 250, 267, outlineGrey},
                        {"left margin", 80, 140, white},
                        {"right of the patches", 300, 140, white},
                        {"first patch", 100, 245, chart.colorAt(0, 0)},
                        {"last patch", 161, 50, chart.colorAt(5, 16)}});
    }

    // 690 mm are 500 px: 0.72464 px a mm. The sheets begin at 7.25, 173.91 and 340.58, are 152.17 px wide, and span
    // 32.39 to 247.61 down. On each, the first of 14 x 25 patches has its middle at (18.84, -20.65) from its lower left
    // corner, and the patches stand 7.246 px apart.
    void showsSeveralChartPagesBetweenTheLeftAndTheRightEdge()
    {
        PreviewChart const chart(colorfulEntries(1000), standardRuler, paper(a4Portrait));
        compare(chart, {{"left of all", 3, 140, middleGrey},
                        {"right of all", 496, 140, middleGrey},
                        {"above", 250, 20, middleGrey},
                        {"below", 250, 260, middleGrey},
                        {"between the first two", 166, 140, middleGrey},
                        {"between the last two", 333, 140, middleGrey},
                        {"first outline", 7, 140, outlineGrey},
                        {"first sheet's right outline", 159, 140, outlineGrey},
                        {"second sheet's left outline", 173, 140, outlineGrey},
                        {"last outline", 492, 140, outlineGrey},
                        {"first sheet", 140, 140, white},
                        {"second sheet", 307, 140, white},
                        {"third sheet", 473, 140, white},
                        {"first sheet's first patch", 26, 226, chart.colorAt(0, 0)},
                        {"second sheet's first patch", 192, 226, chart.colorAt(14, 0)},
                        {"third sheet's first patch", 359, 226, chart.colorAt(28, 0)},
                        {"last patch", 453, 53, chart.colorAt(41, 24)}});
    }

    // 0.88328 px a mm again; the scan table's two sheets span 64.51 to 250 and 250 to 435.49. The only patch is 21 mm
    // and 17 mm inside the first one: 83.06 to 91.89 across, 247.32 to 256.15 down.
    void showsASheetWithoutPatchesInLightGrey()
    {
        PreviewChart const chart(entriesOf(RGB, {"255 0 0"}), tableSpot, paper(a4Portrait));
        compare(chart, {{"left of the sheets", 60, 140, middleGrey},
                        {"right of the sheets", 440, 140, middleGrey},
                        {"left outline", 64, 140, outlineGrey},
                        {"right outline", 435, 140, outlineGrey},
                        {"sheet with a patch", 160, 140, white},
                        {"patch", 87, 251, chart.colorAt(0, 0)},
                        {"right of the patch", 96, 251, white},
                        {"sheet without patches", 340, 140, lightGrey},
                        {"where it could have some", 275, 251, lightGrey}});
        QVERIFY(isAlike(chart.colorAt(0, 0).rgb(), qRgb(255, 0, 0)));
    }

    // 275 mm are 280 px: 1.01818 px a mm. 8 x 3 cards of 54.98 x 86.55 px stand between 30.07 and 469.93 across and
    // above 269.82. A sheet's first patch has its middle 21 mm inside the first card, but 27 mm inside the second one
    // and 23 mm inside the eighth one, since all sheets share one grid; 7 mm up each of them.
    void showsTheSheetsOfAChartPageSideBySideAndAboveEachOther()
    {
        PreviewChart const chart(colorfulEntries(23 * 21), tableSpot, paper(creditCardPortrait));
        compare(chart, {{"left of the cards", 26, 140, middleGrey},
                        {"right of the cards", 474, 140, middleGrey},
                        {"first outline", 30, 140, outlineGrey},
                        {"last outline", 469, 140, outlineGrey},
                        {"first card", 38, 229, white},
                        {"second card", 93, 229, white},
                        {"card above the first", 38, 142, white},
                        {"first card's first patch", 51, 262, chart.colorAt(0, 0)},
                        {"second card's first patch", 112, 262, chart.colorAt(6, 0)},
                        {"last card's first patch", 438, 89, chart.colorAt(38, 17)}});
    }

    // 74 mm are 280 px: 3.78378 px a mm. The sheet spans 89.19 to 410.81 and 37.84 to 242.16; the three patches stand
    // 16 to 26 mm inside it, and 9 mm above each other from 9.5 mm on, 1 mm of it gap.
    void paintsAGapInThePatchsColor()
    {
        PreviewChart const chart(entriesOf(RGB, {"0 0 0", "120 120 120", "200 200 200"}), standardRuler,
                                 paper(creditCardLandscape), {10, 8}, 1);
        compare(chart, {{"outline", 89, 140, outlineGrey},
                        {"below the patches", 168, 209, white},
                        {"first patch", 168, 191, chart.colorAt(0, 0)},
                        {"gap above it", 168, 174, chart.colorAt(0, 0)},
                        {"second patch", 168, 157, chart.colorAt(0, 1)},
                        {"gap above it", 168, 140, chart.colorAt(0, 1)},
                        {"third patch", 168, 123, chart.colorAt(0, 2)},
                        {"gap above it", 168, 106, chart.colorAt(0, 2)},
                        {"above the patches", 168, 101, white},
                        {"left of the patches", 147, 157, white},
                        {"right of the patches", 190, 157, white}});
    }

    // The portrait sheet above, cut to 21 + 40 + 21 mm: it ends at 229.68 across.
    void clipsASheetToItsContentWithEqualBorders()
    {
        PreviewChart chart(colorfulEntries(100), standardRuler, paper(a4Portrait));
        chart.layout.setClipToContent(true);
        compare(chart, {{"left outline", 157, 140, outlineGrey},
                        {"left margin", 165, 140, white},
                        {"right margin", 220, 140, white},
                        {"right outline", 229, 140, outlineGrey},
                        {"paper that is left out", 240, 140, middleGrey},
                        {"first patch", 180, 245, chart.colorAt(0, 0)},
                        {"last patch", 206, 34, chart.colorAt(3, 24)}});
    }

    // The table's two sheets above, cut to 52 x 44 mm and, without a column, 42 x 44 mm: they end at 110.44 and 287.10
    // across and begin at 232.30 down.
    void clipsEverySheetOfAChartPageByItself()
    {
        PreviewChart chart(entriesOf(RGB, {"255 0 0"}), tableSpot, paper(a4Portrait));
        chart.layout.setClipToContent(true);
        compare(chart, {{"patch", 87, 251, chart.colorAt(0, 0)},
                        {"right and above the patch", 100, 240, white},
                        {"upper outline", 87, 232, outlineGrey},
                        {"right outline", 110, 250, outlineGrey},
                        {"right of the sheet", 120, 250, middleGrey},
                        {"above the sheet", 87, 222, middleGrey},
                        {"sheet without patches", 270, 250, lightGrey},
                        {"its right outline", 287, 250, outlineGrey},
                        {"right of it", 300, 250, middleGrey}});
    }

    void showsAColorBrighterThanTheDisplaysWhiteAsWhite()
    {
        PreviewChart const chart(entriesOf(RGB, {"600 600 600"}), longRuler, paper(creditCardLandscape), {10, 8});
        QVERIFY(chart.layout.getColorEntry({0, 0})->getDisplayColor()[1] > 1.1f);
        compare(chart, {{"patch", 168, 191, white}});
    }
};

QTEST_MAIN(PreviewPixelsTest)
#include "PreviewPixelsTest.moc"
