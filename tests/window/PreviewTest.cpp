// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PaintedView.h"
#include "TestWindow.h"
#include "WindowTest.h"
#include "support/TemporaryFolder.h"

#include <QImage>

namespace
{

struct CountingView : OpenGLView
{
    int paints = 0;

protected:
    void paintGL() override
    {
        ++paints;
        OpenGLView::paintGL();
    }
};

bool isGrey(QColor const& color)
{
    return qAbs(color.red() - 128) <= 1 && color.red() == color.green() && color.green() == color.blue();
}

/// The middle of 3 x 3 white pixels on grey, at each of twelve places around the middle of 500 x 280 pixels.
bool showsTheRing(QImage const& picture)
{
    // 25 px times the cosine of 0, 30, 60 and 90 degrees.
    int const across[] = {25, 22, 13, 0};
    for (int i = 0; i < 12; ++i) {
        int const quarter = i % 6;
        int const x = (quarter <= 3 ? across[quarter] : -across[6 - quarter]) * (i < 6 ? 1 : -1);
        int const y = (quarter <= 3 ? across[3 - quarter] : across[quarter - 3]) * (i < 6 ? 1 : -1);
        if (picture.pixelColor(250 + x, 140 - y) != QColor(Qt::white))
            return false;
    }
    return isGrey(picture.pixelColor(250, 140)) && isGrey(picture.pixelColor(0, 0)) &&
           isGrey(picture.pixelColor(250 + 28, 140)) && isGrey(picture.pixelColor(499, 279));
}

} // namespace

class PreviewTest : public WindowTest
{
    Q_OBJECT

private slots:
    void findsTheOpenGLThatItNeeds() { QVERIFY(OpenGLView::isUsable()); }

    void showsARingOfDotsUntilItIsGivenALayout()
    {
        OpenGLView view;
        view.resize(500, 280);
        QVERIFY(isShown(view));
        QVERIFY(showsTheRing(view.grabFramebuffer()));
    }

    void showsTheSameRingWithoutOpenGL()
    {
        PaintedView view;
        view.resize(500, 280);
        QVERIFY(showsTheRing(view.grab().toImage()));
    }

    void showsAnEvenGreyForALayoutWithoutPatches()
    {
        ChartLayout const layout;
        OpenGLView view;
        view.resize(500, 280);
        view.setChartLayout(&layout);
        QVERIFY(isShown(view));
        QImage const picture = view.grabFramebuffer();
        QVERIFY(isGrey(picture.pixelColor(275, 140)));
        QVERIFY(isGrey(picture.pixelColor(250, 140)));
    }

    void repaintsAtOnceWhenToldTo()
    {
        CountingView view;
        view.resize(500, 280);
        QVERIFY(isShown(view));
        QTRY_VERIFY(view.paints > 0);
        // After the frame that was painted last.
        QTest::qWait(100);

        ChartLayout const layout;
        int const before = view.paints;
        view.setChartLayout(&layout);
        QCoreApplication::processEvents();
        QCOMPARE(view.paints, before);
        view.updateGL();
        QCOMPARE(view.paints, before + 1);
    }

    void showsEveryChangeOfTheChart()
    {
        TemporaryFolder const folder;
        TestWindow window;
        window.chooseDevice("VT-30 Long Ruler");
        auto const middle = [&window] { return window.preview()->grab().toImage().pixelColor(250, 20); };
        QVERIFY(isGrey(middle()));
        window.read(folder.write("white.txt", "RGB\n255 255 255\n"));
        QCOMPARE(middle(), QColor(Qt::white));
        window.read(folder.pathOf("nowhere.txt"));
        QVERIFY(isGrey(middle()));
    }

private:
    static bool isShown(QWidget& view)
    {
        view.show();
        return attend(&view);
    }
};

QTEST_MAIN(PreviewTest)
#include "PreviewTest.moc"
