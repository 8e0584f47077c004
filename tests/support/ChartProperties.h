// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartLayout.h"

#include <string>

/// What is wrong with a chart that has just been computed, whatever its settings; empty where all is as it must be:
///
/// - it has neither chart pages nor cells; or each input entry is on one cell and there are white ones on the others,
///   and the counts of cells, pages and sheets agree;
/// - no two rows or columns have the same label;
/// - where the paper holds its printable area, and that the labels, no cell is on two sheets and no sheet's patches
///   leave its paper;
/// - the result is the smallest delta E along the scan; 100 for an instrument that does not scan along y, and 0 for a
///   chart without pages.
///
/// \param result  what the computation returned
std::string faultIn(ChartLayout const& chart, float result);
