// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColorEntry.h"
#include "Folders.h"
#include "Outside.h"
#include "QtText.h"
#include "SlowFile.h"
#include "support/DecimalCommaLocale.h"
#include "support/TemporaryFolder.h"
#include "window/LibraryChart.h"
#include "window/WindowTest.h"

#include <QDialog>
#include <QDir>
#include <QLabel>

#include <functional>
#include <memory>

namespace
{

// Places in the window.
constexpr QPoint openButton{470, 35};
constexpr QPoint nameEdit{300, 75};
constexpr QPoint deviceCombo{300, 115};
constexpr QPoint widthEdit{225, 155};
constexpr QPoint heightEdit{295, 155};
constexpr QPoint paperCombo{430, 155};
constexpr QPoint epsRadio{210, 275};
constexpr QPoint tiffRadio{260, 275};
constexpr QPoint createButton{450, 275};

// Places in the gap warning.
constexpr QPoint okButton{330, 65};
constexpr QPoint cancelButton{230, 65};

/// The slider's handle at a patch size, with handles 15 pixels wide.
constexpr QPoint handle(int millimetres)
{
    return {200 + 8 + 85 * (millimetres - 3) / 12, 232};
}

/// Colours that are far apart.
std::string cube()
{
    std::string table = "RGB_R RGB_G RGB_B\n";
    for (int i = 0; i < 64; ++i) {
        for (int level : {i / 16, i / 4 % 4, i % 4})
            table += std::to_string(85 * level) + " ";
        table += "\n";
    }
    return table;
}

/// The texts of the program's dialogs in the language of a locale.
struct Texts
{
    QString openTitle;
    QString folderTitle;
    QString writing;
};

Texts textsOf(QString const& locale)
{
    if (locale == "C")
        return {"Open", "Please select a directory.", "Creating files..."};
    return {QString::fromUtf8("Öffnen"), QString::fromUtf8("Bitte wählen Sie einen Ordner."),
            "Dateien werden erzeugt..."};
}

/// How the dialog that is shown while files are written should look.
QImage writingDialog(QString const& text)
{
    QDialog dialog;
    dialog.setFixedSize(300, 100);
    QLabel label(text, &dialog);
    label.setGeometry(20, 60, 260, 50);
    label.setAlignment(Qt::AlignHCenter);
    return dialog.grab().toImage();
}

} // namespace

/// Whole journeys through the started program, from its first window to its exit.
class JourneysTest : public WindowTest
{
    Q_OBJECT

    QProcess manager;
    std::unique_ptr<DecimalCommaLocale> locale;
    std::unique_ptr<TemporaryFolder> folder;
    std::unique_ptr<QProcess> program;
    QString window;
    QString out;
    QString openTitle;
    QString folderTitle;
    int station = 0;
    double factor = 1;

private slots:
    void initTestCase()
    {
        QVERIFY(startWindowManager(manager));
        // The locale is made here, but only the started programs use it.
        locale = std::make_unique<DecimalCommaLocale>();
        QVERIFY(locale->isInForce());
        std::setlocale(LC_ALL, "C");
        respath = toString(QCoreApplication::applicationDirPath()) + "/../Resources/";
        ColorEntry::prepareColorConversions();
    }

    void cleanupTestCase()
    {
        ColorEntry::endColorConversions();
        manager.terminate();
        manager.waitForFinished();
    }

    void init()
    {
        WindowTest::init();
        folder = std::make_unique<TemporaryFolder>();
        out = toQString(folder->pathWithSlash() + "out");
        QDir().mkpath(out);
        factor = 1;
    }

    void cleanup()
    {
        if (program && program->state() != QProcess::NotRunning) {
            see("stuck");
            program->kill();
            program->waitForFinished();
        }
        program.reset();
    }

    void makesChartsUnderEveryLocale_data() { addLocales(); }

