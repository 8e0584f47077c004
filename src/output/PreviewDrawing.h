// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "color/ColorEntry.h"
#include "layout/ChartLayout.h"
#include "layout/ChartPage.h"
#include "layout/OutputPage.h"
#include "lib/Geometry.h"

#include <cmath>
#include <vector>

// One drawing for every way to paint the preview. A Canvas begins a view with an even background and shows a part of
// the plane in it. Then it fills rectangles, outlines them and sets dots.

/// Red, green and blue from 0 to 1.
struct PreviewColor
{
    float red;
    float green;
    float blue;
};

inline constexpr PreviewColor previewBackground{0.5f, 0.5f, 0.5f};

/// The part of the plane that a view shows: the chart pages with 10 mm around them, in the view's own proportions.
///
/// \param size    the view, pixels
/// \param layout  has chart pages
/// \return mm; not finite if the view or the chart has a size of zero or infinity
RealRect visiblePlane(RealSize size, ChartLayout const& layout);

/// Whether single precision can hold a plane's place and size.
bool isDrawable(RealRect const& plane);

/// The size of the drawn sheet, mm. If the chart is clipped to content, this is the content with equal borders.
RealSize drawnSize(OutputPage const& page, ChartLayout const& layout);

/// Draws one sheet: paper, outline, and the patches on it. A patch fills its gap too, so that the preview shows no
/// paper between neighbours.
///
/// \param size  of the paper, mm
template <typename Canvas>
void paintSheet(Canvas& canvas, ChartLayout const& layout, OutputPage const& page, RealSize size)
{
    constexpr PreviewColor emptyPaper{0.8f, 0.8f, 0.8f};
    constexpr PreviewColor paper{1, 1, 1};
    constexpr PreviewColor outline{0.7f, 0.7f, 0.7f};

    RealPos const chartPage = page.getChartPage()->getOrigin();
    RealPos const origin{page.getOrigin().x + chartPage.x, page.getOrigin().y + chartPage.y};
    RealRect const sheet{origin.x, origin.y, size.width, size.height};
    canvas.fill(sheet, page.hasPatches() ? paper : emptyPaper);
    canvas.outline(sheet, outline);
    if (!page.hasPatches())
        return;

    RealRect const content = page.getContentRect();
    double const pitchX = page.getPatchSize().width + page.getGapSize().width;
    double const pitchY = page.getPatchSize().height + page.getGapSize().height;
    IntRect const block = page.getCoordRect();
    for (int x = block.width - 1; x >= 0; --x) {
        for (int y = block.height - 1; y >= 0; --y) {
            ColorEntry const* entry = layout.getColorEntry({block.x + x, block.y + y});
            if (!entry)
                continue;
            float const* color = entry->getDisplayColor();
            canvas.fill({content.x + x * pitchX + origin.x, content.y + y * pitchY + origin.y, pitchX, pitchY},
                        {color[0], color[1], color[2]});
        }
    }
}

/// Draws the sheets of one chart page.
template <typename Canvas>
void paintChartPage(Canvas& canvas, ChartLayout const& layout, ChartPage const& chartPage)
{
    for (OutputPage const& page : *chartPage.getOutputPages())
        paintSheet(canvas, layout, page, drawnSize(page, layout));
}

/// Draws a whole chart into a view. Without a chart, the view is an even grey.
///
/// \param size  of the view, pixels
template <typename Canvas>
void paintChart(Canvas& canvas, RealSize size, ChartLayout const& layout)
{
    canvas.begin(size, previewBackground);
    if (!layout.getOriginalEntries() || layout.getChartPages()->getCount() == 0)
        return;
    RealRect const plane = visiblePlane(size, layout);
    if (!isDrawable(plane))
        return;
    canvas.show(plane);
    for (ChartPage const& chartPage : *layout.getChartPages())
        paintChartPage(canvas, layout, chartPage);
}

/// Draws a view that has no layout yet: a ring of twelve dots.
///
/// \param size     of the view, pixels
/// \param density  1 for a ring with a radius of 25 pixels and dots 3 pixels wide
template <typename Canvas>
void paintPlaceholder(Canvas& canvas, RealSize size, double density)
{
    constexpr double fullTurn = 6.28318;
    constexpr int count = 12;
    double const radius = 25 * density;
    std::vector<RealPos> ring;
    ring.reserve(count);
    for (int i = 0; i < count; ++i)
        ring.push_back({std::cos(i * fullTurn / count), std::sin(i * fullTurn / count)});
    canvas.begin(size, previewBackground);
    canvas.show({-size.width / (2 * radius), -size.height / (2 * radius), size.width / radius, size.height / radius});
    canvas.dots(ring, 3 * density);
}
