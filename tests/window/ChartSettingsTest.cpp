// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LibraryChart.h"
#include "TestWindow.h"
#include "WindowTest.h"
#include "support/TemporaryFolder.h"

#include <QImage>

namespace
{

char const farApart[] = "RGB\n0 0 0\n255 0 0\n";
char const alike[] = "RGB\n100 100 100\n101 101 101\n";

} // namespace

/// The input file, the device, and what the chart needs.
class ChartSettingsTest : public WindowTest
{
    Q_OBJECT

    TemporaryFolder folder;

private slots:
    void readsFilesWithNamesBeyondAscii()
    {
        String const table = folder.write("Prüfung 測定.txt", farApart);
        TestWindow window;
        window.read(table);
        QCOMPARE(window.text("fileNameLabel"), QString::fromUtf8("Prüfung 測定.txt"));
        QVERIFY(window.button("createButton")->isEnabled());
    }

    void shortensALongNameInItsPlaceOnly()
    {
        QString const name = QString(60, 'm') + ".txt";
        TestWindow window;
        window.read(folder.write(name.toStdString(), farApart));
        QLabel* const label = window.label("fileNameLabel");
        QCOMPARE(label->text(), name);
        QVERIFY(label->toolTip().contains(name));
        QCOMPARE(label->geometry().right(), 399);

        QString const shortened = label->fontMetrics().elidedText(name, Qt::ElideMiddle, 200);
        QVERIFY(shortened.endsWith(".txt") && shortened != name);
        QLabel expected(shortened, &window);
        expected.setGeometry(label->geometry());
        QCOMPARE(label->grab().toImage(), expected.grab().toImage());
    }

    void showsANameAsPlainText()
    {
        TestWindow window;
        window.read(folder.write("<b>bold<b>.txt", farApart));
        QCOMPARE(window.label("fileNameLabel")->textFormat(), Qt::PlainText);
        QCOMPARE(window.text("fileNameLabel"), QString("<b>bold<b>.txt"));
        QVERIFY(window.label("fileNameLabel")->toolTip().contains("&lt;b&gt;bold"));
    }

