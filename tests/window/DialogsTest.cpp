// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LibraryChart.h"
#include "TestWindow.h"
#include "WindowTest.h"

#include <QFileDialog>

namespace
{

/// The properties in which file dialogs differ.
struct FileQuestion
{
    QObject const* parent = nullptr;
    QString caption;
    QString folder;
    QStringList filters;
    QFileDialog::FileMode mode = QFileDialog::AnyFile;
    QFileDialog::AcceptMode way = QFileDialog::AcceptOpen;
    bool isForFoldersOnly = false;

    FileQuestion() = default;
    explicit FileQuestion(QFileDialog const& dialog)
        : parent(dialog.parent()), caption(dialog.windowTitle()), folder(dialog.directory().path()),
          filters(dialog.nameFilters()), mode(dialog.fileMode()), way(dialog.acceptMode()),
          isForFoldersOnly(dialog.testOption(QFileDialog::ShowDirsOnly))
    {
    }
};

/// Everything that a user sees of the window.
struct Appearance
{
    QStringList controls;
    QImage picture;

    explicit Appearance(TestWindow& window) : picture(window.grab().toImage())
    {
        for (QWidget const* widget : window.findChildren<QWidget*>()) {
            QStringList control{widget->objectName(), widget->isVisible() ? "visible" : "hidden",
                                widget->isEnabled() ? "enabled" : "disabled"};
            for (char const* property : {"text", "currentText", "value", "checked"})
                control.append(widget->property(property).toString());
            controls.append(control.join(' '));
        }
    }
};

/// Ways to cancel. Each is called when the first dialog is open.
struct WayBack
{
    char const* name;
    char const* button;
    void (*take)(TestWindow& window, QDialog& dialog);
};

constexpr WayBack waysBack[] = {
    {"the open dialog given up", "openButton", [](TestWindow&, QDialog& dialog) { giveUp(dialog); }},
    {"the gap warning refused", "createButton",
     [](TestWindow& window, QDialog&) { click(window.button("warnCancelButton")); }},
    {"the gap warning closed", "createButton", [](TestWindow&, QDialog& dialog) { dialog.close(); }},
    {"the gap warning given up", "createButton", [](TestWindow&, QDialog& dialog) { giveUp(dialog); }},
    {"the folder dialog given up", "createButton",
     [](TestWindow& window, QDialog&) {
         whenDialogOpens(giveUp);
         click(window.button("warnOkButton"));
     }},
};

} // namespace

/// The dialogs that ask for files and folders, and how they are cancelled.
class DialogsTest : public WindowTest
{
    Q_OBJECT

    TemporaryFolder folder;
    std::unique_ptr<TestWindow> window;

    /// The properties of the next file dialog, before it is answered.
    void note(FileQuestion& question, std::function<void(QDialog&)> const& answer)
    {
        whenDialogOpens([&question, answer](QDialog& dialog) {
            if (auto const* const files = qobject_cast<QFileDialog*>(&dialog))
                question = FileQuestion(*files);
            answer(dialog);
        });
    }

private slots:
    void init()
    {
        WindowTest::init();
        // The folder where Qt begins as long as no file was chosen.
        QVERIFY(QDir::setCurrent(toQString(folder.pathWithSlash())));
        window = std::make_unique<TestWindow>();
    }

    void cleanup() { window.reset(); }

    void letQtChooseTheFirstFolder()
    {
        QFileDialog const plain(nullptr, QString(), QString(), QString());
        QCOMPARE(plain.directory().path(), QDir::currentPath());
        FileQuestion question;
        note(question, giveUp);
        click(window->button("openButton"));
        QCOMPARE(question.parent, window.get());
        QCOMPARE(question.caption, QString("Open"));
        QCOMPARE(question.folder, plain.directory().path());
        QCOMPARE(question.filters.join(' '), plain.nameFilters().join(' '));
        QCOMPARE(question.mode, QFileDialog::AnyFile);
        QCOMPARE(question.way, QFileDialog::AcceptOpen);
    }

    void askForAnyFolder()
    {
        window->read(folder.write("patches.txt", "RGB\n0 0 0\n"));
        FileQuestion question;
        note(question, giveUp);
        click(window->button("createButton"));
        QCOMPARE(question.parent, window.get());
        QCOMPARE(question.caption, QString("Please select a directory."));
        QCOMPARE(question.folder, QDir::currentPath());
        QCOMPARE(question.mode, QFileDialog::Directory);
        QVERIFY(question.isForFoldersOnly);
    }

    void openTheFileThatIsTyped_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << "patches.txt";
        QTest::newRow("beyond ASCII") << QString::fromUtf8("Prüfung 測定 ₂.txt");
    }

    void openTheFileThatIsTyped()
    {
        QFETCH(QString, name);
        String const table = folder.write(name.toStdString(), "RGB\n0 0 0\n");
        whenDialogOpens([&](QDialog& dialog) { takePath(dialog, toQString(table)); });
        click(window->button("openButton"));
        QCOMPARE(window->text("fileNameLabel"), name);
        QVERIFY(window->button("createButton")->isEnabled());
    }

    void acceptTheNameOfAMissingFile()
    {
        window->read(folder.write("patches.txt", "RGB\n0 0 0\n"));
        whenDialogOpens([this](QDialog& dialog) { takePath(dialog, toQString(folder.pathOf("nowhere.txt"))); });
        click(window->button("openButton"));
        QCOMPARE(window->text("fileNameLabel"), QString("nowhere.txt"));
        QVERIFY(!window->button("createButton")->isEnabled());
    }

    void changeNothingWhenTheyAreCancelled_data()
    {
        QTest::addColumn<int>("wayBack");
        for (int wayBack = 0; wayBack < static_cast<int>(std::size(waysBack)); ++wayBack)
            QTest::newRow(waysBack[wayBack].name) << wayBack;
    }

    void changeNothingWhenTheyAreCancelled()
    {
        QFETCH(int, wayBack);
        WayBack const& way = waysBack[wayBack];
        Settings settings;
        settings.table = folder.write("alike.txt", "RGB\n100 100 100\n101 101 101\n102 102 102\n");
        settings.device = tableScan;
        window->read(settings.table);
        window->chooseDevice("GB+ Scan");
        window->button(way.button)->setFocus();
        TemporaryFolder const out;
        QVERIFY(QDir::setCurrent(toQString(out.pathWithSlash())));

        Appearance const before(*window);
        bool isAsked = false;
        whenDialogOpens([&](QDialog& dialog) {
            isAsked = true;
            way.take(*window, dialog);
        });
        click(window->button(way.button));
        QVERIFY(isAsked);
        QVERIFY(QApplication::activeModalWidget() == nullptr);
        QVERIFY(QDir(toQString(out.pathWithSlash())).isEmpty());
        QVERIFY(attend(window.get()));
        Appearance const after(*window);
        QCOMPARE(after.controls.join('\n'), before.controls.join('\n'));
        QVERIFY(after.picture == before.picture);

        // The chart is unchanged, and the next command asks again.
        bool isAskedAfresh = false;
        whenDialogOpens([&](QDialog& dialog) {
            isAskedAfresh = &dialog == window->warnDialog();
            answerWithFolder(toQString(out.pathWithSlash()));
            click(window->button("warnOkButton"));
        });
        click(window->button("createButton"));
        QVERIFY(isAskedAfresh);
        LibraryChart chart(settings);
        chart.compute();
        QCOMPARE(filesIn(toQString(out.pathOf("New Chart"))), chart.files());
    }
};

QTEST_MAIN(DialogsTest)
#include "DialogsTest.moc"
