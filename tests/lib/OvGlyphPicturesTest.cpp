// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvGlyphPictures.h"

#include "Folders.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

struct InkRun
{
    std::int64_t left;
    std::int64_t right;
    std::int64_t row;

    bool operator==(InkRun const&) const = default;
};

void PrintTo(InkRun const& run, std::ostream* stream)
{
    *stream << run.left << " to " << run.right << " in row " << run.row;
}

class GlyphPicturesTest : public testing::Test
{
protected:
    ~GlyphPicturesTest() override { respath = resources; }

    // Puts ink into columns of a character's cell, in a row from its bottom.
    void ink(unsigned char character, int from, int to, int row)
    {
        for (int column = from; column < to; ++column)
            picture[static_cast<std::size_t>((character / 16 * 64 + 63 - row) * 1024 + character % 16 * 64 + column)] =
                '\0';
    }

    std::vector<InkRun> drawn(std::string const& text, IntPos origin, double scale) const
    {
        folder.write("ascii.raw", picture);
        respath = folder.pathWithSlash();
        std::vector<InkRun> runs;
        GlyphPictures().draw(String(String(), text.data(), text.size()), origin, scale,
                             [&](std::int64_t left, std::int64_t right, std::int64_t row) {
                                 runs.push_back({left, right, row});
                             });
        return runs;
    }

    TemporaryFolder const folder;
    std::string picture = std::string(1024 * 1024, '\1');

private:
    String const resources = respath;
};

} // namespace

TEST_F(GlyphPicturesTest, StandTwentyFourPixelsBelowTheBaseline)
{
    ink('A', 0, 2, 0);
    ink('A', 5, 6, 24);
    ink('A', 60, 64, 63);
    EXPECT_THAT(drawn("A", {100, 200}, 1),
                ElementsAre(InkRun{100, 102, 176}, InkRun{105, 106, 200}, InkRun{160, 164, 239}));
}

TEST_F(GlyphPicturesTest, FollowEachOtherEveryFortyPixels)
{
    ink('A', 1, 2, 24);
    ink(0xff, 3, 4, 24);
    EXPECT_THAT(drawn("A\xff"
                      "A",
                      {0, 0}, 1),
                ElementsAre(InkRun{1, 2, 0}, InkRun{43, 44, 0}, InkRun{81, 82, 0}));
}

TEST_F(GlyphPicturesTest, GiveEachRunOfARowByItself)
{
    ink('A', 0, 3, 30);
    ink('A', 10, 64, 30);
    EXPECT_THAT(drawn("A", {0, 0}, 1), ElementsAre(InkRun{0, 3, 6}, InkRun{10, 64, 6}));
}

TEST_F(GlyphPicturesTest, GrowWithTheScale)
{
    // Twice as large: the cell's lowest row becomes two, 48 pixels below the baseline.
    ink('A', 1, 3, 0);
    EXPECT_THAT(drawn("AA", {0, 0}, 2),
                ElementsAre(InkRun{2, 6, -48}, InkRun{2, 6, -47}, InkRun{82, 86, -48}, InkRun{82, 86, -47}));
}

TEST_F(GlyphPicturesTest, ShrinkToTheInkAtEachPixelsCentre)
{
    // At half the size, pixel n has its centre at column 2n + 1 of the picture.
    ink('A', 3, 4, 49);
    ink('A', 6, 7, 49);
    ink('A', 11, 14, 49);
    ink('A', 3, 4, 50);
    EXPECT_THAT(drawn("AA", {0, 0}, 0.5),
                ElementsAre(InkRun{1, 2, 12}, InkRun{5, 7, 12}, InkRun{21, 22, 12}, InkRun{25, 27, 12}));
}

TEST_F(GlyphPicturesTest, StayWithinTheirCellAtAnyScale)
{
    for (int row = 0; row < 64; ++row)
        ink('A', 0, 64, row);
    for (double const scale : {0.01, 0.24, 0.3, 1.016, 2.0 / 3, 3.999, 8.0}) {
        auto const side = std::int64_t{std::lround(64 * scale)};
        auto const runs = drawn("A", {0, 0}, scale);
        ASSERT_EQ(runs.size(), static_cast<std::size_t>(side)) << scale;
        for (InkRun const& run : runs) {
            EXPECT_EQ(run.left, 0);
            EXPECT_EQ(run.right, side);
        }
    }
}

TEST_F(GlyphPicturesTest, DoNotDriftOverALongText)
{
    // A step of 40 x 0.24 = 9.6 pixels: the hundredth character starts at 950.4. Row 7 has its centre at 31.25.
    ink('A', 0, 64, 31);
    auto const runs = drawn(std::string(100, 'A'), {0, 0}, 0.24);
    ASSERT_EQ(runs.size(), 100u);
    EXPECT_EQ(runs[1].left, 10);
    EXPECT_EQ(runs[2].left, 19);
    EXPECT_EQ(runs[99].left, 950);
}

TEST_F(GlyphPicturesTest, HaveNoInkWhereTheFileEnds)
{
    ink('A', 0, 1, 24);
    ink(0xff, 0, 1, 24);
    picture.resize(1024 * 512);
    EXPECT_THAT(drawn("A\xff", {0, 0}, 1), ElementsAre(InkRun{0, 1, 0}));
}

TEST_F(GlyphPicturesTest, HaveNoInkWithoutAFile)
{
    respath = folder.pathWithSlash();
    int runs = 0;
    GlyphPictures().draw(String("A"), {0, 0}, 1, [&](std::int64_t, std::int64_t, std::int64_t) { ++runs; });
    EXPECT_EQ(runs, 0);
}
