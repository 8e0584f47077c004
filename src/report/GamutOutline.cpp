// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "GamutOutline.h"

#include "color/ColorEngine.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace
{

constexpr int steps = 64; // along an edge of the cube of the device's colours
constexpr std::size_t directions = 180;

// The six faces of the cube.
std::vector<float> surfaceColors(ColorSpace space)
{
    float const full = space == CMYK ? 100.0f : 1.0f;
    std::vector<float> device;
    for (std::size_t axis = 0; axis < 3; ++axis)
        for (float const level : {0.0f, full})
            for (int i = 0; i <= steps; ++i)
                for (int j = 0; j <= steps; ++j) {
                    std::array<float, 4> color{};
                    color[axis] = level;
                    color[(axis + 1) % 3] = full * static_cast<float>(i) / steps;
                    color[(axis + 2) % 3] = full * static_cast<float>(j) / steps;
                    device.insert(device.end(), color.begin(), color.begin() + (space == CMYK ? 4 : 3));
                }
    return device;
}

} // namespace

std::vector<PlanePoint> gamutOutline(ColorSpace space)
{
    std::vector<float> const device = surfaceColors(space);
    std::size_t const count = device.size() / (space == CMYK ? 4 : 3);
    std::vector<float> labs(3 * count);
    colorEngine().toLab(space, device.data(), labs.data(), count);
    std::array<PlanePoint, directions> furthest{};
    for (std::size_t i = 0; i < count; ++i) {
        PlanePoint const point{static_cast<double>(labs[3 * i + 1]), static_cast<double>(labs[3 * i + 2])};
        if (!std::isfinite(point.a) || !std::isfinite(point.b))
            continue;
        double const turn = std::atan2(point.b, point.a) / (2 * std::numbers::pi) + 0.5;
        PlanePoint& known = furthest[std::min(static_cast<std::size_t>(turn * directions), directions - 1)];
        if (std::hypot(point.a, point.b) > std::hypot(known.a, known.b))
            known = point;
    }
    std::vector<PlanePoint> outline;
    for (PlanePoint const& point : furthest)
        if (point.a != 0 || point.b != 0)
            outline.push_back(point);
    return outline;
}
