// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PatchSetSettings.h"
#include "patchset/FillDistance.h"

#include <string>

/// What a table was made with and what came of it.
struct PatchSetSummary
{
    PatchSetSettings settings;
    std::string profile; ///< path; empty for the program's own
    std::string output;  ///< path; empty for standard output
    std::array<std::size_t, patchKindCount> counts{};
    FillDistances fill;
    float gap = 0; ///< of the chart whose sheets the table fills, mm
};

/// The summary for people, in lines.
std::string textOf(PatchSetSummary const& summary);

/// The summary as one JSON object, in valid UTF-8.
std::string jsonOf(PatchSetSummary const& summary);
