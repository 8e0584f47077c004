// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Samples.h"

#include <random>

String writeRandomTable(TemporaryFolder const& folder, ColorSpace colorSpace, int count)
{
    std::string text = colorSpace == CMYK ? "CMYK_C\tCMYK_M\tCMYK_Y\tCMYK_K\n" : "RGB_R\tRGB_G\tRGB_B\n";
    unsigned const levels = colorSpace == CMYK ? 101 : 256;
    int const channels = colorspace_nof_channels[colorSpace];
    // Standard libraries agree on what their engines draw, but not on what their distributions make of it.
    std::mt19937 random(static_cast<unsigned>(count));
    for (int i = 0; i < count; ++i)
        for (int channel = 1; channel <= channels; ++channel)
            text += std::to_string(random() % levels) + (channel == channels ? '\n' : '\t');
    return folder.write(std::string(colorspace_names[colorSpace]) + std::to_string(count) + ".txt", text);
}

String examplePath()
{
    return String(PATCHLOOM_EXAMPLES "it8.7-4-cmyk.txt");
}

ChartLayout rulerChart(InputFile& table)
{
    MeasurementLayout ruler;
    ruler.initWithPreset(longRuler);
    PageLayout sheet;
    sheet.initWithPreset(a3Portrait);
    ChartLayout chart;
    chart.setMeasurementLayout(ruler);
    chart.setPageLayout(sheet);
    chart.setPatchSize({7, 8});
    chart.setColorSpace(table.getColorSpace());
    chart.setOriginalEntries(table.getEntries());
    chart.computeLayout(0, 0);
    return chart;
}

std::string sizeText(InputFile& table)
{
    std::string text = std::to_string(table.getEntries()->getCount());
    for (std::size_t end = text.size(); end > 3; end -= 3)
        text.insert(end - 3, 1, ',');
    return text + " " + colorspace_names[table.getColorSpace()];
}
