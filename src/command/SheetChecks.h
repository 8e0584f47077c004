// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ChartSettings.h"
#include "Console.h"
#include "layout/ChartLayout.h"

/// Whether the files of each kind can hold the chart's sheets. Why not is told.
bool canHoldSheets(ChartLayout const& chart, ChartSettings const& settings, Console const& console);

/// Warns of marks of 100 mm that are wished for and have no room, with the numbers of the sheets.
void warnOfMissingMarks(ChartLayout const& chart, SheetOptions const& options, Console const& console);
