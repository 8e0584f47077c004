// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Geometry.h"
#include "PreviewDrawing.h"

#include <vector>

class QOpenGLFunctions_1_1;

/// Paints the preview with fixed-function OpenGL, into the current context. Filled rectangles are gathered and drawn in
/// few calls; destroying the canvas draws the last of them.
class OpenGLCanvas
{
public:
    /// \param functions  of the current context
    /// \param size       of the view, device pixels
    OpenGLCanvas(QOpenGLFunctions_1_1& functions, RealSize size);
    ~OpenGLCanvas() { flush(); }
    OpenGLCanvas(OpenGLCanvas const&) = delete;
    OpenGLCanvas& operator=(OpenGLCanvas const&) = delete;

    void clear(PreviewColor color);
    void show(RealRect const& plane);
    void fill(RealRect const& rect, PreviewColor color);
    void outline(RealRect const& rect, PreviewColor color);

    /// White dots, 3 pixels wide.
    void dots(std::vector<RealPos> const& places);

private:
    struct Vertex
    {
        float x;
        float y;
        PreviewColor color;
    };

    void add(RealRect const& rect, PreviewColor color);
    void draw(unsigned int mode);
    void flush();

    QOpenGLFunctions_1_1& gl;
    std::vector<Vertex> vertices;
};
