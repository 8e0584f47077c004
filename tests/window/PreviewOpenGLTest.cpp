// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PreviewPictures.h"
#include "WindowTest.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QOpenGLFunctions_1_1>
#include <QOpenGLVersionFunctionsFactory>

#include <limits>

namespace
{

QSurfaceFormat fixedFunctions()
{
    QSurfaceFormat format;
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    return format;
}

QSurfaceFormat coreProfile()
{
    QSurfaceFormat format;
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    return format;
}

QSurfaceFormat forwardCompatible()
{
    QSurfaceFormat format;
    format.setVersion(3, 0);
    return format;
}

QSurfaceFormat embedded()
{
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGLES);
    format.setVersion(2, 0);
    return format;
}

/// A current OpenGL context that draws into 500 x 280 pixels, black at first.
class Drawing
{
public:
    explicit Drawing(QSurfaceFormat const& format)
    {
        context.setFormat(format);
        context.create();
        surface.setFormat(context.format());
        surface.create();
        if (!context.makeCurrent(&surface))
            return;
        buffer = std::make_unique<QOpenGLFramebufferObject>(500, 280);
        buffer->bind();
        context.functions()->glViewport(0, 0, 500, 280);
        context.functions()->glClearColor(0, 0, 0, 1);
        context.functions()->glClear(GL_COLOR_BUFFER_BIT);
    }

    QImage picture() const { return buffer ? buffer->toImage().convertToFormat(QImage::Format_RGB32) : QImage(); }
    QOpenGLFunctions* functions() const { return context.functions(); }

    /// Shows the plane from (0, 0) to (500, 280) mm, one pixel for each mm.
    static void showMillimetres()
    {
        auto* const gl = QOpenGLVersionFunctionsFactory::get<QOpenGLFunctions_1_1>(QOpenGLContext::currentContext());
        gl->glMatrixMode(GL_PROJECTION);
        gl->glLoadIdentity();
        gl->glOrtho(0, 500, 0, 280, -1, 1);
    }

private:
    QOpenGLContext context;
    QOffscreenSurface surface;
    std::unique_ptr<QOpenGLFramebufferObject> buffer;
};

bool isBlack(QImage picture)
{
    QImage black(picture.size(), picture.format());
    black.fill(Qt::black);
    return !picture.isNull() && picture == black;
}

QColor const black(Qt::black);

} // namespace

/// What charts, chart pages and sheets draw into the current OpenGL context.
class PreviewOpenGLTest : public WindowTest
{
    Q_OBJECT

    ChartColors const colors;

    // Two credit cards of 54 x 85 mm, from (-16, -2) and (58, -2) on. Each shows 2 x 5 patches of 1 cm, the first ones'
    // corners at (0, 6.5) and (74, 6.5).
    static PreviewChart twoCards()
    {
        return PreviewChart(colorfulEntries(18), standardRuler, paper(creditCardPortrait));
    }

private slots:
    void drawsAChartAsTheViewShowsIt()
    {
        PreviewChart const chart(colorfulEntries(100), tableSpot, paper(a4Portrait));
        QImage const expected =
            PreviewViews().openGLPicture(&chart.layout, {500, 280}).convertToFormat(QImage::Format_RGB32);
        Drawing const byChart(fixedFunctions());
        chart.layout.drawOpenGL({500, 280});
        QCOMPARE(byChart.picture(), expected);
        Drawing const byFunction(fixedFunctions());
        drawChartLayout({500, 280}, &chart.layout);
        QCOMPARE(byFunction.picture(), expected);
    }

    void setsTheViewportInWholePixels()
    {
        Drawing const drawing(fixedFunctions());
        ChartLayout().drawOpenGL({400.9, 200.9});
        int viewport[4];
        drawing.functions()->glGetIntegerv(GL_VIEWPORT, viewport);
        QCOMPARE(std::vector<int>(viewport, viewport + 4), (std::vector<int>{0, 0, 400, 200}));
        QVERIFY(isAlike(drawing.picture().pixel(0, 0), middleGrey.rgb()));
    }

    void drawsAnEvenGreyForAViewWithoutExtentOrEnd()
    {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
        PreviewChart const chart = twoCards();
        for (RealSize const size : {RealSize{0, 0}, RealSize{0, 280}, RealSize{500, 0}, RealSize{},
                                    RealSize{infinity, infinity}, RealSize{notANumber, 280}, RealSize{1e300, 280}}) {
            Drawing const drawing(fixedFunctions());
            chart.layout.drawOpenGL(size);
            QVERIFY(isEvenGrey(drawing.picture()));
        }
    }

    void drawsAChartPageIntoThePlaneThatIsShown()
    {
        PreviewChart const chart = twoCards();
        ChartPage const& second = (*chart.layout.getChartPages())[1];
        QCOMPARE(chart.layout.getPatchesX(), 4);
        QCOMPARE(chart.layout.getPatchesY(), 5);
        Drawing const drawing(fixedFunctions());
        drawing.showMillimetres();
        second.drawOpenGL(&chart.layout);
        QCOMPARE(mistakesIn(drawing.picture(), {{"first page", 20, 250, black},
                                                {"right of the second page", 120, 250, black},
                                                {"margin", 66, 250, white},
                                                {"first patch", 79, 268, chart.colorAt(2, 0)},
                                                {"right of it", 89, 268, chart.colorAt(3, 0)},
                                                {"last patch", 89, 228, chart.colorAt(3, 4)},
                                                {"above it", 89, 218, white}}),
                 QString());
    }

