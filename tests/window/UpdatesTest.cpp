// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LibraryChart.h"
#include "PaintCount.h"
#include "PreviewPictures.h"
#include "TestWindow.h"
#include "WindowTest.h"

#include <QCheckBox>
#include <QElapsedTimer>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QScreen>

#include <iterator>

namespace
{

constexpr QSize previewSize(500, 280);

/// Clicks the check box that the program hides.
void clickClipSwitch(TestWindow& window)
{
    auto* const box = window.findChild<QCheckBox*>("clipCheckBox");
    box->show();
    // Its middle may lie beyond its text.
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
}

struct Change
{
    char const* name;
    void (*act)(TestWindow& window);
};

constexpr Change changes[] = {
    {"naming the chart", [](TestWindow& window) { enter(window.edit("nameEdit"), "Name"); }},
    {"naming it as it is named", [](TestWindow& window) { enter(window.edit("nameEdit"), "New Chart"); }},
    {"choosing a device", [](TestWindow& window) { window.chooseDevice("VT-30 Long Ruler"); }},
    {"choosing paper", [](TestWindow& window) { window.choosePaper("Letter Portrait"); }},
    {"a new width", [](TestWindow& window) { enter(window.edit("pageWidthEdit"), "250"); }},
    {"a new margin", [](TestWindow& window) { enter(window.edit("marginLeftEdit"), "9"); }},
    {"dragging the slider", [](TestWindow& window) { drag(window.slider(), 11); }},
    {"clicking EPS", [](TestWindow& window) { click(window.radio("epsRadio")); }},
    {"clicking TIFF", [](TestWindow& window) { click(window.radio("tiffRadio")); }},
    {"clipping to the content", clickClipSwitch},
    {"reading a file", [](TestWindow& window) { window.read(PATCHLOOM_EXAMPLES "rgb-24.txt"); }},
    {"reading no file", [](TestWindow& window) { window.read(PATCHLOOM_EXAMPLES); }},
};

/// The picture that the preview painted last. Does not paint it again.
QImage paintedLast(OpenGLView* view)
{
    QImage picture(view->size() * view->devicePixelRatioF(), QImage::Format_RGBA8888);
    view->makeCurrent();
    view->context()->functions()->glReadPixels(0, 0, picture.width(), picture.height(), GL_RGBA, GL_UNSIGNED_BYTE,
                                               picture.bits());
    view->doneCurrent();
    return picture.mirrored();
}

/// Waits until the last frame of the window ends: within a frame, Qt does not repaint at once.
bool waitForNextFrame(OpenGLView* view)
{
    auto const frame = static_cast<qint64>(1000 / view->screen()->refreshRate()) + 1;
    QElapsedTimer sinceLast;
    sinceLast.start();
    QObject::connect(view, &QOpenGLWidget::frameSwapped, view, [&sinceLast] { sinceLast.restart(); });
    bool const isOver = QTest::qWaitFor([&] { return sinceLast.elapsed() > frame; });
    view->disconnect(view);
    return isOver;
}

} // namespace

/// The effects of each change of a setting.
class UpdatesTest : public WindowTest
{
    Q_OBJECT

    TemporaryFolder folder;

    static QImage previewOf(TestWindow const& window)
    {
        return window.findChild<OpenGLView*>("preview")->grabFramebuffer();
    }

private slots:
    void followEveryChangeOfASetting_data()
    {
        QTest::addColumn<int>("change");
        for (int change = 0; change < static_cast<int>(std::size(changes)); ++change)
            QTest::newRow(changes[change].name) << change;
    }

    void followEveryChangeOfASetting()
    {
        QFETCH(int, change);
        TestWindow window;
        // Each change also rewrites the edits and repaints the preview.
        for (char const* edit : {"pageWidthEdit", "pageHeightEdit", "marginTopEdit", "marginRightEdit",
                                 "marginBottomEdit", "marginLeftEdit"})
            window.edit(edit)->setText("untouched");
        PaintCount count(window.preview());
        changes[change].act(window);
        QVERIFY2(!window.sheet().contains("untouched"), qPrintable(window.sheet()));
        QTRY_VERIFY(count.paints > 0);
    }

    void repaintThePreviewAtOnce()
    {
        TestWindow window;
        auto* const view = window.findChild<OpenGLView*>("preview");
        window.chooseDevice("VT-30 Long Ruler");
        String const table = folder.write("white.txt", "RGB\n255 255 255\n");
        QVERIFY(waitForNextFrame(view));
        QVERIFY(isEvenGrey(paintedLast(view)));

        window.read(table);
        QImage const painted = paintedLast(view);
        QCOMPARE(painted.pixelColor(250, 20), QColor(Qt::white));
        QVERIFY(isAlike(painted.pixel(20, 140), middleGrey.rgb()));
    }

    void showAndWriteSheetsThatAreClippedToTheirContent()
    {
        TestWindow window;
        Settings settings;
        settings.table = PATCHLOOM_EXAMPLES "rgb-24.txt";
        settings.device = longRuler;
        window.read(settings.table);
        window.chooseDevice("VT-30 Long Ruler");
        LibraryChart chart(settings);
        chart.compute();
        PreviewViews views;

        QImage const whole = previewOf(window);
        QVERIFY(whole == views.openGLPicture(&chart.layout, previewSize));
        clickClipSwitch(window);
        chart.layout.setClipToContent(true);
        QImage const clipped = previewOf(window);
        QVERIFY(clipped == views.openGLPicture(&chart.layout, previewSize));
        QVERIFY(clipped != whole);
        TemporaryFolder const out;
        answerWithFolder(toQString(out.pathWithSlash()));
        click(window.button("createButton"));
        QCOMPARE(filesIn(toQString(out.pathOf("New Chart"))), chart.files());

        clickClipSwitch(window);
        QVERIFY(previewOf(window) == whole);
        chart.layout.setClipToContent(false);
        answerWithFolder(toQString(out.pathWithSlash()));
        click(window.button("createButton"));
        QCOMPARE(filesIn(toQString(out.pathOf("New Chart"))), chart.files());
    }
};

QTEST_MAIN(UpdatesTest)
#include "UpdatesTest.moc"
