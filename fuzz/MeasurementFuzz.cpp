// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any bytes as a measurement of a small chart: read, paired, checked and repaired.

#include "ChartCheck.h"
#include "Fuzzing.h"
#include "ReadingOrder.h"
#include "RepairedMeasurement.h"
#include "support/CheckedChart.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static ChartReference const chart = checkedChart({2, 3, 6});
    std::vector<Measurement> files;
    files.push_back(readMeasurement({reinterpret_cast<char const*>(data), size}, "m.txt"));
    if (!files[0].faults.isEmpty())
        return 0;
    Pairing const pairing = pairMeasurements(chart, files);
    if (!pairing.fault.empty())
        return 0;
    PairedMeasurement const& measurement = pairing.measurements.at(0);
    MeasurementCheck const check = checkMeasurement(chart, measurement, candidateOrders(chart));
    RepairedMeasurement const repaired = repairMeasurement(chart, files, measurement, check, {});
    // What is written can be read again, unless it has no rows.
    Measurement const again = readMeasurement(repaired.text, "r.txt");
    std::size_t rows = 0;
    for (std::size_t const place : check.places)
        rows += place != Assignment::nothing && measurement.rows[place].file != RowPlace::none ? 1U : 0U;
    require(rows == 0 || again.rows.size() == rows, "what is repaired can be read");
    return 0;
}
