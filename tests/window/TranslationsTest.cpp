// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "GUITranslations.h"
#include "TestWindow.h"
#include "WindowTest.h"
#include "support/TemporaryFolder.h"

#include <QDir>
#include <QLocale>

/// The window for a German reader. The toolkit looks for its own texts in the test's catalogues, too.
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

    void tellsOneTextFromAnotherByItsComment()
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
