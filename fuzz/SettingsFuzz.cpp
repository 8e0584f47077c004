// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any settings, one after the other on one chart, laid out and written as target description, EPS and TIFF.

#include "Fuzzing.h"
#include "support/ChartProperties.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fuzzer/FuzzedDataProvider.h>
#include <limits>

namespace
{

// What can be written in a moment: sheets of a chart, cells of its grid, and square mm of paper for the raster.
constexpr int mostSheets = 12;
constexpr int mostWrittenCells = 20'000;
constexpr double largestRaster = 100.0 * 100.0;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double oddLengths[] = {0,   1,   -5,  1e-300, 1e-9,     1e-7,      0.01,
                                 0.5, 1e5, 1e9, 1e300,  infinity, -infinity, std::numeric_limits<double>::quiet_NaN()};

double takeLength(FuzzedDataProvider& input)
{
    switch (input.ConsumeIntegralInRange(0, 3)) {
    case 0:
        return input.PickValueInArray(oddLengths);
    case 1:
        return input.ConsumeIntegral<std::uint8_t>();
    case 2:
        return input.ConsumeIntegral<std::uint16_t>() / 100.0;
    default:
        return input.ConsumeIntegralInRange(0, 60);
    }
}

RealSize takeSize(FuzzedDataProvider& input)
{
    double const width = takeLength(input);
    return {width, input.ConsumeBool() ? width : takeLength(input)};
}

PageLayout takePaper(FuzzedDataProvider& input)
{
    PageLayout paper;
    paper.initWithPreset(static_cast<PageLayoutPreset>(input.ConsumeIntegralInRange(0, 9)));
    if (input.ConsumeBool())
        return paper;
    RealSize const size = takeSize(input);
    double const top = takeLength(input);
    double const right = takeLength(input);
    double const bottom = takeLength(input);
    double const left = takeLength(input);
    paper.setSize(size);
    paper.setContent({left, bottom, size.width - left - right, size.height - top - bottom});
    return paper;
}

GrowingArray<ColorEntry> takeEntries(FuzzedDataProvider& input)
{
    constexpr char const* oddValues[] = {"nan", "-5", "inf", "1e999", "300", "x", "0.00001", "-0"};
    auto const colorSpace = static_cast<ColorSpace>(input.ConsumeIntegralInRange(0, 2));
    GrowingArray<ColorEntry> entries;
    int const count = input.ConsumeBool() ? input.ConsumeIntegral<std::uint8_t>() : input.ConsumeIntegralInRange(0, 9);
    int level = input.ConsumeIntegral<std::uint8_t>();
    for (int i = 0; i < count; ++i) {
        std::string line;
        for (int channel = 0; channel < colorspace_nof_channels[colorSpace]; ++channel) {
            level = (level * 5 + 77) % 256;
            line +=
                input.ConsumeProbability<float>() > 0.9F ? input.PickValueInArray(oddValues) : std::to_string(level);
            line += ' ';
        }
        String text(line.c_str());
        ColorEntry entry;
        entry.parseFromString(text, colorSpace);
        entries.add(entry);
    }
    return entries;
}

// Written sheets go beside the target description: a name is not to lead out of the folder.
String takeName(FuzzedDataProvider& input)
{
    std::string name = input.ConsumeRandomLengthString(300);
    std::replace(name.begin(), name.end(), '/', '_');
    return String(String(), name.data(), name.size());
}

class Session
{
public:
    explicit Session(FuzzedDataProvider& data) : input(data) { setEntries(); }

    void step()
    {
        switch (input.ConsumeIntegralInRange(0, 9)) {
        case 0:
            return setInstrument();
        case 1:
            return chart.setPageLayout(takePaper(input));
        case 2:
            return chart.setPatchSize(takeSize(input));
        case 3:
            return chart.setName(takeName(input));
        case 4:
            return chart.setClipToContent(input.ConsumeBool());
        case 5:
            return setEntries();
        case 6:
            return chart.setOriginalEntries(nullptr);
        case 7:
            chart = ChartLayout(chart);
            return;
        default:
            return compute();
        }
    }

private:
    void setInstrument()
    {
        MeasurementLayout instrument;
        instrument.initWithPreset(static_cast<MeasurementLayoutPreset>(input.ConsumeIntegralInRange(0, 3)));
        chart.setMeasurementLayout(instrument);
    }

    void setEntries()
    {
        chart.setOriginalEntries(nullptr);
        entries = takeEntries(input);
        chart.setColorSpace(entries.getCount() > 0 ? entries[0].getColorSpace() : undefined);
        chart.setOriginalEntries(&entries);
    }

    void compute()
    {
        auto const gap =
            static_cast<float>(input.ConsumeBool() ? input.ConsumeIntegralInRange(0, 1) : takeLength(input));
        float const result = chart.computeLayout(gap, input.ConsumeIntegralInRange(0, 1));
        if (!chart.getOriginalEntries())
            return;
        requireNoFault(faultIn(chart, result));
        if (input.ConsumeBool())
            write();
    }

    void write()
    {
        static TemporaryFolder const folder;
        if (chart.getPatchesX() * chart.getPatchesY() > mostWrittenCells || chart.countOutputPages() > mostSheets)
            return;
        chart.writeOutputFile(folder.pathOf("target"));
        chart.writeOutputImagesEPS(folder.pathWithSlash());
        RealSize const paper = chart.getPageLayout().getSize();
        if (!(paper.width * paper.height > largestRaster))
            chart.writeOutputImagesTIFF(folder.pathWithSlash());
        for (auto const& file : std::filesystem::directory_iterator(folder.path()))
            std::filesystem::remove(file.path());
    }

    FuzzedDataProvider& input;
    GrowingArray<ColorEntry> entries;
    ChartLayout chart;
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    prepareColors();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    Session session(input);
    while (input.remaining_bytes() > 0)
        session.step();
    return 0;
}
