// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "layout/MeasurementLayout.h"
#include "layout/PageLayout.h"
#include "lib/ColorSpace.h"

#include <cstddef>

/// What a chart is laid out with. Lengths in mm.
struct FitSettings
{
    MeasurementLayout instrument;
    PageLayout sheet;
    RealSize patch;
    ColorSpace colorSpace = undefined;
};

/// How many patches fill some sheets.
struct SheetFit
{
    std::size_t patches = 0; ///< the most that fit; 0 where no patch fits
    int sheets = 0;          ///< that they need; fewer than wished where charts have no such number of sheets
};

/// Finds the largest number of patches whose chart has at most so many sheets: one patch more needs another sheet.
///
/// \param gap          between patches along the scan, mm
/// \param mostPatches  where the search ends
SheetFit fitSheets(FitSettings const& settings, int sheets, float gap, std::size_t mostPatches);
