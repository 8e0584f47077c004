// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartLayout.h"

#include <memory>
#include <ostream>

/// Random settings. The same number gives the same settings on every machine. All lengths are multiples of half a
/// millimetre, so that their sums and multiples are exact.
struct RandomSettings
{
    explicit RandomSettings(unsigned number);

    MeasurementLayout instrument;
    PageLayout paper; ///< a preset's, or a custom one whose margins may leave nothing
    RealSize patch;
    float gap = 0; ///< asked for; an instrument that does not scan along y keeps its own
    int seed = 0;
    int entries = 0;
    ColorSpace colorSpace = RGB;
    bool clipToContent = false;
};

void PrintTo(RandomSettings const& settings, std::ostream* stream);

/// The room of a sheet, computed in whole halves of a millimetre.
struct Room
{
    IntSize grid;   ///< columns and rows that a chart page has at the most
    IntSize sheets; ///< that it is made of, across and up
};

Room roomOf(RandomSettings const& settings);

/// Entries with different values, in the order of the values.
GrowingArray<ColorEntry> distinctEntries(ColorSpace colorSpace, int count);

/// A chart computed with random settings.
class RandomChart
{
public:
    explicit RandomChart(RandomSettings const& chosen);
    RandomChart(RandomChart const&) = delete;
    RandomChart& operator=(RandomChart const&) = delete;

    RandomSettings const settings;

private:
    GrowingArray<ColorEntry> entries;

public:
    ChartLayout layout;
    float const result;
};
