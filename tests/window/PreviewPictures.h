// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartLayout.h"
#include "ColorEntry.h"
#include "Folders.h"
#include "Hand.h"
#include "OpenGLView.h"
#include "PaintedView.h"
#include "support/TestChart.h"

#include <QColor>
#include <QImage>
#include <QString>

#include <memory>
#include <string>
#include <vector>

/// Colour conversions for charts without a window.
class ChartColors
{
public:
    ChartColors()
    {
        respath = String(PATCHLOOM_RESOURCES);
        ColorEntry::prepareColorConversions();
    }
    ~ChartColors() { ColorEntry::endColorConversions(); }
    ChartColors(ChartColors const&) = delete;
    ChartColors& operator=(ChartColors const&) = delete;
};

/// Entries with different colours, none of them grey.
inline GrowingArray<ColorEntry> colorfulEntries(int count)
{
    GrowingArray<ColorEntry> entries;
    for (int i = 0; i < count; ++i)
        entries.add(entryOf(RGB, std::to_string(i * 37 % 256) + " " + std::to_string((i * 37 + 80) % 256) + " " +
                                     std::to_string(i * 101 % 256)));
    return entries;
}

/// A computed chart with its entries.
class PreviewChart
{
public:
    PreviewChart(GrowingArray<ColorEntry> const& patches, MeasurementLayoutPreset device, PageLayout const& sheet,
                 RealSize patch = {10, 10}, float gap = 0)
        : entries(patches), layout(chartOf(entries, instrument(device), sheet, patch))
    {
        layout.computeLayout(gap, 0);
    }

    /// The display colour of a cell of the patch grid.
    QColor colorAt(int x, int y) const
    {
        float const* color = layout.getColorEntry({x, y})->getDisplayColor();
        auto const channel = [](float value) { return qBound(0.0f, value, 1.0f); };
        return QColor::fromRgbF(channel(color[0]), channel(color[1]), channel(color[2]));
    }

private:
    GrowingArray<ColorEntry> entries;

public:
    ChartLayout layout;
};

/// The two views of the preview, side by side.
class PreviewViews
{
public:
    PreviewViews() { byOpenGL.move(0, 0); }

    /// What the OpenGL view shows, in its own pixels. Null if it is not shown.
    QImage openGLPicture(ChartLayout const* chart, QSize size)
    {
        byOpenGL.setChartLayout(chart);
        byOpenGL.resize(size);
        byOpenGL.show();
        QImage const picture = attend(&byOpenGL) ? byOpenGL.grabFramebuffer() : QImage();
        byOpenGL.setChartLayout(nullptr);
        return picture;
    }

    /// What the painted view shows.
    QImage paintedPicture(ChartLayout const* chart, QSize size)
    {
        painted.setChartLayout(chart);
        painted.resize(size);
        QImage const picture = painted.grab().toImage();
        painted.setChartLayout(nullptr);
        return picture;
    }

private:
    OpenGLView byOpenGL;
    PaintedView painted;
};

/// Whether two colours differ by at most one level in each channel.
inline bool isAlike(QRgb a, QRgb b)
{
    return qAbs(qRed(a) - qRed(b)) <= 1 && qAbs(qGreen(a) - qGreen(b)) <= 1 && qAbs(qBlue(a) - qBlue(b)) <= 1;
}

/// The fixed colours of the preview.
inline QColor const middleGrey(127, 127, 127);
inline QColor const outlineGrey(178, 178, 178);
inline QColor const lightGrey(204, 204, 204);
inline QColor const white(255, 255, 255);

/// Whether a picture shows only the background.
inline bool isEvenGrey(QImage const& picture)
{
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (!isAlike(picture.pixel(x, y), middleGrey.rgb()))
                return false;
    return !picture.isNull();
}

/// A pixel of a view, and what it should show.
struct Probe
{
    char const* what;
    int x;
    int y;
    QColor color;
};

/// Describes what is wrong with a picture. Empty if every probe shows its colour to within one level.
inline QString mistakesIn(QImage const& picture, std::vector<Probe> const& probes)
{
    QString mistakes;
    for (Probe const& probe : probes) {
        QColor const color = picture.pixelColor(probe.x, probe.y);
        if (!isAlike(color.rgb(), probe.color.rgb()))
            mistakes += QString("%1 at (%2, %3) is %4 instead of %5; ")
                            .arg(probe.what)
                            .arg(probe.x)
                            .arg(probe.y)
                            .arg(color.name(), probe.color.name());
    }
    return mistakes;
}
