// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Generators.h"
#include "support/ChartCase.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace
{

constexpr int cellSize = 64;
constexpr int advance = 40;
constexpr int baseline = 40; ///< the first row, from the top, below it: text drops by the 24 rows from there

/// The glyphs as the program loads them.
class Glyphs : public testing::Test
{
protected:
    bool hasInk(int character, int column, int row) const
    {
        int const y = character / 16 * cellSize + row;
        int const x = character % 16 * cellSize + column;
        return m_bytes.at(static_cast<std::size_t>(y * 1024 + x)) == '\0';
    }

    /// The inked pixels of a cell, as row and column.
    std::set<std::pair<int, int>> inkOf(int character) const
    {
        std::set<std::pair<int, int>> ink;
        for (int row = 0; row < cellSize; ++row)
            for (int column = 0; column < cellSize; ++column)
                if (hasInk(character, column, row))
                    ink.emplace(row, column);
        return ink;
    }

    int topRow(int character) const { return inkOf(character).begin()->first; }
    int bottomRow(int character) const { return inkOf(character).rbegin()->first; }

    std::string m_bytes = bytesOf(sourceFile("res/ascii.raw"));
};

bool isPrinted(int character)
{
    return (character > 0x20 && character < 0x7f) || character > 0xa0;
}

} // namespace

TEST_F(Glyphs, AreInkOrNoneInEveryPixelOfTheWholeBitmap)
{
    EXPECT_EQ(m_bytes.size(), 1048576U);
    EXPECT_EQ(m_bytes.find_first_not_of(std::string("\0\xff", 2)), std::string::npos);
}

TEST_F(Glyphs, ShowPrintableCharactersOnly)
{
    for (int character = 0; character < 256; ++character)
        EXPECT_EQ(!inkOf(character).empty(), isPrinted(character)) << character;
}

TEST_F(Glyphs, NeverReachTheNextCharacter)
{
    for (int character = 0; character < 256; ++character)
        for (auto const& [row, column] : inkOf(character))
            EXPECT_LT(column, advance) << character;
}

TEST_F(Glyphs, StandInTheMiddleOfTheirAdvance)
{
    for (char const character : std::string("AHIMOTUVWXY08|")) {
        int left = advance;
        int right = 0;
        for (auto const& [row, column] : inkOf(character)) {
            left = std::min(left, column);
            right = std::max(right, column);
        }
        EXPECT_NEAR((left + right + 1) / 2.0, advance / 2.0, 1.5) << character;
    }
}

TEST_F(Glyphs, StandOnTheBaseline)
{
    for (char const character : std::string("ABDEFHIKLMNPRTVWXYZ1247hikmnrx"))
        EXPECT_EQ(bottomRow(character), baseline - 1) << character;
    // Round ones pass it by a hair.
    for (char const character : std::string("CGOSU035689aceos"))
        EXPECT_EQ(bottomRow(character), baseline) << character;
}

TEST_F(Glyphs, DescendWhereLettersDo)
{
    for (char const character : std::string("gjpqy"))
        EXPECT_GT(bottomRow(character), baseline + 6) << character;
}

TEST_F(Glyphs, HaveCapitalsAndDigitsOfTheHeightOfTheOtherLabels)
{
    // Courier of 6 mm has capitals of 0.56 times that: 3.4 mm, 40 pixels at 300 dots per inch.
    for (char const character : std::string("ABEHTZ1247"))
        EXPECT_NEAR(baseline - topRow(character), 40, 3) << character;
}

TEST_F(Glyphs, AllLookDifferent)
{
    std::set<std::set<std::pair<int, int>>> shapes;
    for (int character = 0x21; character < 0x7f; ++character)
        EXPECT_TRUE(shapes.insert(inkOf(character)).second) << character;
}

TEST_F(Glyphs, AreUprightAndNotMirrored)
{
    std::set<std::pair<int, int>> const ink = inkOf('L');
    int const left = std::ranges::min_element(ink, {}, &std::pair<int, int>::second)->second;
    int const right = std::ranges::max_element(ink, {}, &std::pair<int, int>::second)->second;
    EXPECT_TRUE(hasInk('L', left, topRow('L')));
    EXPECT_TRUE(hasInk('L', left, bottomRow('L')));
    EXPECT_TRUE(hasInk('L', right, bottomRow('L')));
    EXPECT_FALSE(hasInk('L', right, topRow('L')));
}
