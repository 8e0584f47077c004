// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "LabColor.h"
#include "lib/ColorSpace.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A printed patch.
struct ChartPatch
{
    std::string label;                 // "C12"
    std::string id;                    // the number in the target description
    std::array<std::string, 4> values; // device values as they are written there; three of them for RGB
    std::array<double, 4> device{};    // the same from 0 to 1
    LabColor lab{};                    // through the program's own profile
    std::size_t strip = 0;             // index of its strip
    bool isFiller = false;             // a white patch that fills up the chart
};

/// What an instrument reads in one go: the patches of one column on one sheet, in the order of their numbers.
struct ChartStrip
{
    std::string label; // of the column, "C"
    std::size_t sheet = 0;
    std::size_t first = 0; // its patches are neighbours in the chart's list
    std::size_t count = 0;
};

/// What was printed: the patches of a chart, where they stand, and what they should look like.
class ChartReference
{
public:
    ColorSpace colorSpace = undefined;
    std::string name;
    std::vector<ChartPatch> patches; // strip after strip
    std::vector<ChartStrip> strips;  // sheet after sheet
    std::size_t sheetCount = 0;
    std::vector<std::string> hiddenLabels; // cells of the grid that no sheet shows, sorted

    std::size_t channels() const { return static_cast<std::size_t>(colorspace_nof_channels[colorSpace]); }
    ChartStrip const& stripOf(std::size_t patch) const { return strips[patches[patch].strip]; }

    /// The row of a patch in its strip, from 0.
    std::size_t rowOf(std::size_t patch) const { return patch - stripOf(patch).first; }

    /// Whether the patch is bare paper.
    bool isWhite(std::size_t patch) const;

    /// The strips of a sheet, first and past the last.
    std::array<std::size_t, 2> stripsOf(std::size_t sheet) const;

    std::optional<std::size_t> findLabel(std::string_view label) const;
    bool isHidden(std::string_view label) const;

    /// Sorts the labels for findLabel. To be called when the patches are complete.
    void finish();

private:
    std::vector<std::size_t> byLabel;
};

/// The chart, or why it cannot be read.
struct ReferenceReading
{
    ChartReference chart;
    std::string fault; // one line; empty where there is a chart
};

/// The most patches of a chart that is checked: the time grows faster than their number.
inline constexpr std::size_t mostCheckedPatches = 100'000;

/// Reads a chart from its target description. The sheets are those of the chart's pages. On a page of several sheets,
/// rows and columns of cells that no sheet shows lie between them.
///
/// The conversions of ColorEntry must be prepared.
ReferenceReading readReference(std::string bytes);
