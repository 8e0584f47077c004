// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartLayout.h"

#include "lib/OvFile.h"
#include "output/TargetDescription.h"
#include "search/OrderSearch.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

namespace
{

// mm around the patches for labels, bar and crosses; the gap after the last patch lies within it.
constexpr double labelBorderTop = 6;
constexpr double labelBorderRight = 2;
constexpr double labelBorderBottom = 2;
constexpr double labelBorderLeft = 16;

constexpr std::int64_t mostPatches = std::numeric_limits<std::int32_t>::max();

// More cells than anyone prints, those between sheets included: past it there is no room, rather than no memory.
constexpr std::int64_t mostCells = 1 << 22;

std::int64_t capacity(IntSize grid, int pages)
{
    return std::int64_t{grid.width} * pages * grid.height;
}

// Whether a chart page has room, and its grid can be counted.
bool hasRoom(IntSize grid)
{
    return grid.width > 0 && grid.height > 0 && capacity(grid, 1) <= mostPatches;
}

// The smallest count >= 1 that, times the factor, reaches n.
std::int64_t smallestCount(std::int64_t n, std::int64_t factor)
{
    return (n + factor - 1) / factor;
}

// The smallest grid that still holds n patches on the pages: first fewer columns, and rows only from a single column;
// only fewer rows for an instrument that travels along x.
IntSize shrunkForScan(IntSize grid, std::int64_t n, int pages, ScanDirection direction)
{
    auto const shrink = [&](std::int32_t& length, std::int32_t otherLength) {
        std::int64_t const needed = smallestCount(n, std::int64_t{pages} * otherLength);
        length = static_cast<std::int32_t>(std::min<std::int64_t>(length, needed));
    };
    if (direction != alongX)
        shrink(grid.width, grid.height);
    if (direction == alongX || grid.width == 1)
        shrink(grid.height, grid.width);
    return grid;
}

// Where a grid that is about twice as long as broad has its broadest breadth, the neighbour that loses the least is a
// row or a column shorter. A longer one gets so long at once, or as long as it has to stay, whatever its length.
IntSize withoutExcessLength(IntSize largest, std::int64_t needed)
{
    auto const shorten = [needed](std::int32_t& length, std::int64_t breadth, std::int64_t end) {
        length =
            static_cast<std::int32_t>(std::min<std::int64_t>(length, std::max(end, smallestCount(needed, breadth))));
    };
    IntSize grid = largest;
    shorten(grid.height, largest.width, 2 * std::int64_t{largest.width} - 2);
    if (grid.height == largest.height)
        shorten(grid.width, largest.height, 2 * std::int64_t{largest.height} - 1);
    return grid;
}

// Follows the neighbouring grids that lose the least capacity and still hold n patches, until there is none. All of
// them need the same sheets, since the instrument's reach is tiled whatever the grid.
IntSize shrunkForSpots(IntSize const largest, std::int64_t n, int pages)
{
    IntSize best = withoutExcessLength(largest, smallestCount(n, pages));
    for (bool improved = true; improved;) {
        IntSize const current = best;
        std::int64_t const bestCapacity = capacity(current, pages);
        std::int64_t winner = 0;
        improved = false;
        for (IntSize candidate :
             {IntSize{std::min(current.width + 1, largest.width), current.height - 1},
              IntSize{current.width - 1, std::min(current.height + 1, largest.height)},
              IntSize{current.width - 1, current.height}, IntSize{current.width, current.height - 1}}) {
            candidate = {std::max(candidate.width, 1), std::max(candidate.height, 1)};
            std::int64_t const held = capacity(candidate, pages);
            if (held >= n && held < bestCapacity && held > winner) {
                best = candidate;
                winner = held;
                improved = true;
            }
        }
    }
    return best;
}

Lab labOf(ColorEntry const& entry)
{
    float const* lab = entry.getLab();
    return {{lab[0], lab[1], lab[2]}};
}

// How many of all columns or rows lie between one of them and the corner that labels count from.
std::int64_t countFromLabelledCorner(std::int64_t coordinate, std::int64_t all, ChartDirection direction)
{
    return direction == mirrored ? all - 1 - coordinate : coordinate;
}

} // namespace

