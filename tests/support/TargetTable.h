// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// A data row of a target description file.
struct TargetPatch
{
    int sampleId = 0;
    std::string location;
    std::string control;
    std::vector<std::string> values;
};

/// The rows between BEGIN_DATA and END_DATA, in their order.
std::vector<TargetPatch> readTargetTable(std::filesystem::path const& file);

/// The time that a target description says it was created at; empty where it says none.
std::string creationTimeIn(std::string const& target);

/// A target description with "{now}" for that time.
std::string withoutCreationTime(std::string const& target);

/// The lines of a text, each without its line feed; what follows the last line feed is a line too.
std::vector<std::string> linesOf(std::string const& text);
