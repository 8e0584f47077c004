// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartLayout.h"
#include "InputFile.h"

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

/// A chart described by a folder of tests/data/charts; see the README there. It owns the chart's entries.
class ChartCase
{
public:
    /// Reads and computes the chart. A fault in the folder fails the test.
    explicit ChartCase(std::filesystem::path const& folder);
    ChartCase(ChartCase const&) = delete;
    ChartCase& operator=(ChartCase const&) = delete;

    ChartLayout layout;

private:
    bool apply(std::string const& key, std::string const& value);

    InputFile input;
    float gap = 0;
    int seed = 0;
};

/// The folders that describe charts.
std::vector<std::filesystem::path> chartCases();

/// A test's name for a folder: its letters and digits.
std::string caseName(std::filesystem::path const& folder);

/// All bytes of a file; empty if there is no such file.
std::string bytesOf(std::filesystem::path const& file);

/// The names of the files in a folder, sorted.
std::vector<std::string> filesIn(std::filesystem::path const& folder);
