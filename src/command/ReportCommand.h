// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Arguments.h"
#include "Console.h"

/// Makes a page about a chart's folder, or about the chart that a table would give.
///
/// \return the exit status
int runReport(ReportArguments const& arguments, Console const& console);
