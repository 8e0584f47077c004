// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvTIFFFile.h"

#include "Folders.h"
#include "OvError.h"
#include "OvFile.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <tiffio.h>

// The glyph file holds 16 x 16 cells of 64 x 64 pixels, one byte for each pixel, rows from the top. The cell of a byte
// value is in column value mod 16 and row value div 16. A byte of 0 is ink.

namespace
{

constexpr std::ptrdiff_t cellSide = 64;
constexpr std::ptrdiff_t cellsPerRow = 16;
constexpr std::ptrdiff_t glyphRowLength = cellSide * cellsPerRow;
constexpr std::ptrdiff_t glyphFileSize = glyphRowLength * glyphRowLength;
constexpr unsigned char ink = 0;
constexpr unsigned char background = 255;

constexpr int textAdvance = 40;
constexpr int textDrop = 24;

constexpr double millimetresPerInch = 25.4;

// Offsets in a TIFF file have 32 bits; the header and the tags take less than this.
constexpr std::uint64_t headerAndTags = 4096;
constexpr std::uint64_t largestRaster = (1ULL << 32) - headerAndTags;

std::int32_t toInt(double value)
{
    constexpr double lowest = std::numeric_limits<std::int32_t>::min();
    constexpr double highest = std::numeric_limits<std::int32_t>::max();
    return std::isnan(value) ? 0 : static_cast<std::int32_t>(std::clamp(value, lowest, highest));
}

unsigned char toByte(double channel)
{
    double const value = channel * 255;
    return value >= 255 ? 255 : value > 0 ? static_cast<unsigned char>(value) : 0;
}

WholeFile& fileOf(thandle_t client)
{
    return *static_cast<WholeFile*>(client);
}

tmsize_t readNothing(thandle_t, void*, tmsize_t)
{
    return -1;
}

tmsize_t writeToFile(thandle_t client, void* data, tmsize_t size)
{
    return fileOf(client).write(data, static_cast<std::size_t>(size)) ? size : -1;
}

toff_t seekInFile(thandle_t client, toff_t offset, int whence)
{
    return static_cast<toff_t>(fileOf(client).seek(static_cast<off_t>(offset), whence));
}

int closeLater(thandle_t)
{
    return 0;
}

toff_t getFileSize(thandle_t client)
{
    return static_cast<toff_t>(fileOf(client).getSize());
}

// Keeps libtiff from printing messages: this file reports what is needed.
int ignoreMessage(TIFF*, void*, char const*, char const*, va_list)
{
    return 1;
}

TIFF* openTIFF(WholeFile& file, String const& name)
{
    TIFFOpenOptions* const options = file.isOpen() ? TIFFOpenOptionsAlloc() : nullptr;
    if (!options)
        return nullptr;
    TIFFOpenOptionsSetErrorHandlerExtR(options, ignoreMessage, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options, ignoreMessage, nullptr);
    TIFF* const handle = TIFFClientOpenExt(name, "w", &file, readNothing, writeToFile, seekInFile, closeLater,
                                           getFileSize, nullptr, nullptr, options);
    TIFFOpenOptionsFree(options);
    return handle;
}

void reportUnwritten()
{
    OvError("TIFF file could not be written.\n");
}

} // namespace

