// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "OrderTask.h"

#include <cstddef>

/// How far the patches of a task are apart, and from its paper. A patch is its index in the task; the paper is the
/// index after the last patch. The task outlives it.
class PairDifference
{
public:
    explicit PairDifference(OrderTask const& orderTask) : task(orderTask) {}

    int countPatches() const { return static_cast<int>(task.colors.size()); }
    int paper() const { return countPatches(); }

    Lab const& colorOf(int patch) const { return patch == paper() ? task.paper : task.colors[at(patch)]; }
    bool takesPart(int patch) const { return patch != paper() && task.takesPart[at(patch)]; }

    /// Squared delta E, from 0 to furthestSquaredDeltaE. A pair that nobody asks about, because neither side takes
    /// part, has the largest value, and so has one without a distance (not-a-number).
    float operator()(int one, int other) const
    {
        float const difference = squaredDeltaE(colorOf(one), colorOf(other));
        bool const isAsked = takesPart(one) || takesPart(other);
        return isAsked && difference < furthestSquaredDeltaE ? difference : furthestSquaredDeltaE;
    }

    /// Whether a pair differs by less than 5 in lightness. Nobody asks about a pair without a side that takes part.
    bool areAlikeInLightness(int one, int other) const
    {
        return (takesPart(one) || takesPart(other)) &&
               squaredLightnessDifference(colorOf(one), colorOf(other)) < leastSquaredLightness;
    }

    static constexpr float leastSquaredLightness = 25;

private:
    static std::size_t at(int i) { return static_cast<std::size_t>(i); }

    OrderTask const& task;
};
