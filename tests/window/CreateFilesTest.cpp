// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LibraryChart.h"
#include "TestWindow.h"
#include "WindowTest.h"

#include <filesystem>

#include <sys/stat.h>

namespace
{

char const farApart[] = "RGB\n0 0 0\n255 0 0\n";
char const alike[] = "RGB\n100 100 100\n101 101 101\n";

} // namespace

class CreateFilesTest : public WindowTest
{
    Q_OBJECT

    TemporaryFolder tables;
    QString out;
    std::unique_ptr<TemporaryFolder> outFolder;

    String table(char const* contents) const { return tables.write("patches.txt", contents); }

private slots:
    void init()
    {
        WindowTest::init();
        outFolder = std::make_unique<TemporaryFolder>();
        out = QString::fromStdString(outFolder->path().string());
    }

    void writesAChartIntoAFolderOfItsName()
    {
        TestWindow window;
        window.read(table(farApart));
        answerWithFolder(out);
        click(window.button("createButton"));
        QCOMPARE(QDir(out).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList("New Chart"));
        QCOMPARE(filesIn(out + "/New Chart").keys(), QStringList({"New Chart.xml", "New Chart_001.eps"}));
    }

    void writesWhatTheChartItselfWrites_data()
    {
        QTest::addColumn<int>("device");
        for (int device = tableSpot; device <= longRuler; ++device)
            QTest::newRow(measurementlayout_strings[device]) << device;
    }

    void writesWhatTheChartItselfWrites()
    {
        QFETCH(int, device);
        Settings settings;
        settings.table = PATCHLOOM_EXAMPLES "it8.7-4-cmyk.txt";
        settings.name = "Proof";
        // The content is 5, 15, 287, 400; then the top margin grows from 5 to 12.5.
        settings.sheet = paper(a3Portrait);
        settings.sheet.setContent({5, 15, 287, 392.5});
        settings.patch = {11, 11};
        TestWindow window;
        window.read(settings.table);
        window.chooseDevice(QTest::currentDataTag());
        window.choosePaper("A3 Portrait");
        drag(window.slider(), 11);
        enter(window.edit("marginTopEdit"), "12.5");
        enter(window.edit("nameEdit"), "Proof");
        if (window.label("warnSignLabel")->isVisible())
            whenDialogOpens([&](QDialog&) {
                answerWithFolder(out);
                click(window.button("warnOkButton"));
            });
        else
            answerWithFolder(out);
        click(window.button("createButton"));
        auto const files = filesIn(out + "/Proof");
        QVERIFY(files.size() >= 2);

        for (int other = tableSpot; other <= longRuler; ++other) {
            settings.device = static_cast<MeasurementLayoutPreset>(other);
            LibraryChart chart(settings);
            chart.compute();
            QCOMPARE(files == chart.files(), other == device);
        }
    }

    void writesTiffSheetsInsteadWhenAskedTo()
    {
        TestWindow window;
        window.read(table(farApart));
        click(window.radio("tiffRadio"));
        answerWithFolder(out);
        click(window.button("createButton"));
        QCOMPARE(filesIn(out + "/New Chart").keys(), QStringList({"New Chart.xml", "New Chart_001.tif"}));
    }

    void writesTheSameFilesAgainOverOlderOnes()
    {
        TestWindow window;
        window.read(table(farApart));
        answerWithFolder(out);
        click(window.button("createButton"));
        auto const first = filesIn(out + "/New Chart");

        for (QString const& name : first.keys()) {
            QFile file(out + "/New Chart/" + name);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(QByteArray(1'000'000, 'x'));
        }
        answerWithFolder(out);
        click(window.button("createButton"));
        QCOMPARE(filesIn(out + "/New Chart"), first);
    }

    void usesTheNameAsItIsTyped()
    {
        TestWindow window;
        window.read(table(farApart));
        // The click on the button takes the focus from the edit.
        typeOver(window.edit("nameEdit"), QString::fromUtf8("Größe 測"));
        window.button("createButton")->setFocus();
        answerWithFolder(out);
        click(window.button("createButton"));
        auto const files = filesIn(out + QString::fromUtf8("/Größe 測"));
        QCOMPARE(files.keys(), QStringList({QString::fromUtf8("Größe 測.xml"), QString::fromUtf8("Größe 測_001.eps")}));
        QVERIFY(files.first().contains("\t<name>Größe 測</name>\n"));
    }

    void makesTheChartsFolderReadableForEveryone()
    {
        mode_t const mask = umask(0);
        TestWindow window;
        window.read(table(farApart));
        answerWithFolder(out);
        click(window.button("createButton"));
        umask(mask);
        using std::filesystem::perms;
        QCOMPARE(std::filesystem::status(outFolder->path() / "New Chart").permissions(),
                 perms::owner_all | perms::group_read | perms::group_exec | perms::others_read | perms::others_exec);
    }

    void asksBeforeItWritesGaps()
    {
        TestWindow window;
        window.read(table(alike));
        window.chooseDevice("VT-30 Standard Ruler");
        bool isAsked = false;
        whenDialogOpens([&](QDialog& dialog) {
            isAsked = &dialog == window.warnDialog();
            answerWithFolder(out);
            click(window.button("warnOkButton"));
        });
        click(window.button("createButton"));
        QVERIFY(isAsked);
        auto const files = filesIn(out + "/New Chart");
        QCOMPARE(files.keys(), QStringList({"New Chart.xml", "New Chart_001.eps"}));
        QVERIFY(files["New Chart.xml"].contains("\t<verticalGap>1.00mm</verticalGap>\n"));
    }

    void writesNoGapsAndAsksNothingWherePatchesDiffer()
    {
        TestWindow window;
        window.read(table(farApart));
        window.chooseDevice("VT-30 Standard Ruler");
        answerWithFolder(out);
        click(window.button("createButton"));
        QVERIFY(filesIn(out + "/New Chart")["New Chart.xml"].contains("\t<verticalGap>0.00mm</verticalGap>\n"));
    }

    void neverAsksOnASpotDevice()
    {
        TestWindow window;
        window.read(table(alike));
        window.chooseDevice("VT-30 Standard Ruler");
        window.chooseDevice("GB+ Spot");
        answerWithFolder(out);
        click(window.button("createButton"));
        QCOMPARE(filesIn(out + "/New Chart").size(), 2);
    }
};

QTEST_MAIN(CreateFilesTest)
#include "CreateFilesTest.moc"
