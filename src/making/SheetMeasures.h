// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/Geometry.h"

#include <optional>
#include <string_view>

// A sheet's EPS file begins with the sheet's size in points. The bar under the patches is its first path, and the
// crosses at the corners are the next eight; see OvEPSFile.h. Lines end with a carriage return, lengths are in mm.
//
//     %%BoundingBox: 0 0 595.275591 841.889764
//     ...
//     newpath 16.0 9.0 moveto 37.0 9.0 lineto 37.0 9.5 lineto 16.0 9.5 lineto 16.0 9.0 lineto fill

/// A written sheet's size and the block of its patches, mm.
struct SheetMeasures
{
    RealSize size;
    RealRect block;
};

/// Reads the measures of a sheet.
///
/// \param eps  the sheet's EPS file, at least its start with the crosses
/// \return nothing for any other text
std::optional<SheetMeasures> sheetMeasures(std::string_view eps);
