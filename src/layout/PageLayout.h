// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/Geometry.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

/// A paper on offer: its display name, its size and the printable area on it, mm.
struct PaperPreset
{
    char const* name;
    RealSize size;
    RealRect content;
};

/// The papers on offer, in the order of their numbers. A portrait sheet has a margin of 15 mm at the bottom. Its
/// landscape twin is the same sheet turned, with the wide margin on the right.
// clang-format off
inline constexpr PaperPreset paperPresets[] = {
    {"A4 Portrait",           {210, 297}, {5, 15, 200, 277}},
    {"A4 Landscape",          {297, 210}, {5,  5, 277, 200}},
    {"A3 Portrait",           {297, 420}, {5, 15, 287, 400}},
    {"A3 Landscape",          {420, 297}, {5,  5, 400, 287}},
    {"Letter Portrait",       {216, 279}, {5, 15, 206, 259}},
    {"Letter Landscape",      {279, 216}, {5,  5, 259, 206}},
    {"Credit Card Portrait",  { 54,  85}, {0,  0,  54,  85}},
    {"Credit Card Landscape", { 85,  54}, {0,  0,  85,  54}},
};
// clang-format on

/// The numbers of the papers. After the last paper comes `custom`, a sheet that the user describes.
enum PageLayoutPreset : std::int32_t {
    a4Portrait = 0,
    a4Landscape = 1,
    a3Portrait = 2,
    a3Landscape = 3,
    letterPortrait = 4,
    letterLandscape = 5,
    creditCardPortrait = 6,
    creditCardLandscape = 7,
    custom = std::size(paperPresets)
};

struct PaperNames
{
    char const* all[std::size(paperPresets) + 1];
};

inline constexpr PaperNames paperNames = [] {
    PaperNames names{};
    *std::ranges::transform(paperPresets, names.all, &PaperPreset::name).out = "Custom";
    return names;
}();

/// The papers' display names, in the order of their numbers.
inline constexpr auto& pagelayoutpreset_strings = paperNames.all;

/// One sheet of paper: its size and the printable area on it, mm. A new object has every length at REAL_NOPOS.
class PageLayout
{
public:
    /// Takes the size and printable area of a paper on offer. "Custom" and unknown numbers change nothing.
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

    /// Steps along x over the sheet. The first step on the sheet is not below 0 or the margin; the last one reaches the
    /// far margin.
    ///
    /// \param[in,out] position  where to start, mm; becomes how far the last step went past the sheet's edge
    /// \param[out]    count     steps taken over the sheet
    /// \param         step      mm; a step that leads nowhere, or more steps than 32 bits count, takes none
    /// \param         margin    mm
    void getXSpace(double& position, int& count, double step, double margin) const;

    /// The same along y.
    void getYSpace(double& position, int& count, double step, double margin) const;

    /// Whether a rectangle, seen from an origin, lies in the printable area.
    bool fits(RealRect rect, RealPos origin) const;

private:
    RealSize size;
    RealRect content;
};
