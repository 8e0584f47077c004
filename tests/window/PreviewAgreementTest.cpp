// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PreviewDrawing.h"
#include "PreviewPictures.h"
#include "WindowTest.h"

#include <algorithm>
#include <iterator>

namespace
{

/// Marks the pixels at the edges of shapes, where the two ways to draw may differ.
class EdgeMask
{
public:
    explicit EdgeMask(QSize picture) : size(picture), marks(static_cast<std::size_t>(size.width() * size.height())) {}

    void begin(RealSize, PreviewColor) {}
    void show(RealRect const& shown) { plane = shown; }
    void fill(RealRect const& rect, PreviewColor) { markEdges(rect); }
    void outline(RealRect const& rect, PreviewColor) { markEdges(rect); }

    bool isEdge(int x, int y) const { return marks[indexOf(x, y)]; }

private:
    std::size_t indexOf(int x, int y) const { return static_cast<std::size_t>(y * size.width() + x); }

    void markEdges(RealRect const& rect)
    {
        int const left = column(rect.x);
        int const right = column(rect.x + rect.width);
        int const top = row(rect.y + rect.height);
        int const bottom = row(rect.y);
        mark(left, left, top, bottom);
        mark(right, right, top, bottom);
        mark(left, right, top, top);
        mark(left, right, bottom, bottom);
    }

    // The pixel to the right of the pixel border nearest to a place, or below it.
    int column(double x) const { return qRound((x - plane.x) / plane.width * size.width()); }
    int row(double y) const { return qRound((plane.y + plane.height - y) / plane.height * size.height()); }

    // Both pixels at the border.
    void mark(int left, int right, int top, int bottom)
    {
        for (int y = std::max(top - 1, 0); y <= std::min(bottom, size.height() - 1); ++y)
            for (int x = std::max(left - 1, 0); x <= std::min(right, size.width() - 1); ++x)
                marks[indexOf(x, y)] = true;
    }

    QSize const size;
    RealRect plane;
    std::vector<bool> marks;
};

/// The differences of two pictures of a chart, without the pixels at edges.
struct Comparison
{
    int pixels = 0;
    int differing = 0;
    int patches = 0; ///< pixels that are none of the preview's greys
};

Comparison compare(QImage const& a, QImage const& b, ChartLayout const& chart)
{
    EdgeMask mask(a.size());
    paintChart(mask, {static_cast<double>(a.width()), static_cast<double>(a.height())}, chart);
    Comparison result;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (mask.isEdge(x, y))
                continue;
            QRgb const color = a.pixel(x, y);
            ++result.pixels;
            result.differing += !isAlike(color, b.pixel(x, y));
            result.patches += qRed(color) != qGreen(color);
        }
    }
    return result;
}

} // namespace

/// The preview with OpenGL and without, pixel by pixel.
class PreviewAgreementTest : public WindowTest
{
    Q_OBJECT

    ChartColors const colors;
    std::unique_ptr<PreviewViews> views;

    void compareViews(ChartLayout const& chart, QSize size)
    {
        QImage const drawn = views->openGLPicture(&chart, size);
        QImage const painted = views->paintedPicture(&chart, size);
        QVERIFY(!drawn.isNull());
        QCOMPARE(drawn.size(), painted.size());
        Comparison const result = compare(drawn, painted, chart);
        QVERIFY(result.pixels > drawn.width() * drawn.height() / 4);
        QVERIFY(result.patches > 0);
        QCOMPARE(result.differing, 0);
    }

private slots:
    void initTestCase() { views = std::make_unique<PreviewViews>(); }
    void cleanupTestCase() { views.reset(); }

    void isTheSamePictureForEachDeviceAndPaper_data()
    {
        QTest::addColumn<int>("device");
        QTest::addColumn<int>("sheet");
        for (int device = tableSpot; device <= longRuler; ++device)
            for (int sheet = a4Portrait; sheet <= creditCardLandscape; ++sheet)
                QTest::addRow("%s on %s", measurementlayout_strings[device], pagelayoutpreset_strings[sheet])
                    << device << sheet;
    }

    void isTheSamePictureForEachDeviceAndPaper()
    {
        QFETCH(int, device);
        QFETCH(int, sheet);
        for (int const count : {1, 24, 60}) {
            for (float const gap : {0.0f, 1.0f}) {
                PreviewChart chart(colorfulEntries(count), static_cast<MeasurementLayoutPreset>(device),
                                   paper(static_cast<PageLayoutPreset>(sheet)), {10, 10}, gap);
                for (bool const isClipped : {false, true}) {
                    chart.layout.setClipToContent(isClipped);
                    compareViews(chart.layout, {500, 280});
                }
            }
        }
    }

    void isTheSamePictureForManyPatches()
    {
        PreviewChart const onTable(colorfulEntries(1617), tableSpot, paper(a3Landscape), {6, 6});
        compareViews(onTable.layout, {1000, 800});
        PreviewChart const onRuler(colorfulEntries(1617), longRuler, paper(a3Portrait), {7, 8});
        compareViews(onRuler.layout, {1200, 900});
    }

    void isTheSamePictureInViewsOfAllProportions()
    {
        PreviewChart const chart(colorfulEntries(700), standardRuler, paper(a4Portrait));
        for (QSize const size : {QSize(500, 280), QSize(332, 216), QSize(300, 700), QSize(1100, 112)})
            compareViews(chart.layout, size);
    }
};

QTEST_MAIN(PreviewAgreementTest)
#include "PreviewAgreementTest.moc"
