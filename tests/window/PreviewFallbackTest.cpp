// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PreviewPictures.h"
#include "TestWindow.h"
#include "WindowTest.h"
#include "support/TemporaryFolder.h"

#include <QOpenGLWidget>
#include <QScreen>

/// The window on a display without usable OpenGL. The environment says which part of OpenGL is missing. By default all
/// of it is missing.
class PreviewFallbackTest : public WindowTest
{
    Q_OBJECT

    // In the preview's own pixels.
    static QImage shot(TestWindow const& window)
    {
        // The display shows the painted picture a moment later.
        QTest::qWait(100);
        return window.screen()->grabWindow(window.winId()).toImage().copy(window.preview()->geometry());
    }

public:
    static void initMain()
    {
        WindowTest::initMain();
        bool const hasLessOpenGL =
            qEnvironmentVariableIsSet("MESA_GL_VERSION_OVERRIDE") || qEnvironmentVariableIsSet("LIBGL_ALWAYS_INDIRECT");
        if (!hasLessOpenGL)
            qputenv("QT_XCB_GL_INTEGRATION", "none");
    }

private slots:
    // Qt may report that there is no OpenGL.
    void init() {}

    void holdsNoViewThatNeedsOpenGL()
    {
        TestWindow window;
        QVERIFY(!OpenGLView::isUsable());
        QVERIFY(window.findChildren<QOpenGLWidget*>().isEmpty());
    }

    // The sheet spans 157.26 to 342.74 across and 8.83 to 271.17 down, 0.88328 pixels a mm; the only patch, of 8 mm,
    // lies 21 mm and 23.5 mm inside.
    void showsTheSameChart()
    {
        TemporaryFolder const folder;
        TestWindow window;
        QVERIFY(isAlike(shot(window).pixel(250, 140), middleGrey.rgb()));
        window.chooseDevice("VT-30 Standard Ruler");
        window.read(folder.write("red.txt", "RGB\n255 0 0\n"));
        QCOMPARE(mistakesIn(shot(window), {{"corner", 0, 0, middleGrey},
                                           {"opposite corner", 499, 279, middleGrey},
                                           {"left of the sheet", 153, 140, middleGrey},
                                           {"left outline", 157, 140, outlineGrey},
                                           {"lower outline", 250, 271, outlineGrey},
                                           {"paper", 250, 140, white},
                                           {"patch", 179, 246, Qt::red},
                                           {"left of the patch", 173, 246, white},
                                           {"below the patch", 179, 253, white}}),
                 QString());
    }
};

QTEST_MAIN(PreviewFallbackTest)
#include "PreviewFallbackTest.moc"
