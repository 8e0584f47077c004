// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SheetFit.h"

#include "color/ColorEntry.h"
#include "layout/ChartLayout.h"

#include <climits>

namespace
{

// The sheets of charts of any number of patches. All patches are white: their order is found at once.
class SheetCount
{
public:
    explicit SheetCount(FitSettings const& settings)
    {
        chart.setDirection(mirrored);
        chart.setMeasurementLayout(settings.instrument);
        chart.setPageLayout(settings.sheet);
        chart.setPatchSize(settings.patch);
        chart.setColorSpace(settings.colorSpace);
        white.initAsWhite(settings.colorSpace, false);
    }

    // More than any wish where the patches cannot be laid out.
    int of(std::size_t patches, float gap)
    {
        GrowingArray<ColorEntry> entries;
        for (std::size_t i = 0; i < patches; ++i)
            entries.add(white);
        chart.setOriginalEntries(&entries);
        chart.computeLayout(gap, 0);
        int const sheets = chart.hasSomethingToOutpot() ? chart.countOutputPages() : INT_MAX;
        chart.setOriginalEntries(nullptr);
        return sheets;
    }

private:
    ChartLayout chart;
    ColorEntry white;
};

} // namespace

SheetFit fitSheets(FitSettings const& settings, int sheets, float gap, std::size_t mostPatches)
{
    SheetCount count(settings);
    if (count.of(1, gap) > sheets)
        return {};
    std::size_t fits = 1;
    std::size_t excess = mostPatches + 1;
    while (excess - fits > 1) {
        std::size_t const middle = fits + (excess - fits) / 2;
        (count.of(middle, gap) <= sheets ? fits : excess) = middle;
    }
    return {fits, count.of(fits, gap)};
}
