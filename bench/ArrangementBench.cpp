// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartMaking.h"
#include "Comparison.h"
#include "Folders.h"
#include "InputFile.h"
#include "Samples.h"
#include "support/LiteralArrangement.h"
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

constexpr RelativePosition sides[] = {Above, Right, Below, Left};

bool hasSameBits(float a, float b)
{
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

bool isSameGap(ColorGap const& ours, LiteralArrangement::Gap const& theirs)
{
    return hasSameBits(ours.getSqDe(), theirs.squaredDeltaE) && ours.isAcrossScan() == theirs.acrossScan &&
           std::equal(theirs.outColor.begin(), theirs.outColor.end(), ours.getOutColor());
}

bool isSameEntry(ColorEntry const& ours, LiteralArrangement::Entry const& theirs, Array<ColorEntry> const& input)
{
    bool const isInput = &ours >= input.begin() && &ours < input.end();
    if ((isInput ? &ours - input.begin() : -1) != theirs.source || ours.getStatus() != theirs.status ||
        ours.getIndex() != theirs.index || ours.getHeapPosition() != theirs.heapPosition)
        return false;
    bool const takesPart = theirs.status == Data || theirs.status == Filler;
    if (takesPart && !hasSameBits(ours.getKey(), theirs.key))
        return false;
    return std::all_of(std::begin(sides), std::end(sides),
                       [&](RelativePosition side) { return isSameGap(*ours.getGap(side), *theirs.gaps[side]); });
}

bool isSameChart(ChartLayout const& ours, LiteralArrangement const& theirs)
{
    for (int y = 0; y < ours.getPatchesY(); ++y)
        for (int x = 0; x < ours.getPatchesX(); ++x)
            if (!isSameEntry(*ours.getColorEntry({x, y}), theirs.at(x, y), *ours.getOriginalEntries()))
                return false;
    return true;
}

bool isVisible(ChartLayout const& chart, IntPos position)
{
    Array<ChartPage> const& pages = *chart.getChartPages();
    return std::any_of(pages.begin(), pages.end(), [position](ChartPage const& p) { return p.isVisible(position); });
}

Times compareWithLiteral(ChartLayout& chart)
{
    LiteralArrangement literal(*chart.getOriginalEntries(), {chart.getPatchesX(), chart.getPatchesY()},
                               chart.getColorSpace());
    float ours = 0;
    float theirs = 0;
    Times const times =
        compare({[&] { theirs = literal.fillPatches(0, [&](IntPos position) { return isVisible(chart, position); }); }},
                {[&] { ours = chart.fillPatches(0); }});
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

void benchExample()
{
    InputFile table;
    table.init(examplePath());
    benchArrangement("fillPatches, example", table, 4);

    InputFile readAgain;
    ChartLayout chart = rulerChart(table);
    Times const times = compare({[&] { readAgain.init(examplePath()); }}, {[&] { makeChart(chart); }});
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
    bench(5'000, 8);
    bench(20'000, 12);
    bench(50'000, 12);
    bench(100'000, 0);
}

} // namespace

int main()
{
    respath = String(PATCHLOOM_RESOURCES);
    ColorEntry::prepareColorConversions();
    TemporaryFolder const folder;
    benchExample();
    for (ColorSpace const colorSpace : {CMYK, RGB})
        benchRandomTables(folder, colorSpace);
    ColorEntry::endColorConversions();
    return exitStatus();
}
