// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "DataTable.h"

#include <cstddef>

// A file of the CGATS family, as many programs write it. Only the four words around format and data are needed:
//
//     CGATS.17
//     ORIGINATOR	"Test press"
//     NUMBER_OF_FIELDS 6
//     BEGIN_DATA_FORMAT
//     SAMPLE_ID	SAMPLE_NAME	CMYK_C	CMYK_M	CMYK_Y	CMYK_K
//     END_DATA_FORMAT
//     NUMBER_OF_SETS 2
//     BEGIN_DATA
//     1	A1	0	0	0	0
//     2	paper white	100.00	0	0	0
//     END_DATA
//
// The counts are compared with what is there and never relied on. A file can hold several tables. A table without a
// format of its own has that of the table before. A row is a line, so that a missing cell never shifts those behind it.

/// Whether a text has the line that begins the data or their format.
bool isCgats(std::string_view text);

/// Reads the tables of a file of the CGATS family.
///
/// \param file   its text is read; tables and faults are added
/// \param start  the line to begin at
/// \param end    offset to stop before
void readCgats(TableFile& file, TextLine start, std::size_t end);
