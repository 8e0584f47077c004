// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/Geometry.h"

#include <vector>

class ChartLayout;
class ColorEntry;

/// The entries of a part of a column of the chart's patch grid, null where the grid has none.
///
/// Neighbours in the grid come from anywhere in the input file, so their values lie anywhere in memory. The whole
/// column is prefetched at once. That takes little longer than loading one patch.
///
/// \param first  the position of the first entry
/// \param count  how many there are along y
std::vector<ColorEntry const*> columnOf(ChartLayout const& layout, IntPos first, int count);
