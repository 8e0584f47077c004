// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/Geometry.h"

#include <QWidget>

class ChartLayout;
class QPainter;

/// Paints a view of the chart with Qt's painter.
///
/// \param painter  on the view; without antialiasing
/// \param size     of the view, in the painter's units
/// \param layout   null if none was ever set
void paintPreview(QPainter& painter, RealSize size, ChartLayout const* layout);

/// The chart's preview on a display without usable OpenGL.
class PaintedView : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Sets the layout to draw. The caller owns it, and it must outlive the view. Does not repaint.
    void setChartLayout(ChartLayout const* layout) { chartLayout = layout; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ChartLayout const* chartLayout = nullptr;
};
