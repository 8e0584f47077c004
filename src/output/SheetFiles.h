// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "FileFault.h"
#include "SheetDrawing.h"
#include "lib/OvArray.h"
#include "lib/OvString.h"

#include <functional>
#include <optional>

/// A kind of sheet image: the name that people choose it by, the suffix of its files, and the function that writes one
/// sheet.
struct ImageKind
{
    char const* name;
    char const* suffix;

    /// Writes the sheet with this number to a path, and replaces what is there.
    std::optional<FileFault> (*writeSheet)(String const& path, SheetFrame const& frame, ChartLayout const& layout,
                                           int number);
};

/// Encapsulated PostScript.
extern ImageKind const epsImages;

/// Uncompressed TIFF, 300 dots per inch.
extern ImageKind const tiffImages;

/// All kinds, in the order on offer.
inline constexpr ImageKind const* imageKinds[] = {&epsImages, &tiffImages};

/// A sheet's file name, with its number in at least three digits: "Name_001.eps".
String sheetFileName(ImageKind const& kind, String const& name, int number);

/// Called before each sheet; false leaves out this sheet and all that follow.
using BeforeSheet = std::function<bool()>;

/// Writes one image for each sheet with patches, numbered downwards from their count.
///
/// \param folder  put directly before the chart's name: ends with its separator
/// \return the first fault
std::optional<FileFault> writeSheets(ImageKind const& kind, ChartLayout const& layout, String const& folder,
                                     BeforeSheet const& before = {});
