// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "GUIPainterCanvas.h"

#include <QColor>
#include <QPainter>
#include <QRectF>

namespace
{

QColor toQColor(PreviewColor color)
{
    auto const channel = [](float value) { return value > 0 ? (value < 1 ? value : 1.0f) : 0.0f; };
    return QColor::fromRgbF(channel(color.red), channel(color.green), channel(color.blue));
}

} // namespace

void PainterCanvas::clear(PreviewColor color)
{
    painter.fillRect(QRectF(0, 0, size.width, size.height), toQColor(color));
}

void PainterCanvas::fill(RealRect const& rect, PreviewColor color)
{
    painter.fillRect(toView(rect), toQColor(color));
}

void PainterCanvas::outline(RealRect const& rect, PreviewColor color)
{
    QPen pen(toQColor(color));
    pen.setCosmetic(true);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(toView(rect));
}

void PainterCanvas::dots(std::vector<RealPos> const& places)
{
    constexpr double width = 3;
    for (RealPos place : places) {
        QPointF const centre = toView({place.x, place.y, 0, 0}).topLeft();
        painter.fillRect(QRectF(centre.x() - width / 2, centre.y() - width / 2, width, width), Qt::white);
    }
}

// The chart's y points up, the view's down.
QRectF PainterCanvas::toView(RealRect const& rect) const
{
    double const scaleX = size.width / plane.width;
    double const scaleY = size.height / plane.height;
    return QRectF((rect.x - plane.x) * scaleX, size.height - (rect.y + rect.height - plane.y) * scaleY,
                  rect.width * scaleX, rect.height * scaleY);
}