    void makesChartsUnderEveryLocale()
    {
        start();
        QVERIFY(!window.isEmpty());
        see("start");

        Settings settings;
        settings.table = PATCHLOOM_EXAMPLES "it8.7-4-cmyk.txt";
        settings.name = "Proof printer";
        QVERIFY(open(toQString(settings.table)));
        see("opened");
        typeOver(nameEdit, toQString(settings.name));
        choose(deviceCombo, longRuler);
        settings.device = longRuler;
        see("long ruler");
        choose(paperCombo, a3Landscape);
        settings.sheet = paper(a3Landscape);
        QImage const a3 = seeDifference("A3");
        QVERIFY2(localeOfRow() != "C" || isIn("window.png", a3), "./dev pictures");
        QVERIFY(seesWriting(settings));
        QVERIFY(hasWritten(settings, Sheets::EPS));
        QCOMPARE(openTitle, textsOf(localeOfRow()).openTitle);
        QCOMPARE(folderTitle, textsOf(localeOfRow()).folderTitle);

        settings.table = folder->write("cube.txt", cube());
        QVERIFY(open(toQString(settings.table)));
        typeOver(widthEdit, "90.5");
        typeOver(heightEdit, "160.25");
        // A3 Landscape is 420 x 297 with the content 5, 5, 400, 287; the margins stay.
        settings.sheet.setSize({90.5, 160.25});
        settings.sheet.setContent({5, 5, 400 - (420 - 90.5), 287 - (297 - 160.25)});
        see("custom paper");
        drag(window, handle(8), handle(11));
        settings.patch = {11, 11};
        see("larger patches");

        clickAt(tiffRadio);
        see("TIFF");
        QVERIFY(QDir(chart(settings)).removeRecursively());
        // The second run replaces the files of the first.
        for (char const* time : {"first", "second"}) {
            QVERIFY(create(time));
            QVERIFY(hasWritten(settings, Sheets::TIFF));
            spoil(chart(settings));
        }
        leave();
    }

    void asksBeforeGapsUnderEveryLocale_data() { addLocales(); }

    void asksBeforeGapsUnderEveryLocale()
    {
        start();
        QVERIFY(!window.isEmpty());
        Settings settings;
        settings.table = folder->write("alike.txt", "RGB\n100 100 100\n101 101 101\n102 100 100\n");
        settings.name = "Gaps";
        settings.device = tableScan;
        settings.sheet = paper(a4Portrait);
        typeOver(nameEdit, toQString(settings.name));
        choose(deviceCombo, tableScan);
        QVERIFY(open(toQString(settings.table)));
        see("warning sign");

        for (QString const& answer : {QString("button"), QString("Escape")}) {
            clickAt(createButton);
            QString const warning = windowOtherThan({window});
            QCOMPARE(titleOf(warning), QString("Gaps required"));
            QImage const refused = see("gaps refused by " + answer);
            QVERIFY2(localeOfRow() != "C" || answer != "button" || isIn("gaps.png", refused), "./dev pictures");
            if (answer == "button")
                click(warning, cancelButton);
            else
                press({answer});
            QVERIFY(isBackAt(window));
            QVERIFY(QDir(out).isEmpty());
        }

        clickAt(createButton);
        QString const warning = windowOtherThan({window});
        QCOMPARE(titleOf(warning), QString("Gaps required"));
        click(warning, okButton);
        QVERIFY(!windowOtherThan({window, warning}).isEmpty());
        QVERIFY(takePath(out, "folder dialog, gaps"));
        QVERIFY(hasWritten(settings, Sheets::EPS));
        QVERIFY(filesIn(chart(settings))["Gaps.xml"].contains("\t<verticalGap>1.00mm</verticalGap>\n"));
        leave();
    }

    void fitsEveryScreen_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("style");
        QTest::addColumn<double>("scale");
        QTest::newRow("C") << "C" << QString() << 1.0;
        for (char const* language : {"fr_FR", "es_ES", "it_IT", "ja_JP", "zh_CN"})
            QTest::newRow(language) << QString(language) + ".UTF-8" << QString() << 1.0;
        for (char const* style : {"Fusion", "Windows"}) {
            for (double scale : {1.0, 1.5, 2.0})
                QTest::newRow(qPrintable(QString("de_DE %1 %2").arg(style).arg(scale, 0, 'f', 1)))
                    << "de_DE.UTF-8" << style << scale;
        }
    }

    void fitsEveryScreen()
    {
        QFETCH(QString, style);
        QFETCH(double, scale);
        factor = scale;
        start(style);
        QVERIFY(!window.isEmpty());
        QCOMPARE(sizeOf(window), QSize(540, 600) * scale);
        choose(deviceCombo, tableScan);
        QVERIFY(open(toQString(folder->write("alike.txt", "RGB\n100 100 100\n101 101 101\n102 100 100\n"))));
        seeDifference("window");
        clickAt(createButton);
        QString const warning = windowOtherThan({window});
        QCOMPARE(sizeOf(warning), QSize(400, 100) * scale);
        see("warning");
        press({"Escape"});
        QVERIFY(isBackAt(window));
        leave();
    }

    void readsAFileThatIsDroppedFromOutsideUnderEveryLocale_data() { addLocales(); }

    void readsAFileThatIsDroppedFromOutsideUnderEveryLocale()
    {
        start();
        QVERIFY(!window.isEmpty());
        Settings settings;
        settings.table = folder->write("dropped.txt", "CMYK\n0 0 0 0.5\n100 0 0 0\n0 100 0 0\n");
        settings.name = "Dropped";
        typeOver(nameEdit, toQString(settings.name));
        // There no cursor blinks, and here the mouse highlights nothing.
        clickAt(epsRadio);
        constexpr QPoint free{450, 230};
        moveTo(window, free);
        stillScreen();
        QImage const before = pictureOf(window);
        QProcess text;
        QVERIFY(isDropped(text, {"--text", toQString(settings.table)}));
        endSource(text);
        moveTo(window, free);
        QTRY_VERIFY(pictureOf(window) == before);

        QProcess files;
        QVERIFY(isDropped(files, {toQString(settings.table), toQString(folder->pathOf("other.txt"))}));
        click(window, free);
        QVERIFY(isBackAt(window));
        QTRY_VERIFY(pictureOf(window) != before);
        see("dropped");

        QVERIFY(create("dropped"));
        QVERIFY(hasWritten(settings, Sheets::EPS));
        endSource(files);
        leave();
    }

