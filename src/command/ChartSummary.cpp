// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ChartSummary.h"

#include "Console.h"
#include "Json.h"

#include <cmath>

namespace
{

std::string sizeText(RealSize size)
{
    return millimetres(size.width) + " x " + millimetres(size.height) + " mm";
}

std::string counted(int count, std::string const& noun)
{
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string marginsText(RealBorder const& margins)
{
    return millimetres(margins.top) + ", " + millimetres(margins.right) + ", " + millimetres(margins.bottom) + ", " +
           millimetres(margins.left) + " mm";
}

std::string twoDecimals(double number)
{
    String const text = String::format("%.2f", number);
    return {text.begin(), text.end()};
}

// As the window shows it.
std::string deltaEText(float deltaE)
{
    return twoDecimals(static_cast<double>(deltaE));
}

// A difference beside its bound is rounded down and the bound up, so that the texts promise nothing that is not so.
std::string bestText(float smallest, float bound)
{
    auto const hundredths = [](float deltaE) { return static_cast<double>(deltaE) * 100; };
    return twoDecimals(std::floor(hundredths(smallest)) / 100) + " dE at least along the scan; no order exceeds " +
           twoDecimals(std::ceil(hundredths(bound)) / 100);
}

bool isScanned(ChartSummary const& summary)
{
    return summary.settings.device.values.scanDirection == alongY;
}

bool isBest(ChartSummary const& summary)
{
    return isScanned(summary) && summary.settings.order.kind == OrderMethod::best;
}

std::string gapsText(ChartSummary const& summary)
{
    if (!isScanned(summary))
        return "";
    return summary.made.hasGaps ? "gaps of " + millimetres(summary.gap) + " mm" : "no gaps";
}

std::string differenceText(ChartSummary const& summary)
{
    if (!isScanned(summary))
        return "nothing is scanned";
    std::string text = isBest(summary) ? bestText(summary.made.smallestDeltaE, summary.bound)
                                       : deltaEText(summary.made.smallestDeltaE) + " dE at least along the scan";
    if (isBest(summary) && summary.isBoundLoose)
        text += " (a loose bound: the chart is large)";
    if (summary.made.hasGaps && summary.settings.gaps == GapRule::automatic)
        text += "; without gaps it was " + deltaEText(summary.made.withoutGaps) + ", below 18";
    return text;
}

// "A4 Portrait, 210 x 297 mm, margins ..."
std::string paperText(ChartSettings const& settings)
{
    return settings.paperName + ", " + sizeText(settings.sheet.getSize()) + ", margins " +
           marginsText(marginsOf(settings.sheet));
}

std::string filesText(ChartSummary const& summary)
{
    std::string text;
    for (std::string const& file : summary.files)
        text += (text.empty() ? "" : "\n               ") + printable(file);
    return text;
}

} // namespace

ChartSummary summaryOf(ChartLayout const& chart, ChartSettings const& settings, MadeChart const& made,
                       std::size_t patches)
{
    ChartSummary summary;
    summary.settings = settings;
    summary.colorSpace = chart.getColorSpace();
    summary.patches = patches;
    summary.columns = chart.getPatchesX();
    summary.rows = chart.getPatchesY();
    summary.chartPages = chart.getChartPagesCount();
    summary.sheets = chart.countOutputPages();
    summary.gap = isScanned(summary) ? chart.getMeasurementLayout().getGap().height : 0;
    summary.made = made;
    summary.bound = chart.getOrderBound();
    summary.isBoundLoose = chart.isOrderBoundLoose();
    for (int y = 0; y < summary.rows; ++y)
        for (int x = 0; x < summary.columns; ++x) {
            ColorEntry const* const entry = chart.getColorEntry({x, y});
            summary.fillers += entry && entry->getStatus() == Filler;
            summary.hidden += !entry || entry->getStatus() == Hidden;
        }
    return summary;
}

std::string textOf(ChartSummary const& summary)
{
    ChartSettings const& settings = summary.settings;
    int const cells = summary.columns * summary.rows;
    std::string text = printable(settings.name) + "\n";
    auto const line = [&text](std::string const& label, std::string const& value) {
        text += "  " + label + std::string(label.size() < 13 ? 13 - label.size() : 0, ' ') + value + "\n";
    };
    line("patches", std::to_string(summary.patches) + " " + colorspace_names[summary.colorSpace]);
    line("device", printable(settings.device.name));
    line("paper", printable(paperText(settings)));
    line("cells", std::to_string(cells) + " = " + counted(summary.columns, "column") + " x " +
                      counted(summary.rows, "row") + " = " + std::to_string(summary.patches) + " of the table + " +
                      std::to_string(summary.fillers) + " white + " + std::to_string(summary.hidden) + " hidden");
    line("sheets", std::to_string(summary.sheets) + " (" + counted(summary.chartPages, "chart page") + ")");
    std::string const gaps = gapsText(summary);
    line("patch size", sizeText(settings.patch) + (gaps.empty() ? "" : ", " + gaps));
    line("difference", differenceText(summary));
    for (std::string const& note : summary.notes)
        line("note", printable(note));
    line("files", filesText(summary));
    return text;
}

std::string jsonOf(ChartSummary const& summary)
{
    ChartSettings const& settings = summary.settings;
    RealBorder const margins = marginsOf(settings.sheet);
    RealSize const paper = settings.sheet.getSize();
    Json json;
    json["name"] = settings.name;
    json["colorSpace"] = colorspace_names[summary.colorSpace];
    json["patches"] = summary.patches;
    json["fillers"] = summary.fillers;
    json["hidden"] = summary.hidden;
    json["columns"] = summary.columns;
    json["rows"] = summary.rows;
    json["chartPages"] = summary.chartPages;
    json["sheets"] = summary.sheets;
    json["patchSize"] = {settings.patch.width, settings.patch.height};
    json["gap"] = summary.gap;
    json["smallestDeltaE"] = isScanned(summary) ? numberOf(summary.made.smallestDeltaE) : Json();
    json["order"] = isBest(summary) ? "best" : "standard";
    if (isBest(summary)) {
        json["bound"] = numberOf(summary.bound);
        json["boundIsLoose"] = summary.isBoundLoose;
    }
    json["device"] = settings.device.name;
    json["paper"] = {{"name", settings.paperName},
                     {"width", paper.width},
                     {"height", paper.height},
                     {"margins", {margins.top, margins.right, margins.bottom, margins.left}}};
    json["notes"] = summary.notes;
    json["files"] = summary.files;
    return textOf(json);
}
