// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "layout/ChartLayout.h"
#include "lib/Geometry.h"

#include <cstddef>
#include <vector>

/// A cell that is no patch but the paper before or after a column.
inline constexpr IntPos paperCell{};

inline bool isPaper(IntPos cell)
{
    return cell.x == INT_NOPOS;
}

/// What the instrument passes between two patches, or between a patch and the paper.
struct ScanPair
{
    IntPos first;  ///< read earlier; may be the paper
    IntPos second; ///< read later; may be the paper
    float deltaE = 0;
};

/// All pairs along the scan of a chart that is scanned along y, from the least difference on. Pairs that differ equally
/// are in the order of reading. Empty for other charts.
std::vector<ScanPair> scanPairs(ChartLayout const& chart);

/// The value that so many of all values do not exceed, by nearest rank.
///
/// \param sorted    at least one value
/// \param fraction  from 0 to 1
float percentileOf(std::vector<ScanPair> const& sorted, double fraction);

/// The patch read before and the patch read after a patch, on its sheet, and the differences to them in delta E. At the
/// sheet's edge it is the paper.
struct ScanNeighbors
{
    IntPos before;
    IntPos after;
    float deltaEBefore = 0;
    float deltaEAfter = 0;
};
ScanNeighbors neighborsOf(ChartLayout const& chart, OutputPage const& sheet, IntPos cell);

/// How many cells of a chart hold what.
struct CellCounts
{
    int patches = 0; ///< of the table
    int fillers = 0; ///< white patches on visible cells
    int hidden = 0;  ///< cells that no sheet shows

    int all() const { return patches + fillers + hidden; }
};
CellCounts countCells(ChartLayout const& chart);

/// Patches of the table with the same device values.
using RepeatGroup = std::vector<IntPos>;

/// All groups of two or more, each in the order of reading. The groups are in the order of their first patches.
std::vector<RepeatGroup> repeatsOf(ChartLayout const& chart);

/// The sums of inks of a CMYK chart's patches, percent, from the least on, within 0 and a million. Empty for other
/// charts.
std::vector<double> inkSums(ChartLayout const& chart);

/// The cells of all patches of the table, in the order of reading: column A from row 1 on, then column B.
std::vector<IntPos> tableCells(ChartLayout const& chart);

/// Counts of values in equal steps from 0 on.
struct Histogram
{
    double step = 1;
    std::vector<int> counts;

    double start(std::size_t bar) const { return step * static_cast<double>(bar); }
};

/// Counts values in steps of 1, 2, 2.5, 5, 10 and so on: the smallest step with at most so many bars.
///
/// \param values  0 or more
Histogram histogramOf(std::vector<double> const& values, int mostBars);