private:
    void addLocales()
    {
        QTest::addColumn<QString>("locale");
        QTest::newRow("C") << "C";
        QTest::newRow("decimal comma") << "de_DE.UTF-8";
    }

    static QString localeOfRow()
    {
        if (!QTest::currentDataTag())
            return "C";
        QFETCH(QString, locale);
        return locale;
    }

    void clickAt(QPoint place) { click(window, place * factor); }

    void start(QString const& style = QString())
    {
        program = std::make_unique<QProcess>();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LC_ALL", localeOfRow());
        environment.insert("QT_SCALE_FACTOR", QString::number(factor));
        program->setProcessEnvironment(environment);
        program->setWorkingDirectory(QCoreApplication::applicationDirPath() + "/../Resources");
        // A program that starts it, for example a memory checker.
        QStringList command = qEnvironmentVariable("PATCHLOOM_START_WITH").split(' ', Qt::SkipEmptyParts);
        command += PATCHLOOM_PROGRAM;
        if (!style.isEmpty())
            command += {"-style", style};
        program->start(command.takeFirst(), command);
        window = windowOf(*program, "Patchloom");
        station = 0;
    }

    /// Closes the window as the button of its frame does, and checks that the program ends without an error.
    void leave()
    {
        press({"alt+F4"});
        QVERIFY(program->waitForFinished(longestAnswer));
        QCOMPARE(program->exitStatus(), QProcess::NormalExit);
        QCOMPARE(program->exitCode(), 0);
        QCOMPARE(program->readAllStandardError(), QByteArray());
        QCOMPARE(program->readAllStandardOutput(), QByteArray());
    }

    /// Keeps a picture of the screen.
    QImage see(QString const& what)
    {
        char const* const row = QTest::currentDataTag();
        QString const journey = QTest::currentTestFunction() + (row ? QString("/") + row : QString());
        QDir const pictures(PATCHLOOM_PICTURES + journey);
        pictures.mkpath(".");
        QImage picture = withoutBackground(stillScreen());
        picture.save(pictures.filePath(QString("%1 %2.png").arg(++station, 2, 10, QChar('0')).arg(what)));
        return picture;
    }

    /// The same, while Alt is held.
    QImage seeDifference(QString const& what)
    {
        QImage const before = stillScreen();
        hold("Alt_L");
        QImage const picture = hasChangedSince(before) ? see(what) : QImage();
        release("Alt_L");
        return picture;
    }

    /// Whether a picture in the documents still shows what is on the screen.
    static bool isIn(char const* document, QImage const& picture)
    {
        QImage const documented = QImage(PATCHLOOM_DOCUMENTS + QString(document)).convertToFormat(picture.format());
        if (documented.size() != picture.size())
            return false;
        int differing = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                differing += picture.pixel(x, y) != documented.pixel(x, y);
        }
        // The edges of some letters may differ, but no word may differ.
        return differing < 100;
    }

    /// Drags data from another program's window and drops it on the window. The other program must stay, because the
    /// window asks it for the data.
    bool isDropped(QProcess& source, QStringList const& things)
    {
        source.start(PATCHLOOM_DRAG_SOURCE, things);
        QString const from = windowOf(source, "Source");
        moveTo(from, {60, 40});
        pressButton();
        // A drag begins when the mouse moves for the second time.
        int step = 0;
        bool const isTaken = hasSaid(source, "taken\n", [&] {
            // Over an edit, which would insert it as text.
            moveTo(window, {420 + ++step % 20, 195});
        });
        see("dragged over the window");
        releaseButton();
        return isTaken && hasSaid(source, "over\n", [] {});
    }

    /// Repeats an action until a program prints a word.
    static bool hasSaid(QProcess& source, QByteArray const& word, std::function<void()> const& act)
    {
        QByteArray said;
        return QTest::qWaitFor(
            [&] {
                act();
                source.waitForReadyRead(20);
                said += source.readAllStandardOutput();
                return said.endsWith(word);
            },
            longestAnswer);
    }

    void endSource(QProcess& source)
    {
        source.terminate();
        QVERIFY(source.waitForFinished());
        QVERIFY(isBackAt(window));
    }

    bool open(QString const& path)
    {
        QImage const before = stillScreen();
        clickAt(openButton);
        QString const dialog = windowOtherThan({window});
        openTitle = titleOf(dialog);
        // Text that is typed before the file is read is lost, because reading resets the edits.
        return !dialog.isEmpty() && takePath(path, "open dialog") && hasChangedSince(before) && !stillScreen().isNull();
    }

    bool create(QString const& what, std::function<bool()> const& isDone)
    {
        clickAt(createButton);
        QString const dialog = windowOtherThan({window});
        folderTitle = titleOf(dialog);
        return !dialog.isEmpty() && takePath(out, "folder dialog, " + what, isDone);
    }

    bool create(QString const& what)
    {
        return create(what, [this] { return isBackAt(window, longestAnswer / 3); });
    }

    /// Creates files. The first one is so slow that the dialog shown meanwhile can be seen.
    bool seesWriting(Settings const& settings)
    {
        if (!QDir().mkpath(chart(settings)))
            return false;
        SlowFile file(chart(settings) + "/" + toQString(settings.name) + ".xml");
        QString dialog;
        bool const isWriting = create("slowly", [&] {
            dialog = windowOf(*program, "Creating files...", longestAnswer / 3);
            return !dialog.isEmpty();
        });
        see("creating files");
        QImage const shown = pictureOf(dialog);
        QImage const expected = writingDialog(textsOf(localeOfRow()).writing).convertToFormat(shown.format());
        return isWriting && shown == expected && file.takeAll() && isBackAt(window);
    }

    /// Types a path into a file dialog. While the dialog still reads a folder, it may complete the text to another
    /// path. Then the path is typed again, as a user would do.
    bool takePath(QString const& path, QString const& what, std::function<bool()> const& isTaken)
    {
        for (int attempt = 0; attempt < 3; ++attempt) {
            press({"ctrl+a"});
            type(path);
            see(what);
            press({"Return"});
            if (isTaken())
                return true;
        }
        return false;
    }

    bool takePath(QString const& path, QString const& what)
    {
        return takePath(path, what, [this] { return isBackAt(window, longestAnswer / 3); });
    }

    QString chart(Settings const& settings) const { return out + "/" + toQString(settings.name); }

    /// Waits until the program has written the files that the library writes, and no others.
    bool hasWritten(Settings const& settings, Sheets kind)
    {
        LibraryChart made(settings);
        made.compute();
        auto const expected = made.files(kind);
        bool const isSame = QTest::qWaitFor([&] { return filesIn(chart(settings)) == expected; }, longestAnswer);
        auto const found = filesIn(chart(settings));
        for (QString const& name : (expected.keys() + found.keys())) {
            if (!isSame && found.value(name) != expected.value(name))
                qWarning("%s is not as expected.", qPrintable(name));
        }
        return isSame && expected.size() >= 2;
    }

    void choose(QPoint combo, int item)
    {
        QImage const before = stillScreen();
        clickAt(combo);
        QVERIFY(hasChangedSince(before));
        press(QStringList{"Home"} + QStringList(item, "Down") + QStringList{"Return"});
    }

    void typeOver(QPoint edit, QString const& text)
    {
        clickAt(edit);
        press({"ctrl+a"});
        type(text);
        press({"Return"});
    }

    static void spoil(QString const& chart)
    {
        for (QString const& name : QDir(chart).entryList(QDir::Files)) {
            QFile file(QDir(chart).filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(QByteArray(10'000'000, 'x'));
        }
    }
};

QTEST_MAIN(JourneysTest)
#include "JourneysTest.moc"
