// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/ChartProperties.h"

#include "support/StringText.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <vector>

namespace
{

std::size_t cellsOf(ChartLayout const& chart)
{
    return static_cast<std::size_t>(chart.getPatchesX()) * static_cast<std::size_t>(chart.getPatchesY());
}

std::string faultInEntries(ChartLayout const& chart)
{
    Array<ColorEntry> const& input = *chart.getOriginalEntries();
    std::set<ColorEntry const*> placed;
    std::size_t data = 0;
    for (int x = 0; x < chart.getPatchesX(); ++x)
        for (int y = 0; y < chart.getPatchesY(); ++y) {
            ColorEntry const* const entry = chart.getColorEntry({x, y});
            if (!entry || !placed.insert(entry).second)
                return "a cell without an entry of its own";
            bool const isInput = entry >= input.begin() && entry < input.end();
            if (isInput != (entry->getStatus() == Data))
                return "an entry of the wrong status";
            data += isInput ? 1 : 0;
        }
    return data == input.getCount() ? "" : "an input entry on no cell";
}

std::string faultInCounts(ChartLayout const& chart)
{
    Array<ChartPage> const& pages = *chart.getChartPages();
    IntSize const arranged = chart.getChartPagesSize();
    IntRect const block = pages[0].getCoordRect();
    if (static_cast<unsigned long long>(arranged.width) * static_cast<unsigned long long>(arranged.height) !=
            pages.getCount() ||
        chart.getPatchesX() != block.width * arranged.width || chart.getPatchesY() != block.height * arranged.height)
        return "a grid that is not that of its chart pages";
    int sheets = 0;
    for (ChartPage const& page : pages)
        for (OutputPage const& sheet : *page.getOutputPages())
            sheets += sheet.getCoordRect().width > 0 && sheet.getCoordRect().height > 0 ? 1 : 0;
    return sheets == chart.countOutputPages() ? "" : "a wrong number of sheets";
}

std::string faultInLabels(ChartLayout const& chart)
{
    std::set<std::string> columns;
    for (int x = 0; x < chart.getPatchesX(); ++x)
        columns.insert(textOf(chart.getCoordinateXString(x)));
    std::set<std::string> rows;
    for (int y = 0; y < chart.getPatchesY(); ++y)
        rows.insert(textOf(chart.getCoordinateYString(y)));
    return columns.size() + rows.size() == static_cast<std::size_t>(chart.getPatchesX() + chart.getPatchesY())
               ? ""
               : "a label given twice";
}

bool liesWithin(RealRect const& inner, RealSize outer)
{
    double const tolerance = 1e-9 * (outer.width + outer.height);
    return inner.x >= -tolerance && inner.y >= -tolerance && inner.x + inner.width <= outer.width + tolerance &&
           inner.y + inner.height <= outer.height + tolerance;
}

// Counts the sheets that show each cell. Returns whether all of them are inside the grid.
bool countSheets(ChartLayout const& chart, std::vector<int>& sheetsOfCell)
{
    for (ChartPage const& page : *chart.getChartPages())
        for (OutputPage const& sheet : *page.getOutputPages()) {
            IntRect const block = sheet.getCoordRect();
            if (!sheet.hasPatches())
                continue;
            if (block.x < 0 || block.y < 0 || block.x + block.width > chart.getPatchesX() ||
                block.y + block.height > chart.getPatchesY())
                return false;
            for (int x = block.x; x < block.x + block.width; ++x)
                for (int y = block.y; y < block.y + block.height; ++y)
                    ++sheetsOfCell[static_cast<std::size_t>(chart.getPatchesX() * y + x)];
        }
    return true;
}

std::string faultInSheets(ChartLayout const& chart)
{
    RealSize const paper = chart.getPageLayout().getSize();
    RealBorder const labels = chart.getBorderForAdditionalInfo();
    if (!liesWithin(chart.getPageLayout().getContent(), paper) || labels.top < 0 || labels.bottom < 0)
        return "";
    for (ChartPage const& page : *chart.getChartPages())
        for (OutputPage const& sheet : *page.getOutputPages())
            if (sheet.hasPatches() && !liesWithin(sheet.getContentRect(), paper))
                return "patches beyond the paper";

    std::vector<int> sheetsOfCell(cellsOf(chart));
    if (!countSheets(chart, sheetsOfCell))
        return "a sheet beyond the grid";
    for (int x = 0; x < chart.getPatchesX(); ++x)
        for (int y = 0; y < chart.getPatchesY(); ++y) {
            int const sheets = sheetsOfCell[static_cast<std::size_t>(chart.getPatchesX() * y + x)];
            bool const isHidden = chart.getColorEntry({x, y})->getStatus() == Hidden;
            if (sheets > 1)
                return "a cell on two sheets";
            // An arrangement moves hidden entries. Without one, they are on cells without a sheet.
            if (chart.getMeasurementLayout().getScanDirection() != alongY && isHidden != (sheets == 0))
                return "a cell that is hidden on a sheet, or shown on none";
        }
    return "";
}

float smallestDifference(ChartLayout const& chart)
{
    float smallest = 100000.0F;
    for (int x = 0; x < chart.getPatchesX(); ++x)
        for (int y = 0; y <= chart.getPatchesY(); ++y) {
            ColorEntry const* const above = chart.getColorEntry({x, y - 1});
            ColorEntry const* const below = chart.getColorEntry({x, y});
            ColorEntry const& first = above ? *above : ColorEntry::whitePatch;
            ColorEntry const& second = below ? *below : ColorEntry::whitePatch;
            smallest = std::min(smallest, ColorEntry::computeSqDe(first.getLab(), second.getLab()));
        }
    return std::sqrt(smallest);
}

} // namespace

std::string faultIn(ChartLayout const& chart, float result)
{
    if (!chart.hasSomethingToOutpot())
        return result == 0 && cellsOf(chart) == 0 && chart.countOutputPages() == 0 ? "" : "something without pages";
    for (auto const& faultInPart : {faultInEntries, faultInCounts, faultInLabels, faultInSheets})
        if (std::string const fault = faultInPart(chart); !fault.empty())
            return fault;
    bool const isArranged = chart.getMeasurementLayout().getScanDirection() == alongY;
    return result == (isArranged ? smallestDifference(chart) : 100.0F) ? "" : "a result that is not the smallest";
}
