// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvTIFFOutput.h"

#include "OvError.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <tiffio.h>

namespace
{

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

// Keeps libtiff from printing messages: the files report what is needed.
int ignoreMessage(TIFF*, void*, char const*, char const*, va_list)
{
    return 1;
}

TIFF* openClient(WholeFile& file, String const& name)
{
    TIFFOpenOptions* const options = TIFFOpenOptionsAlloc();
    if (!options)
        return nullptr;
    TIFFOpenOptionsSetErrorHandlerExtR(options, ignoreMessage, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options, ignoreMessage, nullptr);
    TIFF* const handle = TIFFClientOpenExt(name, "w", &file, readNothing, writeToFile, seekInFile, closeLater,
                                           getFileSize, nullptr, nullptr, options);
    TIFFOpenOptionsFree(options);
    return handle;
}

} // namespace

tiff* openTIFF(WholeFile& file, String const& name)
{
    if (!file.isOpen())
        return nullptr;
    TIFF* const handle = openClient(file, name);
    if (handle) {
        TIFFSetField(handle, TIFFTAG_BITSPERSAMPLE, 8);
        TIFFSetField(handle, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    } else {
        file.giveUp();
        reportUnwrittenTIFF();
    }
    return handle;
}

int setTIFFColorSpace(tiff* handle, ColorSpace colorSpace)
{
    int const channels = colorSpace == CMYK || colorSpace == RGB ? colorspace_nof_channels[colorSpace] : 0;
    if (!handle)
        return channels;
    if (colorSpace == CMYK)
        TIFFSetField(handle, TIFFTAG_INKSET, INKSET_CMYK);
    if (channels > 0) {
        TIFFSetField(handle, TIFFTAG_PHOTOMETRIC, colorSpace == CMYK ? PHOTOMETRIC_SEPARATED : PHOTOMETRIC_RGB);
        TIFFSetField(handle, TIFFTAG_SAMPLESPERPIXEL, channels);
    }
    return channels;
}

void setTIFFSize(tiff* handle, std::int32_t width, std::int32_t height, double resolution)
{
    if (!handle)
        return;
    TIFFSetField(handle, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(handle, TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(handle, TIFFTAG_XRESOLUTION, resolution);
    TIFFSetField(handle, TIFFTAG_YRESOLUTION, resolution);
    TIFFSetField(handle, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
}

unsigned char toChannelByte(double channel)
{
    double const value = channel * 255;
    return value >= 255 ? 255 : value > 0 ? static_cast<unsigned char>(value) : 0;
}

std::int32_t toPixelNumber(double value)
{
    constexpr double lowest = std::numeric_limits<std::int32_t>::min();
    constexpr double highest = std::numeric_limits<std::int32_t>::max();
    return std::isnan(value) ? 0 : static_cast<std::int32_t>(std::clamp(value, lowest, highest));
}

void reportUnwrittenTIFF()
{
    OvError("TIFF file could not be written.\n");
}
