// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartFiles.h"
#include "TestWindow.h"
#include "WindowTest.h"
#include "support/CapturedOutput.h"
#include "support/FileSizeLimit.h"
#include "support/TemporaryFolder.h"
#include "support/Unprivileged.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QImage>
#include <QMimeData>
#include <QProcess>
#include <QScreen>
#include <QUrl>

#include <csignal>
#include <filesystem>
#include <memory>

#include <sys/stat.h>

namespace
{

namespace fs = std::filesystem;

void dropOn(QWidget& window, QString const& path)
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    QDragEnterEvent enter(QPoint(100, 280), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &enter);
    QDropEvent drop(QPointF(100, 280), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &drop);
}

/// Everything in a folder and its subfolders.
QString namesIn(fs::path const& folder)
{
    QStringList names;
    for (auto const& entry : fs::recursive_directory_iterator(folder))
        names.append(QString::fromStdString(entry.path().lexically_relative(folder).string()));
    names.sort();
    return names.join(", ");
}

QImage screen()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage();
}

} // namespace

/// The window with files that are missing or cannot be written. Permissions apply even if root runs the test.
class FileFaultsTest : public WindowTest
{
    Q_OBJECT

    std::unique_ptr<Unprivileged> unprivileged;
    std::unique_ptr<TemporaryFolder> folder;
    std::unique_ptr<TemporaryFolder> outFolder;
    std::unique_ptr<TestWindow> window;

    /// Lets the window write its chart under a name, in EPS or in TIFF.
    /// \return what it says on standard error
    QByteArray messagesOfCreating(QString const& name = "Chart", char const* kind = "epsRadio")
    {
        window->edit("nameEdit")->setText(name);
        QTest::keyClick(window->edit("nameEdit"), Qt::Key_Return);
        click(window->radio(kind));
        answerWithFolder(QString::fromStdString(outFolder->path().string()));
        return QByteArray::fromStdString(errorsOf([&] { click(window->button("createButton")); }));
    }

private slots:
    void init()
    {
        WindowTest::init();
        unprivileged = std::make_unique<Unprivileged>();
        folder = std::make_unique<TemporaryFolder>();
        outFolder = std::make_unique<TemporaryFolder>();
        window = std::make_unique<TestWindow>();
        window->read(folder->write("table.txt", "RGB\n0 0 0\n255 0 0\n"));
    }

    void cleanup()
    {
        window.reset();
        outFolder.reset();
        folder.reset();
        unprivileged.reset();
    }

    void survivesFilesThatAreNoTables_data()
    {
        QTest::addColumn<QString>("path");
        for (char const* path : {"pipe", "folder", ".", "loop", "missing", "closed.txt", "table.txt/table.txt",
                                 "/dev/zero", "/dev/tty", "/", "/proc/self/mem"})
            QTest::newRow(path) << path;
        QTest::newRow("long name") << QString(300, 'n');
        QTest::newRow("long path") << QString("./").repeated(2500) + "table.txt";
    }

    void survivesFilesThatAreNoTables()
    {
        QFETCH(QString, path);
        QCOMPARE(mkfifo(folder->pathOf("pipe"), 0600), 0);
        fs::create_directory(folder->path() / "folder");
        fs::create_symlink("loop", folder->path() / "loop");
        fs::permissions(fs::path(std::string(folder->write("closed.txt", "RGB\n0 0 0\n"))), fs::perms::none);
        QVERIFY(window->button("createButton")->isEnabled());
        path = QDir(QString::fromStdString(folder->path().string())).absoluteFilePath(path);
        QCOMPARE(errorsOf([&] { dropOn(*window, path); }), std::string());
        QVERIFY(!window->button("createButton")->isEnabled());
        dropOn(*window, toQString(folder->pathOf("table.txt")));
        QVERIFY(window->button("createButton")->isEnabled());
    }

    void survivesALimitOfTheFileSize()
    {
        {
            FileSizeLimit const limit(600);
            QCOMPARE(messagesOfCreating(), QByteArray());
            QCOMPARE(messagesOfCreating("Chart", "tiffRadio"), QByteArray("TIFF file could not be written.\n\r"));
        }
        fs::path const chart = outFolder->path() / "Chart";
        QCOMPARE(namesIn(chart), QString("Chart.xml, Chart_001.eps"));
        QCOMPARE(fs::file_size(chart / "Chart.xml"), 600U);
        QCOMPARE(messagesOfCreating("Chart", "tiffRadio"), QByteArray());
        QCOMPARE(namesIn(chart), QString("Chart.xml, Chart_001.eps, Chart_001.tif"));
        QVERIFY(fs::file_size(chart / "Chart.xml") > 600U);
    }

