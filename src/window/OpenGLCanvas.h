// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/Geometry.h"
#include "output/PreviewDrawing.h"

#include <vector>

class QOpenGLFunctions_1_1;

/// The fixed functions of the current OpenGL context. Null if it has none, or if no context is current.
QOpenGLFunctions_1_1* fixedFunctions();

/// Paints the preview with fixed-function OpenGL, into the current context. Filled rectangles are collected and drawn
/// in few calls. The destructor draws the last of them.
class OpenGLCanvas
{
public:
    /// \param functions  of the current context
    explicit OpenGLCanvas(QOpenGLFunctions_1_1& functions) : gl(functions) {}
    ~OpenGLCanvas() { flush(); }
    OpenGLCanvas(OpenGLCanvas const&) = delete;
    OpenGLCanvas& operator=(OpenGLCanvas const&) = delete;

    /// Starts a picture: sets the viewport and clears it.
    ///
    /// \param size  of the view, device pixels
    void begin(RealSize size, PreviewColor background);
    void show(RealRect const& plane);
    void fill(RealRect const& rect, PreviewColor color);
    void outline(RealRect const& rect, PreviewColor color);

    /// Draws white dots.
    ///
    /// \param width  of a dot, device pixels
    void dots(std::vector<RealPos> const& places, double width);

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
