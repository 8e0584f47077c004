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

/// The creation time in a target description; empty if there is none.
std::string creationTimeIn(std::string const& target);

/// A target description with "{now}" in place of that time.
std::string withoutCreationTime(std::string const& target);

/// The lines of a text, without their line feeds. The text after the last line feed is a line too.
std::vector<std::string> linesOf(std::string const& text);
