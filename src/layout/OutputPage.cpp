// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OutputPage.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace
{

// The largest 32-bit number from 0 on that passes the test; -1 if 0 fails. The test must pass for all smaller numbers.
template <typename Test>
std::int64_t lastThat(Test passes)
{
    std::int64_t last = -1;
    std::int64_t end = std::int64_t{std::numeric_limits<std::int32_t>::max()} + 1;
    while (end - last > 1) {
        std::int64_t const middle = (last + end) / 2;
        (passes(middle) ? last : end) = middle;
    }
    return last;
}

// The columns, or the rows, that lie on a sheet.
struct Run
{
    std::int32_t first = 0;
    std::int32_t count = 0;
};

// The whole steps of a grid between start and end, counted from firstPatch; all in mm. The run is empty if 32 bits
// cannot count the steps.
Run wholeSteps(double firstPatch, double step, double start, double end)
{
    auto const edge = [=](std::int64_t k) { return static_cast<double>(k) * step + firstPatch; };
    std::int64_t const first = lastThat([&](std::int64_t k) { return edge(k) < start; }) + 1;
    std::int64_t const count = lastThat([&](std::int64_t n) { return edge(first + n) <= end; });
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    if (count < 0 || first + count >= most)
        return {};
    return {static_cast<std::int32_t>(first), static_cast<std::int32_t>(count)};
}

// Cuts a sheet's content down to the reach from start to start + length. The content's position counts from the sheet's
// origin.
void clampToReach(double& position, double& extent, double origin, double start, double length)
{
    double const below = start - (origin + position);
    if (below > 0) {
        extent -= below;
        position += below;
    }
    double const beyond = (origin + position + extent) - (start + length);
    if (beyond > 0)
        extent -= beyond;
}

} // namespace

void OutputPage::init(ChartPage const* owner, PageLayout sheet, RealPos position, MeasurementLayout instrument,
                      RealSize patch, RealPos& firstPatch, RealBorder margin, IntSize maxSize)
{
    chartPage = owner;
    size = sheet.getSize();
    content = sheet.getContent();
    origin = position;
    minMargin = margin;
    patchSize = patch;
    gapSize = instrument.getGap();
    coordRect = {0, 0, 0, 0};
    if (content.x == REAL_NOPOS || content.y == REAL_NOPOS || content.width == REAL_NOPOS ||
        content.height == REAL_NOPOS)
        return;

    origin.x -= content.x;
    origin.y -= content.y;
    content.width -= margin.right + margin.left;
    content.x += margin.left;
    content.height -= margin.top + margin.bottom;
    content.y += margin.bottom;

    RealRect const reach = instrument.getContent();
    if (instrument.getScanDirection() != alongY)
        clampToReach(content.x, content.width, origin.x, reach.x, reach.width);
    if (instrument.getScanDirection() != alongX)
        clampToReach(content.y, content.height, origin.y, reach.y, reach.height);

    RealSize const step{patchSize.width + gapSize.width, patchSize.height + gapSize.height};
    bool const hasRoom =
        step.width > 0 && step.height > 0 && step.width <= content.width && step.height <= content.height;
    if (!hasRoom)
        return;

    RealPos const corner{origin.x + content.x, origin.y + content.y};
    if (firstPatch.x == REAL_NOPOS)
        firstPatch = corner;
    Run columns = wholeSteps(firstPatch.x, step.width, corner.x, corner.x + content.width);
    Run rows = wholeSteps(firstPatch.y, step.height, corner.y, corner.y + content.height);

    reportNegativeSize(maxSize);
    if (maxSize.width != INT_NOPOS)
        columns.count = std::min(columns.count, maxSize.width);
    if (maxSize.height != INT_NOPOS)
        rows.count = std::min(rows.count, maxSize.height);

    coordRect = {columns.first, rows.first, columns.count, rows.count};
    content = {columns.first * step.width + firstPatch.x - origin.x, rows.first * step.height + firstPatch.y - origin.y,
               columns.count * step.width, rows.count * step.height};
}

void OutputPage::shiftCoords(IntPos offset)
{
    coordRect = shifted(coordRect, offset);
}

void OutputPage::reduceCoordWidth(int columns)
{
    coordRect.width = wrappedDifference(coordRect.width, columns);
    content.width -= columns * (patchSize.width + gapSize.width);
}
