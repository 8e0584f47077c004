// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PreviewPictures.h"
#include "TestWindow.h"
#include "WindowTest.h"
#include "support/TemporaryFolder.h"

#include <QRect>
#include <QRectF>

namespace
{

bool isBackground(QRgb color)
{
    return isAlike(color, middleGrey.rgb());
}

/// The smallest rectangle that holds every pixel that is not background.
QRect drawnPart(QImage const& picture)
{
    QRect part;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (!isBackground(picture.pixel(x, y)))
                part |= QRect(x, y, 1, 1);
    return part;
}

/// Whether the drawn part of a picture is the given part of 500 x 280, to within one pixel of the picture.
bool fills(QImage const& picture, QRectF const& expected)
{
    double const scaleX = picture.width() / 500.0;
    double const scaleY = picture.height() / 280.0;
    QRect const part = drawnPart(picture);
    auto const isNear = [](int pixel, double place) { return qAbs(pixel - place) <= 1; };
    return isNear(part.left(), expected.left() * scaleX) && isNear(part.right() + 1, expected.right() * scaleX) &&
           isNear(part.top(), expected.top() * scaleY) && isNear(part.bottom() + 1, expected.bottom() * scaleY);
}

} // namespace

/// The preview on a screen of the density that is set in the environment.
class PreviewScaleTest : public WindowTest
{
    Q_OBJECT

    ChartColors const colors;
    double const density = qEnvironmentVariable("QT_SCALE_FACTOR", "1").toDouble();
    std::unique_ptr<PreviewViews> views;

    void compare(ChartLayout const* chart, QRectF const& expected)
    {
        for (QImage const& picture :
             {views->openGLPicture(chart, {500, 280}), views->paintedPicture(chart, {500, 280})}) {
            QVERIFY(qAbs(picture.devicePixelRatio() - density) < 0.001);
            QCOMPARE(picture.size(), QSize(qRound(500 * density), qRound(280 * density)));
            QVERIFY(fills(picture, expected));
        }
    }

private slots:
    void initTestCase() { views = std::make_unique<PreviewViews>(); }
    void cleanupTestCase() { views.reset(); }

    // 210 x 297 mm, 297 of 317 mm of the view's height.
    void fillsTheSameShareOfTheViewsHeight()
    {
        PreviewChart const chart(colorfulEntries(100), standardRuler, paper(a4Portrait));
        double const scale = 280.0 / 317;
        compare(&chart.layout, {250 - 105 * scale, 10 * scale, 210 * scale, 297 * scale});
    }

    // Three times 210 mm with 20 mm between them, 670 of 690 mm of the view's width.
    void fillsTheSameShareOfTheViewsWidth()
    {
        PreviewChart const chart(colorfulEntries(1000), standardRuler, paper(a4Portrait));
        double const scale = 500.0 / 690;
        compare(&chart.layout, {10 * scale, 140 - 148.5 * scale, 670 * scale, 297 * scale});
    }

    void showsEachPatchAtTheSamePlaceOfTheView()
    {
        PreviewChart const chart(colorfulEntries(100), standardRuler, paper(a4Portrait));
        auto const at = [this](double place) { return static_cast<int>(place * density); };
        std::vector<Probe> const probes{{"first patch", at(180.22), at(245.99), chart.colorAt(0, 0)},
                                        {"right of the first", at(189.05), at(245.99), chart.colorAt(1, 0)},
                                        {"above the first", at(180.22), at(237.16), chart.colorAt(0, 1)},
                                        {"last patch", at(206.72), at(34.01), chart.colorAt(3, 24)}};
        QCOMPARE(mistakesIn(views->openGLPicture(&chart.layout, {500, 280}), probes), QString());
        QCOMPARE(mistakesIn(views->paintedPicture(&chart.layout, {500, 280}), probes), QString());
    }

    // Twelve dots of 3 pixels around the view's middle, 25 pixels away.
    void showsTheRingOfDotsAsLarge() { compare(nullptr, {250 - 26.5, 140 - 26.5, 53, 53}); }

    void showsTheChartInItsPlaceInTheWindow()
    {
        TemporaryFolder const folder;
        TestWindow window;
        window.chooseDevice("VT-30 Standard Ruler");
        window.read(folder.write("red.txt", "RGB\n255 0 0\n"));
        QImage const picture = window.grab().toImage();
        QCOMPARE(picture.size(), QSize(qRound(540 * density), qRound(600 * density)));
        QRect const place(qRound(20 * density), qRound(300 * density), qRound(500 * density), qRound(280 * density));
        double const scale = 280.0 / 317;
        QVERIFY(fills(picture.copy(place), {250 - 105 * scale, 10 * scale, 210 * scale, 297 * scale}));
    }
};

QTEST_MAIN(PreviewScaleTest)
#include "PreviewScaleTest.moc"
