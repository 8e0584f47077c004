// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "DisplayColor.h"
#include "PageTemplate.h"
#include "layout/ChartLayout.h"
#include "layout/OutputPage.h"
#include "lib/Geometry.h"

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// A sheet as a page shows it: what SheetDrawing draws, in the display's colours. Lengths in mm from the lower-left
/// corner. Colours can be replaced and marks added before it is put into a page.
struct ShownSheet
{
    struct Rectangle
    {
        RealRect place;
        DisplayColor color;
        IntPos cell; ///< of a patch; unset for all else
    };

    struct Text
    {
        RealPos place;
        std::string text;
        DisplayColor color;
    };

    /// A frame around some patches, with a disc that bears a short text.
    struct Mark
    {
        RealRect frame;
        RealPos disc;
        std::string id;    ///< that links lead to
        std::string text;  ///< one or two characters
        std::string title; ///< what the mark says, for those who do not see it
    };

    RealSize size;
    DisplayColor paper;
    std::vector<Rectangle> rectangles;
    std::vector<Text> texts;
    std::vector<Mark> marks;
    std::map<std::pair<int, int>, std::size_t> patchAt; ///< the patches' rectangles, by column and row of their cells

    /// The rectangle of a patch; null where the sheet does not show the cell.
    Rectangle const* findPatch(IntPos cell) const;
};

/// A sheet with patches and its number.
struct NumberedSheet
{
    OutputPage const* page = nullptr;
    int number = 0;
};

/// The sheets that have patches, from number 1 on. They carry the numbers that the written sheets have.
std::vector<NumberedSheet> numberedSheets(ChartLayout const& layout);

/// Draws a sheet.
ShownSheet pictureOf(NumberedSheet const& sheet, ChartLayout const& layout);

/// A patch's label: "A1".
std::string labelOf(ChartLayout const& layout, IntPos cell);

/// Fills the template sheet.html.
///
/// \param id           that is the drawing's alone in the page
/// \param title        its name
/// \param description  what it shows, for those who do not see it
void fillSheet(TemplateValues values, ShownSheet const& picture, ChartLayout const& layout, std::string const& id,
               std::string const& title, std::string const& description);
