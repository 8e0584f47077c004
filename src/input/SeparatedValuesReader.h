// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "DataTable.h"
#include "lib/ColorSpace.h"

// Values with a header line, as spreadsheets export them, separated by tabs, semicolons, commas or blanks:
//
//     ID;Name;Cyan;Magenta;Yellow;Black
//     1;"White; paper";0;0;0;0
//     2;"Say ""red""";0;99,6;100;0
//
// Lines above the header are left out. A quoted cell can hold separators and line breaks.

/// Reads the one table of a file of separated values.
///
/// \param file   its text is read; a table or a fault is added
/// \param space  says what the columns of a table without a header line are; undefined refuses such a table
void readSeparatedValues(TableFile& file, ColorSpace space);
