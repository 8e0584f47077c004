// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Geometry.h"

#include <filesystem>
#include <string>
#include <vector>

/// The drawing of an EPS or PDF sheet, read back from its operators in their order. Lengths in mm.
struct DrawnSheet
{
    /// The operands of setcmykcolor (four) or setrgbcolor (three).
    using Colour = std::vector<double>;

    struct Rectangle
    {
        RealRect rect;
        Colour colour;
    };

    struct Text
    {
        RealPos position;
        std::string text;
        Colour colour;
        double height = 6;
    };

    RealSize page; ///< points
    std::vector<Rectangle> rectangles;
    std::vector<Text> texts;

    // If there is none, these throw and the test fails.
    Rectangle const& lastRectangle() const { return rectangles.at(rectangles.size() - 1); }
    Text const& lastText() const { return texts.at(texts.size() - 1); }
};

/// Reads a sheet's EPS file. A line that no sheet should have fails the test.
DrawnSheet readSheet(std::filesystem::path const& file);
