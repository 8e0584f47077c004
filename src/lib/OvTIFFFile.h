// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ColorSpace.h"
#include "Geometry.h"
#include "OvGlyphPictures.h"
#include "OvRaster.h"
#include "OvString.h"
#include "OvWholeFile.h"

#include <cstdint>
#include <initializer_list>

/// libtiff's handle.
struct tiff;

/// A page drawn into memory and written as an uncompressed TIFF image: 8 bits a channel, one strip. It has the same
/// drawing operations as EPSFile, so that one function can draw into either. The operations for lines do nothing.
///
/// Order of use: construct, `setColorSpace`, `setResolution`, `startPage`, draw, `endPage`, `Close` or destroy.
/// Resolution and colour space cannot be changed after `startPage`. Drawing without a page does nothing.
///
/// Positions are mm, x to the right and y upwards from the page's lower-left corner. Each is rounded down to the pixel
/// that it lies in.
///
/// A file that cannot be created is not reported, and nothing is written. A page that is too large, and a file that
/// cannot be written to its end, are reported, and the file is removed. The file is also removed if its page has no
/// pixels, or was started but not ended. `hasFailed` tells all of this.
class TIFFFile
{
public:
    /// Opens the file `name`, replacing it, for a page of `sizeMm`. Reads the glyphs from "ascii.raw" in the resources
    /// folder. Missing glyphs draw nothing.
    TIFFFile(String name, RealSize sizeMm);
    /// Closes the file.
    ~TIFFFile() { Close(); }
    TIFFFile(TIFFFile const&) = delete;
    TIFFFile& operator=(TIFFFile const&) = delete;

    /// Sets the dots per inch, and with them the page's size in whole pixels.
    void setResolution(double dotsPerInch);
    /// CMYK has four channels and RGB three. Anything else gives a page without pixels.
    void setColorSpace(ColorSpace cs);

    /// Starts the page, with all channels at 0. The label is not used.
    void startPage(char const* label);
    /// Writes the page.
    void endPage();

    /// Call it after `endPage`. Writes the file to its end, and waits until the system has put it on its disk.
    ///
    /// \return whether it is there; false without an open file, or between `startPage` and `endPage`
    bool sync();

    /// Finishes and closes the file. Later drawing does nothing.
    void Close();

    /// Whether the file could not be created, or cannot hold everything that was drawn. The answer is final after
    /// `Close`, which removes a failed file.
    bool hasFailed() const { return file.hasFailed(); }

    /// The system's error number of the first failed write; 0 without one.
    int getError() const { return file.getError(); }

    /// Sets the colour for the next drawings from channels of 0 to 1. Values outside are held at the limits.
    void setCMYK(double c, double m, double y, double k);
    void setCMYK(double const* values);
    void setRGB(double r, double g, double b);
    void setRGB(double const* values);
    /// Sets all channels to one value. A value outside 0 to 1 wraps around: its byte is taken modulo 256.
    void setGray(double gray);

    /// Fills the pixels from the one that holds the lower-left corner up to, but without, the one that holds the upper
    /// right corner. Rectangles should stay on the page. One that starts left of the page is drawn from column 0 with
    /// its full width. A part past the right edge continues in the row below. Rows above or below the page fall on its
    /// first or last row.
    void drawRectangle(RealRect r);

    /// Draws `text` with cells of 64 x 64 pixels, each 40 pixels right of the one before, starting 24 pixels below `p`.
    /// Ink outside the page is moved to the nearest pixel of the page.
    void drawText(RealPos p, String text);

    /// Sets the size of the next texts: 6 is the size that is described above.
    void setTextHeight(double typeSize) { textScale = typeSize / 6; }

    void writeStyle(char const*) {}
    void setScale(double) {}
    void setLineWidth(double) {}
    void drawLine(int, int, int, int) {}
    void drawRectangleOutline(RealRect) {}

    /// The column and row, from the lower-left corner, of the pixel that `p` lies in. The pixel may lie outside the
    /// page.
    IntPos getSafeIntCoord(RealPos p) const;

    /// The first byte of the pixel in column x and row y from the bottom, or of the nearest pixel of the page. Valid
    /// until endPage. Without a page, points to four spare bytes.
    unsigned char* getBufPtr(IntPos p);

private:
    void setBytes(std::initializer_list<double> values);
    void flush();
    void abandon();

    WholeFile file;
    tiff* handle;
    RealSize const pageSize;
    std::int32_t width = INT_NOPOS;
    std::int32_t height = INT_NOPOS;
    double resolution = 0;
    int channels = 0;
    bool isPageFixed = false;
    unsigned char color[4] = {};
    unsigned char spare[4] = {};
    Raster raster;
    GlyphPictures glyphs;
    double textScale = 1;
};
