// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/Picture.h"

#include "support/TemporaryFolder.h"

#include <tiffio.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

namespace
{

int toPixel(double millimetres)
{
    return static_cast<int>(std::floor(millimetres * 300 / 25.4));
}

Picture render(std::filesystem::path const& file, std::string const& options, ColorSpace colorSpace, IntSize pixels)
{
    TemporaryFolder const folder;
    std::filesystem::path const image = folder.path() / "sheet.tif";
    std::string const command = "gs -q -dNOPAUSE -dBATCH -dFIXEDMEDIA -r300 -g" + std::to_string(pixels.width) + "x" +
                                std::to_string(pixels.height) + options +
                                " -sCompression=none -sDEVICE=" + (colorSpace == CMYK ? "tiff32nc" : "tiff24nc") +
                                " -sOutputFile='" + image.string() + "' '" + file.string() + "' >/dev/null";
    return std::system(command.c_str()) == 0 ? readTiff(image) : Picture();
}

} // namespace

Picture::Pixel Picture::at(int x, int y) const
{
    if (x < 0 || x >= width || y < 0 || y >= height)
        return {};
    auto const first = bytes.begin() + (std::ptrdiff_t{height - 1 - y} * width + x) * channels;
    return {first, first + channels};
}

Picture::Pixel Picture::at(RealPos position) const
{
    return at(toPixel(position.x), toPixel(position.y));
}

Picture readTiff(std::filesystem::path const& file)
{
    std::unique_ptr<TIFF, decltype(&TIFFClose)> const tiff(TIFFOpen(file.c_str(), "r"), TIFFClose);
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint16_t samples = 0;
    std::uint16_t bits = 0;
    if (!tiff || !TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &width) ||
        !TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &height) ||
        !TIFFGetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, &samples) ||
        !TIFFGetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, &bits) || bits != 8)
        return {};

    Picture picture{static_cast<int>(width), static_cast<int>(height), samples, {}};
    std::size_t const rowSize = std::size_t{width} * samples;
    picture.bytes.resize(rowSize * height);
    for (std::uint32_t row = 0; row < height; ++row)
        if (TIFFReadScanline(tiff.get(), picture.bytes.data() + row * rowSize, row, 0) != 1)
            return {};
    return picture;
}

Picture renderEps(std::filesystem::path const& file, ColorSpace colorSpace, IntSize pixels)
{
    return render(file, "", colorSpace, pixels);
}

Picture renderPdf(std::filesystem::path const& file, int page, ColorSpace colorSpace, IntSize pixels)
{
    std::string const number = std::to_string(page);
    return render(file, " -dFirstPage=" + number + " -dLastPage=" + number, colorSpace, pixels);
}

IntSize pixelsOf(RealSize page)
{
    return {toPixel(page.width), toPixel(page.height)};
}
