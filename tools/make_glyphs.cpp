// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Draws the characters of the TIFF sheets' labels: make_glyphs <font file> <output file>
//
// The output is a picture of 16 x 16 cells of 64 x 64 pixels, a byte each, rows from the top: 0 is ink, 255 is not. The
// character of byte value ch, read as Latin-1, stands in cell column ch % 16 and cell row ch / 16. Text advances by
// only 40 pixels, so that a character keeps to the left of its cell, and its baseline lies 24 pixels above the bottom.

#include <ft2build.h>
#include FT_FREETYPE_H

#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <vector>

namespace
{

constexpr int cellSize = 64;
constexpr int cellsPerRow = 16;
constexpr int imageSize = cellsPerRow * cellSize;
constexpr int advance = 40;
constexpr int heightAboveBaseline = 40;

/// Pixels per em. The tallest of ASCII, brackets and bars, just fit above the baseline.
constexpr int fontSize = 52;

constexpr unsigned char ink = 0;
constexpr unsigned char background = 255;

/// Loads a character as large as fits above the baseline: capitals with accents come out a little smaller.
bool loadGlyph(FT_Face face, unsigned character)
{
    for (int size = fontSize; size > 0; --size) {
        if (FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(size)) != 0 ||
            FT_Load_Char(face, character, FT_LOAD_RENDER | FT_LOAD_NO_HINTING | FT_LOAD_TARGET_MONO) != 0)
            return false;
        if (face->glyph->bitmap_top <= heightAboveBaseline)
            return true;
    }
    return false;
}

void drawGlyph(FT_GlyphSlot glyph, int cell, std::vector<unsigned char>& image)
{
    FT_Bitmap const& bitmap = glyph->bitmap;
    int const glyphAdvance = static_cast<int>(glyph->advance.x / 64);
    int const left = cell % cellsPerRow * cellSize + (advance - glyphAdvance) / 2 + glyph->bitmap_left;
    int const top = cell / cellsPerRow * cellSize + heightAboveBaseline - glyph->bitmap_top;
    for (int row = 0; row < static_cast<int>(bitmap.rows); ++row) {
        for (int column = 0; column < static_cast<int>(bitmap.width); ++column) {
            unsigned char const eightPixels = bitmap.buffer[row * bitmap.pitch + column / 8];
            if (eightPixels & (0x80 >> column % 8))
                image[static_cast<std::size_t>((top + row) * imageSize + left + column)] = ink;
        }
    }
}

/// \return whether the font could be read and had all printable characters
bool drawPrintableCharacters(char const* fontFile, std::vector<unsigned char>& image)
{
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    if (FT_Init_FreeType(&library) != 0)
        return false;
    bool drawn = FT_New_Face(library, fontFile, 0, &face) == 0;
    for (int character = 0; drawn && character < 256; ++character) {
        bool const isControl = character < 0x20 || (character >= 0x7f && character < 0xa0);
        if (isControl)
            continue;
        drawn = loadGlyph(face, static_cast<unsigned>(character));
        if (drawn)
            drawGlyph(face->glyph, character, image);
    }
    FT_Done_FreeType(library);
    return drawn;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: make_glyphs <font file> <output file>\n";
        return EXIT_FAILURE;
    }
    std::vector<unsigned char> image(std::size_t{imageSize} * imageSize, background);
    if (!drawPrintableCharacters(argv[1], image)) {
        std::cerr << "Cannot draw the characters of " << argv[1] << '\n';
        return EXIT_FAILURE;
    }
    std::ofstream stream(argv[2], std::ios::binary);
    for (unsigned char const pixel : image)
        stream.put(static_cast<char>(pixel));
    if (!stream.flush()) {
        std::cerr << "Cannot write " << argv[2] << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
