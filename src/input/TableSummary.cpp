// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TableSummary.h"

#include "DecimalText.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace
{

// A value in units of 1e-9: sums are exact.
using Billionths = std::int64_t;
using Color = std::array<Billionths, 4>;

constexpr double billion = 1e9;

std::vector<Color> colorsOf(PatchTable const& patches)
{
    std::vector<Color> colors;
    colors.reserve(patches.count());
    for (std::size_t patch = 0; patch < patches.count(); ++patch) {
        Color color{};
        RowCells cells(patches.valuesOf(patch), Separation::blanks);
        std::size_t channel = 0;
        for (Cell cell; channel < color.size() && cells.next(cell); ++channel)
            color[channel] = std::llround(parseNumber(cell.text).value * billion);
        colors.push_back(color);
    }
    return colors;
}

double valueOf(Billionths value)
{
    return static_cast<double>(value) / billion;
}

void sumInks(PatchTable const& patches, std::vector<Color> const& colors, TableSummary& summary)
{
    Billionths largest = -1;
    for (std::size_t patch = 0; patch < colors.size(); ++patch) {
        Billionths const sum = std::accumulate(colors[patch].begin(), colors[patch].end(), Billionths{0});
        for (InkExcess& excess : summary.inkExcesses)
            excess.patches += sum > excess.limit * static_cast<Billionths>(billion) ? 1U : 0U;
        if (sum <= largest)
            continue;
        largest = sum;
        summary.largestInkSumLine = patches.lineOf(patch);
    }
    summary.largestInkSum = valueOf(largest);
}

std::vector<ChannelRange> rangesOf(std::vector<Color> const& colors, std::size_t channels)
{
    std::vector<ChannelRange> ranges;
    for (std::size_t channel = 0; channel < channels; ++channel) {
        auto const [lowest, highest] = std::minmax_element(
            colors.begin(), colors.end(), [&](Color const& a, Color const& b) { return a[channel] < b[channel]; });
        ranges.push_back({valueOf((*lowest)[channel]), valueOf((*highest)[channel])});
    }
    return ranges;
}

} // namespace

TableSummary summaryOf(PatchTable const& patches)
{
    TableSummary summary;
    summary.colorSpace = patches.colorSpace;
    summary.patches = patches.count();
    summary.tableNumber = patches.tableIndex + 1;
    summary.tableCount = patches.source().tables.size();
    summary.firstLine = patches.lineOf(0);
    summary.lastLine = patches.lineOf(patches.count() - 1);

    std::vector<Color> colors = colorsOf(patches);
    summary.ranges = rangesOf(colors, static_cast<std::size_t>(colorspace_nof_channels[patches.colorSpace]));
    if (patches.colorSpace == CMYK)
        sumInks(patches, colors, summary);
    Billionths const full = 255 * static_cast<Billionths>(billion);
    Color const white = patches.colorSpace == CMYK ? Color{} : Color{full, full, full, 0};
    summary.whites = static_cast<std::size_t>(std::count(colors.begin(), colors.end(), white));
    std::sort(colors.begin(), colors.end());
    auto const end = std::unique(colors.begin(), colors.end());
    summary.distinctColors = static_cast<std::size_t>(end - colors.begin());
    summary.repeats = summary.patches - summary.distinctColors;
    return summary;
}
