// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/ColorSpace.h"

#include <array>
#include <cstdint>
#include <string>

/// How finely the values of a table are rounded: to 1, to 0.1, or to what 8 bits can say.
enum class ValueStep { whole, tenth, eightBit };

/// The values of one patch, as numbers of steps. CMYK has four channels, RGB three; the others are 0.
struct DeviceSteps
{
    std::array<std::uint16_t, 4> channels{};

    friend bool operator==(DeviceSteps const&, DeviceSteps const&) = default;
    friend auto operator<=>(DeviceSteps const&, DeviceSteps const&) = default;
};

/// Device values in percent of the full channel. CMYK 0 and RGB 100 are paper.
using DevicePercent = std::array<float, 4>;

/// The rounded values that a table may have, and how they are written: CMYK in percent, RGB from 0 to 255.
class ValueScale
{
public:
    /// \param colorSpace  CMYK or RGB
    ValueScale(ColorSpace colorSpace, ValueStep step) : space(colorSpace), rounding(step) {}

    ColorSpace getColorSpace() const { return space; }
    int getChannels() const { return space == CMYK ? 4 : 3; }

    /// The number of the largest value; the smallest is 0.
    int largest() const;

    /// A value as written, in hundredths: 4050 for "40.5".
    int hundredthsOf(int value) const;

    /// The value as it is written: "40.5".
    std::string textOf(int value) const;

    /// All values of a patch with blanks between them.
    std::string textOf(DeviceSteps const& steps) const;

    DevicePercent percentOf(DeviceSteps const& steps) const;

    /// The nearest values; beyond 0 and 100 percent, these.
    DeviceSteps nearest(DevicePercent const& percent) const;

    /// The nearest values whose sum of inks stays within a limit.
    ///
    /// \param limit  percent; only CMYK has one
    DeviceSteps nearestWithin(DevicePercent const& percent, double limit) const;

    /// Whether the inks, as written, add up to at most so many percent. Always true for RGB.
    bool isWithin(DeviceSteps const& steps, double limit) const;

private:
    ColorSpace space;
    ValueStep rounding;
};
