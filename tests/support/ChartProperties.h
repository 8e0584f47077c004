// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartLayout.h"

#include <string>

/// The faults of a chart that has just been computed, with any settings; empty if all of this holds:
///
/// - it has neither chart pages nor cells; or each input entry is on one cell, white entries are on the others, and the
///   counts of cells, pages and sheets agree;
/// - no two rows or columns have the same label;
/// - if the paper holds its printable area, and that area the labels: no cell is on two sheets, and no patch leaves its
///   sheet's paper;
/// - the result is the smallest delta E along the scan; 100 for an instrument that does not scan along y, and 0 for a
///   chart without pages.
///
/// \param result  what the computation returned
std::string faultIn(ChartLayout const& chart, float result);
