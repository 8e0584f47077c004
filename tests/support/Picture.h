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

    /// The channels of a pixel; empty outside the picture.
    Pixel at(int x, int y) const;

    /// The pixel at a position, mm from the lower-left corner.
    Pixel at(RealPos position) const;
};

/// Reads a TIFF file of 8 bits a channel. Gives a picture without pixels if that fails.
Picture readTiff(std::filesystem::path const& file);

/// Renders an EPS file with Ghostscript. The page and the picture share their lower-left corner.
///
/// \param colorSpace  of the picture: RGB, or CMYK for the separations as the file asks for them
/// \param pixels      the picture's size
/// \return a picture without pixels if Ghostscript reports a fault
Picture renderEps(std::filesystem::path const& file, ColorSpace colorSpace, IntSize pixels);

/// The same for a page of a PDF document, counted from 1.
Picture renderPdf(std::filesystem::path const& file, int page, ColorSpace colorSpace, IntSize pixels);

/// A page's size in whole pixels, from mm.
IntSize pixelsOf(RealSize page);
