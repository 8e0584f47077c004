// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TestWindow.h"
#include "WindowTest.h"
#include "support/TemporaryFolder.h"

#include <QAccessible>

namespace
{

// The controls in reading order: row by row, each row from the left.
QStringList const asTheEyeGoes{"openButton",       "nameEdit",        "deviceCombo",     "pageWidthEdit",
                               "pageHeightEdit",   "pagePresetCombo", "marginTopEdit",   "marginRightEdit",
                               "marginBottomEdit", "marginLeftEdit",  "patchSizeSlider", "epsRadio",
                               "createButton"};

/// The widgets that get the focus, one for each press of a key, until it is back at the first.
QStringList journey(QWidget* start, Qt::Key key, Qt::KeyboardModifiers modifiers = {})
{
    start->setFocus();
    QStringList stations;
    for (int step = 0; step < 30; ++step) {
        stations.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        if (QApplication::focusWidget() == start)
            break;
    }
    return stations;
}

/// The name of a control for a screen reader: the text of its label, or its own name.
QString spokenName(QWidget* widget)
{
    QAccessibleInterface const* const control = QAccessible::queryAccessibleInterface(widget);
    for (auto const& relation : control->relations(QAccessible::Label))
        return relation.first->text(QAccessible::Name);
    return control->text(QAccessible::Name);
}

} // namespace

/// The window for people who use no mouse or a screen reader.
class AccessTest : public WindowTest
{
    Q_OBJECT

    TemporaryFolder folder;
    String table;

private slots:
    void initTestCase() { table = folder.write("table.txt", "RGB\n0 0 0\n255 0 0\n"); }

    void movesTheFocusByTabInReadingOrder()
    {
        TestWindow window;
        window.read(table);
        QCOMPARE(journey(window.button("openButton"), Qt::Key_Tab).join(' '), asTheEyeGoes.join(' '));
        for (int i = 1; i < asTheEyeGoes.size(); ++i) {
            QPoint const before = window.findChild<QWidget*>(asTheEyeGoes[i - 1])->pos();
            QPoint const after = window.findChild<QWidget*>(asTheEyeGoes[i])->pos();
            QVERIFY(after.y() > before.y() || (after.y() == before.y() && after.x() > before.x()));
        }
    }

    void movesTheFocusBackwardsByShiftAndTab()
    {
        TestWindow window;
        window.read(table);
        // If a radio button has the focus, Qt skips the radio buttons that are not checked.
        window.radio("epsRadio")->setFocus();
        QStringList backwards = asTheEyeGoes;
        std::reverse(backwards.begin(), backwards.end());
        QCOMPARE(journey(window.button("createButton"), Qt::Key_Tab, Qt::ShiftModifier).join(' '), backwards.join(' '));
    }

    void skipsDisabledControls()
    {
        TestWindow window;
        QVERIFY(!journey(window.button("openButton"), Qt::Key_Tab).contains("createButton"));
    }

    void movesTheFocusInReadingOrderInTheGapWarning()
    {
        TestWindow window;
        QStringList stations;
        whenDialogOpens([&](QDialog& dialog) {
            stations = journey(window.button("warnCancelButton"), Qt::Key_Tab);
            giveUp(dialog);
        });
        window.warnDialog()->exec();
        QCOMPARE(stations, QStringList({"warnCancelButton", "warnOkButton"}));
    }

    void choosesTheKindOfImageByKeys()
    {
        TestWindow window;
        window.radio("epsRadio")->setFocus();
        QTest::keyClick(window.radio("epsRadio"), Qt::Key_Right);
        QVERIFY(window.radio("tiffRadio")->isChecked());
        QVERIFY(!window.radio("epsRadio")->isChecked());
        QTest::keyClick(window.radio("tiffRadio"), Qt::Key_Left);
        QVERIFY(window.radio("epsRadio")->isChecked());
        QVERIFY(!window.radio("tiffRadio")->isChecked());
    }

    void choosesTheDeviceByKeys()
    {
        TestWindow window;
        window.read(table);
        window.combo("deviceCombo")->setFocus();
        QTest::keyClick(window.combo("deviceCombo"), Qt::Key_Down);
        QCOMPARE(window.combo("deviceCombo")->currentText(), QString("GB+ Scan"));
        QVERIFY(window.text("gapsLabel") != "Gaps: No Scan");
    }

    void namesEveryControl_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("openButton") << "Open...";
        QTest::newRow("nameEdit") << "Name";
        QTest::newRow("deviceCombo") << "Device";
        QTest::newRow("pageWidthEdit") << "Page width in mm";
        QTest::newRow("pageHeightEdit") << "Page height in mm";
        QTest::newRow("pagePresetCombo") << "Page size";
        QTest::newRow("marginTopEdit") << "Top boundary in mm";
        QTest::newRow("marginRightEdit") << "Right boundary in mm";
        QTest::newRow("marginBottomEdit") << "Bottom boundary in mm";
        QTest::newRow("marginLeftEdit") << "Left boundary in mm";
        QTest::newRow("patchSizeSlider") << "Patch size in mm";
        QTest::newRow("epsRadio") << "EPS";
        QTest::newRow("tiffRadio") << "TIFF";
        QTest::newRow("warnSignLabel") << "The chart contains gaps";
        QTest::newRow("createButton") << "Create Files...";
        QTest::newRow("preview") << "Chart preview";
        QTest::newRow("warnOkButton") << "Ok";
        QTest::newRow("warnCancelButton") << "Cancel";
    }

    void namesEveryControl()
    {
        QFETCH(QString, name);
        TestWindow window;
        QCOMPARE(spokenName(window.findChild<QWidget*>(QTest::currentDataTag())), name);
    }

    void hasNoVisibleControlWithoutAName()
    {
        TestWindow window;
        window.read(folder.write("alike.txt", "RGB\n100 100 100\n101 101 101\n"));
        window.chooseDevice("GB+ Scan");
        for (QWidget* widget : window.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
            if (widget->isVisible())
                QVERIFY2(!spokenName(widget).isEmpty(), qPrintable(widget->objectName()));
        }
    }
};

QTEST_MAIN(AccessTest)
#include "AccessTest.moc"
