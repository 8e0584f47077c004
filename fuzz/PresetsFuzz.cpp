// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any bytes as a presets file. A chart is laid out for what it holds.

#include "Fuzzing.h"
#include "command/Json.h"
#include "command/ListCommand.h"
#include "command/Presets.h"
#include "layout/ChartLayout.h"
#include "support/ChartProperties.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    prepareColors();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Choices const before = builtInChoices();
    Choices choices = before;
    auto const fault = addPresets(choices, {reinterpret_cast<char const*>(data), size}, "presets.toml");
    if (fault) {
        require(fault->text.starts_with("presets.toml:"), "a fault names its file");
        require(choices.devices.size() == before.devices.size() && choices.papers.size() == before.papers.size(),
                "a file with a fault changes nothing");
        return 0;
    }
    require(!listText(choices, {}).empty(), "choices are listed");
    Json const json = Json::parse(listJson(choices, {}));
    require(json["devices"].size() == choices.devices.size() && json["papers"].size() == choices.papers.size(),
            "every choice is listed");

    GrowingArray<ColorEntry> entries;
    for (char const* line : {"0 0 0", "255 255 255", "255 0 0", "0 255 0", "0 0 255"}) {
        String text(line);
        ColorEntry entry;
        entry.parseFromString(text, RGB);
        entries.add(entry);
    }
    for (std::size_t i = before.devices.size() - 1; i < choices.devices.size(); ++i) {
        DeviceChoice const& device = choices.devices[i];
        require(choices.device(device.id) == &device && choices.device(device.name) == &device,
                "a device is found by id and name");
        PaperChoice const& paper = choices.papers.back();
        require(choices.paper(paper.id) == &paper && choices.paper(paper.name) == &paper,
                "a paper is found by id and name");
        ChartLayout chart;
        MeasurementLayout instrument;
        instrument.init(device.values);
        chart.setMeasurementLayout(instrument);
        chart.setPageLayout(paper.sheet);
        chart.setPatchSize(device.values.minPatchSize);
        chart.setColorSpace(RGB);
        chart.setOriginalEntries(&entries);
        requireNoFault(faultIn(chart, chart.computeLayout(0, 0)));
    }
    return 0;
}
