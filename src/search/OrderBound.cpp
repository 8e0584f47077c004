// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OrderBound.h"

#include "FarPairs.h"
#include "HalfSetBound.h"
#include "PairDifference.h"
#include "PartnerFlow.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <numeric>
#include <vector>

namespace
{

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

// Where each column is a single patch, every order has the same differences.
float smallestToPaper(PairDifference const& difference)
{
    float smallest = furthestSquaredDeltaE;
    for (int patch = 0; patch < difference.countPatches(); ++patch)
        smallest = std::min(smallest, difference(patch, difference.paper()));
    return smallest;
}

// Each patch has two neighbours: the smallest difference is not above any patch's second largest.
float smallestSecondLargest(PairDifference const& difference)
{
    float smallest = furthestSquaredDeltaE;
    for (int patch = 0; patch < difference.countPatches(); ++patch) {
        float largest = 0;
        float second = 0;
        for (int other = 0; other <= difference.paper() && second < smallest; ++other) {
            if (other == patch)
                continue;
            float const value = difference(patch, other);
            second = std::max(second, std::min(value, largest));
            largest = std::max(largest, value);
        }
        smallest = std::min(smallest, second);
    }
    return smallest;
}

// What the pairs of every order fulfil. A column is the paper, h patches and the paper again. Some of its pairs, chosen
// so that no two share a patch, give each patch at most one partner:
// Where h is even, they can give one to each patch without the paper, or with the paper at both ends.
// Where h is odd, they can give one to each patch with the paper at one end. Without the paper, or with the paper at
// both ends, one patch goes without; it can be any one of (h + 1) / 2, or (h - 1) / 2. Taking the mean of these
// choices, each patch goes without for at most one part in as many.
class NecessaryFlows
{
public:
    NecessaryFlows(PairDifference const& difference, IntSize grid) : far(difference, patchesAndPaper(difference))
    {
        int const ends = 2 * grid.width;
        int const half = grid.height / 2;
        if (grid.height % 2 == 0) {
            addFlow({1, 1, 0, 1});
            addFlow({1, 1, ends, 1});
        } else {
            addFlow({1, 1, grid.width, 1});
            addFlow({half, half + 1, 0, half + 1});
            addFlow({half - 1, half, ends * half, half});
        }
        addFlow({2, 2, ends, 1});
    }

    bool existAt(float threshold)
    {
        far.renew(threshold);
        return std::ranges::all_of(flows, [](PartnerFlow& flow) { return flow.isComplete(); });
    }

private:
    static std::vector<int> patchesAndPaper(PairDifference const& difference)
    {
        std::vector<int> patches(at(difference.countPatches() + 1));
        std::iota(patches.begin(), patches.end(), 0);
        return patches;
    }

    void addFlow(PartnerNeeds const& needs) { flows.emplace_back(far, needs); }

    // The flows refer to the pairs: neither is copied.
    FarPairs far;
    std::vector<PartnerFlow> flows;
};

// Bits of numbers that are not negative compare like the numbers.
float bisect(NecessaryFlows& flows, float feasible, float mostFeasible)
{
    auto low = std::bit_cast<std::uint32_t>(feasible);
    auto high = std::max(low, std::bit_cast<std::uint32_t>(mostFeasible)) + 1;
    while (high - low > 1) {
        std::uint32_t const middle = low + (high - low) / 2;
        (flows.existAt(std::bit_cast<float>(middle)) ? low : high) = middle;
    }
    return std::bit_cast<float>(low);
}

} // namespace

OrderBound findOrderBound(OrderTask const& task, float reached)
{
    PairDifference const difference(task);
    if (std::ranges::find(task.takesPart, true) == task.takesPart.end())
        return {};
    if (task.grid.height == 1)
        return {smallestToPaper(difference), false};
    if (difference.countPatches() > mostPatchesForTightBound)
        return {std::min(findHalfSetBound(difference, task.grid), smallestSecondLargest(difference)), true};
    NecessaryFlows flows(difference, task.grid);
    return {bisect(flows, reached, smallestSecondLargest(difference)), false};
}
