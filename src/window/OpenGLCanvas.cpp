// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OpenGLCanvas.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions_1_1>
#include <QOpenGLVersionFunctionsFactory>

QOpenGLFunctions_1_1* fixedFunctions()
{
    QOpenGLContext* context = QOpenGLContext::currentContext();
    // Some contexts have the functions, but they do nothing. These contexts do not have the deprecated functions
    // option.
    if (!context || context->isOpenGLES() || !context->format().testOption(QSurfaceFormat::DeprecatedFunctions))
        return nullptr;
    return QOpenGLVersionFunctionsFactory::get<QOpenGLFunctions_1_1>(context);
}

void OpenGLCanvas::begin(RealSize size, PreviewColor background)
{
    gl.glViewport(0, 0, wholeNumber(size.width), wholeNumber(size.height));
    gl.glClearColor(background.red, background.green, background.blue, 1);
    gl.glClear(GL_COLOR_BUFFER_BIT);
}

void OpenGLCanvas::show(RealRect const& plane)
{
    gl.glMatrixMode(GL_PROJECTION);
    gl.glLoadIdentity();
    gl.glOrtho(plane.x, plane.x + plane.width, plane.y, plane.y + plane.height, -1, 1);
    gl.glMatrixMode(GL_MODELVIEW);
    gl.glLoadIdentity();
}

void OpenGLCanvas::fill(RealRect const& rect, PreviewColor color)
{
    add(rect, color);
}

void OpenGLCanvas::outline(RealRect const& rect, PreviewColor color)
{
    flush();
    add(rect, color);
    vertices.push_back(vertices.front());
    draw(GL_LINE_STRIP);
}

void OpenGLCanvas::dots(std::vector<RealPos> const& places, double width)
{
    flush();
    for (RealPos place : places)
        vertices.push_back({static_cast<float>(place.x), static_cast<float>(place.y), {1, 1, 1}});
    gl.glPointSize(static_cast<float>(width));
    draw(GL_POINTS);
}

void OpenGLCanvas::add(RealRect const& rect, PreviewColor color)
{
    auto const left = static_cast<float>(rect.x);
    auto const bottom = static_cast<float>(rect.y);
    auto const right = static_cast<float>(rect.x + rect.width);
    auto const top = static_cast<float>(rect.y + rect.height);
    vertices.insert(vertices.end(),
                    {{left, bottom, color}, {right, bottom, color}, {right, top, color}, {left, top, color}});
}

void OpenGLCanvas::draw(unsigned int mode)
{
    gl.glEnableClientState(GL_VERTEX_ARRAY);
    gl.glEnableClientState(GL_COLOR_ARRAY);
    gl.glVertexPointer(2, GL_FLOAT, sizeof(Vertex), &vertices.data()->x);
    gl.glColorPointer(3, GL_FLOAT, sizeof(Vertex), &vertices.data()->color);
    gl.glDrawArrays(mode, 0, static_cast<int>(vertices.size()));
    gl.glDisableClientState(GL_COLOR_ARRAY);
    gl.glDisableClientState(GL_VERTEX_ARRAY);
    vertices.clear();
}

void OpenGLCanvas::flush()
{
    if (!vertices.empty())
        draw(GL_QUADS);
}