    void makesNoChartOfABadFile_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("only a header") << QByteArray("CMYK_C CMYK_M CMYK_Y CMYK_K\n");
        QTest::newRow("no such colour space") << QByteArray("LAB\n50 0 0\n");
        QTest::newRow("binary") << QByteArray("\x00\xff\x7f"
                                              "ELF\x00\x01\r\n\x80",
                                              12)
                                       .repeated(1000);
        QTest::newRow("one bad line") << QByteArray("RGB\n0 0 0\n255 255\n255 0 0\n");
        QTest::newRow("one line without end") << QByteArray(1'000'000, 'C');
    }

    void makesNoChartOfABadFile()
    {
        QFETCH(QByteArray, contents);
        TestWindow window;
        window.read(folder.write("good.txt", farApart));
        QVERIFY(window.button("createButton")->isEnabled());

        window.read(folder.write("bad.txt", {contents.constData(), static_cast<std::size_t>(contents.size())}));
        QCOMPARE(window.text("fileNameLabel"), QString("bad.txt"));
        QVERIFY(!window.button("createButton")->isEnabled());
        QVERIFY(window.isVisible());
        QColor const middle = window.preview()->grab().toImage().pixelColor(250, 140);
        QVERIFY2(qAbs(middle.red() - 128) <= 1 && middle.green() == middle.red() && middle.blue() == middle.red(),
                 qPrintable(middle.name()));

        // Nothing of the old chart comes back when it is computed again.
        window.chooseDevice("VT-30 Long Ruler");
        window.choosePaper("A3 Landscape");
        drag(window.slider(), 12);
        QVERIFY(!window.button("createButton")->isEnabled());

        window.read(folder.pathOf("good.txt"));
        QVERIFY(window.button("createButton")->isEnabled());
    }

    void makesNoChartOfAFolder()
    {
        TestWindow window;
        window.read(folder.pathWithSlash().getStringWithoutEndingSlash());
        QCOMPARE(window.text("fileNameLabel"), QString::fromStdString(folder.path().filename().string()));
        QVERIFY(!window.button("createButton")->isEnabled());
    }

    void cannotCreateFilesWhenNoPatchFits()
    {
        TestWindow window;
        window.read(folder.write("patches.txt", farApart));
        enter(window.edit("pageHeightEdit"), "21");
        QVERIFY(!window.button("createButton")->isEnabled());
        window.choosePaper("A3 Portrait");
        QVERIFY(window.button("createButton")->isEnabled());
    }

    void writesOneKindOfImage()
    {
        TestWindow window;
        click(window.radio("tiffRadio"));
        QVERIFY(window.radio("tiffRadio")->isChecked());
        QVERIFY(!window.radio("epsRadio")->isChecked());
        click(window.radio("tiffRadio"));
        QVERIFY(window.radio("tiffRadio")->isChecked());
        click(window.radio("epsRadio"));
        QVERIFY(window.radio("epsRadio")->isChecked());
        QVERIFY(!window.radio("tiffRadio")->isChecked());
    }

    void showsTheSmallestDifferenceBetweenNeighbours_data()
    {
        QTest::addColumn<int>("device");
        QTest::addColumn<QByteArray>("table");
        QTest::addColumn<bool>("needsGaps");
        QTest::newRow("table, far apart") << 1 << QByteArray(farApart) << false;
        QTest::newRow("ruler, far apart") << 2 << QByteArray(farApart) << false;
        QTest::newRow("table, alike") << 1 << QByteArray(alike) << true;
        QTest::newRow("long ruler, alike") << 3 << QByteArray(alike) << true;
        // There are so many patches that gaps change their order. The difference shown is the one without gaps.
        QByteArray many("RGB\n");
        for (int i = 0; i < 500; ++i)
            many += QByteArray::number(100 + i * 37 % 61) + " " + QByteArray::number(100 + i * 53 % 59) + " " +
                    QByteArray::number(100 + i * 29 % 47) + "\n";
        QTest::newRow("ruler, many alike") << 2 << many << true;
    }

    void showsTheSmallestDifferenceBetweenNeighbours()
    {
        QFETCH(int, device);
        QFETCH(QByteArray, table);
        QFETCH(bool, needsGaps);
        String const path = folder.write("patches.txt", table.toStdString());
        TestWindow window;
        window.read(path);
        window.chooseDevice(measurementlayout_strings[device]);
        Settings settings;
        settings.table = path;
        settings.device = static_cast<MeasurementLayoutPreset>(device);
        double const deltaE = static_cast<double>(LibraryChart(settings).compute());
        QCOMPARE(window.text("gapsLabel"), QString::asprintf("Gaps: %.2f dE", deltaE));
        QCOMPARE(window.label("warnSignLabel")->isVisible(), needsGaps);
    }

    void neverWarnsOfGapsOnASpotDevice()
    {
        TestWindow window;
        window.read(folder.write("patches.txt", alike));
        QVERIFY(window.label("warnSignLabel")->isHidden());
        QCOMPARE(window.text("gapsLabel"), QString("Gaps: No Scan"));
        window.chooseDevice("GB+ Scan");
        QVERIFY(window.label("warnSignLabel")->isVisible());
        window.chooseDevice("GB+ Spot");
        QVERIFY(window.label("warnSignLabel")->isHidden());
        QCOMPARE(window.text("gapsLabel"), QString("Gaps: No Scan"));
    }

    void neverWarnsOfGapsOnASpotDeviceWithoutRoom()
    {
        TestWindow window;
        window.read(folder.write("patches.txt", alike));
        enter(window.edit("pageHeightEdit"), "21");
        QVERIFY(!window.button("createButton")->isEnabled());
        QVERIFY(window.label("warnSignLabel")->isHidden());
    }

    void warnsOfABadFileOnlyWhereItsHeaderIsGood_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<bool>("warns");
        // The first file gives no chart. The second gives a chart without patches, and so without any difference.
        QTest::newRow("bad header") << QByteArray("LAB\n50 0 0\n") << false;
        QTest::newRow("bad line") << QByteArray("RGB\n0 0 0\n255 255\n255 0 0\n") << true;
    }

    void warnsOfABadFileOnlyWhereItsHeaderIsGood()
    {
        QFETCH(QByteArray, contents);
        QFETCH(bool, warns);
        TestWindow window;
        window.chooseDevice("GB+ Scan");
        window.read(folder.write("patches.txt", alike));
        QVERIFY(window.label("warnSignLabel")->isVisible());
        QString const difference = window.text("gapsLabel");
        QVERIFY(difference != "Gaps: 0.00 dE");

        window.read(folder.write("bad.txt", contents.toStdString()));
        QCOMPARE(window.label("warnSignLabel")->isVisible(), warns);
        QCOMPARE(window.text("gapsLabel"), warns ? QString("Gaps: 0.00 dE") : difference);
        QVERIFY(!window.button("createButton")->isEnabled());

        window.read(folder.pathOf("patches.txt"));
        QVERIFY(window.label("warnSignLabel")->isVisible());
        QCOMPARE(window.text("gapsLabel"), difference);
        QVERIFY(window.button("createButton")->isEnabled());
    }

    void knowsNoDifferenceBeforeAChartIsMade()
    {
        TestWindow window;
        window.chooseDevice("GB+ Scan");
        QCOMPARE(window.text("gapsLabel"), QString("Gaps: 0.00 dE"));
        QVERIFY(window.label("warnSignLabel")->isHidden());
        QVERIFY(!window.button("createButton")->isEnabled());
    }
};

QTEST_MAIN(ChartSettingsTest)
#include "ChartSettingsTest.moc"