ChartLayout::ChartLayout() : name("Patchloom Output File")
{
    pageLayout.initWithPreset(a4Portrait);
    measurementLayout.initWithPreset(tableSpot);
}

void ChartLayout::setPageLayout(PageLayout sheet)
{
    pageLayout = usablePageLayout = sheet;
    RealRect content = sheet.getContent();
    if (measurementLayout.mustFit()) {
        RealRect const reach = measurementLayout.getContent();
        content.width = std::min(content.width, reach.width);
        content.height = std::min(content.height, reach.height);
    }
    RealBorder const border = getBorderForAdditionalInfo();
    content.width -= border.left + border.right;
    content.height -= border.top + border.bottom;
    content.x += border.left;
    content.y += border.bottom;
    bool const isUsable = content.width > 0 && content.height > 0;
    usablePageLayout.setContent(isUsable ? content : RealRect{});
}

void ChartLayout::setOriginalEntries(Array<ColorEntry>* entries)
{
    originalEntries = entries;
    forgetLayout();
}

void ChartLayout::forgetLayout()
{
    chartPages.init(0);
    chartPagesSize = {0, 0};
    patches.init(0);
    patchesX = 0;
    patchesY = 0;
}

RealBorder ChartLayout::getBorderForAdditionalInfo() const
{
    double const gap = measurementLayout.getGap().height;
    return {labelBorderTop - gap, labelBorderRight, gap + labelBorderBottom, labelBorderLeft};
}

float ChartLayout::timeToCompute() const
{
    if (!originalEntries)
        return 0;
    unsigned long long const n = originalEntries->getCount();
    return static_cast<float>(n * n) / 16000000.0f;
}

float ChartLayout::computeLayout(float gap, int mode)
{
    if (measurementLayout.getScanDirection() == alongY)
        measurementLayout.setGap(0, gap);
    setPageLayout(pageLayout);
    if (measurementLayout.getScanDirection() == none)
        return computeCombinedPageLayout(mode);
    return computeMultiPageLayout(mode);
}

// A chart page with as many patches as fit.
ChartPage ChartLayout::makeTrialPage() const
{
    ChartPage page;
    page.init(measurementLayout, {0, 0}, usablePageLayout, patchSize, {INT_NOPOS, INT_NOPOS});
    return page;
}

int ChartLayout::countChartPages(IntSize largestGrid) const
{
    auto const entries = static_cast<float>(originalEntries->getCount());
    return wholeNumber(static_cast<double>(std::ceil(entries / static_cast<float>(capacity(largestGrid, 1)))));
}

float ChartLayout::computeMultiPageLayout(int mode)
{
    if (!originalEntries)
        return 0;
    IntRect const coordRect = makeTrialPage().getCoordRect();
    IntSize grid{coordRect.width, coordRect.height};
    auto const n = static_cast<std::int64_t>(originalEntries->getCount());
    if (n == 0 || !hasRoom(grid)) {
        forgetLayout();
        return 0;
    }
    int const pages = countChartPages(grid);
    grid = shrunkForScan(grid, n, pages, measurementLayout.getScanDirection());
    RealSize const sheet = pageLayout.getSize();
    return layOutPages(pages, grid, {sheet.width + chartPageSpacing, sheet.height + chartPageSpacing})
               ? fillPatches(mode)
               : 0;
}

