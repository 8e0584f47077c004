// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "DataTable.h"
#include "lib/ColorSpace.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The columns of a table that hold the device values of one colour space, in the order C M Y K or R G B.
struct DeviceColumns
{
    std::array<std::size_t, 4> columns{}; // indices of fields; three of them for RGB
    bool isUnnamed = false;               // 4CLR_1 to 4CLR_4, which name no inks
};

/// A part of a device colour space: some of its columns are missing.
struct IncompleteSpace
{
    std::string found;   // a column that is there
    std::string missing; // the first that is not
    std::size_t column = 0;
};

/// A device colour space that makes no chart.
struct ForeignSpace
{
    std::string name; // "CMY", "7 inks (7CLR)"
    std::size_t column = 0;
};

/// A column's name as names are compared: in capitals, without blanks and underscores, at most 40 characters of it.
std::string comparableName(std::string_view name);

/// What the columns of a table are, told by their whole names. Case, blanks and underscores do not count.
struct ColumnNames
{
    explicit ColumnNames(std::vector<Field> const& fields);

    std::optional<DeviceColumns> cmyk; // CMYK_C..., Cyan..., C M Y K, 4CLR_1...
    std::optional<DeviceColumns> rgb;  // RGB_R..., Red..., R G B
    std::vector<ForeignSpace> foreignSpaces;
    std::vector<IncompleteSpace> incompleteSpaces;
    std::vector<std::string> repeated; // device columns that stand there more than once
    std::size_t repeatedColumn = 0;
    std::optional<std::size_t> id;       // SAMPLE_ID, SampleID, SAMPLE, SAMPLE_NO, ID, INDEX
    std::optional<std::size_t> name;     // SAMPLE_NAME, NAME, STRING
    std::optional<std::size_t> location; // SAMPLE_LOC
    std::optional<std::size_t> control;  // CONTROL
    bool hasMeasurements = false;        // XYZ, Lab, spectra, densities

    /// Whether there are device values of any kind.
    bool hasDeviceValues() const { return cmyk || rgb || !foreignSpaces.empty(); }

    /// Whether any column has a name that is known, so that the names are those of a table of colours.
    bool isColorTable() const { return hasDeviceValues() || !incompleteSpaces.empty() || hasMeasurements; }
};
