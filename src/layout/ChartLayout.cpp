// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartLayout.h"

#include "Arrangement.h"
#include "GridFit.h"
#include "lib/OvFile.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace
{

// mm around the patches for labels, bar and crosses. The gap after the last patch lies within it.
constexpr double labelBorderTop = 6;
constexpr double labelBorderRight = 2;
constexpr double labelBorderBottom = 2;
constexpr double labelBorderLeft = 16;

// More cells than anyone prints, including those between sheets. A limit, so that a chart cannot use up the memory.
constexpr std::int64_t mostCells = 1 << 22;

// How many columns or rows lie between one of them and the corner that the labels count from.
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

void ChartLayout::forgetPages()
{
    chartPages.init(0);
    chartPagesSize = {0, 0};
    patchesX = 0;
    patchesY = 0;
}

void ChartLayout::forgetLayout()
{
    forgetPages();
    arrangement.reset();
}

RealBorder ChartLayout::getBorderForAdditionalInfo() const
{
    double const gap = measurementLayout.getGap().height;
    return {labelBorderTop - gap, labelBorderRight, gap + labelBorderBottom, labelBorderLeft};
}

RealSize ChartLayout::getRoomForPatches() const
{
    if (usablePageLayout.getContent().width == REAL_NOPOS)
        return {0, 0};
    ChartPage const page = makeTrialPage();
    return page.getOutputPages()->getCount() > 0 ? (*page.getOutputPages())[0].getContentSize() : RealSize{0, 0};
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

// Makes the chart pages and the grid over all of them. The pages stand in a row, or in a column for an instrument that
// travels along x. Returns false and lays out nothing when there would be more cells or sheets than anyone prints.
bool ChartLayout::layOutPages(int count, IntSize pageGrid, RealSize pageStep)
{
    forgetPages();
    ChartPage first;
    first.init(measurementLayout, {0, 0}, usablePageLayout, patchSize, pageGrid);
    IntSize const block{first.getCoordRect().width, first.getCoordRect().height};
    if (count < 1 || capacity(block, count) > mostCells || capacity(first.getPagesSize(), count) > mostSheets) {
        arrangement.reset();
        return false;
    }

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
    Array<ColorEntry> const entries = originalEntries ? *originalEntries : Array<ColorEntry>();
    // A copy of this chart may share the arrangement. It goes on to show it.
    if (!arrangement || arrangement.use_count() > 1)
        arrangement = std::make_shared<Arrangement>();
    arrangement->init({patchesX, patchesY}, entries);
    int const placed = direction == mirrored ? arrangement->place(findVisibleCells(), colorSpace) : 0;
    if (placed < static_cast<int>(entries.getCount()))
        OvError("Not all patches placed.\n");
    if (measurementLayout.getScanDirection() != alongY)
        return 100.0f;
    if (direction != mirrored)
        return 0;
    return arrangeFrom(seed);
}

float ChartLayout::getOrderBound() const
{
    return arrangement ? std::sqrt(arrangement->getBound()) : 0;
}

float ChartLayout::arrangeFrom(int seed)
{
    bool const isArranged = arrangement && measurementLayout.getScanDirection() == alongY && direction == mirrored;
    if (!isArranged)
        return 0;
    int const columnsPerSheet = chartPagesSize.width > 0 ? patchesX / chartPagesSize.width : 0;
    return std::sqrt(arrangement->order(static_cast<unsigned>(seed), colorSpace, orderMethod, columnsPerSheet));
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

void ColorEntry::renewGaps(PointerPool<ColorGap>* pool, IntPos position, ChartLayout* layout)
{
    auto const [x, y] = position;
    renewGaps(pool, {layout->getColorEntry({x, y - 1}), layout->getColorEntry({x + 1, y}),
                     layout->getColorEntry({x, y + 1}), layout->getColorEntry({x - 1, y})});
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

int ChartLayout::countOutputPages() const
{
    int sheets = 0;
    for (ChartPage const& page : chartPages)
        sheets += page.countOutputPages();
    return sheets;
}
