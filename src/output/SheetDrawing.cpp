// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SheetDrawing.h"

#include <algorithm>

SheetFrame frameOf(OutputPage const& page, ChartLayout const& layout)
{
    SheetFrame frame{page.getSize(),
                     page.getContentRect(),
                     page.getPatchSize(),
                     page.getGapSize(),
                     page.getMinMargin(),
                     page.getCoordRect(),
                     {}};
    if (layout.getClipToContent()) {
        RealBorder const border = layout.getBorderForAdditionalInfo();
        RealBorder const margin = layout.getMeasurementLayout().getMinMargin();
        RealRect& content = frame.content;
        frame.size = {content.width + border.left + border.right + margin.left + margin.right,
                      content.height + border.top + border.bottom + margin.top + margin.bottom};
        content.x = border.left + margin.left;
        content.y = border.bottom + margin.bottom;
    }
    return frame;
}

ScaleMark findScaleMark(SheetFrame const& frame, ChartLayout const& layout)
{
    // The labels' columns and type, and how far the crosses reach; mm.
    constexpr double labelColumn = 16;
    constexpr double labelRow = 8;
    constexpr double cross = 2;
    RealRect const& content = frame.content;
    RealBorder const& margin = frame.labelBorder;
    double const left = margin.left + labelColumn;
    double const bottom = frame.gap.height + std::max(margin.bottom, cross);
    RealRect const taken{content.x - left, content.y - bottom, left + content.width + std::max(margin.right, cross),
                         bottom + content.height + margin.top + labelRow};
    RealRect const whole{0, 0, frame.size.width, frame.size.height};
    return findScaleMark(layout.getClipToContent() ? whole : layout.getPageLayout().getContent(), taken);
}
