// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Arguments.h"
#include "Console.h"

/// Makes a chart: reads the table, computes the chart, writes its folder, and tells what came of it.
///
/// \return the exit status: 0 made, 1 not made, 2 wrong use
int runChart(ChartArguments const& arguments, Console const& console);
