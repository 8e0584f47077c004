// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/Geometry.h"
#include "output/PreviewDrawing.h"

#include <vector>

class QPainter;
class QRectF;

/// Paints the preview with Qt's painter. The picture is the same as by OpenGL.
class PainterCanvas
{
public:
    /// \param target  on the view; without antialiasing
    explicit PainterCanvas(QPainter& target) : painter(target) {}

    /// Starts a picture: clears the view.
    ///
    /// \param viewSize  in the painter's units
    void begin(RealSize viewSize, PreviewColor background);
    void show(RealRect const& shownPlane) { plane = shownPlane; }
    void fill(RealRect const& rect, PreviewColor color);
    void outline(RealRect const& rect, PreviewColor color);

    /// Draws white dots.
    ///
    /// \param width  of a dot, in the painter's units
    void dots(std::vector<RealPos> const& places, double width);

private:
    QRectF toView(RealRect const& rect) const;

    QPainter& painter;
    RealSize size;
    RealRect plane;
};
