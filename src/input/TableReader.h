// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "DataTable.h"
#include "lib/ColorSpace.h"

/// Reads the tables of a file, whatever kind it is of, without interpreting them.
///
/// \param bytes  what is in the file
/// \param space  what separated values without a header line are; undefined refuses them
/// \return tables, or at least one fault
TableFile readTables(std::string bytes, ColorSpace space = undefined);
