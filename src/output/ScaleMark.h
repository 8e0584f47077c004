// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/Geometry.h"
#include "lib/OvString.h"

#include <optional>

/// Lines of exactly 100 mm, one across and one up, each with end ticks and the words "100 mm". A rule laid on the print
/// shows whether it was scaled. The length counts from the outer edge of one tick to the outer edge of the other.
///
/// Each place is the lower-left corner of the mark's box, mm; empty for a mark that has no room.
struct ScaleMark
{
    std::optional<RealPos> across;
    std::optional<RealPos> up;
};

namespace scaleMark
{

inline constexpr double length = 100;
inline constexpr double tick = 3;

/// The lines' thickness: one pixel at 72 dots per inch.
inline constexpr double thickness = 25.4 / 72;

/// The words' type, and the widest that any kind of sheet draws them. A letter without a descender is at most 0.8 of
/// the type high.
inline constexpr double textHeight = 3;
inline constexpr double textWidth = 6 * 0.602 * textHeight;

/// Between the line and the words.
inline constexpr double distance = 1;

inline constexpr RealSize acrossSize{length, distance + 0.8 * textHeight + thickness};
inline constexpr RealSize upSize{tick + distance + textWidth, length};

} // namespace scaleMark

/// Finds places for both marks on a sheet, clear of each other.
///
/// \param printable  where the marks may be, mm
/// \param taken      what the patches, with the instrument's margins, and the labels need; mm
ScaleMark findScaleMark(RealRect printable, RealRect taken);

/// Draws the marks that have a place, in the current colour.
template <typename Drawing>
void drawScaleMark(Drawing& drawing, ScaleMark const& mark)
{
    using namespace scaleMark;
    constexpr double far = length - thickness;
    drawing.setTextHeight(textHeight);
    if (mark.across) {
        auto const [x, y] = *mark.across;
        drawing.drawRectangle({x, y, length, thickness});
        drawing.drawRectangle({x, y, thickness, tick});
        drawing.drawRectangle({x + far, y, thickness, tick});
        drawing.drawText({x + (length - textWidth) / 2, y + thickness + distance}, String("100 mm"));
    }
    if (mark.up) {
        auto const [x, y] = *mark.up;
        drawing.drawRectangle({x, y, thickness, length});
        drawing.drawRectangle({x, y, tick, thickness});
        drawing.drawRectangle({x, y + far, tick, thickness});
        drawing.drawText({x + tick + distance, y + (length - textHeight) / 2}, String("100 mm"));
    }
}
