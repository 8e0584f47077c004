// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PreviewDrawing.h"

#include <cmath>

namespace
{

// mm around all chart pages.
constexpr double viewBorder = 10;

} // namespace

RealRect visiblePlane(RealSize size, ChartLayout const& layout)
{
    ChartPage const& first = (*layout.getChartPages())[0];
    RealPos const origin = first.getFirstPageOrigin();
    IntSize const grid = layout.getChartPagesSize();
    double const width = grid.width * first.getSize().width + (grid.width - 1) * chartPageSpacing;
    double const height = grid.height * first.getSize().height + (grid.height - 1) * chartPageSpacing;
    double const aspect = size.width / size.height;
    if (width / height <= aspect) {
        double const visible = aspect * (height + 2 * viewBorder);
        return {(width - visible) / 2 + origin.x, origin.y - viewBorder, visible, height + 2 * viewBorder};
    }
    double const visible = (width + 2 * viewBorder) / aspect;
    return {origin.x - viewBorder, (height - visible) / 2 + origin.y, width + 2 * viewBorder, visible};
}

bool isDrawable(RealRect const& plane)
{
    auto const isPlace = [](double place) { return std::isfinite(static_cast<float>(place)); };
    return isPlace(plane.x) && isPlace(plane.y) && isPlace(plane.width) && isPlace(plane.height);
}

RealSize drawnSize(OutputPage const& page, ChartLayout const& layout)
{
    if (!layout.getClipToContent())
        return page.getSize();
    RealRect const content = page.getContentRect();
    return {content.width + 2 * content.x, content.height + 2 * content.y};
}
