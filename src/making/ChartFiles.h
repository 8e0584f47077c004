// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "layout/ChartLayout.h"
#include "lib/OvString.h"
#include "output/SheetFiles.h"

#include <optional>
#include <vector>

/// Permission bits of a chart's folder.
inline constexpr unsigned chartFolderPermissions = 0755;

/// The folder that a chart's files go to: named after the chart, in a folder that exists. No ending slash.
String chartFolder(String const& parent, String const& chartName);

/// The file name of a chart's target description: the name of its folder with the suffix ".xml".
String targetDescriptionName(String const& chartFolder);

/// Writes a chart's target description and sheets into a folder that exists, and replaces what is there.
///
/// \param descriptionName  the target description's file name
/// \param before           called before each sheet; false leaves out the rest
/// \return the first fault
std::optional<FileFault> writeChartFiles(ChartLayout const& chart, String const& folder, String const& descriptionName,
                                         std::vector<ImageKind const*> const& kinds, BeforeSheet const& before = {},
                                         SheetOptions const& options = {});
