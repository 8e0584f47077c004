// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ColorSpace.h"
#include "Geometry.h"
#include "OvGlyphPictures.h"
#include "OvString.h"
#include "OvTIFFOutput.h"
#include "OvWholeFile.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

/// How a TIFF file's pixels are packed. LZW and Deflate store differences of neighbouring pixels.
enum class TIFFCompression { none, lzw, deflate };

/// How finely a TIFF file shows the page, and how it is packed.
struct TIFFFormat
{
    double resolution = 300; ///< dots per inch
    TIFFCompression compression = TIFFCompression::none;

    bool operator==(TIFFFormat const&) const = default;
};

/// A page written as a TIFF image in strips of at most 16 rows: 8 bits a channel. It has the drawing operations of
/// TIFFFile. It keeps what is drawn as a list, and paints one strip at a time: its memory does not grow with the page.
///
/// Positions are mm, x to the right and y upwards from the page's lower-left corner. At 300 dots per inch the pixels
/// are those of TIFFFile: each position is rounded down to the pixel that it lies in. At all other resolutions each
/// edge goes to the nearest edge between pixels. What lies outside the page is not drawn.
///
/// A file that cannot be created or written to its end, or whose pixels need more than the format can hold, is removed.
/// `hasFailed` tells so.
class TIFFStripFile
{
public:
    /// Opens the file `name`, replacing it, for a page of `sizeMm`. Reads the glyphs from "ascii.raw" in the resources
    /// folder. Missing glyphs draw nothing.
    ///
    /// \param colorSpace  CMYK or RGB; anything else gives no file
    TIFFStripFile(String name, RealSize sizeMm, ColorSpace colorSpace, TIFFFormat format);
    ~TIFFStripFile() { Close(); }
    TIFFStripFile(TIFFStripFile const&) = delete;
    TIFFStripFile& operator=(TIFFStripFile const&) = delete;

    /// Writes the page. Later drawing does nothing.
    void endPage();

    /// Finishes and closes the file. A page that was not ended is no file.
    void Close();

    /// Whether the file could not be created, or cannot hold everything that was drawn. The answer is final after
    /// `Close`, which removes a failed file.
    bool hasFailed() const { return file.hasFailed(); }

    /// The system's error number of the first failed write; 0 without one.
    int getError() const { return file.getError(); }

    /// Sets the colour for the next drawings from channels of 0 to 1. Values outside are held at the limits.
    void setCMYK(double c, double m, double y, double k);
    void setCMYK(double const* values) { setCMYK(values[0], values[1], values[2], values[3]); }
    void setRGB(double r, double g, double b);
    void setRGB(double const* values) { setRGB(values[0], values[1], values[2]); }

    void drawRectangle(RealRect r);

    /// Sets the size of the next texts, mm. At first it is 6.
    void setTextHeight(double height) { textHeight = height; }
    void drawText(RealPos p, String text);

    /// The pixels of a page: columns and rows.
    static IntSize pixelsOf(RealSize sizeMm, double resolution);

    /// Whether a file can hold a page: 4 GB of pixels without compression, 2^34 pixels with it.
    static bool canHold(IntSize pixels, int channels, TIFFCompression compression);

private:
    using Color = std::array<unsigned char, 4>;

    // Columns from left up to, but without, right; rows from the top of the page.
    struct Block
    {
        std::int32_t left;
        std::int32_t right;
        std::int32_t top;
        std::int32_t bottom;
        Color color;
    };

    void add(std::int64_t left, std::int64_t right, std::int64_t low, std::int64_t high);
    bool writeStrips();
    void paint(Block const& block, std::int32_t top, std::int32_t rows);
    std::int32_t rowsPerStrip() const;
    void abandon();

    WholeFile file;
    tiff* handle;
    TIFFFormat const format;
    int const channels;
    IntSize const size;
    double textHeight = 6;
    Color color{};
    std::vector<Block> blocks;
    std::vector<unsigned char> strip;
    GlyphPictures glyphs;
};
