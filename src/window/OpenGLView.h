// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/Geometry.h"

#include <QOpenGLWidget>

class ChartLayout;

/// The chart's preview, drawn by fixed-function OpenGL, and by Qt's painter in a context without.
class OpenGLView : public QOpenGLWidget
{
    Q_OBJECT

public:
    /// Whether this display has the OpenGL that the view needs, and that a window needs to hold such a view: one that
    /// holds it without cannot be shown at all. Makes a context, and so has the toolkit load its OpenGL plug-ins.
    static bool isUsable();

    explicit OpenGLView(QWidget* parent = nullptr);

    /// Takes the layout to draw, which stays with its owner and outlives the view. Repaints nothing.
    void setChartLayout(ChartLayout const* layout) { chartLayout = layout; }

    /// Repaints at once; within the display's frame that was painted last, as soon as the program is idle.
    void updateGL() { repaint(); }

protected:
    void initializeGL() override;
    void resizeGL(int w, int h) override;
    void paintGL() override;

private:
    // Pixels, of which a high-density screen shows each with several of its own. Not set until the first resize.
    RealSize viewSize;
    ChartLayout const* chartLayout = nullptr;
};
