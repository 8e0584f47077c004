// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ReportTexts.h"

#include "NumberText.h"
#include "ShownSheet.h"
#include "making/ChartMaking.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace
{

std::string millimetres(double length)
{
    return shortNumber(length, 3);
}

std::string limitText()
{
    return shortNumber(static_cast<double>(deltaEWithoutGaps), 0);
}

// The room for patches on the first sheet. A patch that fits nowhere leaves it whole.
RealSize roomForPatches(ChartLayout const& chart)
{
    ChartLayout trial;
    trial.setMeasurementLayout(chart.getMeasurementLayout());
    trial.setPageLayout(chart.getPageLayout());
    RealSize const sheet = chart.getPageLayout().getSize();
    trial.setPatchSize({2 * sheet.width, 2 * sheet.height});
    return trial.getRoomForPatches();
}

RealSize stepOf(ChartLayout const& chart)
{
    RealSize const patch = chart.getPatchSize();
    RealSize const gap = chart.getMeasurementLayout().getGap();
    return {patch.width + gap.width, patch.height + gap.height};
}

int columnsOnSheet(ChartLayout const& chart)
{
    return numberedSheets(chart).front().page->getPatchesPerPage().width;
}

std::string columnReason(ChartLayout const& chart)
{
    RealSize const step = stepOf(chart);
    double const room = roomForPatches(chart).width;
    int const used = columnsOnSheet(chart);
    int const most = wholeNumber(room / step.width + 1e-9);
    std::string const here = "Sheet 1 shows " + countOf(used, "column") + " of " + millimetres(step.width) +
                             " mm. Its room for patches is " + millimetres(room) + " mm wide. ";
    if (used < most)
        return here + "One more column would fit: " + millimetres(room - used * step.width) +
               " mm of the width are free.";
    return here + "One more column would need " + millimetres((used + 1) * step.width - room) +
           " mm more: a wider paper, narrower margins, or patches at most " +
           millimetres(std::floor((room / (used + 1) - (step.width - chart.getPatchSize().width)) * 100) / 100) +
           " mm wide.";
}

std::string fillReason(ChartLayout const& chart, CellCounts const& cells)
{
    std::string next = isScanned(chart) ? "another column" : "a larger grid";
    if (chart.getChartPagesCount() > 1)
        next += " on each of its " + countOf(chart.getChartPagesCount(), "chart page");
    if (cells.fillers == 0)
        return "No cell is free: with one more patch the chart would need " + next + ".";
    return (cells.fillers == 1 ? "1 cell is" : groupedNumber(cells.fillers) + " cells are") +
           " free and white: the table could have so many patches more before the chart needs " + next + ".";
}

std::string joined(std::vector<std::string> const& names)
{
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i)
        text += (i == 0 ? "" : i + 1 == names.size() ? " or " : ", ") + names[i];
    return text;
}

} // namespace

std::string deltaText(float deltaE)
{
    std::string const text = fixedNumber(static_cast<double>(deltaE), 2);
    bool const looksEnough =
        deltaE < deltaEWithoutGaps && text == fixedNumber(static_cast<double>(deltaEWithoutGaps), 2);
    return looksEnough ? fixedNumber(static_cast<double>(deltaEWithoutGaps) - 0.01, 2) : text;
}

std::string flooredDeltaText(float deltaE)
{
    return fixedNumber(std::floor(static_cast<double>(deltaE) * 100) / 100, 2);
}

std::string deviceText(ReportSubject const& subject)
{
    return joined(subject.devices);
}

std::string scanText(ChartLayout const& chart)
{
    switch (chart.getMeasurementLayout().getScanDirection()) {
    case alongY:
        return "sweeps along the columns";
    case alongX:
        return "sweeps along the rows";
    default:
        return "measures patch by patch";
    }
}

std::string sizeText(RealSize size)
{
    return millimetres(size.width) + " × " + millimetres(size.height) + " mm";
}

std::string gapText(ChartLayout const& chart)
{
    RealSize const gap = chart.getMeasurementLayout().getGap();
    if (gap.width <= 0 && gap.height <= 0)
        return "no gaps";
    if (gap.width <= 0)
        return "gaps of " + millimetres(gap.height) + " mm along the scan";
    return "gaps of " + sizeText(gap);
}

std::string gapReason(ReportSubject const& subject, float smallest)
{
    ChartLayout const& chart = subject.chart;
    if (!isScanned(chart))
        return "The instrument does not sweep along the columns. Neighbours may look alike, and the chart needs no "
               "gaps.";
    bool const isBelow = smallest < deltaEWithoutGaps;
    if (chart.getMeasurementLayout().getGap().height <= 0)
        return isBelow ? "The chart has no gaps, though some neighbours differ by less than " + limitText() +
                             " ΔE. The instrument may not see where one patch ends and the next begins."
                       : "The chart needs no gaps: all neighbours differ by at least " + limitText() + " ΔE.";
    std::string const text = "The chart has " + gapText(chart) + ". ";
    if (subject.withoutGaps && *subject.withoutGaps < deltaEWithoutGaps)
        return text + "Without gaps the smallest difference was " + deltaText(*subject.withoutGaps) +
               " ΔE, which is below " + limitText() +
               " ΔE. The instrument would not see where one patch ends and the next begins.";
    if (!subject.isGapRuleKnown)
        return text + "Its files do not say why. Charts get gaps if some neighbours would differ by less than " +
               limitText() + " ΔE without them, or if they are asked for.";
    return text + "They were asked for.";
}

