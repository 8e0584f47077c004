// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "DesktopFont.h"
#include "LibraryChart.h"
#include "TestWindow.h"
#include "WindowTest.h"
#include "support/CapturedOutput.h"
#include "support/Unprivileged.h"

#include <QSocketNotifier>

#include <filesystem>

#include <sys/inotify.h>
#include <unistd.h>

namespace
{

/// What the window shows while it writes.
class ProgressWatcher : public QObject
{
public:
    explicit ProgressWatcher(QString const& folder) : chart(folder) { qApp->installEventFilter(this); }

    int timesShown = 0;
    bool isPaintedBeforeAnythingIsWritten = false;
    QObject const* parent = nullptr;
    QSize smallest;
    QSize largest;
    Qt::WindowModality modality = Qt::NonModal;
    QString text;
    QRect textPlace;
    QSize textNeeds;
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
            parent = dialog->parent();
            smallest = dialog->minimumSize();
            largest = dialog->maximumSize();
            modality = dialog->windowModality();
            auto const* const label = dialog->findChild<QLabel*>();
            text = label->text();
            textPlace = label->geometry();
            textNeeds = label->sizeHint();
            alignment = label->alignment();
        }
        return false;
    }

private:
    QString const chart;
};

/// Records what happens to the files in a folder, in order, and whether events are processed meanwhile.
class FolderWatch : public QObject
{
public:
    explicit FolderWatch(QString const& path)
        : folder(path), descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), notifier(descriptor, QSocketNotifier::Read)
    {
        inotify_add_watch(descriptor, path.toUtf8().constData(), IN_CREATE | IN_CLOSE_WRITE);
        connect(&notifier, &QSocketNotifier::activated, this, &FolderWatch::readEvents);
    }
    ~FolderWatch() override
    {
        notifier.setEnabled(false);
        close(descriptor);
    }

    /// Such as "begun New Chart.xml" and "done New Chart.xml".
    QStringList deeds;
    /// The files when events were processed for the first time after a file was written.
    QMap<QString, QByteArray> firstSeen;

private:
    void readEvents()
    {
        if (firstSeen.isEmpty())
            firstSeen = filesIn(folder);
        alignas(inotify_event) char buffer[65536];
        for (ssize_t length; (length = read(descriptor, buffer, sizeof buffer)) > 0;) {
            for (char const* at = buffer; at < buffer + length;) {
                auto const* const event = reinterpret_cast<inotify_event const*>(at);
                deeds.append((event->mask & IN_CREATE ? "begun " : "done ") + QString::fromUtf8(event->name));
                at += sizeof(inotify_event) + event->len;
            }
        }
    }

    QString const folder;
    int const descriptor;
    QSocketNotifier notifier;
};

} // namespace

/// How files are written, and what happens if they cannot be written.
class WritingTest : public WindowTest
{
    Q_OBJECT

    TemporaryFolder tables;
    QString out;
    std::unique_ptr<TemporaryFolder> outFolder;
    std::unique_ptr<TestWindow> window;

private slots:
    void init()
    {
        WindowTest::init();
        outFolder = std::make_unique<TemporaryFolder>();
        out = QString::fromStdString(outFolder->path().string());
        window = std::make_unique<TestWindow>();
        window->read(tables.write("patches.txt", "RGB\n0 0 0\n255 0 0\n"));
    }

    void cleanup() { window.reset(); }

    void showsAMessageWhileItWrites()
    {
        ProgressWatcher watcher(out + "/New Chart");
        answerWithFolder(out);
        click(window->button("createButton"));
        QCOMPARE(watcher.timesShown, 1);
        QVERIFY(watcher.isPaintedBeforeAnythingIsWritten);
        QCOMPARE(watcher.parent, window.get());
        QCOMPARE(watcher.smallest, QSize(300, 100));
        QCOMPARE(watcher.largest, QSize(300, 100));
        QCOMPARE(watcher.modality, Qt::WindowModal);
        QCOMPARE(watcher.text, QString("Creating files..."));
        QCOMPARE(watcher.textPlace, QRect(20, 60, 260, 50));
        QCOMPARE(watcher.alignment & Qt::AlignHorizontal_Mask, Qt::Alignment(Qt::AlignHCenter));
        QCOMPARE(window->findChildren<QDialog*>(), QList<QDialog*>{window->warnDialog()});
    }

