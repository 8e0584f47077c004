// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "GUIPaintedView.h"

#include "GUIPainterCanvas.h"
#include "GUIPreview.h"

#include <QPainter>

void PaintedView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    RealSize const size{static_cast<double>(width()), static_cast<double>(height())};
    PainterCanvas canvas(painter, size);
    drawPreview(canvas, size, chartLayout);
}
