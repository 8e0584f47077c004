// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColorEntry.h"
#include "Folders.h"
#include "TestWindow.h"
#include "WindowTest.h"

#include <QCoreApplication>
#include <QImageReader>
#include <QOpenGLContext>
#include <QTimer>

namespace
{

// L* of an RGB white: 100 where the conversions work, 0 where they do not.
float lightnessOfWhite()
{
    ColorEntry entry;
    String line("255 255 255\n");
    entry.parseFromString(line, RGB);
    return entry.getLab()[0];
}

} // namespace

class StartUpTest : public WindowTest
{
    Q_OBJECT

private slots:
    // This test runs first, so it sees the folders that the window finds.
    void leavesOneFolderForPlugIns()
    {
        QVERIFY(QCoreApplication::libraryPaths().size() > 1);
        TestWindow window;
        QCOMPARE(QCoreApplication::libraryPaths(),
                 QStringList(QCoreApplication::applicationDirPath() + "../Frameworks/"));
    }

    void knowsTheProgramsFolderAndTheResources()
    {
        exepath = String();
        respath = String();
        TestWindow window;
        QCOMPARE(toQString(exepath), QCoreApplication::applicationDirPath());
        QCOMPARE(toQString(respath), QCoreApplication::applicationDirPath() + "/../Resources/");
    }

    void canStillUseOpenGLAndPictures()
    {
        TestWindow window;
        auto const* const view = window.findChild<OpenGLView*>("preview");
        QVERIFY(view);
        QVERIFY(view->isValid());
        QVERIFY(!view->context()->isOpenGLES());
        QVERIFY(QImageReader::supportedImageFormats().contains("gif"));
        QVERIFY(!window.grab().isNull());
    }

    void convertsColorsAsLongAsItLives()
    {
        {
            TestWindow window;
            QVERIFY(qAbs(lightnessOfWhite() - 100) < 0.01f);
        }
        QCOMPARE(lightnessOfWhite(), 0.0f);
        TestWindow window;
        QVERIFY(qAbs(lightnessOfWhite() - 100) < 0.01f);
    }

    void takesTypedTextBeforeItIsDestroyed()
    {
        bool isWhole = false;
        {
            TestWindow window;
            QLineEdit* const edit = window.edit("pageWidthEdit");
            connect(edit, &QLineEdit::editingFinished, edit,
                    [&] { isWhole = qobject_cast<Controller*>(edit->window()) != nullptr; });
            typeOver(edit, "100");
        }
        QVERIFY(isWhole);
    }

    void endsTheProgramWhenItIsClosed()
    {
        TestWindow window;
        QTimer::singleShot(0, &window, &QWidget::close);
        QCOMPARE(QApplication::exec(), 0);
    }
};

QTEST_MAIN(StartUpTest)
#include "StartUpTest.moc"
