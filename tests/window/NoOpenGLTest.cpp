// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PaintCount.h"
#include "TestWindow.h"
#include "WindowTest.h"
#include "support/TemporaryFolder.h"

#include <QImage>
#include <QOpenGLWidget>
#include <QScreen>

/// The window on a display without OpenGL.
class NoOpenGLTest : public WindowTest
{
    Q_OBJECT

    QImage shot(QWidget const& window)
    {
        // The display shows the painted picture a moment later.
        QTest::qWait(100);
        return window.screen()->grabWindow(window.winId()).toImage();
    }

public:
    static void initMain()
    {
        WindowTest::initMain();
        qputenv("QT_XCB_GL_INTEGRATION", "none");
    }

private slots:
    // Qt itself reports that there is no OpenGL.
    void init() { QTest::ignoreMessage(QtWarningMsg, QRegularExpression(".*OpenGL.*")); }

    void showsItsPreviewWithoutOpenGL()
    {
        TestWindow window;
        QVERIFY(!OpenGLView::isUsable());
        QVERIFY(window.findChildren<QOpenGLWidget*>().isEmpty());
        QCOMPARE(window.preview()->geometry(), QRect(20, 300, 500, 280));
        QImage const picture = shot(window);
        QCOMPARE(picture.size(), QSize(540, 600));
        QCOMPARE(picture.pixelColor(270, 440), QColor(128, 128, 128));
        QCOMPARE(picture.pixelColor(21, 301), QColor(128, 128, 128));
        QCOMPARE(picture.pixelColor(5, 5), window.palette().color(QPalette::Window));
    }

    void showsEveryChangeOfTheChart()
    {
        TemporaryFolder const folder;
        TestWindow window;
        window.chooseDevice("VT-30 Long Ruler");
        window.read(folder.write("white.txt", "RGB\n255 255 255\n"));
        QVERIFY(window.button("createButton")->isEnabled());
        QCOMPARE(shot(window).pixelColor(270, 320), QColor(Qt::white));
    }

    void repaintsAtOnce()
    {
        TestWindow window;
        PaintCount count(window.preview());
        bool isPaintedBeforeControlReturns = false;
        connect(window.radio("tiffRadio"), &QRadioButton::clicked, &window,
                [&] { isPaintedBeforeControlReturns = count.paints > 0; });
        click(window.radio("tiffRadio"));
        QVERIFY(isPaintedBeforeControlReturns);
    }
};

QTEST_MAIN(NoOpenGLTest)
#include "NoOpenGLTest.moc"
