// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "color/ColorEntry.h"
#include "lib/ColorSpace.h"
#include "lib/OvArray.h"
#include "lib/OvString.h"

// A table of device values, one patch a line, separated by white space:
//
//     CMYK_C CMYK_M CMYK_Y CMYK_K
//     0      0      0      0
//     100    0      0      0
//     40.5   30     30     10
//
// The first column's name up to its first underscore names the colour space: CMYK (percent) or RGB (0 to 255).

/// Reads the patches of a chart. Owns the entries that a chart layout points into.
class InputFile
{
public:
    /// Reads a file and forgets the last one. The entries are shuffled, in the same way for every file. A line with the
    /// wrong number of values is dropped. The other lines are kept.
    ///
    /// \return whether the colour space was recognised and every line was good
    bool init(String path);

    /// The same for the text of a file.
    bool initFromText(String text);

    /// Whether a colour space was recognised, even if a line was dropped.
    bool isValid() const { return colorSpace != undefined; }

    ColorSpace getColorSpace() const { return colorSpace; }

    /// The patches; owned by this object and freed by the next init.
    GrowingArray<ColorEntry>* getEntries() { return &entries; }

private:
    void takeName(String& header);

    GrowingArray<String> headerNames;
    GrowingArray<ColorEntry> entries;
    ColorSpace colorSpace = undefined;
};
