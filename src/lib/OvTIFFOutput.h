// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ColorSpace.h"
#include "OvWholeFile.h"

#include <cstdint>

/// libtiff's handle.
struct tiff;

// What the TIFF files share.

/// Opens a TIFF image of 8 bits a channel, channels interleaved, that libtiff writes into an open file. libtiff prints
/// no messages.
///
/// \return null if the file is not open, or if libtiff cannot open it; the file is then given up
tiff* openTIFF(WholeFile& file, String const& name);

/// Sets the tags of a colour space. Returns its channels: 4 for CMYK, 3 for RGB, 0 for anything else.
int setTIFFColorSpace(tiff* handle, ColorSpace colorSpace);

/// Sets the tags of a page's size in pixels and its resolution in dots per inch.
void setTIFFSize(tiff* handle, std::int32_t width, std::int32_t height, double resolution);

/// A channel of 0 to 1 as a byte, rounded down. Values outside are held at the limits.
unsigned char toChannelByte(double channel);

/// Rounds towards zero. Values outside the range of 32 bits are held at its limits; not-a-number gives 0.
std::int32_t toPixelNumber(double value);

/// Reports a TIFF file that could not be written.
void reportUnwrittenTIFF();

/// The most bytes of pixels. Offsets in a TIFF file have 32 bits; the header and the tags take the rest.
inline constexpr std::uint64_t largestTIFFRaster = (1ULL << 32) - 4096;
