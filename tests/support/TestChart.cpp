// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/TestChart.h"

#include <cstring>
#include <type_traits>

ColorEntry entryOf(ColorSpace colorSpace, std::string const& line)
{
    String text(line.c_str());
    ColorEntry entry;
    entry.parseFromString(text, colorSpace);
    return entry;
}

GrowingArray<ColorEntry> entriesOf(ColorSpace colorSpace, std::vector<std::string> const& lines)
{
    GrowingArray<ColorEntry> entries;
    for (std::string const& line : lines)
        entries.add(entryOf(colorSpace, line));
    return entries;
}

GrowingArray<ColorEntry> greyEntries(int count)
{
    GrowingArray<ColorEntry> entries;
    for (int i = 0; i < count; ++i) {
        std::string const level = std::to_string(i % 256);
        entries.add(entryOf(RGB, level + " " + level + " " + level));
    }
    return entries;
}

MeasurementLayout instrument(MeasurementLayoutPreset preset)
{
    MeasurementLayout layout;
    layout.initWithPreset(preset);
    return layout;
}

MeasurementLayout scanningAlongX(MeasurementLayout from)
{
    // The scan direction is the last field of a plain value, and has no setter.
    static_assert(std::is_trivially_copyable_v<MeasurementLayout> && std::is_standard_layout_v<MeasurementLayout>);
    unsigned char bytes[sizeof from];
    std::memcpy(bytes, &from, sizeof from);
    ScanDirection const direction = alongX;
    std::memcpy(bytes + sizeof from - sizeof direction, &direction, sizeof direction);
    std::memcpy(&from, bytes, sizeof from);
    return from;
}

PageLayout paper(PageLayoutPreset preset)
{
    PageLayout layout;
    layout.initWithPreset(preset);
    return layout;
}

PageLayout sheetOf(RealSize size, RealRect content)
{
    PageLayout layout;
    layout.setSize(size);
    layout.setContent(content);
    return layout;
}

PageLayout rulerSheetFor(IntSize grid, RealSize step)
{
    // Around the patches: 18 mm in x and 8 mm in y for labels, 12.5 mm above and 6.5 mm below for the ruler.
    RealSize const size{(grid.width + 0.1) * step.width + 18, (grid.height + 0.1) * step.height + 8 + 12.5 + 6.5};
    return sheetOf(size, {0, 0, size.width, size.height});
}

ChartLayout chartOf(Array<ColorEntry>& entries, MeasurementLayout instrument, PageLayout sheet, RealSize patch)
{
    ChartLayout chart;
    chart.setMeasurementLayout(instrument);
    chart.setPageLayout(sheet);
    chart.setPatchSize(patch);
    chart.setColorSpace(entries.getCount() > 0 ? entries[0].getColorSpace() : RGB);
    chart.setOriginalEntries(&entries);
    return chart;
}
