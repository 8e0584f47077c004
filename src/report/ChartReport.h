// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ReportPage.h"
#include "ReportSubject.h"

/// The most cells and sheets that a page shows. A browser takes long for more.
inline constexpr int mostReportCells = 100'000;
inline constexpr int mostReportSheets = 2'000;

/// Makes the page about a chart that has something to output. A chart with more cells or sheets gets none.
PageText chartReport(ReportSubject const& subject);
