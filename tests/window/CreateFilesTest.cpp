// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartFiles.h"
#include "ChartLayout.h"
#include "InputFile.h"
#include "TestWindow.h"
#include "WindowTest.h"
#include "support/TemporaryFolder.h"

#include <QFileDialog>

#include <filesystem>

#include <sys/stat.h>

namespace
{

char const farApart[] = "RGB\n0 0 0\n255 0 0\n";
char const alike[] = "RGB\n100 100 100\n101 101 101\n";

/// What the window shows while it writes.
class ProgressWatcher : public QObject
{
public:
    explicit ProgressWatcher(QString const& folder) : chart(folder) { qApp->installEventFilter(this); }

    int timesShown = 0;
    bool isPaintedBeforeAnythingIsWritten = false;
    QSize size;
    Qt::WindowModality modality = Qt::NonModal;
    QString text;
    QRect textPlace;
    Qt::Alignment alignment;

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        auto const* const dialog = qobject_cast<QDialog*>(object);
        if (!dialog || dialog->windowTitle() != "Creating files...")
            return false;
        if (event->type() == QEvent::Show)
            ++timesShown;
        if (event->type() == QEvent::Paint) {
            isPaintedBeforeAnythingIsWritten = !QFile::exists(chart);
            size = dialog->size();
            modality = dialog->windowModality();
            auto const* const label = dialog->findChild<QLabel*>();
            text = label->text();
            textPlace = label->geometry();
            alignment = label->alignment();
        }
        return false;
    }

private:
    QString const chart;
};

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
        bool isAsked = false;
        whenDialogOpens([&](QDialog& dialog) {
            auto const* const folders = qobject_cast<QFileDialog*>(&dialog);
            isAsked = folders && folders->windowTitle() == "Please select a directory." &&
                      folders->testOption(QFileDialog::ShowDirsOnly) && folders->fileMode() == QFileDialog::Directory;
            takePath(dialog, out);
        });
        click(window.button("createButton"));
        QVERIFY(isAsked);
        QCOMPARE(QDir(out).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList("New Chart"));
        QCOMPARE(filesIn(out + "/New Chart").keys(), QStringList({"New Chart.xml", "New Chart_001.eps"}));
    }

    void writesWhatTheChartItselfWrites()
    {
        String const path = tables.write("cube.txt", "RGB\n0 0 0\n255 0 0\n0 255 0\n0 0 255\n255 255 0\n");
        TestWindow window;
        window.read(path);
        window.chooseDevice("VT-30 Long Ruler");
        window.choosePaper("Letter Landscape");
        drag(window.slider(), 11);
        enter(window.edit("marginTopEdit"), "12.5");
        enter(window.edit("nameEdit"), "Cube");
        answerWithFolder(out);
        click(window.button("createButton"));

        InputFile file;
        file.init(path);
        MeasurementLayout instrument;
        instrument.initWithPreset(longRuler);
        PageLayout sheet;
        sheet.initWithPreset(letterLandscape);
        sheet.setContent({5, 5, 259, 198.5});
        ChartLayout chart;
        chart.setDirection(mirrored);
        chart.setMeasurementLayout(instrument);
        chart.setPageLayout(sheet);
        chart.setPatchSize({11, 11});
        chart.setName("Cube");
        chart.setColorSpace(file.getColorSpace());
        chart.setOriginalEntries(file.getEntries());
        QVERIFY(chart.computeLayout(0, 0) >= 18);
        TemporaryFolder const expected;
        chart.writeOutputFile(expected.pathOf("Cube.xml"));
        chart.writeOutputImagesEPS(expected.pathWithSlash());

        auto const files = filesIn(QString::fromStdString(expected.path().string()));
        QCOMPARE(files.size(), 2);
        QCOMPARE(filesIn(out + "/Cube"), files);
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

    void takesTheNameAsItIsTyped()
    {
        TestWindow window;
        window.read(table(farApart));
        // Left by the click on the button.
        typeOver(window.edit("nameEdit"), QString::fromUtf8("Größe 測"));
        window.button("createButton")->setFocus();
        answerWithFolder(out);
        click(window.button("createButton"));
        auto const files = filesIn(out + QString::fromUtf8("/Größe 測"));
        QCOMPARE(files.keys(), QStringList({QString::fromUtf8("Größe 測.xml"), QString::fromUtf8("Größe 測_001.eps")}));
        QVERIFY(files.first().contains("\t<name>Größe 測</name>\n"));
    }

    void writesNothingUnderANameThatIsAPath()
    {
        TestWindow window;
        window.read(table(farApart));
        enter(window.edit("nameEdit"), "deeper/chart");
        answerWithFolder(out);
        click(window.button("createButton"));
        QVERIFY(QDir(out).isEmpty());
        QVERIFY(window.button("createButton")->isEnabled());
    }

    void opensTheChartsFolderToEveryReader()
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

    void writesNothingWhenNoFolderIsChosen()
    {
        TestWindow window;
        window.read(table(farApart));
        whenDialogOpens(giveUp);
        click(window.button("createButton"));
        QVERIFY(QDir(out).isEmpty());
        QVERIFY(QApplication::activeModalWidget() == nullptr);
    }

    void saysThatItWrites()
    {
        ProgressWatcher watcher(out + "/New Chart");
        TestWindow window;
        window.read(table(farApart));
        answerWithFolder(out);
        click(window.button("createButton"));
        QCOMPARE(watcher.timesShown, 1);
        QVERIFY(watcher.isPaintedBeforeAnythingIsWritten);
        QCOMPARE(watcher.size, QSize(300, 100));
        QCOMPARE(watcher.modality, Qt::WindowModal);
        QCOMPARE(watcher.text, QString("Creating files..."));
        QCOMPARE(watcher.textPlace, QRect(20, 60, 260, 50));
        QCOMPARE(watcher.alignment & Qt::AlignHorizontal_Mask, Qt::Alignment(Qt::AlignHCenter));
        QCOMPARE(window.findChildren<QDialog*>(), QList<QDialog*>{window.warnDialog()});
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

    void writesNothingWhenGapsAreRefused_data()
    {
        QTest::addColumn<bool>("byButton");
        QTest::newRow("by the button") << true;
        QTest::newRow("by closing the dialog") << false;
    }

    void writesNothingWhenGapsAreRefused()
    {
        QFETCH(bool, byButton);
        TestWindow window;
        window.read(table(alike));
        window.chooseDevice("GB+ Scan");
        whenDialogOpens([&](QDialog& dialog) {
            if (byButton)
                click(window.button("warnCancelButton"));
            else
                dialog.close();
        });
        click(window.button("createButton"));
        QVERIFY(QDir(out).isEmpty());
        QVERIFY(QApplication::activeModalWidget() == nullptr);

        // The next time it asks afresh.
        whenDialogOpens([&](QDialog&) {
            answerWithFolder(out);
            click(window.button("warnOkButton"));
        });
        click(window.button("createButton"));
        QCOMPARE(filesIn(out + "/New Chart").size(), 2);
    }
};

QTEST_MAIN(CreateFilesTest)
#include "CreateFilesTest.moc"