    void skipsFilesThatItMayNotReplace()
    {
        fs::path const chart = outFolder->path() / "Chart";
        fs::create_directory(chart);
        QCOMPARE(mkfifo((chart / "Chart.xml").c_str(), 0600), 0);
        outFolder->write("Chart/Chart_001.tif", "precious");
        fs::permissions(chart / "Chart_001.tif", fs::perms::owner_read);
        QCOMPARE(messagesOfCreating(), QByteArray());
        QCOMPARE(messagesOfCreating("Chart", "tiffRadio"), QByteArray());
        QCOMPARE(namesIn(outFolder->path()),
                 QString("Chart, Chart/Chart.xml, Chart/Chart_001.eps, Chart/Chart_001.tif"));
        QVERIFY(fs::is_fifo(chart / "Chart.xml"));
        QCOMPARE(filesIn(QString::fromStdString(chart.string()))["Chart_001.tif"], QByteArray("precious"));
    }

    void writesNothingThroughADanglingLink()
    {
        fs::create_symlink("Chart", outFolder->path() / "Chart");
        fs::create_symlink("missing", outFolder->path() / "Dangling");
        QCOMPARE(messagesOfCreating("Chart"), QByteArray());
        QCOMPARE(messagesOfCreating("Dangling", "tiffRadio"), QByteArray());
        QVERIFY(fs::is_symlink(outFolder->path() / "Chart"));
        QVERIFY(fs::is_symlink(outFolder->path() / "Dangling"));
        QVERIFY(!fs::exists(outFolder->path() / "missing"));
    }

    void writesNothingUnderNamesThatNoFolderCanHave()
    {
        for (QString const& name : {QString(256, 'n'), QString(100, QChar(0x56f3)), QString("a/b")}) {
            QCOMPARE(messagesOfCreating(name), QByteArray());
            QCOMPARE(namesIn(outFolder->path()), QString());
        }
    }

    void writesUnderAnyOtherName_data()
    {
        QTest::addColumn<QString>("name");
        for (char const* name : {"100 % %s%n%d", "<b>&amp;", "\"quoted\" 'twice'", "-rf *", "~", "$(touch x) `touch y`",
                                 "Gr\303\266\303\237e \345\233\263 \xf0\x9f\x8e\xa8"})
            QTest::newRow(name) << QString::fromUtf8(name);
        QTest::newRow("longest") << QString(255 - 8, 'n');
    }

    void writesUnderAnyOtherName()
    {
        QFETCH(QString, name);
        QCOMPARE(messagesOfCreating(name), QByteArray());
        QCOMPARE(namesIn(outFolder->path()), QString("%1, %1/%1.xml, %1/%1_001.eps").replace("%1", name));
    }

    void takesANameUpToItsFirstNul()
    {
        QCOMPARE(messagesOfCreating(QString("a%1b").arg(QChar(0))), QByteArray());
        QCOMPARE(namesIn(outFolder->path()), QString("a, a/a.xml, a/a_001.eps"));
    }

    void survivesAFailedWriteInTheStartedProgram()
    {
        window.reset();
        unprivileged.reset();
        QImage const empty = screen();
        QProcess program;
        program.start("sh", {"-c", "exec \"$0\" <&- >&- 2>&-", PATCHLOOM_PROGRAM});
        QVERIFY(QTest::qWaitFor([&] { return screen() != empty; }, 20'000));
        // The signals that the system sends with the failure.
        auto const id = static_cast<pid_t>(program.processId());
        QCOMPARE(kill(id, SIGXFSZ), 0);
        QCOMPARE(kill(id, SIGPIPE), 0);
        QVERIFY(!program.waitForFinished(500));
        // The standard descriptors lead nowhere, so messages cannot go into a file of ours or of the display.
        for (int descriptor = 0; descriptor <= 2; ++descriptor)
            QCOMPARE(QFile::symLinkTarget(QString("/proc/%1/fd/%2").arg(id).arg(descriptor)), QString("/dev/null"));
        program.terminate();
        QVERIFY(program.waitForFinished());
    }
};

QTEST_MAIN(FileFaultsTest)
#include "FileFaultsTest.moc"
