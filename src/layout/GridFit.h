// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "MeasurementLayout.h"
#include "lib/Geometry.h"

#include <cstdint>

// How large a chart page's patch grid has to be. Grids are columns and rows of one chart page.

/// How many cells a number of pages has.
std::int64_t capacity(IntSize grid, int pages);

/// Whether a chart page has room for a patch, and 32 bits can count its cells.
bool hasRoom(IntSize grid);

/// The smallest grid that still holds n patches on the pages, for an instrument that scans. Columns go first; rows go
/// only from a single column. For an instrument that travels along x, only rows go.
IntSize shrunkForScan(IntSize grid, std::int64_t n, int pages, ScanDirection direction);

/// A small grid that still holds n patches on the pages, for spot measurement. The search starts at the largest grid.
/// Each step goes to the neighbouring grid that loses the least capacity, until no neighbour holds all patches.
IntSize shrunkForSpots(IntSize largest, std::int64_t n, int pages);
