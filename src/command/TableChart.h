// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Arguments.h"
#include "ChartSettings.h"
#include "Console.h"
#include "input/InputFile.h"
#include "input/PatchTable.h"
#include "layout/ChartLayout.h"
#include "making/ChartMaking.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// A plain table's text, and what is said about its reading.
struct PlainTable
{
    std::string text;
    std::vector<std::string> notes;
};

/// Reads the table that the arguments name. Its faults and warnings are told.
std::optional<PlainTable> readPlainTable(ChartArguments const& arguments, ImportOptions const& options,
                                         Console const& console);

/// A text as the core's string, and back.
String stringOf(std::string const& text);
std::string textOf(String const& string);

/// A chart that is computed from a table. It owns the patches.
class TableChart
{
public:
    TableChart() = default;
    TableChart(TableChart const&) = delete;
    TableChart& operator=(TableChart const&) = delete;

    /// Computes the chart. Why there is none, and what is doubtful about it, is told.
    ///
    /// \param name  of the table, for messages
    /// \return whether there is a chart
    bool make(ChartSettings const& settings, PlainTable const& table, std::string const& name, Console const& console);

    ChartLayout const& layout() const { return chart; }
    MadeChart const& made() const { return result; }
    std::size_t countPatches() { return input.getEntries()->getCount(); }

private:
    void setUp(ChartSettings const& settings, Progress& progress);
    std::string noRoomText(ChartSettings const& settings) const;

    InputFile input;
    ChartLayout chart;
    MadeChart result;
};
