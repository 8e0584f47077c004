// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PaintedView.h"

#include "PainterCanvas.h"
#include "output/PreviewDrawing.h"

#include <QPainter>

void paintPreview(QPainter& painter, RealSize size, ChartLayout const* layout)
{
    PainterCanvas canvas(painter);
    if (layout)
        paintChart(canvas, size, *layout);
    else
        paintPlaceholder(canvas, size, 1);
}

void PaintedView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintPreview(painter, {static_cast<double>(width()), static_cast<double>(height())}, chartLayout);
}
