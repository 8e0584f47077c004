// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Assignment.h"
#include "ChartReference.h"
#include "DeviceModel.h"

#include <cstddef>
#include <vector>

/// What the readings that are stored for a strip truly show.
struct StripMatch
{
    std::size_t source = 0;  // the strip that was read
    bool isReversed = false; // from its far end
    std::vector<int>
        shifts;          // for each row, how many rows behind its own place the reading stands; empty without shifts
    bool isClear = true; // whether the readings fit what they are said to show
    bool isExact = true; // whether it is clear at which row each shift begins

    /// How much more probable this is than a right reading, all things considered: the natural logarithm of the odds.
    double logOdds = 0;

    bool isShifted() const { return !shifts.empty(); }

    /// The patch that a row's reading shows; Assignment::nothing for none.
    std::size_t patchAt(ChartReference const& chart, std::size_t row) const;
};

/// What a reading costs that differs from what is expected, in natural logarithms: Student's distribution with three
/// degrees of freedom, and at most the cost of a reading that has nothing to do with the patch.
class ReadingCost
{
public:
    /// \param spread  of each component of a reading that is right
    explicit ReadingCost(double spread);

    double of(double squaredDifference) const;
    double most() const { return highest; }

private:
    double scale;
    double highest;
};

/// The best explanation of every strip's readings.
///
/// \param base  what each strip's readings show if nothing is wrong with the column itself: the strip's own index, or
///              another strip's where whole sheets are exchanged
std::vector<StripMatch> matchStrips(ChartReference const& chart, Readings const& readings, DeviceModel const& model,
                                    std::vector<StripMatch> const& base);

/// Readings assigned as their strips' matches say. Strips that match nothing clearly show nothing.
Assignment assignmentOf(ChartReference const& chart, std::vector<StripMatch> const& matches);
