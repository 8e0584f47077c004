// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "DataTable.h"
#include "ScaleRules.h"
#include "lib/ColorSpace.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What the user says about a table.
struct ImportOptions
{
    DeviceScale scale = DeviceScale::unknown; // unknown: as the rules decide
    ColorSpace space = undefined;             // undefined: the one that the columns have
    std::uint32_t tableNumber = 0;            // counts from 1; 0: the first with device values
    bool allowsCommaInPlainTable = false;     // the window takes 12,5 in a plain table for 12
};

/// How a patch is called in the table it comes from, letter by letter. What has no column is empty.
struct PatchLabel
{
    std::string id;       // SAMPLE_ID
    std::string name;     // SAMPLE_NAME
    std::string location; // SAMPLE_LOC
};

/// The patches of a table, in its order and in the values of the plain table: CMYK in percent, RGB from 0 to 255.
class PatchTable
{
public:
    ColorSpace colorSpace = undefined;
    ScaleDecision scale;
    bool isRescaled = false;        // the values were on another scale
    std::size_t fillers = 0;        // white patches of a target description that were left out
    std::size_t tableIndex = 0;     // which of the file's tables it is, from 0
    std::vector<std::string> notes; // what was ignored or chosen

    /// The plain table's lines without its header: "0 55.5 0 100\n".
    std::string valueLines;

    std::size_t count() const { return lineStarts.size(); }

    /// The values of a patch as the plain table has them, with blanks between.
    std::string_view valuesOf(std::size_t patch) const;

    /// The line of the file that a patch comes from, from 1.
    std::uint32_t lineOf(std::size_t patch) const { return table().rows[patch].number; }

    PatchLabel labelOf(std::size_t patch) const;

    /// The file that the patches come from.
    TableFile const& source() const { return file; }
    DataTable const& table() const { return file.tables[tableIndex]; }

private:
    friend class PatchImport;

    TableFile file;
    std::optional<std::size_t> idColumn;
    std::optional<std::size_t> nameColumn;
    std::optional<std::size_t> locationColumn;
    std::vector<std::uint32_t> lineStarts; // in valueLines
};

/// The plain table that the window opens.
std::string plainTableOf(PatchTable const& patches);

/// A CSV of three columns, one row a patch: the line of the patch in the plain table, its id, and its name or place.
std::string idTableOf(PatchTable const& patches);
