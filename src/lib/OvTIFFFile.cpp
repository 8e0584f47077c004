// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvTIFFFile.h"

#include "OvError.h"
#include "OvTIFFOutput.h"

#include <algorithm>
#include <cmath>
#include <tiffio.h>

namespace
{

constexpr double millimetresPerInch = 25.4;

} // namespace

TIFFFile::TIFFFile(String name, RealSize sizeMm) : file(name), handle(openTIFF(file, name)), pageSize(sizeMm)
{
    if (handle)
        TIFFSetField(handle, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
}

void TIFFFile::setResolution(double dotsPerInch)
{
    if (isPageFixed)
        return;
    resolution = dotsPerInch;
    auto const [columns, rows] = getSafeIntCoord({pageSize.width, pageSize.height});
    width = columns;
    height = rows;
    setTIFFSize(handle, width, height, resolution);
}

void TIFFFile::setColorSpace(ColorSpace cs)
{
    if (!isPageFixed)
        channels = setTIFFColorSpace(handle, cs);
}

void TIFFFile::startPage(char const*)
{
    if (!raster.init(width, height, channels, largestTIFFRaster)) {
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
            reportUnwrittenTIFF();
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
        reportUnwrittenTIFF();
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
    if (raster.isEmpty())
        return;
    glyphs.draw(text, getSafeIntCoord(p), textScale, [this](std::int64_t left, std::int64_t right, std::int64_t row) {
        raster.fillSpan(left, right - 1, row, color);
    });
}

IntPos TIFFFile::getSafeIntCoord(RealPos p) const
{
    return {toPixelNumber(std::floor(p.x * resolution / millimetresPerInch)),
            toPixelNumber(std::floor(p.y * resolution / millimetresPerInch))};
}

unsigned char* TIFFFile::getBufPtr(IntPos p)
{
    return raster.isEmpty() ? spare : raster.getPixel(p.x, p.y);
}

void TIFFFile::setBytes(std::initializer_list<double> values)
{
    std::transform(values.begin(), values.end(), color, toChannelByte);
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
