// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartFigures.h"

#include "making/ChartMaking.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>

namespace
{

Lab colorAt(ChartLayout const& chart, IntPos cell)
{
    ColorEntry const* const entry = isPaper(cell) ? nullptr : chart.getColorEntry(cell);
    return (entry ? *entry : ColorEntry::whitePatch).getColor();
}

// Values that no colour has give a difference of 0: they are the weakest.
float deltaEBetween(ChartLayout const& chart, IntPos first, IntPos second)
{
    float const squared = squaredDeltaE(colorAt(chart, first), colorAt(chart, second));
    return std::isfinite(squared) ? std::sqrt(std::min(squared, furthestSquaredDeltaE)) : 0;
}

bool takesPart(ChartLayout const& chart, IntPos cell)
{
    ColorEntry const* const entry = chart.getColorEntry(cell);
    return isPaper(cell) || (entry && entry->isArranged());
}

bool isOfTable(ColorEntry const* entry)
{
    return entry && entry->getStatus() == Data;
}

// All cells in the order of reading. Labels count from the last column's last row.
template <typename Visit>
void visitCells(ChartLayout const& chart, Visit const& visit)
{
    for (int x = chart.getPatchesX() - 1; x >= 0; --x)
        for (int y = chart.getPatchesY() - 1; y >= 0; --y)
            visit(IntPos{x, y});
}

} // namespace

std::vector<ScanPair> scanPairs(ChartLayout const& chart)
{
    std::vector<ScanPair> pairs;
    if (!isScanned(chart))
        return pairs;
    for (int x = chart.getPatchesX() - 1; x >= 0; --x) {
        IntPos first = paperCell;
        for (int y = chart.getPatchesY() - 1; y >= -1; --y) {
            IntPos const second = y >= 0 ? IntPos{x, y} : paperCell;
            if (takesPart(chart, first) && takesPart(chart, second))
                pairs.push_back({first, second, deltaEBetween(chart, first, second)});
            first = second;
        }
    }
    std::stable_sort(pairs.begin(), pairs.end(),
                     [](ScanPair const& p, ScanPair const& q) { return p.deltaE < q.deltaE; });
    return pairs;
}

float percentileOf(std::vector<ScanPair> const& sorted, double fraction)
{
    auto const count = static_cast<double>(sorted.size());
    auto const rank = static_cast<std::size_t>(std::clamp(std::ceil(fraction * count), 1.0, count));
    return sorted[rank - 1].deltaE;
}

ScanNeighbors neighborsOf(ChartLayout const& chart, OutputPage const& sheet, IntPos cell)
{
    auto const neighbor = [&sheet](IntPos place) { return sheet.isVisible(place) ? place : paperCell; };
    IntPos const before = neighbor({cell.x, cell.y + 1});
    IntPos const after = neighbor({cell.x, cell.y - 1});
    return {before, after, deltaEBetween(chart, before, cell), deltaEBetween(chart, cell, after)};
}

CellCounts countCells(ChartLayout const& chart)
{
    CellCounts counts;
    visitCells(chart, [&](IntPos cell) {
        ColorEntry const* const entry = chart.getColorEntry(cell);
        counts.patches += isOfTable(entry) ? 1 : 0;
        counts.fillers += entry && entry->getStatus() == Filler ? 1 : 0;
        counts.hidden += !entry || entry->getStatus() == Hidden ? 1 : 0;
    });
    return counts;
}

std::vector<IntPos> tableCells(ChartLayout const& chart)
{
    std::vector<IntPos> cells;
    visitCells(chart, [&](IntPos cell) {
        if (isOfTable(chart.getColorEntry(cell)))
            cells.push_back(cell);
    });
    return cells;
}

std::vector<RepeatGroup> repeatsOf(ChartLayout const& chart)
{
    // Values are the same where they are to nine decimals, however they are written.
    constexpr double billion = 1e9;
    std::map<std::array<std::int64_t, 4>, std::size_t> groupOf;
    std::vector<RepeatGroup> groups;
    for (IntPos const cell : tableCells(chart)) {
        ColorEntry const& entry = *chart.getColorEntry(cell);
        std::array<std::int64_t, 4> key{};
        for (int i = 0; i < colorspace_nof_channels[entry.getColorSpace()]; ++i)
            key[static_cast<std::size_t>(i)] = std::llround(entry.getRealValue(i) * billion);
        auto const [group, isNew] = groupOf.try_emplace(key, groups.size());
        if (isNew)
            groups.emplace_back();
        groups[group->second].push_back(cell);
    }
    std::erase_if(groups, [](RepeatGroup const& group) { return group.size() < 2; });
    return groups;
}

std::vector<double> inkSums(ChartLayout const& chart)
{
    std::vector<double> sums;
    if (chart.getColorSpace() != CMYK)
        return sums;
    for (IntPos const cell : tableCells(chart)) {
        ColorEntry const& entry = *chart.getColorEntry(cell);
        double const sum =
            entry.getRealValue(0) + entry.getRealValue(1) + entry.getRealValue(2) + entry.getRealValue(3);
        // More than any device prints, and not-a-number.
        sums.push_back(sum > 0 ? std::min(sum, 1e6) : 0);
    }
    std::sort(sums.begin(), sums.end());
    return sums;
}

Histogram histogramOf(std::vector<double> const& values, int mostBars)
{
    double const largest = values.empty() ? 0 : *std::max_element(values.begin(), values.end());
    constexpr double steps[] = {1, 2, 2.5, 5};
    Histogram histogram;
    for (double decade = 1; std::floor(largest / histogram.step) >= mostBars; decade *= 10)
        for (double const step : steps)
            if (std::floor(largest / histogram.step) >= mostBars)
                histogram.step = step * decade;
    histogram.counts.assign(static_cast<std::size_t>(largest / histogram.step) + 1, 0);
    for (double const value : values)
        ++histogram.counts[static_cast<std::size_t>(value / histogram.step)];
    return histogram;
}
