// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "FileFault.h"
#include "SheetDrawing.h"
#include "lib/OvArray.h"
#include "lib/OvString.h"
#include "lib/OvTIFFStripFile.h"

#include <functional>
#include <optional>
#include <vector>

/// What may differ from the window's sheets. The defaults give the window's sheets.
struct SheetOptions
{
    TIFFFormat tiff;
    bool hasScaleMark = false;
};

/// A sheet with patches, and its number from 1.
struct NumberedSheet
{
    OutputPage const* page;
    int number;
};

/// The chart's sheets with patches, numbered downwards from their count.
std::vector<NumberedSheet> sheetsOf(ChartLayout const& layout);

/// A sheet's frame, with the marks of 100 mm if the options ask for them.
SheetFrame frameOf(NumberedSheet const& sheet, ChartLayout const& layout, SheetOptions const& options);

/// Called before each sheet; false leaves out this sheet and all that follow. A document then is not written at all.
using BeforeSheet = std::function<bool()>;

/// A kind of sheet image: the name that people choose it by, the suffix of its files, and the function that writes all
/// sheets.
struct ImageKind
{
    char const* name;
    char const* suffix;
    bool isDocument; ///< one file has all sheets as its pages

    /// Writes the sheets, and replaces what is there. The folder is put directly before the chart's name.
    std::optional<FileFault> (*writeSheets)(ChartLayout const& layout, String const& folder,
                                            SheetOptions const& options, BeforeSheet const& before);

    /// Whether a file of this kind can hold a sheet.
    bool (*canHold)(SheetFrame const& frame, ColorSpace colorSpace, SheetOptions const& options);
};

/// Encapsulated PostScript.
extern ImageKind const epsImages;

/// TIFF, by default uncompressed and with 300 dots per inch.
extern ImageKind const tiffImages;

/// PDF, with the sheets as pages in the order of their numbers.
extern ImageKind const pdfImages;

/// All kinds, in the order on offer.
inline constexpr ImageKind const* imageKinds[] = {&epsImages, &tiffImages, &pdfImages};

/// A sheet's file name, with its number in at least three digits: "Name_001.eps". A document has none: "Name.pdf".
String sheetFileName(ImageKind const& kind, String const& name, int number);

/// Writes one image for each sheet with patches, or one document with all of them.
///
/// \param folder  put directly before the chart's name: ends with its separator
/// \return the first fault
std::optional<FileFault> writeSheets(ImageKind const& kind, ChartLayout const& layout, String const& folder,
                                     BeforeSheet const& before = {}, SheetOptions const& options = {});
