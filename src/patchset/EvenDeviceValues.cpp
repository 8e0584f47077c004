// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "EvenDeviceValues.h"

#include "search/RandomNumbers.h"

#include <array>
#include <utility>

namespace
{

// The powers of 1/g as fractions of 2^64, where g^4 = g + 1 for three channels and g^5 = g + 1 for four.
constexpr std::array<std::uint64_t, 4> stepsOfThree = {0xd1b54a32d192ed03, 0xabc98388fb8fac02, 0x8cb92ba72f3d8dd7, 0};
constexpr std::array<std::uint64_t, 4> stepsOfFour = {0xdb4f0b9175ae2165, 0xbbe0563303a4615f, 0xa0f2ec75a1fe1575,
                                                      0x89e182857d9ed688};

// A little more than the whole range is taken, and cut off at its ends: so some values lie on its faces and edges.
constexpr float overhang = 1.03f;

// Light tints of CMYK are a small part of the device values, and a large part of the colours: every so many values are
// squared, which makes them lighter.
constexpr std::size_t lightPeriod = 8;

float percentOf(std::uint64_t fraction)
{
    float const unit = static_cast<float>(fraction >> 40) / static_cast<float>(1 << 24);
    float const percent = (unit - 0.5f) * 100 * overhang + 50;
    return percent < 0 ? 0 : percent > 100 ? 100 : percent;
}

} // namespace

std::vector<DeviceSteps> evenDeviceValues(ValueScale const& scale, double inkLimit, std::size_t count,
                                          std::uint64_t seed, std::set<DeviceSteps> leftOut)
{
    bool const hasFour = scale.getChannels() == 4;
    auto const& steps = hasFour ? stepsOfFour : stepsOfThree;
    auto const limit = static_cast<float>(inkLimit) * overhang;
    RandomNumbers random(seed);
    std::array<std::uint64_t, 4> fractions{};
    for (std::uint64_t& fraction : fractions)
        fraction = random.next();
    std::vector<DeviceSteps> values;
    // An ink limit of 100 % leaves 1/24 of all values.
    std::size_t const mostAttempts = 200 * count;
    for (std::size_t attempt = 0; attempt < mostAttempts && values.size() < count; ++attempt) {
        DevicePercent percent{};
        float sum = 0;
        for (std::size_t c = 0; c < static_cast<std::size_t>(scale.getChannels()); ++c) {
            percent[c] = percentOf(fractions[c] += steps[c]);
            if (hasFour && attempt % lightPeriod == 0)
                percent[c] = percent[c] * percent[c] / 100;
            sum += percent[c];
        }
        if (hasFour && sum > limit)
            continue;
        DeviceSteps const value = scale.nearestWithin(percent, inkLimit);
        if (leftOut.insert(value).second)
            values.push_back(value);
    }
    return values;
}
