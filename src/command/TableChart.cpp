// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TableChart.h"

#include "TableFile.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{

// Whether the window's reader takes a text for a table.
bool isTakenByWindow(std::string const& bytes)
{
    InputFile file;
    return file.initFromText(stringOf(bytes));
}

// A device of one's own names the gap that it needs; otherwise it is 1 mm.
float gapOf(ChartSettings const& settings)
{
    double const own = settings.device.values.gap.height;
    return own > 0 ? static_cast<float>(own) : gapBetweenPatches;
}

std::string orderProgressText(float smallest, float bound)
{
    return textOf(String::format("ordering: %.2f dE, no order exceeds %.2f", std::sqrt(static_cast<double>(smallest)),
                                 std::sqrt(static_cast<double>(bound))));
}

std::string lengthText(double length)
{
    return millimetres(std::max(length, 0.0));
}

} // namespace

String stringOf(std::string const& text)
{
    String string;
    string.init(text.data(), text.size());
    return string;
}

std::string textOf(String const& string)
{
    return {string.begin(), string.end()};
}

std::optional<PlainTable> readPlainTable(ChartArguments const& arguments, ImportOptions const& options,
                                         Console const& console)
{
    FileContents contents = readFile(arguments.table.table, mostTableBytes);
    if (!contents.error.empty()) {
        console.error(nameOfTable(arguments.table.table) + ": " + contents.error);
        return std::nullopt;
    }
    if (arguments.lenient && isTakenByWindow(contents.bytes))
        return PlainTable{std::move(contents.bytes), {}};
    auto const patches = importPatches(console, arguments.table.table, std::move(contents.bytes), options);
    if (!patches)
        return std::nullopt;
    PlainTable plain{plainTableOf(*patches), patches->notes};
    if (patches->source().kind != TableKind::plain)
        plain.notes.insert(plain.notes.begin(), "scale: " + patches->scale.reason);
    return plain;
}

bool TableChart::make(ChartSettings const& settings, PlainTable const& table, std::string const& name,
                      Console const& console)
{
    if (!input.initFromText(stringOf(table.text)) || input.getEntries()->getCount() == 0) {
        console.error(name + ": has no patches");
        return false;
    }
    Progress progress;
    setUp(settings, progress);
    result = makeChart(chart, settings.gaps, gapOf(settings));
    chart.setOrderMethod({});
    progress.clear();
    if (!chart.hasSomethingToOutpot()) {
        console.error(noRoomText(settings));
        return false;
    }
    if (settings.gaps == GapRule::never && needsGaps(chart, result.smallestDeltaE))
        console.warn("patches along the scan differ by less than 18 delta E, and the chart has no gaps");
    return true;
}

void TableChart::setUp(ChartSettings const& settings, Progress& progress)
{
    MeasurementLayout instrument;
    instrument.init(settings.device.values);
    chart.setDirection(mirrored);
    chart.setMeasurementLayout(instrument);
    chart.setPageLayout(settings.sheet);
    chart.setPatchSize(settings.patch);
    chart.setName(stringOf(settings.name));
    chart.setClipToContent(settings.clipsToContent);
    chart.setColorSpace(input.getColorSpace());
    chart.setOriginalEntries(input.getEntries());
    chart.setOrderMethod({settings.order.kind, settings.order.effort, [&progress](float smallest, float bound) {
                              progress.show(orderProgressText(smallest, bound));
                          }});
}

std::string TableChart::noRoomText(ChartSettings const& settings) const
{
    RealSize const room = chart.getRoomForPatches();
    RealSize const gapSize = chart.getMeasurementLayout().getGap();
    double const width = settings.patch.width + gapSize.width;
    double const height = settings.patch.height + gapSize.height;
    if (room.width >= width && room.height >= height)
        return "the chart would need more cells or sheets than anyone prints; take larger patches or fewer patches";
    return "no room for a single patch: " + settings.paperName + " leaves " + lengthText(room.width) + " x " +
           lengthText(room.height) + " mm for " + settings.device.name + ", one patch needs " + millimetres(width) +
           " x " + millimetres(height) + " mm; take a larger paper, smaller margins or smaller patches";
}
