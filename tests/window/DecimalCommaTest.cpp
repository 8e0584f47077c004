// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartFiles.h"
#include "QtText.h"
#include "TestWindow.h"
#include "WindowTest.h"
#include "support/DecimalCommaLocale.h"

namespace
{

/// The files of the CMYK example on paper of an odd size, and the texts that the window shows before.
struct Journey
{
    QString sheet;
    QString gaps;
    QMap<QString, QByteArray> files;
};

Journey makeChart(char const* kind)
{
    TemporaryFolder const out;
    QString const folder = QString::fromStdString(out.path().string());
    TestWindow window;
    window.read(PATCHLOOM_EXAMPLES "it8.7-4-cmyk.txt");
    window.chooseDevice("VT-30 Long Ruler");
    enter(window.edit("pageWidthEdit"), "300.5");
    enter(window.edit("pageHeightEdit"), "420.25");
    enter(window.edit("marginLeftEdit"), "7.5");
    drag(window.slider(), 7);
    click(window.radio(kind));
    answerWithFolder(folder);
    click(window.button("createButton"));
    return {window.sheet(), window.text("gapsLabel"), filesIn(folder + "/New Chart")};
}

} // namespace

/// The window under a locale that writes numbers with a comma.
class DecimalCommaTest : public WindowTest
{
    Q_OBJECT

private slots:
    void makesTheSameChartUnderEveryLocale_data()
    {
        QTest::addColumn<QByteArray>("kind");
        QTest::newRow("EPS") << QByteArray("epsRadio");
        QTest::newRow("TIFF") << QByteArray("tiffRadio");
    }

    void makesTheSameChartUnderEveryLocale()
    {
        QFETCH(QByteArray, kind);
        Journey const expected = makeChart(kind);
        QCOMPARE(expected.sheet, QString("300.5 420.2 5.0 5.0 15.0 7.5"));
        QVERIFY(expected.files.size() >= 2);

        DecimalCommaLocale const locale;
        QVERIFY(locale.isInForce());
        Journey const made = makeChart(kind);
        QCOMPARE(made.sheet, expected.sheet);
        QCOMPARE(made.gaps, expected.gaps);
        QCOMPARE(made.files.keys(), expected.files.keys());
        QVERIFY(made.files == expected.files);
    }
};

QTEST_MAIN(DecimalCommaTest)
#include "DecimalCommaTest.moc"
