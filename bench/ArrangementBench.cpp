// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Comparison.h"
#include "Folders.h"
#include "InputFile.h"
#include "LiteralArrangement.h"
#include "Samples.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

// The order of a chart's patches against the literal search for it.

namespace
{

bool hasSameBits(float a, float b)
{
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

// Which of the chart's own entries stands on a cell; -1 for a white one that the program added.
std::ptrdiff_t sourceOf(ColorEntry const& entry, Array<ColorEntry> const& entries)
{
    bool const isInput = &entry >= entries.begin() && &entry < entries.end();
    return isInput ? &entry - entries.begin() : -1;
}

bool isSameGap(ColorGap const& ours, ColorGap const& theirs)
{
    return hasSameBits(ours.getSqDe(), theirs.getSqDe()) && ours.isAcrossScan() == theirs.isAcrossScan() &&
           std::equal(ours.getOutColor(), ours.getOutColor() + 4, theirs.getOutColor());
}

bool isSameChart(ChartLayout const& ours, LiteralArrangement const& literal)
{
    ChartLayout const& theirs = literal.getChart();
    for (int y = 0; y < ours.getPatchesY(); ++y)
        for (int x = 0; x < ours.getPatchesX(); ++x) {
            ColorEntry const& entry = *ours.getColorEntry({x, y});
            ColorEntry const& other = *theirs.getColorEntry({x, y});
            if (sourceOf(entry, *ours.getOriginalEntries()) != sourceOf(other, literal.getEntries()) ||
                entry.getStatus() != other.getStatus() || entry.getIndex() != other.getIndex() ||
                entry.getHeapPosition() != other.getHeapPosition() || !hasSameBits(entry.getKey(), other.getKey()))
                return false;
            for (RelativePosition const side : {Above, Right, Below, Left})
                if (!isSameGap(*entry.getGap(side), *other.getGap(side)))
                    return false;
        }
    return true;
}

Times compareWithLiteral(ChartLayout& chart)
{
    LiteralArrangement literal(chart);
    float ours = 0;
    float theirs = 0;
    Times const times = compare({[&] { theirs = literal.fillPatches(0); }}, {[&] { ours = chart.fillPatches(0); }});
    if (!hasSameBits(ours, theirs) || !isSameChart(chart, literal)) {
        std::fprintf(stderr, "The arrangement of %llu patches is not the literal one.\n",
                     chart.getOriginalEntries()->getCount());
        std::exit(1);
    }
    return times;
}

void benchArrangement(std::string const& work, InputFile& table, double promisedSpeed)
{
    ChartLayout chart = rulerChart(table);
    printRow(work, sizeText(table), compareWithLiteral(chart), {Promise::timesAsFast, promisedSpeed});
}

// What a move of the patch slider computes.
void computeAsTheWindow(ChartLayout& chart)
{
    constexpr float deltaEWithoutGaps = 18;
    if (chart.computeLayout(0, 0) < deltaEWithoutGaps && chart.computeLayout(0, 1) < deltaEWithoutGaps)
        chart.computeLayout(1, 0);
}

void benchExample()
{
    InputFile table;
    table.init(examplePath());
    benchArrangement("fillPatches, example", table, 10);

    InputFile readAgain;
    ChartLayout chart = rulerChart(table);
    Times const times = compare({[&] { readAgain.init(examplePath()); }}, {[&] { computeAsTheWindow(chart); }});
    printRow("a whole update() against reading the file", sizeText(table), times, {Promise::timesAsLong, 1});
}

void benchRandomTables(TemporaryFolder const& folder, ColorSpace colorSpace)
{
    auto const bench = [&](int count, double promisedSpeed) {
        InputFile table;
        table.init(writeRandomTable(folder, colorSpace, count));
        benchArrangement("fillPatches", table, promisedSpeed);
    };
    bench(500, 0);
    bench(2'000, 0);
    bench(5'000, 15);
    bench(20'000, 20);
    bench(50'000, 20);
    bench(100'000, 0);
}

void benchGrowth(TemporaryFolder const& folder, ColorSpace colorSpace)
{
    InputFile table;
    InputFile largeTable;
    table.init(writeRandomTable(folder, colorSpace, 20'000));
    largeTable.init(writeRandomTable(folder, colorSpace, 100'000));
    ChartLayout chart = rulerChart(table);
    ChartLayout largeChart = rulerChart(largeTable);
    Times const times = compare({[&] { chart.fillPatches(0); }}, {[&] { largeChart.fillPatches(0); }});
    printRow("fillPatches against that of 20,000", sizeText(largeTable), times, {Promise::timesAsLong, 20});
}

} // namespace

int main()
{
    respath = String(PATCHLOOM_RESOURCES);
    ColorEntry::prepareColorConversions();
    TemporaryFolder const folder;
    benchExample();
    for (ColorSpace const colorSpace : {CMYK, RGB}) {
        benchRandomTables(folder, colorSpace);
        benchGrowth(folder, colorSpace);
    }
    ColorEntry::endColorConversions();
    return 0;
}
