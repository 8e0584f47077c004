// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Spline.h"

#include <gtest/gtest.h>

#include <functional>

namespace
{

/// The corners of the cube of inks and some points inside, coloured by a function.
std::vector<MeasuredPatch> measure(std::function<Lab(Cmyk const&)> const& colourOf)
{
    std::vector<Cmyk> devices{{50, 50, 50, 50}, {20, 70, 10, 30}, {80, 15, 45, 60}};
    for (unsigned corner = 0; corner < 16; ++corner)
        devices.push_back(
            {corner & 1 ? 100.0 : 0, corner & 2 ? 100.0 : 0, corner & 4 ? 100.0 : 0, corner & 8 ? 100.0 : 0});
    std::vector<MeasuredPatch> patches;
    for (Cmyk const& device : devices)
        patches.push_back({device, colourOf(device)});
    return patches;
}

} // namespace

TEST(Spline, PassesThroughAllMeasurements)
{
    std::vector<MeasuredPatch> const patches = measure([](Cmyk const& device) {
        return Lab{100 - device[3] * device[3] / 100, device[1] * device[2] / 100, device[0] < 50 ? 1.0 : -1.0};
    });
    Spline const spline(patches);
    for (MeasuredPatch const& patch : patches)
        for (std::size_t channel = 0; channel < 3; ++channel)
            EXPECT_NEAR(spline.at(patch.device)[channel], patch.lab[channel], 1e-9);
}

TEST(Spline, GoesStraightThroughWhatIsStraight)
{
    auto const plane = [](Cmyk const& device) {
        return Lab{100 - device[0] / 4 - device[3] / 2, device[1] - device[0], device[2] / 10};
    };
    Spline const spline(measure(plane));
    for (Cmyk const& device : {Cmyk{10, 20, 30, 40}, Cmyk{99, 1, 50, 0}})
        for (std::size_t channel = 0; channel < 3; ++channel)
            EXPECT_NEAR(spline.at(device)[channel], plane(device)[channel], 1e-9);
}
