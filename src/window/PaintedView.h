// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/Geometry.h"

#include <QWidget>

class ChartLayout;
class QPainter;

/// Paints a view of the chart without OpenGL of its own.
///
/// \param painter  on the view; without antialiasing
/// \param size     of the view, in the painter's units
/// \param layout   null where none was ever set
void paintPreview(QPainter& painter, RealSize size, ChartLayout const* layout);

/// The chart's preview where no usable OpenGL can be had.
class PaintedView : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Takes the layout to draw, which stays with its owner and outlives the view. Repaints nothing.
    void setChartLayout(ChartLayout const* layout) { chartLayout = layout; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ChartLayout const* chartLayout = nullptr;
};
