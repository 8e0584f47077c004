// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Geometry.h"
#include "PreviewDrawing.h"

#include <vector>

class QPainter;
class QRectF;

/// Paints the preview with Qt's painter: the same picture where there is no OpenGL.
class PainterCanvas
{
public:
    /// \param target  paints on the view; without antialiasing
    /// \param view    of the view, in the painter's units
    PainterCanvas(QPainter& target, RealSize view) : painter(target), size(view) {}

    void clear(PreviewColor color);
    void show(RealRect const& shownPlane) { plane = shownPlane; }
    void fill(RealRect const& rect, PreviewColor color);
    void outline(RealRect const& rect, PreviewColor color);

    /// White dots, 3 pixels wide.
    void dots(std::vector<RealPos> const& places);

private:
    QRectF toView(RealRect const& rect) const;

    QPainter& painter;
    RealSize size;
    RealRect plane;
};
