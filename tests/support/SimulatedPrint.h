// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Assignment.h"
#include "ChartReference.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

/// Random numbers that are the same with every library.
class SimulationRandom
{
public:
    explicit SimulationRandom(std::uint64_t seed) : generator(seed) {}

    /// From 0 on, below the limit.
    std::size_t below(std::size_t limit) { return static_cast<std::size_t>(even() * static_cast<double>(limit)); }

    /// From 0 to 1.
    double even() { return static_cast<double>(generator() >> 11) * 0x1p-53; }

    /// With mean 0 and deviation 1.
    double normal();

    /// `count` different numbers below the limit.
    std::vector<std::size_t> some(std::size_t count, std::size_t limit);

private:
    std::mt19937_64 generator;
};

/// What a chart is simulated with.
struct SimulatedChartSize
{
    std::size_t patches = 0;
    int rows = 0;   // patches in a column
    int sheets = 1; // on which the columns are divided
};

/// A chart of random patches as the program makes it: laid out, written, and read from its target description. CMYK
/// patches are mostly light in black, as in real charts.
ChartReference simulatedChart(ColorSpace space, SimulatedChartSize const& size, std::uint64_t seed);

/// A chart of given lines of device values.
ChartReference simulatedChart(ColorSpace space, std::vector<std::string> const& lines, int rows, int sheets);

/// A printing process: an ICC profile, or the characterisation data of a press at its very patches.
class SimulatedPrinter
{
public:
    /// \param dotGain  what is added to a half tone: 0.1 makes 60 % of 50 %; below 0 it gets lighter
    SimulatedPrinter(std::filesystem::path const& profile, ColorSpace space, double dotGain);
    ~SimulatedPrinter();
    SimulatedPrinter(SimulatedPrinter const&) = delete;
    SimulatedPrinter& operator=(SimulatedPrinter const&) = delete;

    bool isOpen() const { return transform != nullptr; }

    /// The colours of a chart's patches, without noise.
    std::vector<LabColor> print(ChartReference const& chart) const;

private:
    void* transform = nullptr;
    ColorSpace space;
    double dotGain;
};

/// A chart of patches that a press printed and an instrument measured, and their colours.
struct PressChart
{
    ChartReference chart;
    std::vector<LabColor> colors;
};

/// A chart of some of the patches in characterisation data; empty without the file.
///
/// \param data  a CGATS file with CMYK_C to CMYK_K and LAB_L to LAB_B
PressChart pressChart(std::filesystem::path const& data, SimulatedChartSize const& size, std::uint64_t seed);

/// What an instrument adds. Differences in delta E (1976).
struct SimulatedReading
{
    double noise = 0.6; // mean over the patches
    double drift = 2;   // from the first patch to the last
};

/// The chart's colours as read in its order.
Readings simulatedReadings(std::vector<LabColor> const& colors, SimulatedReading const& reading,
                           SimulationRandom& random);