std::vector<std::string> sheetReasons(ReportSubject const& subject, CellCounts const& cells)
{
    ChartLayout const& chart = subject.chart;
    int const sheets = chart.countOutputPages();
    int const pages = chart.getChartPagesCount();
    std::vector<std::string> reasons;
    bool const isTiled = sheets != pages;
    reasons.push_back(countOf(pages, "chart page") + " of " +
                      countOf(chart.getPatchesX() / chart.getChartPagesSize().width, "column") + " × " +
                      countOf(chart.getPatchesY() / chart.getChartPagesSize().height, "row") +
                      (isTiled ? ". A chart page is what the instrument measures in one go: it lies on " +
                                     countOf(sheets, "sheet") + " in all."
                               : ". Each chart page is one sheet, so the chart has " + countOf(sheets, "sheet") + "."));
    reasons.push_back(columnReason(chart));
    reasons.push_back(fillReason(chart, cells));
    return reasons;
}

std::string inkText(std::vector<double> const& sums)
{
    std::string text = "The largest sum of all inks is " + shortNumber(sums.back(), 1) + " %. ";
    bool isFirst = true;
    for (int const limit : {300, 320, 400}) {
        auto const above = sums.end() - std::upper_bound(sums.begin(), sums.end(), static_cast<double>(limit));
        text += (isFirst ? "" : ", ") + countOf(above, "patch", "patches") + " above " + std::to_string(limit) + " %";
        isFirst = false;
    }
    return text + ". Ask your printer or press for the limit that it dries at.";
}

int sheetNumberOf(ChartLayout const& chart, IntPos cell)
{
    for (NumberedSheet const& sheet : numberedSheets(chart))
        if (sheet.page->isVisible(cell))
            return sheet.number;
    return 0;
}

std::string repeatText(ChartLayout const& chart, std::vector<RepeatGroup> const& groups)
{
    if (groups.empty())
        return "All patches of the table have different device values.";
    long long patches = 0;
    long long spread = 0;
    for (RepeatGroup const& group : groups) {
        patches += static_cast<long long>(group.size());
        std::set<int> sheets;
        for (IntPos const cell : group)
            sheets.insert(sheetNumberOf(chart, cell));
        spread += sheets.size() > 1 ? 1 : 0;
    }
    std::string text = "The table has " + countOf(static_cast<long long>(groups.size()), "colour") +
                       " more than once, with " + countOf(patches, "patch", "patches") +
                       " in all. Their readings tell how steadily device and instrument work.";
    if (chart.countOutputPages() > 1)
        text += " The repeats of " + countOf(spread, "colour") + " lie on more than one sheet.";
    return text;
}

std::vector<std::string> printSteps(ReportSubject const& subject)
{
    ChartLayout const& chart = subject.chart;
    NumberedSheet const first = numberedSheets(chart).front();
    RealSize const block = first.page->getContentSize();
    constexpr double crossOffset = 0.5; // both crosses stand a quarter of a millimetre outside the block
    std::string const space = chart.getColorSpace() == CMYK ? "CMYK" : "RGB";
    std::string const paper = chart.getClipToContent()
                                  ? "The sheets are cut down to their patches: place them on a paper that holds them."
                                  : "Take " + subject.paper + ", " + sizeText(chart.getPageLayout().getSize()) + ".";
    return {
        paper,
        "Print at 100 %: no “fit to page”, no scaling, no turning that crops. In a print system that takes options, "
        "set print-scaling to none.",
        "Switch colour management off, in the program that prints and in the driver. The " + space +
            " values must reach the device unchanged.",
        "Measure a print with a rule before you measure patches: on sheet 1, the middles of the left and the right red "
        "cross must be " +
            millimetres(block.width + crossOffset) + " mm apart, and those of the lower and the upper cross " +
            millimetres(block.height + crossOffset + chart.getMeasurementLayout().getGap().height) + " mm.",
        "Let the prints dry, overnight for many inkjet inks.",
    };
}

std::vector<std::string> measureSteps(ReportSubject const& subject)
{
    ChartLayout const& chart = subject.chart;
    int const sheets = chart.countOutputPages();
    std::vector<std::string> steps{
        "Open the target description, the file that ends in .xml, in the measuring software of your instrument (" +
            deviceText(subject) + ").",
        "Find A1: it is the upper right patch of the sheet with the red number 1. A2 lies below it, column B to its "
        "left."};
    if (sheets > 1)
        steps.push_back("Take the sheets in the order of their red numbers, from 1 to " + std::to_string(sheets) +
                        ". The columns continue from one sheet to the next.");
    switch (chart.getMeasurementLayout().getScanDirection()) {
    case alongY:
        steps.emplace_back(
            "Sweep over each column from top to bottom, from bare paper to bare paper. Begin with column A "
            "at the right and go on to the left.");
        break;
    case alongX:
        steps.emplace_back(
            "Sweep over each row from bare paper to bare paper, in the order that the software asks for.");
        break;
    default:
        steps.emplace_back(
            sheets > chart.getChartPagesCount()
                ? "Lay the sheets of a chart page on the table side by side, with column A at the right. "
                  "The instrument measures them in one go, patch by patch."
                : "Lay the sheet on the table. The instrument measures it patch by patch.");
    }
    steps.emplace_back(
        "Save the measurements with the values that they belong to. White patches that fill the last column "
        "are marked I in the target description, patches of the table N.");
    return steps;
}
