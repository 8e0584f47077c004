// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ColumnNames.h"
#include "DataTable.h"
#include "PatchTable.h"

#include <optional>
#include <string>
#include <vector>

/// The table of a file that has the patches, and its columns.
struct TableChoice
{
    std::size_t index = 0; // of the table
    ColorSpace space = undefined;
    DeviceColumns device;
    ColumnNames names{{}};
};

/// What is said about a choice.
struct ChoiceMessages
{
    TableMessages faults;
    TableMessages warnings;
    std::vector<std::string> notes;
};

/// Chooses the table and its columns of device values: the table that the options name, else the first that has some.
///
/// \return nothing, and a fault, where no table can be chosen or its columns make no chart
std::optional<TableChoice> chooseTable(TableFile const& file, ImportOptions const& options, ChoiceMessages& messages);
