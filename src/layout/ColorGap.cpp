// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColorGap.h"

#include "color/ColorEntry.h"

#include <algorithm>

namespace
{

float const* labOf(ColorEntry const* side)
{
    return side ? side->getLab() : ColorEntry::whitePatch.getLab();
}

} // namespace

void ColorGap::compute()
{
    squaredDeltaE = ColorEntry::computeSqDe(labOf(first), labOf(second));
}

void ColorGap::computeOutColor(ColorSpace colorSpace)
{
    float const meanLightness = (labOf(first)[0] + labOf(second)[0]) * 0.5f;
    bool const isLight = meanLightness >= 50.0f;
    if (colorSpace == CMYK) {
        std::fill_n(outColor, 3, 0.0);
        outColor[3] = static_cast<double>(isLight);
    } else {
        std::fill_n(outColor, 3, static_cast<double>(!isLight));
    }
}
