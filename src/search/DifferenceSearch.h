// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ColumnOrder.h"
#include "PairDifference.h"
#include "PlaceLine.h"
#include "RandomNumbers.h"

#include <cstdint>
#include <functional>
#include <vector>

/// Raises the smallest difference of an order along the scan. It sets a threshold and repairs all neighbours that
/// differ by less. Then it sets a higher threshold, or a lower one where it did not get there.
class DifferenceSearch
{
public:
    /// Called with the smallest squared delta E so far.
    using Progress = std::function<void(float smallest)>;

    /// \param pairDifference  of the task; it outlives the search
    /// \param start           the order to begin with
    /// \param squaredBound    squared delta E at which nothing is left to search
    DifferenceSearch(PairDifference const& pairDifference, ColumnOrder start, float squaredBound);

    /// Searches. Two calls with half the work each give the same as one.
    ///
    /// \param work      how many words of 64 pairs may be looked at, about
    /// \param progress  may be empty
    void run(std::int64_t work, Progress const& progress);

    /// The best order so far and its smallest squared delta E.
    ColumnOrder const& getBest() const { return best; }
    float getSmallest() const { return smallest; }

private:
    float nextThreshold();
    bool reach(float threshold, std::int64_t& work, Progress const& progress);
    bool hasPairBelow(std::vector<Stretch> const& stretches, float threshold) const;

    PairDifference const& difference;
    float bound;
    ColumnOrder best;
    ColumnOrder current;
    float smallest;
    float ceiling; // squared delta E: the lowest threshold above the smallest difference that failed, or the bound
    bool wasBoundTried = false;
    RandomNumbers random{1};
    std::int64_t workLeft = 0;
};

/// The work that a chart is worth at an effort of 1, in words of 64 pairs. It grows like n^1.5 up to 20,000 patches,
/// and like n beyond.
std::int64_t workOfOrder(int patches);
