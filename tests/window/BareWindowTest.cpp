// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TestWindow.h"
#include "WindowTest.h"
#include "support/TemporaryFolder.h"

/// The window of a program without resources.
class BareWindowTest : public WindowTest
{
    Q_OBJECT

private slots:
    void showsNoWarningSignAndReportsNothing()
    {
        TestWindow window;
        QVERIFY(window.isVisible());
        QVERIFY(window.label("warnSignLabel")->pixmap().isNull());
        QCOMPARE(window.text("warnSignLabel"), QString());
    }

    void laysOutAChartWithoutColors()
    {
        TemporaryFolder const folder;
        TestWindow window;
        window.read(folder.write("table.txt", "CMYK\n0 0 0 0\n100 0 0 0\n"));
        QVERIFY(window.button("createButton")->isEnabled());
        // No two patches differ.
        window.chooseDevice("GB+ Scan");
        QVERIFY(window.label("warnSignLabel")->isVisible());
        QCOMPARE(window.text("gapsLabel"), QString("Gaps: 0.00 dE"));
    }
};

QTEST_MAIN(BareWindowTest)
#include "BareWindowTest.moc"
