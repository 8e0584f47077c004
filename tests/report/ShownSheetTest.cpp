// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "report/ShownSheet.h"

#include "support/RulerChart.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

using testing::SizeIs;

std::vector<ShownSheet::Rectangle> patchesOf(ShownSheet const& picture)
{
    std::vector<ShownSheet::Rectangle> patches;
    for (auto const& rectangle : picture.rectangles)
        if (rectangle.cell.x != INT_NOPOS)
            patches.push_back(rectangle);
    return patches;
}

ShownSheet pictureOf(RulerChart const& chart)
{
    return pictureOf(numberedSheets(chart.layout).front(), chart.layout);
}

} // namespace

TEST(ShownSheet, HasEachPatchAtItsPlaceInItsColour)
{
    RulerChart const chart(greyEntries(6), {2, 3});
    ShownSheet const picture = pictureOf(chart);
    EXPECT_THAT(patchesOf(picture), SizeIs(6));
    // Patches of 10 x 8 mm; the block stands at (16, 8.5).
    auto const* const patch = picture.findPatch({1, 2});
    ASSERT_TRUE(patch);
    EXPECT_DOUBLE_EQ(patch->place.x, 26);
    EXPECT_DOUBLE_EQ(patch->place.y, 24.5);
    EXPECT_DOUBLE_EQ(patch->place.width, 10);
    EXPECT_DOUBLE_EQ(patch->place.height, 8);
    EXPECT_EQ(patch->color, displayColorOf(chart.layout.getColorEntry({1, 2})->getDisplayColor()));
    EXPECT_FALSE(picture.findPatch({2, 0}));
}

TEST(ShownSheet, HasTheTextsOfTheWrittenSheet)
{
    RulerChart const chart(greyEntries(6), {2, 3});
    auto const texts = pictureOf(chart).texts;
    auto const drawn = chart.drawn().texts;
    ASSERT_EQ(texts.size(), drawn.size());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(texts[i].text, drawn[i].text);
        EXPECT_NEAR(texts[i].place.x, drawn[i].position.x, 1e-5);
        EXPECT_NEAR(texts[i].place.y, drawn[i].position.y, 1e-5);
    }
}

// A column of three patches has four gaps. The written sheet draws each inner gap twice.
TEST(ShownSheet, DrawsAGapOnce)
{
    RulerChart const chart(greyEntries(3), {1, 3}, {0, 1});
    std::size_t const crossesAndBar = 8 + 1;
    EXPECT_THAT(pictureOf(chart).rectangles, SizeIs(crossesAndBar + 3 + 4));
}

TEST(ShownSheet, SheetsHaveTheNumbersOfTheirFiles)
{
    RulerChart chart(greyEntries(7), {2, 2});
    auto const sheets = numberedSheets(chart.layout);
    ASSERT_THAT(sheets, SizeIs(2));
    EXPECT_EQ(sheets[0].number, 1);
    EXPECT_EQ(sheets[0].page, &chart.sheet(1));
    EXPECT_EQ(sheets[1].number, 2);
    EXPECT_EQ(sheets[1].page, &chart.sheet(0));
}

TEST(ShownSheet, ALabelIsThatOfTheTargetDescription)
{
    RulerChart const chart(greyEntries(6), {2, 3});
    EXPECT_EQ(labelOf(chart.layout, {1, 2}), "A1");
    EXPECT_EQ(labelOf(chart.layout, {0, 0}), "B3");
}
