// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TestWindow.h"
#include "WindowTest.h"

#include <QWheelEvent>

namespace
{

/// Turns the mouse wheel above a widget by one notch, up or down.
void turnWheel(QWidget* widget, bool isAway)
{
    QPointF const middle = widget->rect().center();
    QWheelEvent event(middle, widget->mapToGlobal(middle), QPoint(), QPoint(0, isAway ? 120 : -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

} // namespace

/// The slider and the patch size.
class PatchSizeTest : public WindowTest
{
    Q_OBJECT

private slots:
    void staysAsItIsWhenTheDeviceChanges()
    {
        TestWindow window;
        drag(window.slider(), 6);
        QCOMPARE(window.text("patchSizeLabel"), QString("Patch size: 6 x 6 mm"));
        window.chooseDevice("VT-30 Standard Ruler");
        QCOMPARE(window.text("patchSizeLabel"), QString("Patch size: 6 x 6 mm"));
        QCOMPARE(window.slider()->value(), 6);
    }

    void isAtLeastTheSmallestSizeOfTheDevice_data()
    {
        QTest::addColumn<QString>("device");
        QTest::addColumn<int>("dragged");
        QTest::addColumn<QString>("size");
        QTest::addColumn<int>("slider");
        QTest::newRow("spot, large") << "GB+ Spot" << 15 << "15 x 15" << 15;
        QTest::newRow("spot, smallest") << "GB+ Spot" << 6 << "6 x 6" << 6;
        // Patches are square, and the slider stays where it was dragged to.
        QTest::newRow("spot, too small") << "GB+ Spot" << 3 << "6 x 6" << 3;
        QTest::newRow("table, large") << "GB+ Scan" << 9 << "9 x 9" << 9;
        QTest::newRow("table, narrow") << "GB+ Scan" << 7 << "7 x 8" << 7;
        QTest::newRow("table, too small") << "GB+ Scan" << 3 << "6 x 8" << 6;
        QTest::newRow("ruler, large") << "VT-30 Long Ruler" << 10 << "10 x 10" << 10;
        QTest::newRow("ruler, narrow") << "VT-30 Standard Ruler" << 7 << "7 x 8" << 7;
        QTest::newRow("ruler, too small") << "VT-30 Standard Ruler" << 5 << "7 x 8" << 7;
    }

    void isAtLeastTheSmallestSizeOfTheDevice()
    {
        QFETCH(QString, device);
        QFETCH(int, dragged);
        QFETCH(QString, size);
        QFETCH(int, slider);
        TestWindow window;
        window.chooseDevice(device);
        drag(window.slider(), dragged);
        QCOMPARE(window.text("patchSizeLabel"), "Patch size: " + size + " mm");
        QCOMPARE(window.slider()->value(), slider);
    }

    void changesOnlyWhenTheSliderIsDragged_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("value");
        QTest::newRow("right") << int(Qt::Key_Right) << 9;
        QTest::newRow("left") << int(Qt::Key_Left) << 7;
        QTest::newRow("up") << int(Qt::Key_Up) << 9;
        QTest::newRow("down") << int(Qt::Key_Down) << 7;
        QTest::newRow("page up") << int(Qt::Key_PageUp) << 15;
        QTest::newRow("page down") << int(Qt::Key_PageDown) << 3;
        QTest::newRow("home") << int(Qt::Key_Home) << 3;
        QTest::newRow("end") << int(Qt::Key_End) << 15;
    }

    void changesOnlyWhenTheSliderIsDragged()
    {
        QFETCH(int, key);
        QFETCH(int, value);
        TestWindow window;
        window.slider()->setFocus();
        QTest::keyClick(window.slider(), static_cast<Qt::Key>(key));
        QCOMPARE(window.slider()->value(), value);
        QCOMPARE(window.text("patchSizeLabel"), QString("Patch size: 8 x 8 mm"));
    }

    void doesNotFollowTheWheel()
    {
        for (bool const isAway : {true, false}) {
            TestWindow window;
            turnWheel(window.slider(), isAway);
            QVERIFY(isAway ? window.slider()->value() > 8 : window.slider()->value() < 8);
            QCOMPARE(window.text("patchSizeLabel"), QString("Patch size: 8 x 8 mm"));
        }
    }

    void doesNotFollowAClickOnTheGroove()
    {
        TestWindow window;
        QTest::mouseClick(window.slider(), Qt::LeftButton, {}, QPoint(95, 12));
        QVERIFY(window.slider()->value() > 8);
        QCOMPARE(window.text("patchSizeLabel"), QString("Patch size: 8 x 8 mm"));
    }

    // Each change: square patches do not move the slider, higher ones set it to their width.
    void doesNotMoveTheSliderForSquarePatches()
    {
        TestWindow window;
        QTest::keyClick(window.slider(), Qt::Key_Right);
        window.chooseDevice("VT-30 Long Ruler");
        window.choosePaper("A3 Portrait");
        click(window.radio("tiffRadio"));
        QCOMPARE(window.slider()->value(), 9);
        QCOMPARE(window.text("patchSizeLabel"), QString("Patch size: 8 x 8 mm"));
    }

    void movesTheSliderAtEveryChangeForPatchesHigherThanWide()
    {
        TestWindow window;
        window.chooseDevice("VT-30 Long Ruler");
        drag(window.slider(), 5);
        QCOMPARE(window.slider()->value(), 7);
        QTest::keyClick(window.slider(), Qt::Key_End);
        QCOMPARE(window.slider()->value(), 15);
        click(window.radio("tiffRadio"));
        QCOMPARE(window.slider()->value(), 7);
        turnWheel(window.slider(), false);
        QVERIFY(window.slider()->value() < 7);
        // This device allows square patches; the size does not change.
        window.chooseDevice("GB+ Spot");
        QCOMPARE(window.slider()->value(), 7);
        QCOMPARE(window.text("patchSizeLabel"), QString("Patch size: 7 x 8 mm"));
    }
};

QTEST_MAIN(PatchSizeTest)
#include "PatchSizeTest.moc"
