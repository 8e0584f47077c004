// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/SimulatedPrint.h"

#include "ChartLayout.h"
#include "ColorEntry.h"
#include "InputFile.h"
#include "Measurement.h"
#include "MeasurementLayout.h"
#include "OvFile.h"
#include "PageLayout.h"
#include "TargetDescription.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <numbers>

#include <lcms2.h>

namespace
{

std::string lineOf(ColorSpace space, SimulationRandom& random)
{
    int const most = space == CMYK ? 100 : 255;
    std::string line;
    for (int channel = 0; channel < colorspace_nof_channels[space]; ++channel) {
        double value = random.even();
        // Every other CMYK patch has no black, and the others have little.
        if (channel == 3)
            value = random.even() < 0.5 ? 0 : value * value;
        // Real charts have many full and empty channels.
        else if (double const corner = random.even(); corner < 0.25)
            value = corner < 0.125 ? 0 : 1;
        line += (channel > 0 ? " " : "") + std::to_string(static_cast<int>(std::lround(value * most)));
    }
    return line;
}

} // namespace

double SimulationRandom::normal()
{
    double const length = std::sqrt(-2 * std::log(1 - even()));
    return length * std::cos(2 * std::numbers::pi * even());
}

std::vector<std::size_t> SimulationRandom::some(std::size_t count, std::size_t limit)
{
    std::vector<std::size_t> numbers;
    while (numbers.size() < count) {
        std::size_t const number = below(limit);
        if (std::find(numbers.begin(), numbers.end(), number) == numbers.end())
            numbers.push_back(number);
    }
    return numbers;
}

ChartReference simulatedChart(ColorSpace space, SimulatedChartSize const& size, std::uint64_t seed)
{
    SimulationRandom random(seed);
    std::vector<std::string> lines(4, space == CMYK ? "0 0 0 0" : "255 255 255");
    while (lines.size() < size.patches)
        lines.push_back(lineOf(space, random));
    return simulatedChart(space, lines, size.rows, size.sheets);
}

ChartReference simulatedChart(ColorSpace space, std::vector<std::string> const& lines, int rows, int sheets)
{
    std::string table = space == CMYK ? "CMYK_C CMYK_M CMYK_Y CMYK_K\n" : "RGB_R RGB_G RGB_B\n";
    for (std::string const& line : lines)
        table += line + "\n";
    InputFile input;
    input.initFromText(String(table.c_str()));
    auto const count = static_cast<int>(lines.size());
    int const columns = (count + rows * sheets - 1) / (rows * sheets);
    // Around the patches: room for labels and ruler, and a tenth of a patch to spare.
    RealSize const patch{7, 8};
    RealSize const sheetSize{(columns + 0.1) * patch.width + 18, (rows + 0.1) * patch.height + 27};
    PageLayout sheet;
    sheet.setSize(sheetSize);
    sheet.setContent({0, 0, sheetSize.width, sheetSize.height});
    MeasurementLayout instrument;
    instrument.initWithPreset(longRuler);
    ChartLayout chart;
    chart.setMeasurementLayout(instrument);
    chart.setPageLayout(sheet);
    chart.setPatchSize(patch);
    chart.setColorSpace(space);
    chart.setOriginalEntries(input.getEntries());
    chart.setName(String("Simulated"));
    chart.setDirection(mirrored);
    chart.computeLayout(0, 0);
    TemporaryFolder const folder;
    String const path = folder.pathOf("Simulated.xml");
    writeTargetDescription(chart, path);
    String const text = RFile::readContents(path);
    ReferenceReading reading = readReference({text.begin(), text.end()});
    if (!reading.fault.empty())
        std::fprintf(stderr, "simulated chart: %s\n", reading.fault.c_str());
    return std::move(reading.chart);
}

