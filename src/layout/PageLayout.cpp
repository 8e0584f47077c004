// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PageLayout.h"

#include <limits>

namespace
{

// The printable extent along one axis with a minimum margin at both ends.
double extentWithin(double start, double extent, double sheetExtent, double minMargin)
{
    if (minMargin > start) {
        extent -= minMargin - start;
        start = minMargin;
    }
    double const endMargin = sheetExtent - start - extent;
    if (minMargin > endMargin)
        extent -= minMargin - endMargin;
    return extent;
}

// Adds steps until the position is not below the limit, and returns their number. Adds none if 32 bits cannot count
// them.
int stepTo(double& position, double limit, double step)
{
    if (!(position < limit) || !((limit - position) / step < std::numeric_limits<std::int32_t>::max()) || !(step > 0))
        return 0;
    int count = 0;
    for (; position < limit && position + step > position; ++count)
        position += step;
    return count;
}

void stepOver(double sheetExtent, double& position, int& count, double step, double margin)
{
    stepTo(position, 0, step);
    stepTo(position, margin, step);
    count = stepTo(position, sheetExtent - margin, step);
    position -= sheetExtent;
}

} // namespace

void PageLayout::initWithPreset(PageLayoutPreset preset)
{
    if (preset < 0 || preset >= custom)
        return;
    size = paperPresets[preset].size;
    content = paperPresets[preset].content;
}

IntSize PageLayout::canHoldPatches(RealSize patch, RealSize minMargin) const
{
    double const width = extentWithin(content.x, content.width, size.width, minMargin.width);
    double const height = extentWithin(content.y, content.height, size.height, minMargin.height);
    return {wholeNumber((width - patch.width) / patch.width), wholeNumber((height - patch.height) / patch.height)};
}

void PageLayout::getXSpace(double& position, int& count, double step, double margin) const
{
    stepOver(size.width, position, count, step, margin);
}

void PageLayout::getYSpace(double& position, int& count, double step, double margin) const
{
    stepOver(size.height, position, count, step, margin);
}

bool PageLayout::fits(RealRect rect, RealPos origin) const
{
    return content.contains({rect.x - origin.x, rect.y - origin.y, rect.width, rect.height});
}