    void drawsASheetIntoThePlaneThatIsShown()
    {
        PreviewChart chart = twoCards();
        OutputPage const& sheet = (*(*chart.layout.getChartPages())[1].getOutputPages())[0];
        Drawing const drawing(fixedFunctions());
        drawing.showMillimetres();
        sheet.drawOpenGL(&chart.layout);
        QCOMPARE(mistakesIn(drawing.picture(), {{"first patch", 79, 268, chart.colorAt(2, 0)},
                                                {"paper", 89, 203, white},
                                                {"right of the paper", 115, 268, black}}),
                 QString());
    }

    // 16 + 20 + 16 mm are as wide as they go; up, 8.5 + 50 + 8.5 mm are less than the paper's 85.
    void clipsASheetToItsContentButNotThePaperByItself()
    {
        PreviewChart chart = twoCards();
        chart.layout.setClipToContent(true);
        OutputPage const& sheet = (*(*chart.layout.getChartPages())[1].getOutputPages())[0];
        Drawing const clipped(fixedFunctions());
        clipped.showMillimetres();
        sheet.drawOpenGL(&chart.layout);
        QCOMPARE(mistakesIn(clipped.picture(), {{"upper margin", 89, 218, white}, {"above it", 89, 206, black}}),
                 QString());
        QCOMPARE(sheet.getSize().height, 85.0);
        Drawing const whole(fixedFunctions());
        whole.showMillimetres();
        drawOutputPage(&chart.layout, &sheet);
        QCOMPARE(mistakesIn(whole.picture(), {{"upper margin", 89, 218, white}, {"paper", 89, 206, white}}), QString());
    }

    void drawsNothingWithoutFixedFunctions()
    {
        PreviewChart const chart = twoCards();
        ChartPage const& page = (*chart.layout.getChartPages())[0];
        OutputPage const& sheet = (*page.getOutputPages())[0];
        for (QSurfaceFormat const& format : {coreProfile(), forwardCompatible(), embedded()}) {
            Drawing const drawing(format);
            chart.layout.drawOpenGL({500, 280});
            page.drawOpenGL(&chart.layout);
            sheet.drawOpenGL(&chart.layout);
            drawOutputPage(&chart.layout, &sheet);
            QCOMPARE(drawing.functions()->glGetError(), GLenum(GL_NO_ERROR));
            QVERIFY(isBlack(drawing.picture()));
        }
    }

    void drawsNothingWithoutAContext()
    {
        PreviewChart const chart = twoCards();
        QVERIFY(!QOpenGLContext::currentContext());
        chart.layout.drawOpenGL({500, 280});
        (*chart.layout.getChartPages())[0].drawOpenGL(&chart.layout);
        QVERIFY(!QOpenGLContext::currentContext());
    }

    void paintsTheViewWhereItsContextHasNoFixedFunctions()
    {
        PreviewChart const chart(colorfulEntries(100), standardRuler, paper(a4Portrait));
        OpenGLView view;
        view.setFormat(coreProfile());
        view.resize(500, 280);
        view.setChartLayout(&chart.layout);
        view.show();
        QVERIFY(attend(&view));
        QCOMPARE(view.context()->format().profile(), QSurfaceFormat::CoreProfile);
        QCOMPARE(mistakesIn(view.grabFramebuffer(), {{"left of the sheet", 153, 140, middleGrey},
                                                     {"left outline", 157, 140, outlineGrey},
                                                     {"right of the patches", 250, 140, white},
                                                     {"first patch", 180, 245, chart.colorAt(0, 0)},
                                                     {"last patch", 206, 34, chart.colorAt(3, 24)}}),
                 QString());
    }

    void setsItsStateWhenItBegins()
    {
        OpenGLView view;
        view.show();
        QVERIFY(attend(&view));
        view.makeCurrent();
        QOpenGLFunctions* const gl = view.context()->functions();
        for (unsigned const feature : {0u + GL_TEXTURE_2D, 0u + GL_DEPTH_TEST, 0u + GL_COLOR_MATERIAL})
            QVERIFY(!gl->glIsEnabled(feature));
        QVERIFY(gl->glIsEnabled(GL_BLEND));
        int source = 0;
        int destination = 0;
        gl->glGetIntegerv(GL_BLEND_SRC, &source);
        gl->glGetIntegerv(GL_BLEND_DST, &destination);
        QCOMPARE(source, GL_SRC_ALPHA);
        QCOMPARE(destination, GL_ONE_MINUS_SRC_ALPHA);
        view.doneCurrent();
    }
};

QTEST_MAIN(PreviewOpenGLTest)
#include "PreviewOpenGLTest.moc"
