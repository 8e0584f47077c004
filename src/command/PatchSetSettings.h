// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Arguments.h"
#include "ChartSettings.h"
#include "patchset/PatchSet.h"

#include <optional>
#include <string>
#include <variant>

/// What a table is made with.
struct PatchSetSettings
{
    ColorSpace space = undefined;
    PatchSetWish wish; ///< its number of patches is 0 where sheets are to be filled
    std::string stepName;

    /// The sheets to fill; 0 for a table of a given number of patches.
    int sheets = 0;
    ChartSettings chart; ///< only for sheets to fill
};

/// Reads the settings from the arguments' texts.
std::variant<PatchSetSettings, WrongUse> patchSetSettings(PatchSetArguments const& arguments, Choices const& choices);
