// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any bytes as the target description of a chart that is checked.

#include "ChartReference.h"
#include "Fuzzing.h"

#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    ReferenceReading const reading = readReference({reinterpret_cast<char const*>(data), size});
    ChartReference const& chart = reading.chart;
    require(reading.fault.empty() == !chart.patches.empty(), "a chart has patches");
    std::size_t patches = 0;
    for (ChartStrip const& strip : chart.strips) {
        require(strip.first == patches && strip.count > 0 && strip.sheet < chart.sheetCount,
                "strips follow each other");
        patches += strip.count;
    }
    require(patches == chart.patches.size(), "every patch is in a strip");
    for (std::size_t i = 0; i < patches; ++i)
        require(chart.findLabel(chart.patches[i].label) == i, "labels tell the patches");
    return 0;
}
