// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SheetDrawing.h"

SheetFrame frameOf(OutputPage const& page, ChartLayout const& layout)
{
    SheetFrame frame{page.getSize(),    page.getContentRect(), page.getPatchSize(),
                     page.getGapSize(), page.getMinMargin(),   page.getCoordRect()};
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
