// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "DisplayColor.h"

#include "color/ColorEngine.h"

#include <algorithm>

namespace
{

unsigned char byteOf(float fraction)
{
    // Not-a-number fails the first comparison.
    float const clipped = fraction > 0 ? std::min(fraction, 1.0f) : 0;
    return static_cast<unsigned char>(clipped * 255.0f + 0.5f);
}

} // namespace

DisplayColor displayColorOf(float const* fractions)
{
    return {byteOf(fractions[0]), byteOf(fractions[1]), byteOf(fractions[2])};
}

DisplayColor displayColorOf(Lab const& lab)
{
    float fractions[3];
    colorEngine().toDisplay(lab.values, fractions, 1);
    return displayColorOf(fractions);
}

DisplayColor displayColorOf(ColorSpace space, double const* device)
{
    float values[4] = {};
    for (int i = 0; i < (space == CMYK ? 4 : 3); ++i)
        values[i] = static_cast<float>(space == CMYK ? device[i] * 100 : device[i]);
    Lab lab{};
    colorEngine().toLab(space, values, lab.values, 1);
    return displayColorOf(lab);
}

std::string htmlColor(DisplayColor color)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string text = "#";
    for (unsigned const part : {color.red, color.green, color.blue}) {
        text += digits[part / 16];
        text += digits[part % 16];
    }
    return text;
}
