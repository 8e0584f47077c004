// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "DifferenceSearch.h"

#include "ConflictRepair.h"
#include "StretchGroups.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace
{

// A threshold is given up after a tenth of the work.
constexpr int thresholdsOfWork = 10;

// Finding all pairs of a group takes about as long as looking at so many words.
std::int64_t workOfPairs(std::vector<Stretch> const& stretches)
{
    std::int64_t patches = 0;
    for (Stretch const& stretch : stretches)
        patches += stretch.length;
    return patches * patches / 8;
}

// The square of the mean of two numbers' roots.
float betweenSquares(float one, float other)
{
    float const root = (std::sqrt(one) + std::sqrt(other)) / 2;
    return root * root;
}

} // namespace

DifferenceSearch::DifferenceSearch(PairDifference const& pairDifference, ColumnOrder start, float squaredBound)
    : difference(pairDifference), bound(squaredBound), best(std::move(start)), current(best),
      smallest(smallestDifference(best, difference)), ceiling(bound)
{
}

void DifferenceSearch::run(std::int64_t work, Progress const& progress)
{
    std::int64_t const workOfThreshold = workOfOrder(difference.countPatches()) / thresholdsOfWork;
    // The last threshold may take more than what was left. The next call has less for that.
    workLeft += work;
    while (workLeft > 0 && smallest < bound) {
        float const threshold = nextThreshold();
        std::int64_t left = workOfThreshold;
        bool const isReached = reach(threshold, left, progress);
        workLeft -= workOfThreshold - left;
        if (isReached) {
            best = current;
            smallest = smallestDifference(best, difference);
            if (smallest >= ceiling)
                ceiling = bound;
        } else {
            ceiling = threshold;
            wasBoundTried = wasBoundTried || threshold == bound;
        }
    }
}

// Half way from what is reached to what was not. Where both have met, anew up to the bound.
float DifferenceSearch::nextThreshold()
{
    constexpr float nearlySame = 1.0005f * 1.0005f;
    constexpr float nearBound = 1.003f * 1.003f;
    if (ceiling < smallest * nearlySame && ceiling < bound) {
        ceiling = bound;
        wasBoundTried = false;
    }
    if (bound < smallest * nearBound && ceiling == bound && !wasBoundTried)
        return bound;
    float const next = std::nextafter(smallest, std::numeric_limits<float>::max());
    return std::max(next, betweenSquares(smallest, ceiling));
}

bool DifferenceSearch::hasPairBelow(std::vector<Stretch> const& stretches, float threshold) const
{
    return std::ranges::any_of(stretches, [&](Stretch const& stretch) {
        for (int cell = stretch.firstCell; cell < stretch.firstCell + stretch.length; ++cell)
            if (difference(current[cell], current.before(cell, difference.paper())) < threshold ||
                difference(current[cell], current.after(cell, difference.paper())) < threshold)
                return true;
        return false;
    });
}

bool DifferenceSearch::reach(float threshold, std::int64_t& work, Progress const& progress)
{
    while (work > 0) {
        bool isReached = true;
        auto const groups = divideIntoGroups(current, random);
        std::int64_t const share = work / static_cast<std::int64_t>(groups.size());
        for (std::vector<Stretch> const& group : groups) {
            if (!hasPairBelow(group, threshold))
                continue;
            std::int64_t left = groups.size() == 1 ? work : share / 2 + 1;
            work -= left + workOfPairs(group);
            PlaceLine line(difference, current, group);
            line.forbidBelow(threshold);
            isReached = repairConflicts(line, random, left) && isReached;
            work += left;
            line.writeTo(current);
            if (progress)
                progress(smallest);
        }
        if (isReached)
            return true;
    }
    return false;
}

std::int64_t workOfOrder(int patches)
{
    constexpr double words = 5500;
    // Small charts are quick anyway, and have few places to try.
    constexpr double fewestPatches = 300;
    constexpr double mostPatchesToRoot = 20000;
    double const n = std::max<double>(patches, std::min(10.0 * patches, fewestPatches));
    return static_cast<std::int64_t>(words * n * std::sqrt(std::min(n, mostPatchesToRoot)));
}
