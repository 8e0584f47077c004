// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "GUIOpenGLView.h"

#include "GUIOpenGLCanvas.h"
#include "GUIPreview.h"

#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLFunctions_1_1>
#include <QOpenGLVersionFunctionsFactory>

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
    // This platform makes contexts but puts no window together from what they draw.
    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
        return false;

    QOpenGLContext context;
    context.setFormat(fixedFunctionFormat());
    if (!context.create())
        return false;
    QOffscreenSurface surface;
    surface.setFormat(context.format());
    surface.create();
    return context.makeCurrent(&surface) && context.functions()->hasOpenGLFeature(QOpenGLFunctions::Framebuffers) &&
           QOpenGLVersionFunctionsFactory::get<QOpenGLFunctions_1_1>(&context);
}

OpenGLView::OpenGLView(QWidget* parent) : QOpenGLWidget(parent)
{
    setFormat(fixedFunctionFormat());
}

void OpenGLView::initializeGL()
{
    gl = QOpenGLVersionFunctionsFactory::get<QOpenGLFunctions_1_1>(context());
}

void OpenGLView::resizeGL(int w, int h)
{
    viewSize = {static_cast<double>(w), static_cast<double>(h)};
}

void OpenGLView::paintGL()
{
    double const density = devicePixelRatioF();
    OpenGLCanvas canvas(*gl, {viewSize.width * density, viewSize.height * density});
    drawPreview(canvas, viewSize, chartLayout);
}
