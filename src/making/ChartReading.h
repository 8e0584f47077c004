// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "color/ColorEntry.h"
#include "layout/ChartLayout.h"
#include "layout/MeasurementLayout.h"
#include "layout/PageLayout.h"
#include "lib/OvArray.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// A device and a paper that a chart may have been made for.
struct DeviceCandidate
{
    std::string name;
    InstrumentPreset values;
};
struct PaperCandidate
{
    std::string name;
    PageLayout sheet;
};

/// A chart that is read back from the folder of its files. It owns the patches.
///
/// The target description has the patches in their places, and the size of patches and gaps. It does not tell device
/// and paper. The chart is laid out for each candidate. The first candidate is taken that gives the same grid, as many
/// sheets as there are files, and, where there is an EPS file, the same places on the sheet. Devices that sweep along
/// the columns come first if the order of the patches suits them, and last if it does not.
class ReadChart
{
public:
    ReadChart() = default;
    ReadChart(ReadChart const&) = delete;
    ReadChart& operator=(ReadChart const&) = delete;

    /// Reads a chart.
    ///
    /// \param isPaperKnown  whether only the papers given are possible. Otherwise a sheet that fits none of them
    /// becomes
    ///                      a paper of its own, named "Custom".
    /// \return why there is no chart, with the path of the file; nothing if there is one
    std::optional<std::string> read(std::filesystem::path const& folder, std::vector<DeviceCandidate> const& devices,
                                    std::vector<PaperCandidate> const& papers, bool isPaperKnown);

    ChartLayout const& layout() const { return chart; }

    /// The devices and the papers that the chart fits; the first ones are those of the layout.
    std::vector<std::string> const& devices() const { return deviceNames; }
    std::vector<std::string> const& papers() const { return paperNames; }

private:
    GrowingArray<ColorEntry> entries;
    ChartLayout chart;
    std::vector<std::string> deviceNames;
    std::vector<std::string> paperNames;
};
