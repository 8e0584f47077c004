// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "color/Lab.h"
#include "lib/Geometry.h"

#include <vector>

/// Patches to be ordered. The instrument scans each column of the grid from paper to paper.
struct OrderTask
{
    IntSize grid;                ///< columns and rows
    Lab paper;                   ///< the colour before the first and after the last patch of a column
    std::vector<Lab> colors;     ///< the patches in their first order on the grid, row after row
    std::vector<bool> takesPart; ///< whether the search compares a patch with its neighbours; one for each patch
};
