// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "NearestPoint.h"

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>
#include <utility>

NearestPoint::NearestPoint(std::vector<float> coordinates)
    : points(std::move(coordinates)), order(points.size() / dimensions)
{
    std::iota(order.begin(), order.end(), 0U);
    keepFirstOfEqual();
    nodes.push_back({0, static_cast<std::uint32_t>(order.size()), 0, {}, {}});
    for (std::size_t node = 0; node < nodes.size(); ++node)
        build(node);
    ordered.reserve(order.size() * dimensions);
    for (std::uint32_t const point : order)
        ordered.insert(ordered.end(), placeOf(point), placeOf(point) + dimensions);
    points = {};
}

// A damaged profile gives many patches the same colour. A search would have to look at all of them.
void NearestPoint::keepFirstOfEqual()
{
    std::sort(order.begin(), order.end(), [this](std::uint32_t a, std::uint32_t b) {
        auto const [p, q] = std::mismatch(placeOf(a), placeOf(a) + dimensions, placeOf(b));
        return p == placeOf(a) + dimensions ? a < b : *p < *q;
    });
    auto const end = std::unique(order.begin(), order.end(), [this](std::uint32_t a, std::uint32_t b) {
        return std::equal(placeOf(a), placeOf(a) + dimensions, placeOf(b));
    });
    order.erase(end, order.end());
}

void NearestPoint::build(std::size_t number)
{
    Node& node = nodes[number];
    std::size_t widest = 0;
    for (std::size_t d = 0; d < dimensions; ++d) {
        node.low[d] = std::numeric_limits<float>::max();
        node.high[d] = std::numeric_limits<float>::lowest();
        for (std::uint32_t i = node.first; i < node.end; ++i) {
            float const place = points[order[i] * dimensions + d];
            node.low[d] = std::min(node.low[d], place);
            node.high[d] = std::max(node.high[d], place);
        }
        if (node.high[d] - node.low[d] > node.high[widest] - node.low[widest])
            widest = d;
    }
    if (node.end - node.first <= leafSize)
        return;
    std::uint32_t const middle = node.first + (node.end - node.first) / 2;
    std::nth_element(order.begin() + node.first, order.begin() + middle, order.begin() + node.end,
                     [&](std::uint32_t a, std::uint32_t b) {
                         return std::pair(points[a * dimensions + widest], a) <
                                std::pair(points[b * dimensions + widest], b);
                     });
    Node const near{node.first, middle, 0, {}, {}};
    Node const far{middle, node.end, 0, {}, {}};
    node.child = static_cast<std::uint32_t>(nodes.size());
    nodes.push_back(near);
    nodes.push_back(far);
}

float NearestPoint::squaredDistanceTo(Node const& node, float const* place)
{
    float sum = 0;
    for (std::size_t d = 0; d < dimensions; ++d) {
        float const outside = std::max(std::max(node.low[d] - place[d], place[d] - node.high[d]), 0.0f);
        sum += outside * outside;
    }
    return sum;
}

NearestPoint::Answer NearestPoint::find(float const* place) const
{
    struct Visit
    {
        std::uint32_t node;
        float squaredDistance;
    };
    Answer best{nobody, std::numeric_limits<float>::max()};
    // The tree halves its points: it is never deeper than their count has bits.
    std::array<Visit, 72> visits;
    std::size_t waiting = 0;
    visits[waiting++] = {0, 0};
    while (waiting > 0) {
        auto const [number, boxDistance] = visits[--waiting];
        if (boxDistance > best.squaredDistance)
            continue;
        Node const& node = nodes[number];
        if (node.child != 0) {
            Visit near{node.child, squaredDistanceTo(nodes[node.child], place)};
            Visit far{node.child + 1, squaredDistanceTo(nodes[node.child + 1], place)};
            if (far.squaredDistance < near.squaredDistance)
                std::swap(near, far);
            visits[waiting++] = far;
            visits[waiting++] = near;
            continue;
        }
        for (std::uint32_t i = node.first; i < node.end; ++i) {
            float sum = 0;
            for (std::size_t d = 0; d < dimensions; ++d) {
                float const difference = ordered[i * dimensions + d] - place[d];
                sum += difference * difference;
            }
            bool const isNearer = sum < best.squaredDistance || (sum <= best.squaredDistance && order[i] < best.point);
            if (isNearer)
                best = {order[i], sum};
        }
    }
    return best;
}

std::vector<float> placesInLab(std::vector<PrinterColor> const& colors)
{
    std::vector<float> places;
    places.reserve(colors.size() * NearestPoint::dimensions);
    for (PrinterColor const& color : colors) {
        places.insert(places.end(), color.lab.values, color.lab.values + 3);
        places.push_back(0);
    }
    return places;
}

std::vector<float> placesInDevice(std::vector<PrinterColor> const& colors)
{
    std::vector<float> places;
    places.reserve(colors.size() * NearestPoint::dimensions);
    for (PrinterColor const& color : colors)
        places.insert(places.end(), color.device.begin(), color.device.end());
    return places;
}
