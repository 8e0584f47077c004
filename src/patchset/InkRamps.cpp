// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "InkRamps.h"

#include <bit>

namespace
{

// The inks that are set in a mask, each with so many percent.
DevicePercent inked(ValueScale const& scale, unsigned mask, float percent)
{
    DevicePercent device{};
    for (std::size_t c = 0; c < static_cast<std::size_t>(scale.getChannels()); ++c) {
        float const ink = (mask >> c & 1U) != 0 ? percent : 0;
        device[c] = scale.getColorSpace() == CMYK ? ink : 100 - ink;
    }
    return device;
}

// The combinations of so many inks, as masks.
std::vector<unsigned> combinationsOf(ValueScale const& scale, int inks)
{
    std::vector<unsigned> masks;
    for (unsigned mask = 1; mask < 1U << scale.getChannels(); ++mask)
        if (std::popcount(mask) == inks)
            masks.push_back(mask);
    return masks;
}

void addWithin(std::vector<DeviceSteps>& values, ValueScale const& scale, double inkLimit, DevicePercent const& device)
{
    DeviceSteps const steps = scale.nearest(device);
    if (scale.isWithin(steps, inkLimit))
        values.push_back(steps);
}

} // namespace

DeviceSteps paperValue(ValueScale const& scale)
{
    return scale.nearest(inked(scale, 0, 0));
}

std::vector<DeviceSteps> cornerValues(ValueScale const& scale, double inkLimit)
{
    std::vector<DeviceSteps> values;
    for (int inks = 1; inks <= scale.getChannels(); ++inks)
        for (unsigned const mask : combinationsOf(scale, inks))
            addWithin(values, scale, inkLimit, inked(scale, mask, 100));
    return values;
}

std::vector<DeviceSteps> rampValues(ValueScale const& scale, double inkLimit, int steps)
{
    std::vector<DeviceSteps> values;
    for (int const inks : {1, 2})
        for (unsigned const mask : combinationsOf(scale, inks))
            for (int step = 1; step <= steps; ++step)
                addWithin(values, scale, inkLimit,
                          inked(scale, mask, 100 * static_cast<float>(step) / static_cast<float>(steps)));
    return values;
}
