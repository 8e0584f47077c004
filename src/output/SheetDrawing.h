// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PatchColumn.h"
#include "ScaleMark.h"
#include "color/ColorEntry.h"
#include "layout/ChartLayout.h"
#include "lib/ColorSpace.h"
#include "lib/Geometry.h"
#include "lib/OvString.h"

#include <cstddef>

// One drawing for every kind of sheet image. Drawing is the file that is drawn into. It takes rectangles and texts in
// mm from the sheet's lower-left corner.

/// The places of everything on a sheet, mm.
struct SheetFrame
{
    RealSize size;          ///< the whole sheet
    RealRect content;       ///< the block of patches and gaps
    RealSize patch;         ///< one patch
    RealSize gap;           ///< between patches
    RealBorder labelBorder; ///< between the block and its labels
    IntRect coordRect;      ///< the patch coordinates of the block
    ScaleMark scaleMark;    ///< no marks by default
};

/// The sheet's frame. If the chart is clipped to content, the frame is the content with its borders.
SheetFrame frameOf(OutputPage const& page, ChartLayout const& layout);

/// Places for the marks of 100 mm on a sheet of the chart: in the printable area, outside the patches, the instrument's
/// margins and the labels.
ScaleMark findScaleMark(SheetFrame const& frame, ChartLayout const& layout);

/// A registration cross, 3 mm across, in the current colour.
template <typename Drawing>
void drawCross(Drawing& drawing, RealPos centre)
{
    drawing.drawRectangle({centre.x - 1.5, centre.y - 0.25, 3.0, 0.5});
    drawing.drawRectangle({centre.x - 0.25, centre.y - 1.5, 0.5, 3.0});
}

/// Labels, bar, number, crosses, gaps, patches and the marks of 100 mm of one sheet.
template <typename Drawing>
class SheetDrawing
{
public:
    SheetDrawing(Drawing& target, SheetFrame const& sheetFrame, ChartLayout const& chartLayout)
        : drawing(target), frame(sheetFrame), layout(chartLayout)
    {
    }

    /// Draws the sheet with this number.
    void draw(int number)
    {
        setBlack();
        drawLabels();
        drawStartBar();
        setRed();
        drawNumber(number);
        drawCrosses();
        drawPatches();
        if (frame.scaleMark.across || frame.scaleMark.up) {
            setBlack();
            drawScaleMark(drawing, frame.scaleMark);
        }
    }

private:
    // The labels' type is 6 mm high. A text is moved up by labelRise, and along x by characterShift for each character;
    // mm.
    static constexpr double labelRise = 1.1999999999999993;
    static constexpr double characterShift = -2.4000000000000004;

    double pitchX() const { return frame.patch.width + frame.gap.width; }
    double pitchY() const { return frame.patch.height + frame.gap.height; }
    double labelBaseline() const { return frame.content.y + frame.content.height + frame.labelBorder.top + labelRise; }

    void setBlack()
    {
        if (layout.getColorSpace() == CMYK)
            drawing.setCMYK(0, 0, 0, 1);
        else
            drawing.setRGB(0, 0, 0);
    }

    void setRed()
    {
        if (layout.getColorSpace() == CMYK)
            drawing.setCMYK(0, 1, 1, 0);
        else if (layout.getColorSpace() == RGB)
            drawing.setRGB(1, 0, 0);
        else
            drawing.setRGB(0, 0, 0);
    }

    void drawLabels()
    {
        RealRect const& content = frame.content;
        for (int i = 0; i < frame.coordRect.width; ++i) {
            String const label = layout.getCoordinateXString(frame.coordRect.x + i);
            drawing.drawText(
                {content.x + 1.0 + (i + 0.5) * pitchX() + characterShift * lengthOf(label), labelBaseline()}, label);
        }
        for (int i = 0; i < frame.coordRect.height; ++i)
            drawing.drawText(
                {content.x - frame.labelBorder.left - 9.0, content.y + labelRise + (i + 0.5) * pitchY() - 3.0},
                layout.getCoordinateYString(frame.coordRect.y + i));
    }

    void drawStartBar()
    {
        double const height = frame.gap.height / 2;
        drawing.drawRectangle({frame.content.x, frame.content.y - height, frame.content.width, height});
    }

    void drawNumber(int number)
    {
        String const text = String::format("%d", number);
        drawing.drawText(
            {frame.content.x - frame.labelBorder.left - 6.0 + characterShift * lengthOf(text), labelBaseline()}, text);
    }

    void drawCrosses()
    {
        RealRect const& content = frame.content;
        double const left = content.x - 0.25;
        double const right = content.x + content.width + 0.25;
        double const bottom = content.y - 0.25 - frame.gap.height;
        double const top = content.y + content.height + 0.25;
        for (RealPos centre : {RealPos{left, bottom}, {left, top}, {right, top}, {right, bottom}})
            drawCross(drawing, centre);
    }

    void drawPatches()
    {
        IntRect const& block = frame.coordRect;
        for (int column = block.width - 1; column >= 0; --column) {
            auto const entries = columnOf(layout, {block.x + column, block.y}, block.height);
            for (int row = block.height - 1; row >= 0; --row)
                if (ColorEntry const* entry = entries[static_cast<std::size_t>(row)])
                    drawPatch(*entry, {frame.content.x + column * pitchX(), frame.content.y + row * pitchY()});
        }
    }

    void drawPatch(ColorEntry const& entry, RealPos place)
    {
        auto const [width, height] = frame.patch;
        auto const [gapX, gapY] = frame.gap;
        if (gapX > 0) {
            drawGap(entry, Right, {place.x + width, place.y, gapX, height + gapY});
            drawGap(entry, Left, {place.x - gapX, place.y, gapX, height + gapY});
        }
        if (gapY > 0) {
            drawGap(entry, Below, {place.x, place.y + height, width + gapX, gapY});
            drawGap(entry, Above, {place.x, place.y - gapY, width + gapX, gapY});
        }
        if (entry.getColorSpace() == CMYK)
            drawing.setCMYK(entry.getRealValue(0) / 100, entry.getRealValue(1) / 100, entry.getRealValue(2) / 100,
                            entry.getRealValue(3) / 100);
        else
            drawing.setRGB(entry.getRealValue(0) / 255, entry.getRealValue(1) / 255, entry.getRealValue(2) / 255);
        drawing.drawRectangle({place.x, place.y, width, height});
    }

    void drawGap(ColorEntry const& entry, RelativePosition side, RealRect const& rect)
    {
        ColorGap const* gap = entry.getGap(side);
        if (!gap)
            return;
        if (entry.getColorSpace() == CMYK)
            drawing.setCMYK(gap->getOutColor());
        else
            drawing.setRGB(gap->getOutColor());
        drawing.drawRectangle(rect);
    }

    static double lengthOf(String const& text) { return static_cast<double>(text.getCount()); }

    Drawing& drawing;
    SheetFrame const& frame;
    ChartLayout const& layout;
};
