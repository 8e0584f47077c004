// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/Geometry.h"
#include "output/PreviewDrawing.h"

#include <vector>

class QPainter;
class QRectF;

/// Paints the preview with Qt's painter: the same picture where there is no OpenGL.
class PainterCanvas
{
public:
    /// \param target  paints on the view; without antialiasing
    explicit PainterCanvas(QPainter& target) : painter(target) {}

    /// Turns to a view, its size in the painter's units, and clears it.
    void begin(RealSize viewSize, PreviewColor background);
    void show(RealRect const& shownPlane) { plane = shownPlane; }
    void fill(RealRect const& rect, PreviewColor color);
    void outline(RealRect const& rect, PreviewColor color);

    /// White dots, so many of the painter's units wide.
    void dots(std::vector<RealPos> const& places, double width);

private:
    QRectF toView(RealRect const& rect) const;

    QPainter& painter;
    RealSize size;
    RealRect plane;
};
