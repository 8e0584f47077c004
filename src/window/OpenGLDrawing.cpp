// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OpenGLCanvas.h"
#include "layout/ChartLayout.h"
#include "layout/ChartPage.h"
#include "layout/OutputPage.h"
#include "output/PreviewDrawing.h"

// Draws the chart into the current OpenGL context. The functions are here because the core does not know OpenGL.

namespace
{

template <typename Draw>
void intoCurrentContext(Draw draw)
{
    if (QOpenGLFunctions_1_1* gl = fixedFunctions()) {
        OpenGLCanvas canvas(*gl);
        draw(canvas);
    }
}

} // namespace

void drawOutputPage(ChartLayout const* layout, OutputPage const* page)
{
    intoCurrentContext([&](OpenGLCanvas& canvas) { paintSheet(canvas, *layout, *page, page->getSize()); });
}

void ChartLayout::drawOpenGL(RealSize size) const
{
    intoCurrentContext([&](OpenGLCanvas& canvas) { paintChart(canvas, size, *this); });
}

void ChartPage::drawOpenGL(ChartLayout const* layout) const
{
    intoCurrentContext([&](OpenGLCanvas& canvas) { paintChartPage(canvas, *layout, *this); });
}

void OutputPage::drawOpenGL(ChartLayout const* layout) const
{
    intoCurrentContext([&](OpenGLCanvas& canvas) { paintSheet(canvas, *layout, *this, drawnSize(*this, *layout)); });
}