float ChartLayout::computeCombinedPageLayout(int mode)
{
    if (!originalEntries)
        return 0;
    ChartPage const trial = makeTrialPage();
    IntSize grid{trial.getUsableCoordRect().width, trial.getUsableCoordRect().height};
    auto const n = static_cast<std::int64_t>(originalEntries->getCount());
    if (n == 0 || !hasRoom(grid)) {
        forgetLayout();
        return 0;
    }
    int const pages = countChartPages(grid);
    grid = shrunkForSpots(grid, n, pages);
    RealSize const table = trial.getSize();
    return layOutPages(pages, grid, {table.width + chartPageSpacing, table.height + chartPageSpacing})
               ? fillPatches(mode)
               : 0;
}

// Makes the chart pages in a row, or in a column for an instrument that travels along x, and the grid over all of
// them. False, and nothing laid out, when that would be more cells or sheets than anyone prints.
bool ChartLayout::layOutPages(int count, IntSize pageGrid, RealSize pageStep)
{
    forgetLayout();
    ChartPage first;
    first.init(measurementLayout, {0, 0}, usablePageLayout, patchSize, pageGrid);
    IntSize const block{first.getCoordRect().width, first.getCoordRect().height};
    if (count < 1 || capacity(block, count) > mostCells || capacity(first.getPagesSize(), count) > mostSheets)
        return false;

    bool const isColumn = measurementLayout.getScanDirection() == alongX;
    chartPages.init(static_cast<unsigned long long>(count));
    RealPos origin{0, 0};
    for (int i = 0; i < count; ++i) {
        chartPages[i].init(measurementLayout, origin, usablePageLayout, patchSize, pageGrid);
        chartPages[i].shiftCoords(isColumn ? IntPos{0, i * block.height} : IntPos{i * block.width, 0});
        (isColumn ? origin.y : origin.x) += isColumn ? pageStep.height : pageStep.width;
    }
    chartPagesSize = isColumn ? IntSize{1, count} : IntSize{count, 1};
    patchesX = block.width * chartPagesSize.width;
    patchesY = block.height * chartPagesSize.height;
    return true;
}

float ChartLayout::fillPatches(int seed)
{
    int const entries = originalEntries ? static_cast<int>(originalEntries->getCount()) : 0;
    int const cells = patchesX * patchesY;
    patches.init(static_cast<unsigned long long>(cells));
    entryPool.init(static_cast<unsigned long long>(std::max(cells - entries, 0)));
    int const placed = direction == mirrored ? placeEntries() : 0;
    if (placed < entries)
        OvError("Not all patches placed.\n");
    if (measurementLayout.getScanDirection() != alongY)
        return 100.0f;
    if (direction != mirrored)
        return 0;

    srand(static_cast<unsigned int>(seed));
    patches.shuffle();
    return std::sqrt(arrangePatches());
}

// Puts an entry on every cell, data first, from the last column's last row; returns how many data entries there are.
int ChartLayout::placeEntries()
{
    std::vector<bool> const visible = findVisibleCells();
    int const entries = originalEntries ? static_cast<int>(originalEntries->getCount()) : 0;
    ColorEntry filler;
    ColorEntry hidden;
    filler.initAsWhite(colorSpace, false);
    hidden.initAsWhite(colorSpace, true);
    int placed = 0;
    for (int x = patchesX - 1; x >= 0; --x) {
        for (int y = patchesY - 1; y >= 0; --y) {
            int const cell = patchesX * y + x;
            bool const isVisible = visible[static_cast<std::size_t>(cell)];
            ColorEntry* entry = nullptr;
            if (isVisible && placed < entries) {
                entry = &(*originalEntries)[placed++];
            } else {
                entry = entryPool.suck();
                *entry = isVisible ? filler : hidden;
            }
            entry->initGaps();
            patches[cell] = entry;
        }
    }
    return placed;
}

