// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OvGlyphPictures.h"

#include "Folders.h"
#include "OvFile.h"

#include <algorithm>

// The file holds 16 x 16 cells of 64 x 64 pixels, one byte for each pixel, rows from the top. The cell of a byte value
// is in column value mod 16 and row value div 16. A byte of 0 is ink.

namespace
{

constexpr std::int64_t cellsPerRow = 16;
constexpr unsigned char background = 255;

} // namespace

GlyphPictures::GlyphPictures()
{
    constexpr std::int64_t fileSize = cellSide * cellsPerRow * cellSide * cellsPerRow;
    pictures.init(fileSize);
    std::fill(pictures.begin(), pictures.end(), background);
    RFile(String(respath, "ascii.raw")).readBytes(pictures.begin(), static_cast<long long>(pictures.getCount()));
}

unsigned char const* GlyphPictures::rowOf(unsigned char character, std::int64_t row) const
{
    constexpr std::int64_t rowLength = cellSide * cellsPerRow;
    std::int64_t const fileRow = character / cellsPerRow * cellSide + cellSide - 1 - row;
    return pictures.begin() + fileRow * rowLength + character % cellsPerRow * cellSide;
}
