// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ColorSpace.h"
#include "Geometry.h"
#include "OvRaster.h"
#include "OvString.h"
#include "OvWholeFile.h"

#include <cstdint>
#include <initializer_list>

/// libtiff's handle.
struct tiff;

/// A page drawn into memory and written as an uncompressed TIFF image: 8 bits a channel, one strip. It offers the
/// drawing operations of EPSFile, so that one function can draw into either; those that only make sense for lines do
/// nothing.
///
/// Order of use: construct, `setColorSpace`, `setResolution`, `startPage`, draw, `endPage`, `Close` or destroy.
/// Resolution and colour space hold from `startPage` on and cannot be changed after it. Drawing without a page does
/// nothing.
///
/// Positions are mm, x to the right and y upwards from the page's lower-left corner; each is taken down to the pixel
/// that it lies in.
///
/// A file that cannot be created is not reported: nothing is written then. A page that is too large and a file that
/// cannot be written to its end are reported, and the file is removed; so is one whose page has no pixels or was
/// started and not ended.
class TIFFFile
{
public:
    /// Opens the file `name`, replacing it, for a page of `sizeMm`, and reads the glyphs from "ascii.raw" in the
    /// resources folder. Glyphs that are not there draw nothing.
    TIFFFile(String name, RealSize sizeMm);
    /// Closes the file.
    ~TIFFFile() { Close(); }
    TIFFFile(TIFFFile const&) = delete;
    TIFFFile& operator=(TIFFFile const&) = delete;

    /// Sets the dots per inch, and by them the page's size in whole pixels.
    void setResolution(double dotsPerInch);
    /// CMYK gives four channels, RGB three, anything else a page without pixels.
    void setColorSpace(ColorSpace cs);

    /// Starts the page, with all channels at 0. The label is not used.
    void startPage(char const* label);
    /// Writes the page.
    void endPage();

    /// To be called after `endPage`: writes the file to its end, and waits until the system has put it on its disk.
    ///
    /// \return whether it is there; false without an open file, or while a page is started and not ended
    bool sync();

    /// Finishes and closes the file. Nothing can be drawn later.
    void Close();

    /// Whether the file could not be created, or cannot hold all that was drawn. The answer is final after `Close`; a
    /// file that has failed is removed by then.
    bool hasFailed() const { return file.hasFailed(); }

    /// Sets the colour of what is drawn next from channels of 0 to 1; values outside are held to that range.
    void setCMYK(double c, double m, double y, double k);
    void setCMYK(double const* values);
    void setRGB(double r, double g, double b);
    void setRGB(double const* values);
    /// Sets all channels alike. A value outside 0 to 1 wraps around: its byte is taken modulo 256.
    void setGray(double gray);

    /// Fills the pixels from the one that holds the lower-left corner up to, and without, the one that holds the upper
    /// right corner. Keep rectangles on the page: one that leaves it at the left starts in column 0 with all its width;
    /// what leaves it at the right goes on in the row below; rows above and below it fall on its first and last row.
    void drawRectangle(RealRect r);

    /// Draws `text` with cells of 64 x 64 pixels, each 40 pixels right of the one before, starting 24 pixels below `p`.
    /// Ink that falls outside the page falls on its nearest pixel.
    void drawText(RealPos p, String text);

    void writeStyle(char const*) {}
    void setScale(double) {}
    void setLineWidth(double) {}
    void drawLine(int, int, int, int) {}
    void drawRectangleOutline(RealRect) {}

    /// The column and row, from the lower-left corner, of the pixel that `p` lies in, on the page or not.
    IntPos getSafeIntCoord(RealPos p) const;

    /// The first byte of the pixel in column x and row y from the bottom, or of the pixel nearest to it on the page.
    /// Valid until endPage; without a page, four bytes that belong to none.
    unsigned char* getBufPtr(IntPos p);

private:
    void drawGlyph(unsigned char character, std::int64_t left, std::int64_t bottom);
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
    Array<unsigned char> glyphs;
};
