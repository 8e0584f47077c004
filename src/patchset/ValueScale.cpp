// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ValueScale.h"

#include <algorithm>
#include <cmath>

namespace
{

// Not-a-number becomes 0.
float boundedPercent(float percent)
{
    return percent > 0 ? std::min(percent, 100.0f) : 0;
}

} // namespace

int ValueScale::largest() const
{
    if (rounding == ValueStep::eightBit)
        return 255;
    int const full = space == CMYK ? 100 : 255;
    return rounding == ValueStep::tenth ? full * 10 : full;
}

int ValueScale::hundredthsOf(int value) const
{
    if (rounding == ValueStep::tenth)
        return value * 10;
    bool const isPercentOfBits = rounding == ValueStep::eightBit && space == CMYK;
    return isPercentOfBits ? (value * 20000 + 255) / 510 : value * 100;
}

std::string ValueScale::textOf(int value) const
{
    int const hundredths = hundredthsOf(value);
    std::string text = std::to_string(hundredths / 100);
    int const rest = hundredths % 100;
    if (rest == 0)
        return text;
    text += '.';
    text += static_cast<char>('0' + rest / 10);
    if (rest % 10 != 0)
        text += static_cast<char>('0' + rest % 10);
    return text;
}

std::string ValueScale::textOf(DeviceSteps const& steps) const
{
    std::string text;
    for (std::size_t c = 0; c < static_cast<std::size_t>(getChannels()); ++c)
        text += (c > 0 ? " " : "") + textOf(steps.channels[c]);
    return text;
}

DevicePercent ValueScale::percentOf(DeviceSteps const& steps) const
{
    DevicePercent percent{};
    float const hundredthsInPercent = space == CMYK ? 100.0f : 255.0f;
    for (std::size_t c = 0; c < static_cast<std::size_t>(getChannels()); ++c)
        percent[c] = static_cast<float>(hundredthsOf(steps.channels[c])) / hundredthsInPercent;
    return percent;
}

DeviceSteps ValueScale::nearest(DevicePercent const& percent) const
{
    DeviceSteps steps;
    for (std::size_t c = 0; c < static_cast<std::size_t>(getChannels()); ++c) {
        float const bounded = boundedPercent(percent[c]);
        steps.channels[c] = static_cast<std::uint16_t>(std::lround(bounded * static_cast<float>(largest()) / 100.0f));
    }
    return steps;
}

DeviceSteps ValueScale::nearestWithin(DevicePercent const& percent, double limit) const
{
    DevicePercent scaled = percent;
    float sum = 0;
    for (float& ink : scaled) {
        ink = boundedPercent(ink);
        sum += ink;
    }
    auto const bound = static_cast<float>(limit);
    if (space == CMYK && sum > bound)
        for (float& ink : scaled)
            ink = ink * bound / sum;
    DeviceSteps steps = nearest(scaled);
    while (!isWithin(steps, limit))
        --*std::max_element(steps.channels.begin(), steps.channels.end());
    return steps;
}

bool ValueScale::isWithin(DeviceSteps const& steps, double limit) const
{
    if (space != CMYK)
        return true;
    int sum = 0;
    for (std::uint16_t const value : steps.channels)
        sum += hundredthsOf(value);
    return sum <= limit * 100;
}
