// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ColorSpace.h"
#include "Geometry.h"

#include <filesystem>
#include <vector>

/// The raw pixels of an image of 300 dots per inch; columns count from the left, rows from the bottom.
struct Picture
{
    using Pixel = std::vector<int>;

    int width = 0;
    int height = 0;
    int channels = 0;
    std::vector<unsigned char> bytes; ///< rows from the top down

    /// The channels of a pixel; none outside the picture.
    Pixel at(int x, int y) const;

    /// The pixel that a position, mm from the lower-left corner, lies in.
    Pixel at(RealPos position) const;
};

/// Reads a TIFF file of 8 bits a channel; a picture without pixels where that fails.
Picture readTiff(std::filesystem::path const& file);

/// Renders an EPS file with Ghostscript, the page's lower-left corner at the picture's.
///
/// \param colorSpace  of the picture: RGB, or CMYK for the separations as the file asks for them
/// \param pixels      the picture's size
/// \return a picture without pixels where Ghostscript complains
Picture renderEps(std::filesystem::path const& file, ColorSpace colorSpace, IntSize pixels);

/// The page of so many mm in whole pixels.
IntSize pixelsOf(RealSize page);
