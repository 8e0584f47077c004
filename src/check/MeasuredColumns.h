// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "LabColor.h"
#include "input/DataTable.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// What the measured values of a table are.
enum class MeasuredKind { none, lab, xyz, spectrum };

/// A column of a spectrum. The wavelength stands in the column's name, or in the column before it.
struct SpectralColumn
{
    std::size_t column = 0;
    double wavelength = 0; // nm; 0 where it stands in a column
    std::size_t wavelengthColumn = 0;
};

/// The columns of a table that hold measured values. CIELAB is preferred to XYZ, and XYZ to a spectrum.
///
///     LAB_L LAB_A LAB_B        XYZ_X XYZ_Y XYZ_Z
///     SPECTRAL_NM380 SPECTRAL_NM390 ... also SPECTRAL_380, SPEC_380, nm380, NM_380, R_380, 380nm
///     SPECTRAL_NM SPECTRAL_DEC SPECTRAL_NM SPECTRAL_DEC ... also SPECTRAL_PCT
///
/// Case, blanks and underscores do not count.
struct MeasuredColumns
{
    explicit MeasuredColumns(DataTable const& table);

    MeasuredKind kind = MeasuredKind::none;
    std::array<std::size_t, 3> columns{}; // of CIELAB or XYZ
    std::vector<SpectralColumn> bands;    // in the order of their wavelengths, if the names tell those

    /// What the largest value of a spectrum stands for where the table says so: 1 or 100; 0 where it does not.
    double statedScale = 0;
};
