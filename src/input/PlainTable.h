// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "DataTable.h"
#include "lib/ColorSpace.h"

// The table that the window opens:
//
//     CMYK_C CMYK_M CMYK_Y CMYK_K
//     0      0      0      0
//     100    0      0      0
//
// The first word up to its first underscore names the colour space.

/// Whether a text is a plain table: its first line that is not empty begins with CMYK or RGB, is separated by blanks,
/// and does not name the columns in another order or among others.
bool isPlainTable(std::string_view text);

/// Whether a text is a table that the window opens though it names the columns in another order. The window takes them
/// in its own.
bool hasReorderedPlainHeader(std::string_view text);

/// Reads a plain table, whose text isPlainTable. Its fields have the names CMYK_C to CMYK_K or RGB_R to RGB_B.
void readPlainTable(TableFile& file);

/// The plain table's names of the columns of a colour space.
std::vector<std::string> plainColumnNames(ColorSpace space);
