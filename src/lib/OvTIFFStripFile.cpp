// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvTIFFStripFile.h"

#include "OvError.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <tiffio.h>

namespace
{

constexpr double millimetresPerInch = 25.4;

// The resolution whose pixels TIFFFile defines, and the type for which the glyphs are drawn at it.
constexpr double plainResolution = 300;
constexpr double plainTextHeight = 6;

// Strips of 16 rows read several times faster than one large strip, and cost little. Very wide pages get fewer rows.
constexpr std::int32_t mostRows = 16;
constexpr std::int64_t mostStripBytes = 1 << 20;

// As many as a sheet of 1 m x 1.8 m has at 2400 dots per inch. They are packed within minutes.
constexpr std::uint64_t mostPixels = 1ULL << 34;

std::int32_t toPixel(double millimetres, double resolution)
{
    double const pixels = millimetres * resolution / millimetresPerInch;
    return toPixelNumber(resolution == plainResolution ? std::floor(pixels) : std::round(pixels));
}

void setCompression(TIFF* handle, TIFFCompression compression)
{
    constexpr int differences = PREDICTOR_HORIZONTAL;
    if (compression == TIFFCompression::lzw)
        TIFFSetField(handle, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    else if (compression == TIFFCompression::deflate)
        TIFFSetField(handle, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
    else
        TIFFSetField(handle, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    if (compression != TIFFCompression::none)
        TIFFSetField(handle, TIFFTAG_PREDICTOR, differences);
}

} // namespace

TIFFStripFile::TIFFStripFile(String name, RealSize sizeMm, ColorSpace colorSpace, TIFFFormat tiffFormat)
    : file(name), handle(openTIFF(file, name)), format(tiffFormat), channels(setTIFFColorSpace(handle, colorSpace)),
      size(pixelsOf(sizeMm, format.resolution))
{
    if (!handle)
        return;
    if (channels == 0 || size.width <= 0 || size.height <= 0 || !canHold(size, channels, format.compression)) {
        abandon();
        return;
    }
    setTIFFSize(handle, size.width, size.height, format.resolution);
    setCompression(handle, format.compression);
    TIFFSetField(handle, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    TIFFSetField(handle, TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(rowsPerStrip()));
}

IntSize TIFFStripFile::pixelsOf(RealSize sizeMm, double resolution)
{
    return {toPixel(sizeMm.width, resolution), toPixel(sizeMm.height, resolution)};
}

bool TIFFStripFile::canHold(IntSize pixels, int channels, TIFFCompression compression)
{
    auto const count = static_cast<std::uint64_t>(pixels.width) * static_cast<std::uint64_t>(pixels.height);
    bool const isPacked = compression != TIFFCompression::none;
    return isPacked ? count <= mostPixels : count * static_cast<std::uint64_t>(channels) <= largestTIFFRaster;
}

std::int32_t TIFFStripFile::rowsPerStrip() const
{
    std::int64_t const rowBytes = std::int64_t{size.width} * channels;
    return std::clamp(static_cast<std::int32_t>(mostStripBytes / rowBytes), 1, std::min(mostRows, size.height));
}

void TIFFStripFile::setCMYK(double c, double m, double y, double k)
{
    color = {toChannelByte(c), toChannelByte(m), toChannelByte(y), toChannelByte(k)};
}

void TIFFStripFile::setRGB(double r, double g, double b)
{
    color = {toChannelByte(r), toChannelByte(g), toChannelByte(b)};
}

void TIFFStripFile::drawRectangle(RealRect r)
{
    auto const [left, right] =
        std::minmax({toPixel(r.x, format.resolution), toPixel(r.x + r.width, format.resolution)});
    auto const [low, high] = std::minmax({toPixel(r.y, format.resolution), toPixel(r.y + r.height, format.resolution)});
    add(left, right, low, high);
}

void TIFFStripFile::drawText(RealPos p, String text)
{
    IntPos const origin{toPixel(p.x, format.resolution), toPixel(p.y, format.resolution)};
    double const scale = textHeight / plainTextHeight * (format.resolution / plainResolution);
    glyphs.draw(text, origin, scale,
                [this](std::int64_t left, std::int64_t right, std::int64_t row) { add(left, right, row, row + 1); });
}

// Adds the part of a block that lies on the page. Rows count from the bottom here.
void TIFFStripFile::add(std::int64_t left, std::int64_t right, std::int64_t low, std::int64_t high)
{
    auto const within = [](std::int64_t value, std::int32_t most) {
        return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, 0, most));
    };
    Block const block{within(left, size.width), within(right, size.width), within(size.height - high, size.height),
                      within(size.height - low, size.height), color};
    if (handle && block.left < block.right && block.top < block.bottom)
        blocks.push_back(block);
}

void TIFFStripFile::endPage()
{
    if (!handle)
        return;
    if (!writeStrips()) {
        abandon();
        reportUnwrittenTIFF();
        return;
    }
    if (TIFFFlush(handle) == 0)
        file.giveUp();
    TIFFClose(handle);
    handle = nullptr;
    blocks.clear();
}

void TIFFStripFile::Close()
{
    if (handle)
        abandon();
    else if (file.isOpen() && !file.close())
        reportUnwrittenTIFF();
}

// The blocks that reach into a strip are kept in the order in which they were drawn: later ones cover earlier ones.
bool TIFFStripFile::writeStrips()
{
    std::int32_t const stripRows = rowsPerStrip();
    std::vector<std::size_t> waiting(blocks.size());
    std::iota(waiting.begin(), waiting.end(), std::size_t{0});
    std::stable_sort(waiting.begin(), waiting.end(),
                     [this](std::size_t a, std::size_t b) { return blocks[a].top < blocks[b].top; });
    std::vector<std::size_t> reached;
    auto next = waiting.begin();
    strip.resize(static_cast<std::size_t>(stripRows) * static_cast<std::size_t>(size.width) *
                 static_cast<std::size_t>(channels));
    std::uint32_t number = 0;
    for (std::int32_t top = 0; top < size.height; top += stripRows, ++number) {
        std::int32_t const rows = std::min(stripRows, size.height - top);
        std::erase_if(reached, [&](std::size_t block) { return blocks[block].bottom <= top; });
        auto const old = static_cast<std::ptrdiff_t>(reached.size());
        for (; next != waiting.end() && blocks[*next].top < top + rows; ++next)
            reached.push_back(*next);
        std::sort(reached.begin() + old, reached.end());
        std::inplace_merge(reached.begin(), reached.begin() + old, reached.end());
        std::fill(strip.begin(), strip.end(), static_cast<unsigned char>(0));
        for (std::size_t const block : reached)
            paint(blocks[block], top, rows);
        auto const bytes = tmsize_t{rows} * size.width * channels;
        if (TIFFWriteEncodedStrip(handle, number, strip.data(), bytes) != bytes)
            return false;
    }
    return true;
}

// Paints the part of a block that lies in the strip of `rows` rows from `top` on.
void TIFFStripFile::paint(Block const& block, std::int32_t top, std::int32_t rows)
{
    auto const bytesOf = [this](std::int32_t pixels) {
        return static_cast<std::ptrdiff_t>(pixels) * static_cast<std::ptrdiff_t>(channels);
    };
    auto const rowAt = [&](std::int32_t row) {
        return strip.begin() + (row - top) * bytesOf(size.width) + bytesOf(block.left);
    };
    std::int32_t const first = std::max(block.top, top);
    std::int32_t const end = std::min(block.bottom, top + rows);
    auto const start = rowAt(first);
    for (std::int32_t i = 0; i < block.right - block.left; ++i)
        std::copy_n(block.color.begin(), channels, start + bytesOf(i));
    for (std::int32_t row = first + 1; row < end; ++row)
        std::copy_n(start, bytesOf(block.right - block.left), rowAt(row));
}

// Removes the file. Later calls behave as if it could not be opened.
void TIFFStripFile::abandon()
{
    TIFFClose(handle);
    handle = nullptr;
    file.giveUp();
    file.close();
}
