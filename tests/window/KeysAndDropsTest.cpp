// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TestWindow.h"
#include "WindowTest.h"
#include "support/TemporaryFolder.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QImage>
#include <QMimeData>
#include <QUrl>

namespace
{

constexpr Qt::DropActions copyOrMove = Qt::CopyAction | Qt::MoveAction;

/// Drags data over a widget and drops it.
/// \return whether the widget or its parent accepts the drag, and the action of the drop
std::pair<bool, Qt::DropAction> drop(QWidget& widget, QMimeData const& data, Qt::DropActions offered = copyOrMove,
                                     Qt::KeyboardModifiers held = Qt::NoModifier)
{
    QDragEnterEvent enter(QPoint(5, 5), offered, &data, Qt::LeftButton, held);
    QApplication::sendEvent(&widget, &enter);
    QDropEvent drop(QPointF(5, 5), offered, &data, Qt::LeftButton, held);
    QApplication::sendEvent(&widget, &drop);
    return {enter.isAccepted() && enter.dropAction() == enter.proposedAction(),
            drop.isAccepted() ? drop.dropAction() : Qt::IgnoreAction};
}

} // namespace

class KeysAndDropsTest : public WindowTest
{
    Q_OBJECT

    TemporaryFolder folder;

private slots:
    void readsADroppedFile()
    {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(toQString(folder.write("Dröp 1.txt", "RGB\n0 0 0\n")))});
        TestWindow window;
        QCOMPARE(drop(window, data), std::make_pair(true, Qt::CopyAction));
        QCOMPARE(window.text("fileNameLabel"), QString::fromUtf8("Dröp 1.txt"));
        QVERIFY(window.button("createButton")->isEnabled());
    }

    void readsAFileThatIsDroppedOnOneOfItsControls_data()
    {
        QTest::addColumn<QString>("control");
        for (char const* name :
             {"nameEdit", "deviceCombo", "pageWidthEdit", "pageHeightEdit", "pagePresetCombo", "marginTopEdit",
              "marginRightEdit", "marginBottomEdit", "marginLeftEdit", "patchSizeSlider", "epsRadio", "tiffRadio",
              "openButton", "createButton", "fileNameLabel", "preview"})
            QTest::newRow(name) << name;
    }

    void readsAFileThatIsDroppedOnOneOfItsControls()
    {
        QFETCH(QString, control);
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(toQString(folder.write("first.txt", "RGB\n0 0 0\n")))});
        TestWindow window;
        QCOMPARE(drop(*window.findChild<QWidget*>(control), data), std::make_pair(true, Qt::CopyAction));
        QCOMPARE(window.text("fileNameLabel"), QString("first.txt"));
        QCOMPARE(window.edit("nameEdit")->text(), QString("New Chart"));
        QCOMPARE(window.sheet(), QString("210.0 297.0 5.0 5.0 15.0 5.0"));
    }

    void readsTheFirstOfSeveralFiles()
    {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(toQString(folder.write("first.txt", "RGB\n0 0 0\n"))),
                      QUrl::fromLocalFile(toQString(folder.pathOf("second.txt")))});
        TestWindow window;
        QCOMPARE(drop(window, data), std::make_pair(true, Qt::CopyAction));
        QCOMPARE(window.text("fileNameLabel"), QString("first.txt"));
        QVERIFY(window.button("createButton")->isEnabled());
    }

    void copiesWhateverActionIsProposed_data()
    {
        QTest::addColumn<Qt::KeyboardModifiers>("held");
        QTest::newRow("as it comes") << Qt::KeyboardModifiers();
        QTest::newRow("a copy") << Qt::KeyboardModifiers(Qt::ControlModifier);
        QTest::newRow("to move it") << Qt::KeyboardModifiers(Qt::ShiftModifier);
        QTest::newRow("a link") << (Qt::ControlModifier | Qt::ShiftModifier);
    }

    void copiesWhateverActionIsProposed()
    {
        QFETCH(Qt::KeyboardModifiers, held);
        String const table = folder.write("first.txt", "RGB\n0 0 0\n");
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(toQString(table))});
        TestWindow window;
        QCOMPARE(drop(window, data, copyOrMove | Qt::LinkAction, held), std::make_pair(true, Qt::CopyAction));
        QCOMPARE(window.text("fileNameLabel"), QString("first.txt"));
        QVERIFY(QFile::exists(toQString(table)));
    }

    void readsAFileThatIsOfferedForMovingButDoesNotMoveIt()
    {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(toQString(folder.write("first.txt", "RGB\n0 0 0\n")))});
        TestWindow window;
        QCOMPARE(drop(window, data, Qt::MoveAction), std::make_pair(true, Qt::IgnoreAction));
        QCOMPARE(window.text("fileNameLabel"), QString("first.txt"));
    }

    void acceptsEveryDragAndIgnoresDropsWithoutAFile_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QVariant>("contents");
        QTest::newRow("text") << "text/plain" << QVariant(QByteArray("/etc/passwd"));
        QTest::newRow("an empty list of files") << "text/uri-list" << QVariant(QByteArray());
        QTest::newRow("a picture") << "application/x-qt-image" << QVariant(QImage(5, 5, QImage::Format_RGB32));
        QTest::newRow("unknown bytes") << "application/octet-stream" << QVariant(QByteArray("\0\xff", 2));
        QTest::newRow("nothing") << QString() << QVariant();
    }

    void acceptsEveryDragAndIgnoresDropsWithoutAFile()
    {
        QFETCH(QString, type);
        QFETCH(QVariant, contents);
        QMimeData data;
        if (contents.canConvert<QImage>())
            data.setImageData(contents);
        else if (!type.isEmpty())
            data.setData(type, contents.toByteArray());
        TestWindow window;
        for (char const* target : {"", "nameEdit", "marginTopEdit", "deviceCombo", "preview"}) {
            QWidget* const widget = *target ? window.findChild<QWidget*>(target) : &window;
            QCOMPARE(drop(*widget, data), std::make_pair(true, Qt::IgnoreAction));
        }
        QCOMPARE(window.text("fileNameLabel"), QString("No file selected"));
        QCOMPARE(window.edit("nameEdit")->text(), QString("New Chart"));
        QCOMPARE(window.edit("marginTopEdit")->text(), QString("5.0"));
        QVERIFY(!window.button("createButton")->isEnabled());
    }

    void readsNothingFromAnotherHost()
    {
        QMimeData data;
        data.setUrls({QUrl("https://example.org/patches.txt")});
        TestWindow window;
        window.read(folder.write("patches.txt", "RGB\n0 0 0\n"));
        QVERIFY(drop(window, data).first);
        QCOMPARE(window.text("fileNameLabel"), QString());
        QVERIFY(!window.button("createButton")->isEnabled());
    }

    void showsTheDifferenceWhileAltIsHeld_data()
    {
        QTest::addColumn<QString>("focus");
        for (char const* name :
             {"nameEdit", "pageWidthEdit", "deviceCombo", "patchSizeSlider", "tiffRadio", "openButton"})
            QTest::newRow(name) << name;
    }

    void showsTheDifferenceWhileAltIsHeld()
    {
        QFETCH(QString, focus);
        TestWindow window;
        auto* const widget = window.findChild<QWidget*>(focus);
        widget->setFocus();
        QCOMPARE(QApplication::focusWidget(), widget);
        QTest::keyPress(widget, Qt::Key_Alt);
        QVERIFY(window.label("gapsLabel")->isVisible());
        QTest::keyRelease(widget, Qt::Key_Alt);
        QVERIFY(window.label("gapsLabel")->isHidden());
    }

    void keepsShowingTheDifferenceWhenOtherKeysArePressed()
    {
        TestWindow window;
        QTest::keyPress(&window, Qt::Key_Alt);
        QTest::keyClick(&window, Qt::Key_Shift);
        QTest::keyClick(&window, Qt::Key_X);
        QVERIFY(window.label("gapsLabel")->isVisible());
        QTest::keyRelease(&window, Qt::Key_Alt);
        QVERIFY(window.label("gapsLabel")->isHidden());
    }

    void ignoresOtherKeys()
    {
        TestWindow window;
        for (QEvent::Type const type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, Qt::Key_Control, Qt::NoModifier);
            QApplication::sendEvent(&window, &event);
            QVERIFY(!event.isAccepted());
        }
        QVERIFY(window.label("gapsLabel")->isHidden());
    }
};

QTEST_MAIN(KeysAndDropsTest)
#include "KeysAndDropsTest.moc"
