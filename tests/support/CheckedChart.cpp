// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/CheckedChart.h"

#include "ReadingOrder.h"
#include "support/SimulatedPrint.h"

#include <array>
#include <charconv>
#include <cmath>

namespace
{

std::string columnLabel(int column)
{
    std::string const letter(1, static_cast<char>(column % 52 < 26 ? 'A' + column % 52 : 'a' + column % 52 - 26));
    return column < 52 ? letter : columnLabel(column / 52 - 1) + letter;
}

std::string decimal(double value)
{
    std::array<char, 40> text{};
    auto const end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 2).ptr;
    return {text.data(), end};
}

} // namespace

std::string checkedDescription(CheckedChartSize const& size, std::uint64_t seed)
{
    SimulationRandom random(seed);
    std::string text = "<targetdescription>\n\n\t<name>Checked</name>\n\t<colorSpace>RGB</colorSpace>\n\t<pages>" +
                       std::to_string(size.sheets) + "</pages>\n\t<rows>" + std::to_string(size.rows) +
                       "</rows>\n\t<columns>" + std::to_string(size.columns) +
                       "</columns>\n\n\t<targetdefinition>\nIS12642\nNUMBER_OF_FIELDS\t6\nBEGIN_DATA_FORMAT\n"
                       "SAMPLE_ID\tSAMPLE_LOC\tCONTROL\tRGB_R\tRGB_G\tRGB_B\nEND_DATA_FORMAT\nBEGIN_DATA\n";
    int id = 0;
    for (int column = 0; column < size.sheets * size.columns; ++column)
        for (int row = 1; row <= size.rows; ++row) {
            bool const isWhite = column % size.columns == 0 && row == 1;
            text += std::to_string(++id) + "\t" + columnLabel(column) + std::to_string(row) + "\tN";
            for (int channel = 0; channel < 3; ++channel)
                text += "\t" + std::to_string(isWhite ? 255 : static_cast<int>(random.below(256)));
            text += "\n";
        }
    return text + "END_DATA\n\t</targetdefinition>\n\n</targetdescription>\n\n";
}

ChartReference checkedChart(CheckedChartSize const& size, std::uint64_t seed)
{
    return readReference(checkedDescription(size, seed)).chart;
}

Readings plainPrint(ChartReference const& chart)
{
    Readings readings;
    for (std::size_t i = 0; i < chart.patches.size(); ++i) {
        auto const [red, green, blue, unused] = chart.patches[i].device;
        double const error = 0.3 * (static_cast<double>(i * 7 % 11) / 5 - 1);
        readings.emplace_back(LabColor{20 + 20 * red + 45 * green + 10 * blue + error, 70 * (red - green) - error,
                                       60 * (green - blue) + 20 * (red - blue) + error});
    }
    return readings;
}

void change(Readings& readings, std::size_t patch, LabColor const& by)
{
    LabColor lab = readings[patch].value_or(LabColor{});
    for (std::size_t k = 0; k < 3; ++k)
        lab[k] += by[k];
    readings[patch] = lab;
}

PairedMeasurement measurementOf(Readings const& readings)
{
    PairedMeasurement measurement;
    measurement.readings = readings;
    measurement.rows.resize(readings.size());
    measurement.isImpossible.resize(readings.size());
    return measurement;
}

MeasurementCheck checkOf(ChartReference const& chart, Readings const& readings)
{
    return checkMeasurement(chart, measurementOf(readings), candidateOrders(chart));
}

StripExplanation faultlessExplanation(ChartReference const& chart)
{
    StripExplanation explanation;
    explanation.order.assignment = Assignment(chart.patches.size());
    for (std::size_t strip = 0; strip < chart.strips.size(); ++strip) {
        StripMatch own;
        own.source = strip;
        explanation.base.push_back(own);
    }
    explanation.matches = explanation.base;
    return explanation;
}

std::vector<std::size_t> patchesOf(Assignment const& assignment)
{
    std::vector<std::size_t> patches;
    for (std::size_t reading = 0; reading < assignment.size(); ++reading)
        patches.push_back(assignment[reading]);
    return patches;
}

std::vector<std::size_t> columnOf(ChartReference const& chart, std::string const& label)
{
    std::vector<std::size_t> patches;
    for (std::size_t i = 0; i < chart.patches.size(); ++i)
        if (chart.stripOf(i).label == label)
            patches.push_back(i);
    return patches;
}

std::string measurementText(ChartReference const& chart, Readings const& readings)
{
    std::string text = "CGATS.17\nBEGIN_DATA_FORMAT\nSAMPLE_LOC\tLAB_L\tLAB_A\tLAB_B\nEND_DATA_FORMAT\nBEGIN_DATA\n";
    for (std::size_t i = 0; i < readings.size(); ++i) {
        auto const& reading = readings[i];
        if (!reading)
            continue;
        text += chart.patches[i].label;
        for (double const value : *reading)
            text += "\t" + decimal(value);
        text += "\n";
    }
    return text + "END_DATA\n";
}
