// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <limits>

// Lengths on paper are doubles in mm, x to the right and y upwards; a rectangle's position is its lower-left corner.
// Patch coordinates are 32-bit columns and rows of the chart's patch grid.

/// Marks a real field that is not set.
inline constexpr double REAL_NOPOS = -std::numeric_limits<double>::infinity();

/// Marks an integer field that is not set.
inline constexpr std::int32_t INT_NOPOS = std::numeric_limits<std::int32_t>::min();

/// A point, mm.
struct RealPos
{
    double x = REAL_NOPOS;
    double y = REAL_NOPOS;
};

/// An extent, mm.
struct RealSize
{
    double width = REAL_NOPOS;
    double height = REAL_NOPOS;
};

/// A lower-left corner and an extent, mm.
struct RealRect
{
    double x = REAL_NOPOS;
    double y = REAL_NOPOS;
    double width = REAL_NOPOS;
    double height = REAL_NOPOS;

    /// Whether `other` lies completely inside this rectangle; edges may touch. A rectangle whose x or width is
    /// REAL_NOPOS contains nothing and lies in nothing. A width or height below 1 mm is reported, and the test goes on.
    bool contains(RealRect const& other) const;
};

/// Four margins, mm; bottom is at the low-y side, left at the low-x side.
struct RealBorder
{
    double top = REAL_NOPOS;
    double right = REAL_NOPOS;
    double bottom = REAL_NOPOS;
    double left = REAL_NOPOS;
};

/// A patch's column and row.
struct IntPos
{
    std::int32_t x = INT_NOPOS;
    std::int32_t y = INT_NOPOS;
};

/// A number of columns and rows.
struct IntSize
{
    std::int32_t width = INT_NOPOS;
    std::int32_t height = INT_NOPOS;
};

/// A block of patch coordinates: its first column and row, and how many of each.
struct IntRect
{
    std::int32_t x = INT_NOPOS;
    std::int32_t y = INT_NOPOS;
    std::int32_t width = INT_NOPOS;
    std::int32_t height = INT_NOPOS;

    /// Whether `position` lies in the half-open block. A block whose x or width is INT_NOPOS contains nothing.
    /// A negative width or height is reported and the test goes on.
    bool contains(IntPos position) const;

    /// Whether the block holds any patch coordinate. A negative width or height is reported.
    bool hasPatches() const;
};

/// Sum and difference of coordinates or counts. They wrap around at the limits of 32 bits.
std::int32_t wrappedSum(std::int32_t a, std::int32_t b);
std::int32_t wrappedDifference(std::int32_t a, std::int32_t b);

/// The block moved by an offset. Coordinates wrap around at the limits of 32 bits.
IntRect shifted(IntRect rect, IntPos offset);

/// Reports a width or height below 0. A size whose width is INT_NOPOS is not set and not reported.
void reportNegativeSize(IntSize size);

/// The value rounded down, for counts of patches and sheets. 0 for not-a-number and for values that 32 bits cannot
/// hold: such a size has room for nothing.
std::int32_t wholeNumber(double value);
