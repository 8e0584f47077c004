// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/Geometry.h"

#include <QOpenGLWidget>

class ChartLayout;

/// The chart's preview, drawn by fixed-function OpenGL. In a context without fixed functions, Qt's painter draws it.
class OpenGLView : public QOpenGLWidget
{
    Q_OBJECT

public:
    /// Whether this display has the OpenGL that the view and the window around it need. Without it, a window that holds
    /// the view cannot be shown at all. The check makes a context, so Qt loads its OpenGL plug-ins.
    static bool isUsable();

    explicit OpenGLView(QWidget* parent = nullptr);

    /// Sets the layout to draw. The caller owns it, and it must outlive the view. Does not repaint.
    void setChartLayout(ChartLayout const* layout) { chartLayout = layout; }

    /// Repaints at once. A second call within one frame of the display repaints as soon as the program is idle.
    void updateGL() { repaint(); }

protected:
    void initializeGL() override;
    void resizeGL(int w, int h) override;
    void paintGL() override;

private:
    // In Qt's pixels; a high-density screen has several device pixels for each. Unset until the first resize.
    RealSize viewSize;
    ChartLayout const* chartLayout = nullptr;
};
