// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OpenGLView.h"

#include "OpenGLCanvas.h"
#include "PaintedView.h"
#include "layout/ChartLayout.h"
#include "output/PreviewDrawing.h"

#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLFunctions_1_1>
#include <QPainter>

#include <cmath>

namespace
{

QSurfaceFormat fixedFunctionFormat()
{
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    return format;
}

} // namespace

bool OpenGLView::isUsable()
{
    // This platform has contexts, but its windows do not show what they draw.
    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
        return false;

    QOpenGLContext context;
    context.setFormat(fixedFunctionFormat());
    if (!context.create())
        return false;
    QOffscreenSurface surface;
    surface.setFormat(context.format());
    surface.create();
    // Qt draws the view into a framebuffer, and the window from it with shaders.
    return context.makeCurrent(&surface) && context.functions()->hasOpenGLFeature(QOpenGLFunctions::Framebuffers) &&
           context.functions()->hasOpenGLFeature(QOpenGLFunctions::Shaders) && fixedFunctions();
}

OpenGLView::OpenGLView(QWidget* parent) : QOpenGLWidget(parent)
{
    setFormat(fixedFunctionFormat());
}

void OpenGLView::initializeGL()
{
    QOpenGLFunctions_1_1* const gl = fixedFunctions();
    if (!gl)
        return;
    gl->glDisable(GL_TEXTURE_2D);
    gl->glDisable(GL_DEPTH_TEST);
    gl->glDisable(GL_COLOR_MATERIAL);
    gl->glEnable(GL_BLEND);
    gl->glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    gl->glClearColor(0, 0, 0, 0);
}

void OpenGLView::resizeGL(int w, int h)
{
    viewSize = {static_cast<double>(w), static_cast<double>(h)};
}

void OpenGLView::paintGL()
{
    double const density = devicePixelRatioF();
    // Rounded like the size of Qt's framebuffer.
    RealSize const pixels{std::round(viewSize.width * density), std::round(viewSize.height * density)};
    QOpenGLFunctions_1_1* const gl = fixedFunctions();
    if (!gl) {
        QPainter painter(this);
        paintPreview(painter, viewSize, chartLayout);
    } else if (chartLayout) {
        chartLayout->drawOpenGL(pixels);
    } else {
        OpenGLCanvas canvas(*gl);
        paintPlaceholder(canvas, pixels, density);
    }
}
