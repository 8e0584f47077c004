// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PreviewPictures.h"
#include "TestWindow.h"
#include "WindowTest.h"
#include "support/TemporaryFolder.h"

#include <limits>

namespace
{

constexpr double infinity = std::numeric_limits<double>::infinity();

/// A table of different colours.
std::string tableOf(int count)
{
    std::string table = "RGB\n";
    for (int i = 0; i < count; ++i)
        table += std::to_string(i % 256) + " " + std::to_string(i / 256 % 256) + " " + std::to_string(i % 7) + "\n";
    return table;
}

} // namespace

/// Charts and views of extreme sizes.
class PreviewLimitsTest : public WindowTest
{
    Q_OBJECT

    ChartColors const colors;
    std::unique_ptr<PreviewViews> views;

private slots:
    void initTestCase() { views = std::make_unique<PreviewViews>(); }
    void cleanupTestCase() { views.reset(); }

    void drawsIntoAnEmptyView()
    {
        PreviewChart const chart(colorfulEntries(4), standardRuler, paper(a4Portrait));
        for (QSize const size : {QSize(0, 0), QSize(0, 280), QSize(500, 0)})
            QVERIFY(views->paintedPicture(&chart.layout, size).isNull());

        OpenGLView view;
        view.setChartLayout(&chart.layout);
        view.setMinimumSize(0, 0);
        view.resize(500, 280);
        view.show();
        QVERIFY(attend(&view));
        for (QSize const size : {QSize(0, 280), QSize(500, 0), QSize(0, 0)}) {
            view.resize(size);
            view.updateGL();
        }
        view.resize(500, 280);
        QVERIFY(isAlike(view.grabFramebuffer().pixel(250, 140), white.rgb()));
    }

    void drawsOnePixel()
    {
        PreviewChart const chart(colorfulEntries(4), standardRuler, paper(a4Portrait));
        QImage const picture = views->paintedPicture(&chart.layout, {1, 1});
        QCOMPARE(picture.size(), QSize(1, 1));
        QVERIFY(!isEvenGrey(picture));
    }

    void showsAnEvenGreyForAnEndlessSheet()
    {
        for (double const endless : {infinity, 1e300, 1e39}) {
            PreviewChart const chart(colorfulEntries(4), standardRuler, sheetOf({endless, 297}, {0, 0, 100, 200}));
            QVERIFY(chart.layout.hasSomethingToOutpot());
            QVERIFY(isEvenGrey(views->openGLPicture(&chart.layout, {500, 280})));
            QVERIFY(isEvenGrey(views->paintedPicture(&chart.layout, {500, 280})));
        }
    }

    // 10 km of paper show as a line. Patches of 1 cm are too small to show.
    void showsAVeryLongSheetAsALine()
    {
        PreviewChart const chart(colorfulEntries(4), standardRuler, sheetOf({1e7, 297}, {0, 0, 100, 200}));
        for (QImage const& picture :
             {views->openGLPicture(&chart.layout, {500, 280}), views->paintedPicture(&chart.layout, {500, 280})}) {
            QVERIFY(!isAlike(picture.pixel(250, 140), middleGrey.rgb()) ||
                    !isAlike(picture.pixel(250, 139), middleGrey.rgb()));
            QVERIFY(isAlike(picture.pixel(250, 142), middleGrey.rgb()));
            QVERIFY(isAlike(picture.pixel(250, 137), middleGrey.rgb()));
        }
    }

    void showsTwentyThousandPatches()
    {
        PreviewChart const chart(colorfulEntries(20000), tableSpot, paper(a3Landscape), {6, 6});
        QVERIFY(chart.layout.getChartPages()->getCount() > 1);
        for (QImage const& picture :
             {views->openGLPicture(&chart.layout, {500, 280}), views->paintedPicture(&chart.layout, {500, 280})}) {
            QVERIFY(!picture.isNull());
            QVERIFY(isAlike(picture.pixel(0, 0), middleGrey.rgb()));
            QVERIFY(!isEvenGrey(picture));
        }
    }

    // One patch on each sheet, 20 mm apart: each chart page is less than a tenth of a pixel wide and high.
    void takesTwentyThousandChartPages()
    {
        PreviewChart const chart(colorfulEntries(20000), standardRuler, rulerSheetFor({1, 1}, {10, 10}));
        QCOMPARE(chart.layout.getChartPages()->getCount(), 20000ull);
        for (QImage const& picture :
             {views->openGLPicture(&chart.layout, {500, 280}), views->paintedPicture(&chart.layout, {500, 280})}) {
            QVERIFY(isEvenGrey(picture.copy(0, 0, 500, 138)));
            QVERIFY(isEvenGrey(picture.copy(0, 142, 500, 138)));
        }
    }

    void survivesEverySheetSizeThatCanBeTyped()
    {
        TemporaryFolder const folder;
        String const table = folder.write("greys.txt", tableOf(300));
        TestWindow window;
        window.read(table);
        for (char const* device : measurementlayout_strings) {
            window.chooseDevice(device);
            for (char const* paperName : {"A4 Portrait", "Credit Card Landscape"}) {
                for (char const* name : {"pageWidthEdit", "pageHeightEdit", "marginTopEdit", "marginRightEdit",
                                         "marginBottomEdit", "marginLeftEdit"}) {
                    for (char const* text : {"inf", "1e300", "1e39", "1e9", "0.001", "1e-300", "nan"}) {
                        window.choosePaper(paperName);
                        enter(window.edit(name), text);
                        QVERIFY(!window.preview()->grab().isNull());
                    }
                }
            }
        }
        window.choosePaper("A4 Portrait");
        QVERIFY(window.button("createButton")->isEnabled());
        QVERIFY(isAlike(window.preview()->grab().toImage().pixel(0, 0), middleGrey.rgb()));
    }
};

QTEST_MAIN(PreviewLimitsTest)
#include "PreviewLimitsTest.moc"
