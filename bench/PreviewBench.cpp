// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Comparison.h"
#include "Folders.h"
#include "GUI.h"
#include "OpenGLCanvas.h"
#include "PaintedView.h"
#include "PreviewDrawing.h"
#include "Samples.h"
#include "support/TemporaryFolder.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QOpenGLFunctions_1_1>

#include <cstdio>
#include <cstdlib>
#include <initializer_list>

// What a person at the window waits for: a repaint of the preview, and a step of the patch slider.

namespace
{

constexpr int previewWidth = 500;
constexpr int previewHeight = 280;
constexpr int patience = 60'000; // ms
constexpr double secondsPerFrame = 1.0 / 60;

/// Draws with a call for each corner of each patch.
class CornerCanvas
{
public:
    explicit CornerCanvas(QOpenGLFunctions_1_1& functions) : gl(functions), whole(functions) {}

    void begin(RealSize size, PreviewColor background) { whole.begin(size, background); }
    void show(RealRect const& plane) { whole.show(plane); }
    void fill(RealRect const& rect, PreviewColor color) { draw(GL_QUADS, rect, color); }
    void outline(RealRect const& rect, PreviewColor color) { draw(GL_LINE_LOOP, rect, color); }

private:
    void draw(unsigned int mode, RealRect const& rect, PreviewColor color)
    {
        auto const corner = [this](double x, double y) { gl.glVertex2f(static_cast<float>(x), static_cast<float>(y)); };
        gl.glColor3f(color.red, color.green, color.blue);
        gl.glBegin(mode);
        corner(rect.x, rect.y);
        corner(rect.x + rect.width, rect.y);
        corner(rect.x + rect.width, rect.y + rect.height);
        corner(rect.x, rect.y + rect.height);
        gl.glEnd();
    }

    QOpenGLFunctions_1_1& gl;
    OpenGLCanvas whole;
};

class CornerView : public QOpenGLWidget
{
public:
    explicit CornerView(ChartLayout const& layout) : chart(layout) {}

protected:
    void paintGL() override
    {
        CornerCanvas canvas(*fixedFunctions());
        paintChart(canvas, {static_cast<double>(width()), static_cast<double>(height())}, chart);
    }

private:
    ChartLayout const& chart;
};

/// Does something that repaints a view, and waits until the display has the view's picture.
template <typename Action>
void untilShown(QOpenGLWidget& view, Action const& action)
{
    bool isShown = false;
    auto const connection =
        QObject::connect(&view, &QOpenGLWidget::frameSwapped, &view, [&isShown] { isShown = true; });
    action();
    QDeadlineTimer const deadline(patience);
    while (!isShown) {
        QCoreApplication::processEvents();
        if (deadline.hasExpired()) {
            std::fprintf(stderr, "The preview is not repainted.\n");
            std::exit(1);
        }
    }
    QObject::disconnect(connection);
}

void benchRepaint(String const& path)
{
    InputFile table;
    table.init(path);
    ChartLayout const chart = rulerChart(table);

    CornerView baseline(chart);
    OpenGLView view;
    view.setChartLayout(&chart);
    PaintedView paintedView;
    paintedView.setChartLayout(&chart);
    for (QWidget* const widget : std::initializer_list<QWidget*>{&baseline, &view, &paintedView})
        widget->setFixedSize(previewWidth, previewHeight);
    untilShown(baseline, [&] { baseline.show(); });
    untilShown(view, [&] { view.show(); });
    paintedView.show();

    Side const baselineSide{[&] { untilShown(baseline, [&] { baseline.repaint(); }); }};
    Side const side{[&] { untilShown(view, [&] { view.updateGL(); }); }};
    Side const paintedSide{[&] {
        paintedView.repaint();
        QGuiApplication::sync();
    }};
    printRow("repaint by OpenGL, against a call a corner", sizeText(table), compare(baselineSide, side, Clock::wall));
    printRow("repaint by Qt's painter, against the same", sizeText(table),
             compare(baselineSide, paintedSide, Clock::wall));
}

/// \param framesLonger  how many frames of a usual display the chart may add to a step; that is promised
void benchSliderStep(String const& path, int framesLonger)
{
    Controller window;
    window.devicechanged(longRuler);
    window.pagepresetchanged(a3Portrait);
    OpenGLView& preview = *window.findChild<OpenGLView*>("preview");
    untilShown(preview, [&] { preview.updateGL(); });

    auto const load = [&](String const& file) {
        untilShown(preview, [&] {
            window.setInputFilename(file);
            window.patchsizechanged(8);
        });
        // What else of the window is new is shown now, not within the step that is timed.
        QCoreApplication::processEvents();
    };
    Work const step = [&] { untilShown(preview, [&] { window.patchsizechanged(7); }); };
    Times const times = compare({step, [&] { load(String()); }}, {step, [&] { load(path); }}, Clock::wall);
    InputFile table;
    table.init(path);
    printRow("slider step, against one without a chart", sizeText(table), times,
             {Promise::secondsLonger, framesLonger * secondsPerFrame});
}

} // namespace

int main(int argc, char** argv)
{
    QSurfaceFormat format;
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    QSurfaceFormat::setDefaultFormat(format);
    QApplication application(argc, argv);
    respath = String(PATCHLOOM_RESOURCES);
    ColorEntry::prepareColorConversions();
    TemporaryFolder const folder;
    String const hundred = writeRandomTable(folder, CMYK, 100);
    String const fiveThousand = writeRandomTable(folder, CMYK, 5'000);
    String const twentyThousand = writeRandomTable(folder, CMYK, 20'000);
    for (String const& path : {hundred, examplePath(), fiveThousand, twentyThousand})
        benchRepaint(path);
    benchSliderStep(examplePath(), 1);
    benchSliderStep(fiveThousand, 3);
    return exitStatus();
}
