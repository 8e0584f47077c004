// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PainterCanvas.h"

#include <QColor>
#include <QPainter>
#include <QRectF>

#include <algorithm>

namespace
{

QColor toQColor(PreviewColor color)
{
    auto const channel = [](float value) { return value > 0 ? (value < 1 ? value : 1.0f) : 0.0f; };
    return QColor::fromRgbF(channel(color.red), channel(color.green), channel(color.blue));
}

// Limits a coordinate along one axis of the view to the space near the view, because the painter expects coordinates
// that fit 32 bits. This changes nothing inside the view. Not-a-number becomes a place outside.
double nearView(double place, double extent)
{
    return place > -extent ? std::min(place, 2 * extent) : -extent;
}

} // namespace

void PainterCanvas::begin(RealSize viewSize, PreviewColor background)
{
    size = viewSize;
    painter.fillRect(QRectF(0, 0, size.width, size.height), toQColor(background));
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

void PainterCanvas::dots(std::vector<RealPos> const& places, double width)
{
    for (RealPos place : places) {
        QPointF const centre = toView({place.x, place.y, 0, 0}).topLeft();
        painter.fillRect(QRectF(centre.x() - width / 2, centre.y() - width / 2, width, width), Qt::white);
    }
}

// The chart's y points up, the view's y points down.
QRectF PainterCanvas::toView(RealRect const& rect) const
{
    double const scaleX = size.width / plane.width;
    double const scaleY = size.height / plane.height;
    QPointF const topLeft(nearView((rect.x - plane.x) * scaleX, size.width),
                          nearView(size.height - (rect.y + rect.height - plane.y) * scaleY, size.height));
    QPointF const bottomRight(nearView((rect.x + rect.width - plane.x) * scaleX, size.width),
                              nearView(size.height - (rect.y - plane.y) * scaleY, size.height));
    return QRectF(topLeft, bottomRight).normalized();
}
