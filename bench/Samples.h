// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartLayout.h"
#include "ColorSpace.h"
#include "InputFile.h"
#include "support/TemporaryFolder.h"

#include <string>

/// Writes an input file of `count` patches of whole numbers, each channel drawn evenly from its whole range. The same
/// colour space and count give the same table on every machine.
///
/// \return its path
String writeRandomTable(TemporaryFolder const& folder, ColorSpace colorSpace, int count);

/// The path of the example that is a real chart, of 1,617 CMYK patches.
String examplePath();

/// The chart of a table for the long ruler on A3 Portrait, with patches of 7 x 8 mm and no gaps, laid out.
ChartLayout rulerChart(InputFile& table);

/// A number of patches and their colour space as the benchmarks' table shows them, such as "5,000 RGB".
std::string sizeText(InputFile& table);
