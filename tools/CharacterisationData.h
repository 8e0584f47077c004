// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <filesystem>
#include <vector>

/// C, M, Y, K in percent.
using Cmyk = std::array<double, 4>;

/// CIELAB for D50: L* from 0 to 100, a*, b*.
using Lab = std::array<double, 3>;

/// One printed and measured patch.
struct MeasuredPatch
{
    Cmyk device;
    Lab lab; ///< absolute: paper is darker than 100
};

/// Reads the patches of a CGATS file that has the fields CMYK_C to CMYK_K and LAB_L to LAB_B.
///
/// \return the patches in the file's order; none where the file cannot be read, lacks a field or has a line that is
///         not as long as its header says
std::vector<MeasuredPatch> readCharacterisationData(std::filesystem::path const& file);
