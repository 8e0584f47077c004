// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartPage.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace
{

// Whole sheets along one axis of the instrument's reach. There is at least the sheet that the patches are printed on.
std::int32_t sheetsAlong(double reach, double sheetExtent)
{
    double const sheets = reach / sheetExtent;
    return sheets >= 1 ? wholeNumber(sheets) : 1;
}

// A number of columns or rows; 0 if 32 bits cannot count them.
std::int32_t countable(std::int64_t count)
{
    return count <= std::numeric_limits<std::int32_t>::max() ? static_cast<std::int32_t>(count) : 0;
}

// The part of a wanted size that is not yet placed. "As many as fit" stays the same.
std::int32_t remaining(std::int32_t wanted, std::int32_t placed)
{
    return wanted == INT_NOPOS ? INT_NOPOS : wanted - placed;
}

} // namespace

ChartPage::ChartPage(ChartPage const& other) : ChartPageValues(other)
{
    adoptOutputPages();
}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): the values handle it
ChartPage& ChartPage::operator=(ChartPage const& other)
{
    ChartPageValues::operator=(other);
    adoptOutputPages();
    return *this;
}

void ChartPage::adoptOutputPages()
{
    outputPages.decouple();
    for (OutputPage& page : outputPages)
        page.setChartPage(this);
}

void ChartPage::init(MeasurementLayout instrument, RealPos position, PageLayout sheet, RealSize patch, IntSize maxSize)
{
    origin = position;
    if (instrument.getScanDirection() == none)
        tileReach(instrument, sheet, patch, maxSize);
    else
        coverOneSheet(instrument, sheet, patch, maxSize);
    content = {0, 0, pagesSize.width * sheet.getSize().width, pagesSize.height * sheet.getSize().height};
}

void ChartPage::tileReach(MeasurementLayout const& instrument, PageLayout const& sheet, RealSize patch, IntSize maxSize)
{
    RealRect const reach = instrument.getContent();
    RealSize const sheetSize = sheet.getSize();
    pagesSize = {sheetsAlong(reach.width, sheetSize.width), sheetsAlong(reach.height, sheetSize.height)};
    std::int64_t const sheets = std::int64_t{pagesSize.width} * pagesSize.height;
    if (sheets > mostSheets)
        pagesSize = {0, 0};
    outputPages.init(static_cast<unsigned long long>(pagesSize.width * pagesSize.height));
    std::int64_t usableWidth = 0;
    std::int64_t usableHeight = 0;

    RealPos firstPatch;
    IntRect furthest{0, 0, 0, 0};
    auto const end = [](IntRect rect) { return IntPos{rect.x + rect.width, rect.y + rect.height}; };
    std::int32_t remainingHeight = maxSize.height;
    for (int j = 0; j < pagesSize.height; ++j) {
        usableWidth = 0;
        std::int32_t remainingWidth = maxSize.width;
        std::int32_t rowHeight = 0;
        for (int i = 0; i < pagesSize.width; ++i) {
            OutputPage& page = outputPages[pagesSize.width * j + i];
            page.init(this, sheet, {i * sheetSize.width + reach.x, j * sheetSize.height + reach.y}, instrument, patch,
                      firstPatch, instrument.getMinMargin(), {remainingWidth, remainingHeight});
            IntRect const block = page.getCoordRect();
            usableWidth += block.width;
            remainingWidth = remaining(remainingWidth, block.width);
            if (rowHeight == 0)
                rowHeight = block.height;
            bool const reachesFurther = end(block).x >= end(furthest).x && end(block).y >= end(furthest).y;
            if (block.width > 0 && block.height > 0 && reachesFurther)
                furthest = block;
        }
        usableHeight += rowHeight;
        remainingHeight = remaining(remainingHeight, rowHeight);
    }
    coordRect = {0, 0, end(furthest).x, end(furthest).y};
    usableCoordRect = {0, 0, countable(usableWidth), countable(usableHeight)};
}

void ChartPage::coverOneSheet(MeasurementLayout const& instrument, PageLayout const& sheet, RealSize patch,
                              IntSize maxSize)
{
    // A scan starts and ends beyond the patches. Across the scan, the instrument needs no extra room.
    RealBorder margin = instrument.getMinMargin();
    if (instrument.getScanDirection() == alongY)
        margin.left = margin.right = 0;
    else
        margin.top = margin.bottom = 0;

    pagesSize = {1, 1};
    outputPages.init(1);
    RealPos firstPatch;
    outputPages[0].init(this, sheet, {0, 0}, instrument, patch, firstPatch, margin, maxSize);
    coordRect = usableCoordRect = outputPages[0].getCoordRect();
}

void ChartPage::shiftCoords(IntPos offset)
{
    coordRect = shifted(coordRect, offset);
    for (OutputPage& page : outputPages)
        page.shiftCoords(offset);
}

bool ChartPage::isVisible(IntPos position) const
{
    return containsPatch(position) &&
           std::any_of(outputPages.begin(), outputPages.end(),
                       [position](OutputPage const& page) { return page.isVisible(position); });
}

int ChartPage::countOutputPages() const
{
    return static_cast<int>(std::count_if(outputPages.begin(), outputPages.end(),
                                          [](OutputPage const& page) { return page.hasPatches(); }));
}
