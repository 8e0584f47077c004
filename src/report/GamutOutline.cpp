// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "GamutOutline.h"

#include "color/ColorEngine.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace
{

constexpr int steps = 16; // along an edge of the cube of the device's colours

// Twice the area of the triangle, positive for a left turn.
double turn(PlanePoint p, PlanePoint q, PlanePoint r)
{
    return (q.a - p.a) * (r.b - p.b) - (q.b - p.b) * (r.a - p.a);
}

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

std::vector<PlanePoint> convexHull(std::vector<PlanePoint> points)
{
    std::erase_if(points, [](PlanePoint p) { return !std::isfinite(p.a) || !std::isfinite(p.b); });
    std::sort(points.begin(), points.end(),
              [](PlanePoint p, PlanePoint q) { return p.a < q.a || (p.a == q.a && p.b < q.b); });
    std::vector<PlanePoint> hull;
    auto const addChain = [&hull](auto first, auto last) {
        std::size_t const start = hull.size();
        for (; first != last; ++first) {
            while (hull.size() >= start + 2 && turn(hull[hull.size() - 2], hull.back(), *first) <= 0)
                hull.pop_back();
            hull.push_back(*first);
        }
        // The next chain begins with the last point.
        if (hull.size() > start)
            hull.pop_back();
    };
    addChain(points.begin(), points.end());
    addChain(points.rbegin(), points.rend());
    return hull;
}

std::vector<PlanePoint> gamutOutline(ColorSpace space)
{
    std::vector<float> const device = surfaceColors(space);
    std::size_t const count = device.size() / (space == CMYK ? 4 : 3);
    std::vector<float> labs(3 * count);
    colorEngine().toLab(space, device.data(), labs.data(), count);
    std::vector<PlanePoint> points;
    for (std::size_t i = 0; i < count; ++i)
        points.push_back({static_cast<double>(labs[3 * i + 1]), static_cast<double>(labs[3 * i + 2])});
    return convexHull(std::move(points));
}
