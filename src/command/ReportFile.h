// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartSettings.h"
#include "Console.h"
#include "TableChart.h"
#include "output/FileFault.h"
#include "report/ChartReport.h"
#include "report/ReportPage.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// What a report says about a chart from a table. The chart must outlive it.
ReportSubject subjectOf(TableChart const& chart, ChartSettings const& settings, std::vector<std::string> const& notes);

/// Whether there is a page. Why there is none is told.
bool isMade(PageText const& page, Console const& console);

/// Writes a page, and replaces what is at the path.
std::optional<FileFault> writePage(std::string const& page, std::filesystem::path const& path);