SimulatedPrinter::SimulatedPrinter(std::filesystem::path const& profile, ColorSpace colorSpace, double gain)
    : space(colorSpace), dotGain(gain)
{
    cmsHPROFILE const device = cmsOpenProfileFromFile(profile.c_str(), "r");
    if (!device)
        return;
    cmsHPROFILE const lab = cmsCreateLab4Profile(nullptr);
    transform = cmsCreateTransform(device, space == CMYK ? TYPE_CMYK_DBL : TYPE_RGB_DBL, lab, TYPE_Lab_DBL,
                                   INTENT_ABSOLUTE_COLORIMETRIC, cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE);
    cmsCloseProfile(lab);
    cmsCloseProfile(device);
}

SimulatedPrinter::~SimulatedPrinter()
{
    if (transform)
        cmsDeleteTransform(transform);
}

std::vector<LabColor> SimulatedPrinter::print(ChartReference const& chart) const
{
    std::vector<LabColor> colors;
    for (ChartPatch const& patch : chart.patches) {
        std::array<double, 4> device{};
        for (std::size_t channel = 0; channel < chart.channels(); ++channel) {
            double const value = patch.device[channel];
            double const gain = 4 * dotGain * value * (1 - value);
            device[channel] =
                std::clamp(space == CMYK ? value + gain : value - gain, 0.0, 1.0) * (space == CMYK ? 100 : 1);
        }
        LabColor lab{};
        cmsDoTransform(transform, device.data(), lab.data(), 1);
        colors.push_back(lab);
    }
    return colors;
}

PressChart pressChart(std::filesystem::path const& data, SimulatedChartSize const& size, std::uint64_t seed)
{
    String const text = RFile::readContents(String(data.c_str()));
    Measurement const measurement = readMeasurement({text.begin(), text.end()}, data);
    SimulationRandom random(seed);
    std::map<std::array<double, 4>, LabColor> printed;
    std::vector<std::string> lines;
    std::size_t const count = std::min(size.patches, measurement.rows.size());
    for (std::size_t const row : random.some(count, measurement.rows.size())) {
        std::array<double, 4> device{};
        std::string line;
        for (std::size_t channel = 0; channel < 4; ++channel) {
            std::string const value =
                String::format("%.2f", measurement.rows[row].device[channel]).getNullTerminatedString();
            device[channel] = std::stod(value) / 100;
            line += (channel > 0 ? " " : "") + value;
        }
        if (!printed.emplace(device, measurement.rows[row].lab.value_or(LabColor{})).second)
            continue;
        lines.push_back(line);
    }
    if (lines.empty())
        return {};
    PressChart result{simulatedChart(CMYK, lines, size.rows, size.sheets), {}};
    LabColor const paper = measurement.rows.empty() ? LabColor{} : [&] {
        for (MeasuredRow const& row : measurement.rows)
            if (row.device == std::array<double, 4>{})
                return row.lab.value_or(LabColor{});
        return LabColor{95, 0, 0};
    }();
    for (ChartPatch const& patch : result.chart.patches) {
        auto const found = printed.find(patch.device);
        result.colors.push_back(found == printed.end() ? paper : found->second);
    }
    return result;
}

Readings simulatedReadings(std::vector<LabColor> const& colors, SimulatedReading const& reading,
                           SimulationRandom& random)
{
    // The mean length of a vector of three normally distributed components of deviation 1.
    double const meanLength = std::sqrt(8 / std::numbers::pi);
    double const deviation = reading.noise / meanLength;
    LabColor direction{random.normal(), random.normal(), random.normal()};
    double const length = std::max(1e-6, std::hypot(direction[0], direction[1], direction[2]));
    Readings readings;
    for (std::size_t i = 0; i < colors.size(); ++i) {
        double const way = reading.drift * static_cast<double>(i) / static_cast<double>(colors.size());
        LabColor lab = colors[i];
        for (std::size_t k = 0; k < 3; ++k)
            lab[k] += way * direction[k] / length + deviation * random.normal();
        readings.emplace_back(lab);
    }
    return readings;
}
