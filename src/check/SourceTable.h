// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartReference.h"
#include "ReadingOrder.h"
#include "input/PatchTable.h"

#include <cstddef>
#include <string>
#include <vector>

/// The table that a chart was made from, and where its rows are printed.
struct SourceTable
{
    std::vector<std::size_t> patches; // of the chart, row by row
    std::vector<std::string> ids;     // of the rows; their numbers from 1 where the table has no ids
    std::vector<std::string> names;   // of the rows; empty without names
    std::string fault;                // why the chart was not made from the table; empty where it was
};

/// Finds the rows of a table on a chart by their device values.
SourceTable findSourceTable(ChartReference const& chart, PatchTable const& table);

/// Orders that come of a table: its rows in place of the chart's, and the other way round.
std::vector<ReadingOrder> ordersOf(ChartReference const& chart, SourceTable const& table);
