// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "HalfSetBound.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace
{

constexpr int centresTried = 400;
constexpr int setsMeasured = 6;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

// The patches nearest to a centre, itself among them.
std::vector<int> nearestTo(PairDifference const& difference, int centre, int count)
{
    std::vector<std::pair<float, int>> byDistance;
    byDistance.reserve(at(difference.countPatches()));
    for (int patch = 0; patch < difference.countPatches(); ++patch)
        byDistance.emplace_back(patch == centre ? 0 : difference(patch, centre), patch);
    std::ranges::nth_element(byDistance, byDistance.begin() + count - 1);
    std::vector<int> nearest;
    nearest.reserve(at(count));
    for (int i = 0; i < count; ++i)
        nearest.push_back(byDistance[at(i)].second);
    return nearest;
}

// Stops early at a pair that differs by as much as the set to beat.
float largestDifferenceWithin(PairDifference const& difference, std::vector<int> const& set, float toBeat)
{
    float largest = 0;
    for (std::size_t i = 0; i < set.size() && largest < toBeat; ++i)
        for (std::size_t j = 0; j < i; ++j)
            largest = std::max(largest, difference(set[i], set[j]));
    return largest;
}

} // namespace

float findHalfSetBound(PairDifference const& difference, IntSize grid)
{
    int const count = grid.width * ((grid.height + 1) / 2) + 1;
    float bound = furthestSquaredDeltaE;
    if (count > difference.countPatches())
        return bound;
    std::vector<std::pair<float, int>> centres;
    int const step = std::max(1, difference.countPatches() / centresTried);
    for (int centre = 0; centre < difference.countPatches(); centre += step) {
        std::vector<int> const set = nearestTo(difference, centre, count);
        float radius = 0;
        for (int const patch : set)
            radius = std::max(radius, patch == centre ? 0 : difference(patch, centre));
        centres.emplace_back(radius, centre);
    }
    std::ranges::sort(centres);
    for (std::size_t i = 0; i < centres.size() && i < setsMeasured; ++i) {
        std::vector<int> const set = nearestTo(difference, centres[i].second, count);
        bound = std::min(bound, largestDifferenceWithin(difference, set, bound));
    }
    return bound;
}
