// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Choices.h"

#include <optional>
#include <string>

// Devices and papers of one's own. Lengths are in mm.
//
//     [[device]]
//     name = "Lab Table"
//     scan = "columns"           # "none", "rows" or "columns"
//     reach = [460, 320]         # width and height; with a scan along columns a width of 0 is any width
//     corner = [2, 83]           # where the reach starts on the table; by default [0, 0]
//     smallest-patch = [6, 8]
//     space-above = 12.5         # what stays free above and below the patches; by default 0
//     space-below = 6.5
//     gap = 1                    # between patches along the scan, where they need it; by default 1, for spots 0
//     within-reach = true        # whether a sheet has to lie within the reach; by default false
//
//     [[paper]]
//     name = "SRA3 Portrait"
//     size = [320, 450]
//     margins = [5, 5, 15, 5]    # top, right, bottom, left; by default 0

/// What is wrong with a presets file: "FILE:LINE: text", or "FILE: text" for a file that cannot be read.
struct PresetsFault
{
    std::string text;
};

/// Adds the devices and papers of a presets file to the choices.
///
/// \param text  what is in the file
/// \param path  its path, for messages and for where the choices come from
/// \return the first fault; the choices are as before then
std::optional<PresetsFault> addPresets(Choices& choices, std::string const& text, std::string const& path);

/// The same for a file.
///
/// \param path  empty: the file in the user's configuration folder, if there is one
std::optional<PresetsFault> addPresetsFile(Choices& choices, std::string const& path);

/// The presets file in the user's configuration folder; empty where no such folder is known.
std::string userPresetsPath();