    void writesTheMessageInTheFontSizeOfTheWindow()
    {
        DesktopFont const font(30);
        window = std::make_unique<TestWindow>();
        window->read(tables.pathOf("patches.txt"));
        ProgressWatcher watcher(out + "/New Chart");
        answerWithFolder(out);
        click(window->button("createButton"));
        QCOMPARE(watcher.timesShown, 1);
        QVERIFY(watcher.textNeeds.width() <= 260 && watcher.textNeeds.height() <= 40);
    }

    void writesTheTargetDescriptionAndThenSheetBySheet_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("eps") << "epsRadio";
        QTest::newRow("tif") << "tiffRadio";
    }

    void writesTheTargetDescriptionAndThenSheetBySheet()
    {
        QFETCH(QString, kind);
        // The sheets are small, so the patches need two.
        window->read(PATCHLOOM_EXAMPLES "rgb-24.txt");
        window->choosePaper("Credit Card Portrait");
        drag(window->slider(), 9);
        click(window->radio(kind.toLatin1()));
        QVERIFY(QDir(out).mkdir("New Chart"));
        FolderWatch watch(out + "/New Chart");
        answerWithFolder(out);
        click(window->button("createButton"));

        QTRY_VERIFY(!watch.deeds.isEmpty());
        QString const first = "New Chart.xml";
        // Sheets are numbered downwards.
        QString const second = QString("New Chart_002.") + QTest::currentDataTag();
        QString const third = QString("New Chart_001.") + QTest::currentDataTag();
        QCOMPARE(watch.deeds.join(", "), QStringList({"begun " + first, "done " + first, "begun " + second,
                                                      "done " + second, "begun " + third, "done " + third})
                                             .join(", "));
        // The program processed no events until all files were written.
        QCOMPARE(watch.firstSeen, filesIn(out + "/New Chart"));
    }

    void keepsAFileThatHasTheNameOfTheFolder()
    {
        String const file = outFolder->write("New Chart", "contents");
        CapturedOutput const errors;
        answerWithFolder(out);
        click(window->button("createButton"));
        QCOMPARE(filesIn(out), (QMap<QString, QByteArray>{{"New Chart", "contents"}}));
        isStillUsable(errors);
    }

    void writesNothingWithoutPermission()
    {
        using std::filesystem::perms;
        std::filesystem::permissions(outFolder->path(),
                                     perms::owner_read | perms::owner_exec | perms::others_read | perms::others_exec);
        CapturedOutput const errors;
        {
            Unprivileged const person;
            answerWithFolder(out);
            click(window->button("createButton"));
        }
        std::filesystem::permissions(outFolder->path(), perms::owner_all);
        QVERIFY(QDir(out).isEmpty());
        isStillUsable(errors);
    }

    void writesNothingUnderANameThatIsAPath()
    {
        enter(window->edit("nameEdit"), "deeper/chart");
        CapturedOutput const errors;
        answerWithFolder(out);
        click(window->button("createButton"));
        QVERIFY(QDir(out).isEmpty());
        isStillUsable(errors);
    }

private:
    /// Whether the window shows and reports nothing, and can write a chart elsewhere.
    void isStillUsable(CapturedOutput const& errors)
    {
        QCOMPARE(errors.text(), std::string());
        QVERIFY(QApplication::activeModalWidget() == nullptr);
        QCOMPARE(window->findChildren<QDialog*>(), QList<QDialog*>{window->warnDialog()});
        enter(window->edit("nameEdit"), "Other");
        TemporaryFolder const other;
        answerWithFolder(toQString(other.pathWithSlash()));
        click(window->button("createButton"));
        QCOMPARE(filesIn(toQString(other.pathOf("Other"))).keys(), QStringList({"Other.xml", "Other_001.eps"}));
    }
};

QTEST_MAIN(WritingTest)
#include "WritingTest.moc"
