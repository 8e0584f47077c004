// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TestWindow.h"
#include "WindowTest.h"
#include "support/TemporaryFolder.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

namespace
{

/// Drags data over the window and lets it go there.
/// \return whether the window let it come in, and whether it took it
std::pair<bool, bool> drop(QWidget& window, QMimeData const& data)
{
    Qt::DropActions const actions = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent enter(QPoint(100, 280), actions, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &enter);
    QDropEvent drop(QPointF(100, 280), actions, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &drop);
    return {enter.isAccepted() && enter.dropAction() == enter.proposedAction(),
            drop.isAccepted() && drop.dropAction() == Qt::CopyAction};
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
        QCOMPARE(drop(window, data), std::make_pair(true, true));
        QCOMPARE(window.text("fileNameLabel"), QString::fromUtf8("Dröp 1.txt"));
        QVERIFY(window.button("createButton")->isEnabled());
    }

    void readsAFileThatIsDroppedOnOneOfItsControls_data()
    {
        QTest::addColumn<QString>("control");
        for (char const* name : {"nameEdit", "pageWidthEdit", "marginLeftEdit", "deviceCombo", "patchSizeSlider",
                                 "openButton", "fileNameLabel", "preview"})
            QTest::newRow(name) << name;
    }

    void readsAFileThatIsDroppedOnOneOfItsControls()
    {
        QFETCH(QString, control);
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(toQString(folder.write("first.txt", "RGB\n0 0 0\n")))});
        TestWindow window;
        QCOMPARE(drop(*window.findChild<QWidget*>(control), data), std::make_pair(true, true));
        QCOMPARE(window.text("fileNameLabel"), QString("first.txt"));
        QCOMPARE(window.edit("nameEdit")->text(), QString("New Chart"));
        QCOMPARE(window.sheet(), QStringList({"210.0", "297.0", "5.0", "5.0", "15.0", "5.0"}));
    }

    void readsTheFirstOfSeveralFiles()
    {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(toQString(folder.write("first.txt", "RGB\n0 0 0\n"))),
                      QUrl::fromLocalFile(toQString(folder.pathOf("second.txt")))});
        TestWindow window;
        QCOMPARE(drop(window, data), std::make_pair(true, true));
        QCOMPARE(window.text("fileNameLabel"), QString("first.txt"));
        QVERIFY(window.button("createButton")->isEnabled());
    }

    void letsTextComeInAndDoesNothingWithIt()
    {
        QMimeData data;
        data.setText("/etc/passwd");
        TestWindow window;
        QCOMPARE(drop(window, data), std::make_pair(true, false));
        QCOMPARE(window.text("fileNameLabel"), QString("No file selected"));
    }

    void doesNothingForAnEmptyList()
    {
        QMimeData data;
        data.setData("text/uri-list", QByteArray());
        TestWindow window;
        QCOMPARE(drop(window, data), std::make_pair(true, false));
        QCOMPARE(window.text("fileNameLabel"), QString("No file selected"));
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

    void keepsTheDifferenceShownWhateverElseIsPressed()
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