// Which cells of the grid a sheet shows.
std::vector<bool> ChartLayout::findVisibleCells() const
{
    std::vector<bool> visible(static_cast<std::size_t>(patchesX) * static_cast<std::size_t>(patchesY));
    for (ChartPage const& chartPage : chartPages) {
        IntRect const bounds = chartPage.getCoordRect();
        for (OutputPage const& page : *chartPage.getOutputPages()) {
            IntRect const block = page.getCoordRect();
            int const left = std::max({block.x, bounds.x, 0});
            int const right = std::min({block.x + block.width, bounds.x + bounds.width, patchesX});
            int const top = std::max({block.y, bounds.y, 0});
            int const bottom = std::min({block.y + block.height, bounds.y + bounds.height, patchesY});
            for (int y = top; y < bottom && left < right; ++y)
                std::fill_n(visible.begin() + std::ptrdiff_t{patchesX} * y + left, right - left, true);
        }
    }
    return visible;
}

OrderTask ChartLayout::orderTask() const
{
    OrderTask task{{patchesX, patchesY}, labOf(ColorEntry::whitePatch), {}, {}};
    for (ColorEntry const* entry : patches) {
        task.colors.push_back(labOf(*entry));
        task.takesPart.push_back(entry->getStatus() == Data || entry->getStatus() == Filler);
    }
    return task;
}

// Searches the order, and gives the entries their places, gaps and keys in it. Returns the smallest squared delta E.
float ChartLayout::arrangePatches()
{
    OrderSearch search(orderTask());
    float const smallest = search.run();

    Array<ColorEntry*> const unordered = patches;
    patches.decouple();
    for (int y = 0; y < patchesY; ++y)
        for (int x = 0; x < patchesX; ++x)
            patches[y * patchesX + x] = unordered[search.getPatchAt({x, y})];

    auto const columns = static_cast<std::uint64_t>(patchesX);
    auto const rows = static_cast<std::uint64_t>(patchesY);
    gapPool.init((rows + 1) * columns + (columns + 1) * rows);
    // The gap to the left is the neighbour's too, whose column comes next. Its entry can be anywhere in memory, so the
    // processor is told of it some rows before.
    constexpr int rowsAhead = 6;
    for (int x = patchesX - 1; x >= 0; --x) {
        for (int y = patchesY - 1; y >= 0; --y) {
            ColorEntry::prefetch(getColorEntry({x - 1, y - rowsAhead}));
            ColorEntry* entry = getColorEntry({x, y});
            entry->setIndex(y * patchesX + x);
            *entry->getHeapBackPointer() = search.getHeapPosition({x, y});
            entry->renewGaps(&gapPool, {x, y}, this);
            entry->recomputeDe(true, false);
        }
    }
    for (ColorGap& gap : gapPool.getObjects())
        gap.computeOutColor(colorSpace);
    return smallest;
}

String ChartLayout::getCoordinateXString(int x) const
{
    constexpr int letters = 52;
    char text[8];
    char* start = std::end(text);
    for (auto k = countFromLabelledCorner(x, patchesX, direction); k >= 0; k = k / letters - 1) {
        auto const letter = k % letters;
        *--start = static_cast<char>(letter < 26 ? 'A' + letter : 'a' + letter - 26);
    }
    String label;
    label.init(start, static_cast<unsigned long long>(std::end(text) - start));
    return label;
}

String ChartLayout::getCoordinateYString(int y) const
{
    return String::format("%lld", static_cast<long long>(countFromLabelledCorner(y, patchesY, direction) + 1));
}

bool ChartLayout::writeOutputFile(String path) const
{
    return writeTargetDescription(*this, path);
}

int ChartLayout::countOutputPages() const
{
    int sheets = 0;
    for (ChartPage const& page : chartPages)
        sheets += page.countOutputPages();
    return sheets;
}

bool ChartLayout::writeOutputImagesEPS(String folder) const
{
    int counter = countOutputPages() - 1;
    for (ChartPage const& page : chartPages)
        page.writeEPS(folder, name, counter, this);
    return true;
}

bool ChartLayout::writeOutputImagesTIFF(String folder) const
{
    int counter = countOutputPages() - 1;
    for (ChartPage const& page : chartPages)
        page.writeTIFF(folder, name, counter, this);
    return true;
}