TIFFFile::TIFFFile(String name, RealSize sizeMm) : file(name), handle(openTIFF(file, name)), pageSize(sizeMm)
{
    if (file.isOpen() && !handle) {
        file.giveUp();
        reportUnwritten();
    }
    if (handle) {
        TIFFSetField(handle, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
        TIFFSetField(handle, TIFFTAG_BITSPERSAMPLE, 8);
        TIFFSetField(handle, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    }
    glyphs.init(glyphFileSize);
    std::fill(glyphs.begin(), glyphs.end(), background);
    RFile(String(respath, "ascii.raw")).readBytes(glyphs.begin(), static_cast<long long>(glyphs.getCount()));
}

void TIFFFile::setResolution(double dotsPerInch)
{
    if (isPageFixed)
        return;
    resolution = dotsPerInch;
    auto const [columns, rows] = getSafeIntCoord({pageSize.width, pageSize.height});
    width = columns;
    height = rows;
    if (!handle)
        return;
    TIFFSetField(handle, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(handle, TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(handle, TIFFTAG_XRESOLUTION, resolution);
    TIFFSetField(handle, TIFFTAG_YRESOLUTION, resolution);
    TIFFSetField(handle, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
}

void TIFFFile::setColorSpace(ColorSpace cs)
{
    if (isPageFixed)
        return;
    channels = cs == CMYK || cs == RGB ? colorspace_nof_channels[cs] : 0;
    if (!handle)
        return;
    if (cs == CMYK)
        TIFFSetField(handle, TIFFTAG_INKSET, INKSET_CMYK);
    if (channels > 0) {
        TIFFSetField(handle, TIFFTAG_PHOTOMETRIC, cs == CMYK ? PHOTOMETRIC_SEPARATED : PHOTOMETRIC_RGB);
        TIFFSetField(handle, TIFFTAG_SAMPLESPERPIXEL, channels);
    }
}

void TIFFFile::startPage(char const*)
{
    if (!raster.init(width, height, channels, largestRaster)) {
        if (handle)
            OvError("Page too large for a TIFF file.\n");
        abandon();
    } else if (raster.isEmpty())
        abandon();
    else
        isPageFixed = true;
}

void TIFFFile::endPage()
{
    if (handle && !raster.isEmpty()) {
        auto const size = static_cast<tmsize_t>(raster.getSize());
        if (TIFFWriteEncodedStrip(handle, 0, raster.getBytes(), size) != size) {
            abandon();
            reportUnwritten();
        }
    }
    raster.clear();
}

bool TIFFFile::sync()
{
    if (!handle || !raster.isEmpty())
        return false;
    flush();
    return file.sync();
}

void TIFFFile::Close()
{
    if (!raster.isEmpty())
        abandon();
    if (!handle)
        return;
    flush();
    TIFFClose(handle);
    handle = nullptr;
    if (!file.close())
        reportUnwritten();
}

void TIFFFile::setCMYK(double c, double m, double y, double k)
{
    setBytes({c, m, y, k});
}

void TIFFFile::setCMYK(double const* values)
{
    setCMYK(values[0], values[1], values[2], values[3]);
}

void TIFFFile::setRGB(double r, double g, double b)
{
    setBytes({r, g, b});
}

void TIFFFile::setRGB(double const* values)
{
    setRGB(values[0], values[1], values[2]);
}

void TIFFFile::setGray(double gray)
{
    // fmod gives not-a-number for values that are not finite.
    double const remainder = std::fmod(std::trunc(gray * 255), 256);
    auto const byte = std::isnan(remainder) ? 0 : static_cast<int>(remainder);
    std::fill(std::begin(color), std::end(color), static_cast<unsigned char>(byte));
}

void TIFFFile::drawRectangle(RealRect r)
{
    auto const a = getSafeIntCoord({r.x, r.y});
    auto const b = getSafeIntCoord({r.x + r.width, r.y + r.height});
    auto const [left, right] = std::minmax<std::int64_t>({a.x, b.x});
    auto const [bottom, top] = std::minmax<std::int64_t>({a.y, b.y});
    raster.fill(left, bottom, top - 1, right - left, color);
}

void TIFFFile::drawText(RealPos p, String text)
{
    if (raster.isEmpty() || glyphs.getCount() == 0)
        return;
    auto const origin = getSafeIntCoord(p);
    std::int64_t left = origin.x;
    for (char const character : text) {
        drawGlyph(static_cast<unsigned char>(character), left, std::int64_t{origin.y} - textDrop);
        left += textAdvance;
    }
}

IntPos TIFFFile::getSafeIntCoord(RealPos p) const
{
    return {toInt(std::floor(p.x * resolution / millimetresPerInch)),
            toInt(std::floor(p.y * resolution / millimetresPerInch))};
}

unsigned char* TIFFFile::getBufPtr(IntPos p)
{
    return raster.isEmpty() ? spare : raster.getPixel(p.x, p.y);
}

void TIFFFile::drawGlyph(unsigned char character, std::int64_t left, std::int64_t bottom)
{
    auto const* const cell =
        glyphs.begin() + character / cellsPerRow * cellSide * glyphRowLength + character % cellsPerRow * cellSide;
    for (std::ptrdiff_t r = 0; r < cellSide; ++r) {
        auto const* const row = cell + (cellSide - 1 - r) * glyphRowLength;
        auto const* const rowEnd = row + cellSide;
        for (auto const* start = std::find(row, rowEnd, ink); start != rowEnd;) {
            auto const* const end = std::find_if(start, rowEnd, [](unsigned char pixel) { return pixel != ink; });
            raster.fillSpan(left + (start - row), left + (end - row) - 1, bottom + r, color);
            start = std::find(end, rowEnd, ink);
        }
    }
}

void TIFFFile::setBytes(std::initializer_list<double> values)
{
    std::transform(values.begin(), values.end(), color, toByte);
}

// Makes libtiff write everything that it holds.
void TIFFFile::flush()
{
    if (TIFFFlush(handle) == 0)
        file.giveUp();
}

// Removes the file. Later calls behave as if it could not be opened.
void TIFFFile::abandon()
{
    if (!handle)
        return;
    TIFFClose(handle);
    handle = nullptr;
    file.giveUp();
    file.close();
}
