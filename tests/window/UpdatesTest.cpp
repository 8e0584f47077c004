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

/// Clicks the switch that the program itself shows nowhere.
void clickClipSwitch(TestWindow& window)
{
    auto* const box = window.findChild<QCheckBox*>("clipCheckBox");
    box->show();
    // Its text may end before its middle.
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
}

struct Deed
{
    char const* name;
    void (*act)(TestWindow& window);
};

constexpr Deed deeds[] = {
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

/// What the preview has painted last, without having it painted again.
QImage paintedLast(OpenGLView* view)
{
    QImage picture(view->size() * view->devicePixelRatioF(), QImage::Format_RGBA8888);
    view->makeCurrent();
    view->context()->functions()->glReadPixels(0, 0, picture.width(), picture.height(), GL_RGBA, GL_UNSIGNED_BYTE,
                                               picture.bits());
    view->doneCurrent();
    return picture.mirrored();
}

/// Waits for the frame to end in which the window was put together last: the toolkit paints nothing at once within it.
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

/// What each change of a setting leads to.
class UpdatesTest : public WindowTest
{
    Q_OBJECT

    TemporaryFolder folder;

    static QImage previewOf(TestWindow const& window)
    {
        return window.findChild<OpenGLView*>("preview")->grabFramebuffer();
    }

private slots:
    void followEveryDeed_data()
    {
        QTest::addColumn<int>("deed");
        for (int deed = 0; deed < static_cast<int>(std::size(deeds)); ++deed)
            QTest::newRow(deeds[deed].name) << deed;
    }

    void followEveryDeed()
    {
        QFETCH(int, deed);
        TestWindow window;
        // Whatever recomputes also rewrites the edits, and repaints the preview.
        for (char const* edit : {"pageWidthEdit", "pageHeightEdit", "marginTopEdit", "marginRightEdit",
                                 "marginBottomEdit", "marginLeftEdit"})
            window.edit(edit)->setText("untouched");
        PaintCount count(window.preview());
        deeds[deed].act(window);
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
