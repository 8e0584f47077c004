// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "FarthestColors.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace
{

constexpr std::size_t axes = 7;
constexpr std::uint32_t boxSize = 48;

// Not measured yet: farther than anything, and small enough to be weighted and added.
constexpr float unmeasured = 1e9f;

float axisOf(PrinterColor const& color, std::size_t axis)
{
    return axis < 3 ? color.lab.values[axis] : color.device[axis - 3];
}

float& axisOf(PrinterColor& color, std::size_t axis)
{
    if (axis < 3)
        return color.lab.values[axis];
    return color.device[axis - 3];
}

float squaredOutside(float low, float high, float place)
{
    float const outside = std::max(std::max(low - place, place - high), 0.0f);
    return outside * outside;
}

} // namespace

FarthestColors::FarthestColors(std::vector<PrinterColor> const& colors, std::vector<float> const& weights,
                               float devicePart, DistanceRule distanceRule)
    : part(devicePart), rule(distanceRule)
{
    for (std::uint32_t i = 0; i < colors.size(); ++i)
        candidates.push_back({colors[i], i, weights[i], unmeasured, unmeasured});
    divide(0, static_cast<std::uint32_t>(candidates.size()));
}

FarthestColors::Box FarthestColors::boxOf(std::uint32_t first, std::uint32_t end) const
{
    Box box{first, end, candidates[first].color, candidates[first].color, unmeasured, unmeasured, -1, 0};
    for (std::uint32_t i = first; i < end; ++i)
        for (std::size_t axis = 0; axis < axes; ++axis) {
            float const place = axisOf(candidates[i].color, axis);
            axisOf(box.low, axis) = std::min(axisOf(box.low, axis), place);
            axisOf(box.high, axis) = std::max(axisOf(box.high, axis), place);
        }
    return box;
}

void FarthestColors::divide(std::uint32_t first, std::uint32_t end)
{
    Box box = boxOf(first, end);
    if (end - first <= boxSize) {
        takeBest(box);
        boxes.push_back(box);
        return;
    }
    std::size_t widest = 0;
    auto const width = [&](std::size_t axis) { return axisOf(box.high, axis) - axisOf(box.low, axis); };
    for (std::size_t axis = 1; axis < axes; ++axis)
        if (width(axis) > width(widest))
            widest = axis;
    std::uint32_t const middle = first + (end - first) / 2;
    std::nth_element(candidates.begin() + first, candidates.begin() + middle, candidates.begin() + end,
                     [widest](Candidate const& p, Candidate const& q) {
                         return std::pair(axisOf(p.color, widest), p.number) <
                                std::pair(axisOf(q.color, widest), q.number);
                     });
    divide(first, middle);
    divide(middle, end);
}

void FarthestColors::update(Box& box, PrinterColor const& color)
{
    box.squaredDeltaE = 0;
    box.squaredDevice = 0;
    for (std::uint32_t i = box.first; i < box.end; ++i) {
        Candidate& candidate = candidates[i];
        candidate.squaredDeltaE = std::min(candidate.squaredDeltaE, squaredDeltaE(candidate.color.lab, color.lab));
        candidate.squaredDevice =
            std::min(candidate.squaredDevice, squaredDeviceDistance(candidate.color.device, color.device));
        box.squaredDeltaE = std::max(box.squaredDeltaE, candidate.squaredDeltaE);
        box.squaredDevice = std::max(box.squaredDevice, candidate.squaredDevice);
    }
    takeBest(box);
}

void FarthestColors::takeBest(Box& box) const
{
    box.bestScore = -1;
    for (std::uint32_t i = box.first; i < box.end; ++i) {
        Candidate const& candidate = candidates[i];
        float const score = scoreOf(candidate);
        if (score > box.bestScore || (score >= box.bestScore && candidate.number < box.bestNumber)) {
            box.bestScore = score;
            box.bestNumber = candidate.number;
        }
    }
}

float FarthestColors::scoreOf(Candidate const& candidate) const
{
    float const device = part * candidate.squaredDevice;
    return candidate.weight *
           (rule == DistanceRule::sum ? candidate.squaredDeltaE + device : std::max(candidate.squaredDeltaE, device));
}

void FarthestColors::add(PrinterColor const& color)
{
    for (Box& box : boxes) {
        float deltaE = 0;
        for (std::size_t c = 0; c < 3; ++c)
            deltaE += squaredOutside(box.low.lab.values[c], box.high.lab.values[c], color.lab.values[c]);
        float device = 0;
        for (std::size_t c = 0; c < 4; ++c)
            device += squaredOutside(box.low.device[c], box.high.device[c], color.device[c]);
        if (deltaE < box.squaredDeltaE || device < box.squaredDevice)
            update(box, color);
    }
}

std::uint32_t FarthestColors::farthest() const
{
    Box const* best = &boxes.front();
    for (Box const& box : boxes)
        if (box.bestScore > best->bestScore || (box.bestScore >= best->bestScore && box.bestNumber < best->bestNumber))
            best = &box;
    return best->bestNumber;
}
