// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "LabColor.h"
#include "input/DataTable.h"
#include "lib/ColorSpace.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// A row of a measurement.
struct MeasuredRow
{
    std::string place; // SAMPLE_LOC; empty without one
    std::string name;  // SAMPLE_NAME
    std::string id;    // SAMPLE_ID
    std::optional<LabColor> lab;
    std::string fault;              // why there is no colour; empty for a reading that is just missing
    std::array<double, 4> device{}; // as written
    std::uint32_t line = 0;
};

/// A file that an instrument's software wrote.
struct Measurement
{
    std::string path; // for messages
    TableFile source;
    std::size_t tableIndex = 0;
    std::vector<MeasuredRow> rows;      // one for each row of the table
    ColorSpace deviceSpace = undefined; // undefined without device values
    std::string kind;                   // "CIELAB", "XYZ", "spectra of 36 bands"
    TableMessages faults;               // why it cannot be read
    TableMessages warnings;

    DataTable const& table() const { return source.tables[tableIndex]; }
};

/// Reads a measurement: CGATS or a CSV, with CIELAB, XYZ or spectra. A value that is no number is no fault of the file:
/// its row has no colour, and says why.
///
/// \param bytes  what is in the file
Measurement readMeasurement(std::string bytes, std::string path);
