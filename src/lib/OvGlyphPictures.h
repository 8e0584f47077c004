// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Geometry.h"
#include "OvArray.h"
#include "OvString.h"

#include <cstddef>
#include <cstdint>

/// Pictures of the 256 byte values as characters, for drawing texts into pixels. At scale 1 a character fills a cell of
/// 64 x 64 pixels, and the next one starts 40 pixels further right.
class GlyphPictures
{
public:
    /// Reads the pictures from "ascii.raw" in the resources folder. Characters whose picture is missing have no ink.
    GlyphPictures();

    /// Calls `paint(left, right, row)` for each run of ink of a text: the columns from `left` up to, but without,
    /// `right`, in a row counted from the bottom. Characters come in their order, each from its lowest row up.
    ///
    /// \param origin  where the text's baseline starts; at scale 1 the cells begin 24 pixels below it
    /// \param scale   above 0; a pixel has ink where the picture has ink at the pixel's centre
    template <typename Paint>
    void draw(String const& text, IntPos origin, double scale, Paint const& paint) const
    {
        if (pictures.getCount() == 0)
            return;
        std::int64_t const side = toPixels(cellSide, scale);
        std::int64_t const bottom = origin.y - toPixels(drop, scale);
        double advanced = 0;
        for (char const character : text) {
            std::int64_t const left = origin.x + toPixels(advanced, scale);
            for (std::int64_t row = 0; row < side; ++row)
                drawRow(static_cast<unsigned char>(character), row, side, scale,
                        [&](std::int64_t from, std::int64_t to) { paint(left + from, left + to, bottom + row); });
            advanced += advance;
        }
    }

private:
    // Pixels at scale 1.
    static constexpr std::int64_t cellSide = 64;
    static constexpr std::int64_t advance = 40;
    static constexpr std::int64_t drop = 24;

    static std::int64_t toPixels(double length, double scale)
    {
        // NOLINTNEXTLINE(bugprone-incorrect-roundings): lengths are not negative
        return static_cast<std::int64_t>(length * scale + 0.5);
    }

    // The picture's column or row at a pixel's centre.
    static std::int64_t toPicture(std::int64_t pixel, double scale)
    {
        auto const place = static_cast<std::int64_t>((static_cast<double>(pixel) + 0.5) / scale);
        return place < cellSide ? place : cellSide - 1;
    }

    // Calls paint(from, to) for each run of ink in a row of a character's cell.
    template <typename Paint>
    void drawRow(unsigned char character, std::int64_t row, std::int64_t side, double scale, Paint const& paint) const
    {
        unsigned char const* const picture = rowOf(character, toPicture(row, scale));
        for (std::int64_t from = 0; from < side; ++from) {
            std::int64_t to = from;
            while (to < side && picture[toPicture(to, scale)] == ink)
                ++to;
            if (to > from)
                paint(from, to);
            from = to;
        }
    }

    unsigned char const* rowOf(unsigned char character, std::int64_t row) const;

    static constexpr unsigned char ink = 0;

    Array<unsigned char> pictures;
};
