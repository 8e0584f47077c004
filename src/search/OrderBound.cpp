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
#include <utility>

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

// What the pairs of every order fulfil. A column of even height h is the paper and h patches and the paper: its pairs,
// taken by turns, give each patch one partner without the paper, or one with the paper at both ends. With an odd height
// the paper is at one end.
class NecessaryFlows
{
public:
    NecessaryFlows(PairDifference const& difference, IntSize grid) : far(difference, patchesAndPaper(difference))
    {
        if (grid.height % 2 == 0) {
            addFlow(1, 0);
            addFlow(1, 2 * grid.width);
        } else
            addFlow(1, grid.width);
        addFlow(2, 2 * grid.width);
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

    void addFlow(int patchDemand, int paperDemand)
    {
        std::vector<int> demands(at(far.countPatches()), patchDemand);
        demands.back() = paperDemand;
        flows.emplace_back(far, std::move(demands));
    }

    FarPairs far;
    std::vector<PartnerFlow> flows;
};

// Bits of numbers that are not negative compare like the numbers.
float bisect(NecessaryFlows flows, float feasible, float mostFeasible)
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
        return {std::max(reached, findHalfSetBound(difference, task.grid)), true};
    return {bisect({difference, task.grid}, reached, smallestSecondLargest(difference)), false};
}
