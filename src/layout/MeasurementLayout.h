// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/Geometry.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

/// How an instrument travels while it measures: not at all (spot by spot), along x, or down a column of patches.
enum ScanDirection : std::int32_t { none = 0, alongX = 1, alongY = 2 };

/// An instrument on offer: its display name and its own values, mm, as MeasurementLayout gives them.
struct InstrumentPreset
{
    char const* name;
    RealSize size;
    RealRect content;
    RealBorder minMargin;
    RealSize minPatchSize;
    RealSize gap;
    bool mustFit;
    bool multiPage;
    ScanDirection scanDirection;
};

/// The instruments on offer, in the order of their numbers.
inline constexpr InstrumentPreset instrumentPresets[] = {
    // name, size, content, margin, patch, gap, fits, multi, scan
    {"GB+ Spot", {500, 440}, {2, 83, 460, 320}, {0, 0, 0, 0}, {6, 6}, {0, 0}, true, true, none},
    {"GB+ Scan", {500, 440}, {0, 0, 460, 320}, {12.5, 0, 6.5, 0}, {6, 8}, {0, 1}, true, false, alongY},
    {"VT-30 Standard Ruler", {0, 257}, {0, 0, 0, 257}, {12.5, 0, 6.5, 0}, {7, 8}, {0, 1}, false, false, alongY},
    {"VT-30 Long Ruler", {0, 486}, {0, 0, 0, 486}, {12.5, 0, 6.5, 0}, {7, 8}, {0, 1}, false, false, alongY},
};

/// The numbers of the instruments.
enum MeasurementLayoutPreset : std::int32_t { tableSpot = 0, tableScan = 1, standardRuler = 2, longRuler = 3 };

struct InstrumentNames
{
    char const* all[std::size(instrumentPresets)];
};

inline constexpr InstrumentNames instrumentNames = [] {
    InstrumentNames names{};
    std::ranges::transform(instrumentPresets, names.all, &InstrumentPreset::name);
    return names;
}();

/// The instruments' display names, in the order of their numbers.
inline constexpr auto& measurementlayout_strings = instrumentNames.all;

/// The instrument set-up that a chart is measured with: its reach, and the room that it needs around and between
/// patches. All lengths are in mm. A new object has every length at REAL_NOPOS and does not scan.
class MeasurementLayout
{
public:
    /// Takes the values of an instrument on offer. An unknown number is stored and changes nothing else.
    void initWithPreset(MeasurementLayoutPreset newPreset);

    /// Takes the values of any instrument.
    void init(InstrumentPreset const& instrument);

    /// Overall extent of the working area; a width of 0 means that x is not bounded (rulers).
    RealSize getSize() const { return size; }

    /// The reachable area, from the working area's lower-left corner.
    RealRect getContent() const { return content; }

    /// Margins that must stay free around the patches.
    RealBorder getMinMargin() const { return minMargin; }

    /// The smallest patch that can be measured.
    RealSize getMinPatchSize() const { return minPatchSize; }

    /// Free space between neighbouring patches, in x and in y.
    RealSize getGap() const { return gap; }

    /// Whether the chart must lie wholly inside the reachable area.
    bool mustFit() const { return fitting; }

    /// Whether the instrument is marked for charts on several sheets. The layout follows the scan direction instead.
    bool isMultiPage() const { return multiPage; }

    MeasurementLayoutPreset getPreset() const { return preset; }
    ScanDirection getScanDirection() const { return scanDirection; }

    void setGap(float x, float y) { gap = {static_cast<double>(x), static_cast<double>(y)}; }
    void setSize(RealSize newSize) { size = newSize; }
    void setContent(RealRect newContent) { content = newContent; }

private:
    MeasurementLayoutPreset preset = tableSpot;
    RealSize size;
    RealRect content;
    RealBorder minMargin;
    RealSize minPatchSize;
    RealSize gap;
    bool fitting = false;
    bool multiPage = false;
    ScanDirection scanDirection = none;
};
