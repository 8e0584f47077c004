// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartLayout.h"
#include "InputFile.h"
#include "TestWindow.h"
#include "WindowTest.h"
#include "support/TemporaryFolder.h"

#include <QFileDialog>
#include <QImage>

namespace
{

char const farApart[] = "RGB\n0 0 0\n255 0 0\n";
char const alike[] = "RGB\n100 100 100\n101 101 101\n";

/// The gap label's text for a table on A4 Portrait with patches of 8 mm, from the layout itself.
QString expectedGaps(String const& table, MeasurementLayoutPreset preset)
{
    InputFile file;
    file.init(table);
    MeasurementLayout instrument;
    instrument.initWithPreset(preset);
    PageLayout sheet;
    sheet.initWithPreset(a4Portrait);
    ChartLayout chart;
    chart.setPatchSize({8, 8});
    chart.setPageLayout(sheet);
    chart.setMeasurementLayout(instrument);
    chart.setColorSpace(file.getColorSpace());
    chart.setOriginalEntries(file.getEntries());
    float deltaE = chart.computeLayout(0, 0);
    if (deltaE < 18)
        deltaE = chart.computeLayout(0, 1);
    return QString::asprintf("Gaps: %.2f dE", static_cast<double>(deltaE));
}

} // namespace

/// The input file, the device, the patch size, and what the chart needs.
class ChartSettingsTest : public WindowTest
{
    Q_OBJECT

    TemporaryFolder folder;

private slots:
    void opensTheFileThatIsTyped()
    {
        String const table = folder.write("patches.txt", farApart);
        TestWindow window;
        bool isAsked = false;
        whenDialogOpens([&](QDialog& dialog) {
            auto const* const files = qobject_cast<QFileDialog*>(&dialog);
            isAsked = files && files->fileMode() == QFileDialog::AnyFile &&
                      files->acceptMode() == QFileDialog::AcceptOpen && files->parent() == &window;
            takePath(dialog, toQString(table));
        });
        click(window.button("openButton"));
        QVERIFY(isAsked);
        QCOMPARE(window.text("fileNameLabel"), QString("patches.txt"));
        QVERIFY(window.button("createButton")->isEnabled());
    }

    void opensNothingWhenTheDialogIsGivenUp()
    {
        TestWindow window;
        window.read(folder.write("patches.txt", farApart));
        whenDialogOpens(giveUp);
        click(window.button("openButton"));
        QCOMPARE(window.text("fileNameLabel"), QString("patches.txt"));
        QVERIFY(window.button("createButton")->isEnabled());
    }

    void takesTheNameOfAFileThatIsNotThere()
    {
        TestWindow window;
        window.read(folder.write("patches.txt", farApart));
        whenDialogOpens([this](QDialog& dialog) { takePath(dialog, toQString(folder.pathOf("nowhere.txt"))); });
        click(window.button("openButton"));
        QCOMPARE(window.text("fileNameLabel"), QString("nowhere.txt"));
        QVERIFY(!window.button("createButton")->isEnabled());
    }

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

    void takesANameForPlainText()
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

        // Nothing of the old chart comes back, whatever is recomputed.
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

    void offersNoFilesWhereNoPatchHasRoom()
    {
        TestWindow window;
        window.read(folder.write("patches.txt", farApart));
        enter(window.edit("pageHeightEdit"), "21");
        QVERIFY(!window.button("createButton")->isEnabled());
        window.choosePaper("A3 Portrait");
        QVERIFY(window.button("createButton")->isEnabled());
    }

    void leavesThePatchesAsTheyAreWhenTheDeviceChanges()
    {
        TestWindow window;
        drag(window.slider(), 6);
        QCOMPARE(window.text("patchSizeLabel"), QString("Patch size: 6 x 6 mm"));
        window.chooseDevice("VT-30 Standard Ruler");
        QCOMPARE(window.text("patchSizeLabel"), QString("Patch size: 6 x 6 mm"));
        QCOMPARE(window.slider()->value(), 6);
    }

    void holdsThePatchesAtTheDevicesSmallest_data()
    {
        QTest::addColumn<QString>("device");
        QTest::addColumn<int>("dragged");
        QTest::addColumn<QString>("size");
        QTest::addColumn<int>("slider");
        QTest::newRow("spot, large") << "GB+ Spot" << 15 << "15 x 15" << 15;
        QTest::newRow("spot, smallest") << "GB+ Spot" << 6 << "6 x 6" << 6;
        // Patches are square there, and the slider stays where the hand put it.
        QTest::newRow("spot, too small") << "GB+ Spot" << 3 << "6 x 6" << 3;
        QTest::newRow("table, large") << "GB+ Scan" << 9 << "9 x 9" << 9;
        QTest::newRow("table, narrow") << "GB+ Scan" << 7 << "7 x 8" << 7;
        QTest::newRow("table, too small") << "GB+ Scan" << 3 << "6 x 8" << 6;
        QTest::newRow("ruler, large") << "VT-30 Long Ruler" << 10 << "10 x 10" << 10;
        QTest::newRow("ruler, narrow") << "VT-30 Standard Ruler" << 7 << "7 x 8" << 7;
        QTest::newRow("ruler, too small") << "VT-30 Standard Ruler" << 5 << "7 x 8" << 7;
    }

    void holdsThePatchesAtTheDevicesSmallest()
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

    void leavesThePatchesAsTheyAreWhenKeysMoveTheSlider()
    {
        TestWindow window;
        QTest::keyClick(window.slider(), Qt::Key_Right);
        QCOMPARE(window.slider()->value(), 9);
        QCOMPARE(window.text("patchSizeLabel"), QString("Patch size: 8 x 8 mm"));
    }

    void leavesThePatchesAsTheyAreWhenTheGrooveIsClicked()
    {
        TestWindow window;
        QTest::mouseClick(window.slider(), Qt::LeftButton, {}, QPoint(95, 12));
        QVERIFY(window.slider()->value() > 8);
        QCOMPARE(window.text("patchSizeLabel"), QString("Patch size: 8 x 8 mm"));
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

    void saysHowFarNeighboursAreApart_data()
    {
        QTest::addColumn<int>("device");
        QTest::addColumn<QByteArray>("table");
        QTest::addColumn<bool>("needsGaps");
        QTest::newRow("table, far apart") << 1 << QByteArray(farApart) << false;
        QTest::newRow("ruler, far apart") << 2 << QByteArray(farApart) << false;
        QTest::newRow("table, alike") << 1 << QByteArray(alike) << true;
        QTest::newRow("long ruler, alike") << 3 << QByteArray(alike) << true;
        // So many that they come to lie otherwise with gaps: what is said is what was reached without.
        QByteArray many("RGB\n");
        for (int i = 0; i < 500; ++i)
            many += QByteArray::number(100 + i * 37 % 61) + " " + QByteArray::number(100 + i * 53 % 59) + " " +
                    QByteArray::number(100 + i * 29 % 47) + "\n";
        QTest::newRow("ruler, many alike") << 2 << many << true;
    }

    void saysHowFarNeighboursAreApart()
    {
        QFETCH(int, device);
        QFETCH(QByteArray, table);
        QFETCH(bool, needsGaps);
        String const path = folder.write("patches.txt", table.toStdString());
        TestWindow window;
        window.read(path);
        window.chooseDevice(measurementlayout_strings[device]);
        QCOMPARE(window.text("gapsLabel"), expectedGaps(path, static_cast<MeasurementLayoutPreset>(device)));
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
