// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Translations.h"
#include "ChartFiles.h"
#include "TestWindow.h"
#include "WindowTest.h"
#include "support/TemporaryFolder.h"

#include <QDir>
#include <QLocale>

namespace
{

/// Translates every text: puts a star before it.
class Stars : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(char const*, char const* text, char const*, int) const override { return QString("*") + text; }
};

/// The titles of the open dialogs.
class TitleWatcher : public QObject
{
public:
    TitleWatcher() { qApp->installEventFilter(this); }

    QStringList titles;

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        auto const* const dialog = qobject_cast<QDialog*>(object);
        if (dialog && event->type() == QEvent::Show)
            titles.append(dialog->windowTitle());
        return false;
    }
};

} // namespace

/// The window in a German locale. Qt looks for its own texts in the test's catalogues.
class TranslationsTest : public WindowTest
{
    Q_OBJECT

public:
    static void initMain()
    {
        WindowTest::initMain();
        qputenv("LC_ALL", "de_DE.UTF-8");
    }

private slots:
    void initTestCase() { QCOMPARE(QLocale::system().name(), QString("de_DE")); }

    void showsTheSourceTextsWithoutACatalogue()
    {
        TemporaryFolder const empty;
        QDir::setCurrent(QString::fromStdString(empty.path().string()));
        Translations const translations;
        TestWindow window;
        QCOMPARE(window.text("inputLabel"), QString("Input File"));
        QCOMPARE(window.text("fileNameLabel"), QString("No file selected"));
        QCOMPARE(window.button("openButton")->text(), QString("Open..."));
        QCOMPARE(window.windowTitle(), QString("Patchloom"));
    }

    void showsTheTextsOfTheCatalogueInTheWorkingDirectory()
    {
        QDir::setCurrent(PATCHLOOM_CATALOGUES);
        Translations const translations;
        TestWindow window;
        QCOMPARE(window.text("inputLabel"), QString("Eingabedatei"));
        QCOMPARE(window.edit("nameEdit")->text(), QString("Neue Karte"));
        QCOMPARE(window.warnDialog()->windowTitle(), QString("Gaps required"));
    }

    void distinguishesEqualTextsByTheirComments()
    {
        QDir::setCurrent(PATCHLOOM_CATALOGUES);
        Translations const translations;
        TestWindow window;
        QCOMPARE(window.button("warnCancelButton")->text(), QString("Abbrechen"));
        QCOMPARE(Controller::tr("Cancel", "another button"), QString("Verwerfen"));
    }

    void showsTheToolkitsTextsFromItsOwnFolder()
    {
        TemporaryFolder const empty;
        QDir::setCurrent(QString::fromStdString(empty.path().string()));
        QCOMPARE(QCoreApplication::translate("QFileDialog", "Look in:"), QString("Look in:"));
        Translations const translations;
        QCOMPARE(QCoreApplication::translate("QFileDialog", "Look in:"), QString("Suchen in:"));
    }

    void prefersTheProgramsOwnTexts()
    {
        QDir::setCurrent(PATCHLOOM_CATALOGUES);
        Translations const translations;
        QCOMPARE(Controller::tr("Name", "name label"), QString("Bezeichnung"));
    }

    void doesNotTranslateOtherTexts()
    {
        Stars stars;
        QCoreApplication::installTranslator(&stars);
        TemporaryFolder const folder;
        TestWindow window;
        QCOMPARE(window.text("inputLabel"), QString("*Input File"));
        QCOMPARE(window.text("patchSizeLabel"), QString("Patch size: 8 x 8 mm"));
        QCOMPARE(window.text("gapsLabel"), QString("Gaps: No Scan"));
        QCOMPARE(window.text("warnSignLabel"), QString());
        drag(window.slider(), 9);
        QCOMPARE(window.text("patchSizeLabel"), QString("Patch size: 9 x 9 mm"));
        for (int i = 0; i < window.combo("deviceCombo")->count(); ++i)
            QCOMPARE(window.combo("deviceCombo")->itemText(i), QString(measurementlayout_strings[i]));
        for (int i = 0; i < window.combo("pagePresetCombo")->count(); ++i)
            QCOMPARE(window.combo("pagePresetCombo")->itemText(i), QString(pagelayoutpreset_strings[i]));
        window.chooseDevice("GB+ Scan");
        QCOMPARE(window.text("gapsLabel"), QString("Gaps: 0.00 dE"));

        window.read(folder.write("alike.txt", "RGB\n100 100 100\n100 100 100\n"));
        QCOMPARE(window.text("gapsLabel"), QString("Gaps: 0.00 dE"));
        TitleWatcher watcher;
        whenDialogOpens([&](QDialog&) {
            answerWithFolder(toQString(folder.pathWithSlash()));
            click(window.button("warnOkButton"));
        });
        click(window.button("createButton"));
        QCOMPARE(watcher.titles.join(", "), QString("Gaps required, *Please select a directory., Creating files..."));
        QVERIFY(QFile::exists(toQString(folder.pathOf("*New Chart"))));
        QCoreApplication::removeTranslator(&stars);
    }

    void endsWithTheTranslations()
    {
        QDir::setCurrent(PATCHLOOM_CATALOGUES);
        {
            Translations const translations;
            QCOMPARE(Controller::tr("Device", "device label"), QString::fromUtf8("Gerät"));
        }
        QCOMPARE(Controller::tr("Device", "device label"), QString("Device"));
    }
};

QTEST_MAIN(TranslationsTest)
#include "TranslationsTest.moc"
