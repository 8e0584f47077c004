// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Assignment.h"
#include "ChartReference.h"
#include "StripMatch.h"

#include <string>
#include <vector>

/// An order that a whole table may have been read or stored in.
struct ReadingOrder
{
    std::string text;      // "column by column from the last to the first"
    Assignment assignment; // which patch the reading of each place shows
};

/// The chart's own order and the others that people and programs use: rows instead of columns, from the far end, to and
/// fro. The chart's own comes first.
std::vector<ReadingOrder> candidateOrders(ChartReference const& chart);

/// The readings, each at the patch that it shows.
Readings reordered(Readings const& readings, Assignment const& order);

/// Starting points of the search for exchanged strips: nothing wrong, sheets exchanged, and for charts of few strips
/// each exchange, reversal or loss of a strip. They matter where most of the readings are at wrong places: a model
/// learnt from those would explain nothing.
std::vector<std::vector<StripMatch>> startingPoints(ChartReference const& chart);
