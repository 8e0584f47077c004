// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "patchset/Printer.h"

#include <cstddef>

/// A printer whose colours are easy to compute by hand. RGB: L* is the mean of the channels, a* is red less green, b*
/// is green less blue. CMYK: a channel of RGB is what an ink and black leave, in percent.
inline Printer plainPrinter(ColorSpace space)
{
    return {space, [space](float const* percents, float* labs, std::size_t count) {
                std::size_t const channels = space == CMYK ? 4 : 3;
                for (std::size_t i = 0; i < count; ++i) {
                    float const* const from = percents + channels * i;
                    float rgb[3];
                    for (std::size_t c = 0; c < 3; ++c)
                        rgb[c] = space == CMYK ? (100 - from[c]) * (100 - from[3]) / 100 : from[c];
                    labs[3 * i] = (rgb[0] + rgb[1] + rgb[2]) / 3;
                    labs[3 * i + 1] = rgb[0] - rgb[1];
                    labs[3 * i + 2] = rgb[1] - rgb[2];
                }
            }};
}
