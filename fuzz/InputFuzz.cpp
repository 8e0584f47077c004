// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any bytes as an input file, read and made into a chart of each instrument as the window does it.

#include "ChartMaking.h"
#include "Fuzzing.h"
#include "InputFile.h"
#include "support/ChartProperties.h"
#include "support/TemporaryFolder.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    prepareColors();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static TemporaryFolder const folder;
    String const path = folder.write("input", {reinterpret_cast<char const*>(data), size});
    InputFile input;
    bool const isComplete = input.init(path);
    require(input.isValid() || !isComplete, "a complete input has a colour space");
    require(input.isValid() || input.getEntries()->getCount() == 0, "entries have a colour space");
    if (!isComplete)
        return 0;

    ChartLayout chart;
    chart.setPatchSize({8, 8});
    chart.setColorSpace(input.getColorSpace());
    chart.setOriginalEntries(input.getEntries());
    for (MeasurementLayoutPreset const preset : {tableSpot, tableScan, longRuler}) {
        MeasurementLayout instrument;
        instrument.initWithPreset(preset);
        chart.setMeasurementLayout(instrument);
        MadeChart const made = makeChart(chart);
        requireNoFault(faultIn(chart, made.smallestDeltaE));
    }
    return 0;
}
