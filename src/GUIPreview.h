// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartLayout.h"
#include "Geometry.h"
#include "PreviewDrawing.h"

#include <cmath>
#include <vector>

/// Draws what a view shows before it is given a layout: a ring of twelve dots.
///
/// \param size  of the view, pixels; 25 of them are the ring's radius
template <typename Canvas>
void drawPlaceholder(Canvas& canvas, RealSize size)
{
    constexpr double fullTurn = 6.28318;
    constexpr int count = 12;
    constexpr double pixels = 25;
    std::vector<RealPos> ring;
    for (int i = 0; i < count; ++i)
        ring.push_back({std::cos(i * fullTurn / count), std::sin(i * fullTurn / count)});
    canvas.clear(previewBackground);
    canvas.show({-size.width / (2 * pixels), -size.height / (2 * pixels), size.width / pixels, size.height / pixels});
    canvas.dots(ring);
}

/// Draws a view of the chart.
///
/// \param size    of the view, pixels
/// \param layout  null where none was ever set
template <typename Canvas>
void drawPreview(Canvas& canvas, RealSize size, ChartLayout const* layout)
{
    if (layout)
        drawChartLayout(canvas, size, *layout);
    else
        drawPlaceholder(canvas, size);
}
