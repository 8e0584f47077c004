// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PartnerScan.h"

#include "ColorEntry.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace
{

constexpr Lab paper{{95, 0, -2}};

// Whole numbers, so that many differences are exactly a key, or a lightness difference exactly 5.
Lab randomColor(std::mt19937& generator)
{
    auto const upTo = [&](unsigned limit) { return static_cast<float>(generator() % limit); };
    return {{upTo(101), upTo(161) - 80, upTo(161) - 80}};
}

PatchColors randomColors(IntSize grid, std::mt19937& generator)
{
    PatchColors colors(grid, paper);
    for (int cell = 0; cell < grid.width * grid.height; ++cell)
        colors.set(cell, randomColor(generator));
    return colors;
}

bool isFurther(Lab const& a, Lab const& b, float key)
{
    return ColorEntry::computeSqDe(a.values, b.values) > key &&
           ColorEntry::computeSqDLStar(a.values, b.values) >= 25.0f;
}

int partnerByTheBook(PatchColors const& colors, IntSize grid, PoorPlace const& place)
{
    for (int cell = 0; cell < grid.width * grid.height; ++cell)
        if (isFurther(place.patch, colors.at(cell - grid.width), place.key) &&
            isFurther(place.patch, colors.at(cell + grid.width), place.key) &&
            isFurther(colors.at(cell), place.above, place.key) && isFurther(colors.at(cell), place.below, place.key))
            return cell;
    return -1;
}

class PartnerScan : public testing::TestWithParam<int>
{
};

TEST_P(PartnerScan, FindsThePartnerThatAPatchByPatchScanFinds)
{
    PartnerFinder const find = partnerFinderOf(GetParam());
    if (!find)
        GTEST_SKIP() << "This processor has no instructions of that width.";
    std::mt19937 generator(1);
    for (IntSize grid : {IntSize{1, 1}, {1, 7}, {5, 3}, {36, 46}, {17, 1}, {3, 43}}) {
        PatchColors const colors = randomColors(grid, generator);
        for (int i = 0; i < 500; ++i) {
            PoorPlace const place{randomColor(generator), randomColor(generator), randomColor(generator),
                                  static_cast<float>(generator() % 12000)};
            EXPECT_EQ(find(colors.getRows(), place), partnerByTheBook(colors, grid, place));
        }
    }
}

TEST_P(PartnerScan, NeverFindsWhatIsNotANumber)
{
    PartnerFinder const find = partnerFinderOf(GetParam());
    if (!find)
        GTEST_SKIP() << "This processor has no instructions of that width.";
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    PatchColors colors({1, 2}, paper);
    colors.set(0, {{nan, 0, 0}});
    colors.set(1, {{0, nan, 0}});
    EXPECT_EQ(find(colors.getRows(), {{{50, 0, 0}}, {{90, 0, 0}}, {{90, 0, 0}}, 1}), -1);
}

INSTANTIATE_TEST_SUITE_P(OfEveryWidth, PartnerScan, testing::Values(4, 8, 16));

TEST(PartnerScan, HasNoOtherWidths)
{
    for (int width : {0, 1, 2, 3, 5, 32})
        EXPECT_EQ(partnerFinderOf(width), nullptr);
}

// t = (50, 0, 0) between two of (60, 0, 0): a candidate c needs more than 10 from both, and its own neighbours more
// than 10 from t.
TEST(PartnerScan, TakesNoPatchWhoseDifferenceOnlyReachesTheKey)
{
    PatchColors colors({1, 1}, paper);
    PoorPlace const place{{{50, 0, 0}}, {{60, 0, 0}}, {{60, 0, 0}}, 100};
    colors.set(0, {{70, 0, 0}});
    EXPECT_EQ(findPartner(colors.getRows(), place), -1);
    colors.set(0, {{71, 0, 0}});
    EXPECT_EQ(findPartner(colors.getRows(), place), 0);
}

TEST(PartnerScan, TakesALightnessDifferenceOfFiveAndNoSmallerOne)
{
    PatchColors colors({1, 1}, paper);
    PoorPlace const place{{{50, 0, 0}}, {{60, 0, 0}}, {{60, 0, 0}}, 100};
    colors.set(0, {{55, 70, 0}});
    EXPECT_EQ(findPartner(colors.getRows(), place), 0);
    colors.set(0, {{55.5f, 70, 0}});
    EXPECT_EQ(findPartner(colors.getRows(), place), -1);
}

} // namespace
