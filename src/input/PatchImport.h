// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PatchTable.h"
#include "TableMessages.h"

#include <string>

/// A table of patches, or why there is none.
struct TableImport
{
    PatchTable patches; // only without faults; its source, and what was found out about it, always
    TableMessages faults;
    TableMessages warnings;

    bool isGood() const { return faults.isEmpty(); }
};

/// Reads the patches of a table of any kind: plain, CGATS, separated values, target description,
/// CxF3.
///
/// \param bytes  what is in the file
TableImport importTable(std::string bytes, ImportOptions const& options = {});
