// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Geometry.h"

#include <cstdint>

/// The papers on offer; indexes pagelayoutpreset_strings.
enum PageLayoutPreset : std::int32_t {
    a4Portrait = 0,
    a4Landscape = 1,
    a3Portrait = 2,
    a3Landscape = 3,
    letterPortrait = 4,
    letterLandscape = 5,
    creditCardPortrait = 6,
    creditCardLandscape = 7,
    custom = 8
};

/// The papers' display names, in the order of their numbers.
inline constexpr char const* pagelayoutpreset_strings[] = {
    "A4 Portrait",      "A4 Landscape",         "A3 Portrait",           "A3 Landscape", "Letter Portrait",
    "Letter Landscape", "Credit Card Portrait", "Credit Card Landscape", "Custom"};

/// One sheet of paper: its size and the printable area on it, mm. A new one has every length at REAL_NOPOS.
class PageLayout
{
public:
    /// Takes over a paper's size and printable area. "Custom" and unknown numbers change nothing.
    void initWithPreset(PageLayoutPreset preset);

    RealSize getSize() const { return size; }

    /// The printable area, from the sheet's lower-left corner.
    RealRect getContent() const { return content; }

    void setSize(RealSize newSize) { size = newSize; }
    void setContent(RealRect newContent) { content = newContent; }

    /// How many patches of the given size fit across and up the printable area, one patch's space kept spare.
    ///
    /// \param patch      patch size, mm
    /// \param minMargin  space to keep free at both sides in x (width) and in y (height), mm; where the printable
    ///                   area's own margin is wider, that one counts
    /// \return columns and rows; 0 where 32 bits cannot count them
    IntSize canHoldPatches(RealSize patch, RealSize minMargin) const;

    /// Steps along x over the sheet, from the first position not below 0 and the margin to the far margin.
    ///
    /// \param[in,out] position  where to start, mm; becomes how far the last step went past the sheet's edge
    /// \param[out]    count     steps taken over the sheet
    /// \param         step      mm; a step that leads nowhere, or more steps than 32 bits count, takes none
    /// \param         margin    mm
    void getXSpace(double& position, int& count, double step, double margin) const;

    /// Likewise along y.
    void getYSpace(double& position, int& count, double step, double margin) const;

    /// Whether a rectangle, seen from an origin, lies in the printable area.
    bool fits(RealRect rect, RealPos origin) const;

private:
    RealSize size;
    RealRect content;
};
