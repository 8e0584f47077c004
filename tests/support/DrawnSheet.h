// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Geometry.h"

#include <filesystem>
#include <string>
#include <vector>

/// What an EPS sheet draws, read back from its operators in their order; lengths in mm.
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
    };

    RealSize page; ///< points
    std::vector<Rectangle> rectangles;
    std::vector<Text> texts;

    // Where there is none, these throw, which fails the test.
    Rectangle const& lastRectangle() const { return rectangles.at(rectangles.size() - 1); }
    Text const& lastText() const { return texts.at(texts.size() - 1); }
};

/// Reads a sheet's EPS file; a line that no sheet should have fails the test that asks.
DrawnSheet readSheet(std::filesystem::path const& file);
