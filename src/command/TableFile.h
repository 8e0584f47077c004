// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Arguments.h"
#include "Console.h"
#include "input/PatchTable.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

/// What is in a file, or why it cannot be read.
struct FileContents
{
    std::string bytes;
    std::string error; ///< empty for a file that was read
};

/// Reads a whole file, or standard input for "-". A file with more bytes than the limit is an error.
FileContents readFile(std::string const& path, std::size_t mostBytes);

/// Whether something is at a path, or cannot be looked at.
bool isThere(std::string const& path);

/// Writes a file whole or not at all. A fault is told.
///
/// \param replaces  whether a file that is there may be replaced
bool writeFile(std::string const& path, std::string const& text, bool replaces, Console const& console);

/// How messages name a table: its path, or "standard input".
std::string nameOfTable(std::string const& path);

/// Prints messages about a table, a line each: "TABLE:LINE:COLUMN: text".
void printFaults(Console const& console, std::string const& table, TableMessages const& faults);
void printWarnings(Console const& console, std::string const& table, TableMessages const& warnings);

/// The options of an import, from texts; or why they cannot be used.
std::variant<ImportOptions, WrongUse> importOptions(TableArguments const& arguments);

/// The patches of a table of any kind. Its faults and warnings are told.
///
/// \param table  its path, for the messages
/// \param bytes  what is in the file
/// \return nothing for a table with faults
std::optional<PatchTable> importPatches(Console const& console, std::string const& table, std::string bytes,
                                        ImportOptions const& options);

/// The same for the table that the arguments name.
std::optional<PatchTable> readTable(Console const& console, TableArguments const& arguments,
                                    ImportOptions const& options);

/// The largest table that is read, bytes.
inline constexpr std::size_t mostTableBytes = std::size_t{512} << 20;
