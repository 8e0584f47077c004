// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ValueScale.h"
#include "color/Lab.h"
#include "color/PrinterProfile.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

/// Gives the CIELAB colours of device values.
///
/// \param percents  channel after channel, colour after colour, 0 to 100
/// \param labs      three numbers for each colour
using DeviceToLab = std::function<void(float const* percents, float* labs, std::size_t count)>;

/// A device value and its colour.
struct PrinterColor
{
    DevicePercent device{};
    Lab lab{};
};

/// Squared distance of two device values, percent.
inline float squaredDeviceDistance(DevicePercent const& p, DevicePercent const& q)
{
    float sum = 0;
    for (std::size_t c = 0; c < 4; ++c)
        sum += (p[c] - q[c]) * (p[c] - q[c]);
    return sum;
}

/// The neutral colour of a lightness that looks as grey as the paper looks white: its tristimulus values are those of
/// the paper, times a factor. Exact above a lightness of 8.
inline Lab greyOf(Lab const& paper, float lightness)
{
    float const factor = (lightness + 16) / (paper.values[0] + 16);
    return {{lightness, paper.values[1] * factor, paper.values[2] * factor}};
}

/// A printer: which colours its device values give. Colours are rounded to 1/256 and bounded, so that the last digits
/// of a mathematics library do not decide anything, and a damaged profile gives no numbers that break a search.
class Printer
{
public:
    /// \param colorSpace  CMYK or RGB
    Printer(ColorSpace colorSpace, DeviceToLab conversion) : space(colorSpace), toLab(std::move(conversion)) {}

    ColorSpace getColorSpace() const { return space; }
    std::size_t getChannels() const { return space == CMYK ? 4 : 3; }

    /// Sets the colours that belong to the device values.
    void computeColors(std::vector<PrinterColor>& colors) const;

    PrinterColor colorOf(DevicePercent const& device) const;

    /// The unprinted paper.
    DevicePercent paper() const;

private:
    ColorSpace space;
    DeviceToLab toLab;
};

/// The printer of the program's own profiles. The colour engine must be prepared.
Printer ownPrinter(ColorSpace colorSpace);

/// The printer of a profile.
Printer printerOf(ColorSpace colorSpace, std::shared_ptr<PrinterProfile const> profile);
