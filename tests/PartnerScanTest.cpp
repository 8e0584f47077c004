// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PartnerScan.h"

#include "ColorEntry.h"

#include <gtest/gtest.h>

#include <cmath>
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

int partnerByTheBook(PatchColors const& colors, int cell, float key)
{
    int const row = colors.getColumns();
    for (int other = 0; other < colors.getCells(); ++other)
        if (isFurther(colors.at(cell), colors.at(other - row), key) &&
            isFurther(colors.at(cell), colors.at(other + row), key) &&
            isFurther(colors.at(other), colors.at(cell - row), key) &&
            isFurther(colors.at(other), colors.at(cell + row), key))
            return other;
    return -1;
}

class PartnerScan : public testing::TestWithParam<int>
{
protected:
    void SetUp() override
    {
        find = partnerFinderOf(GetParam());
        if (!find)
            GTEST_SKIP() << "This processor has no instructions of that width.";
    }

    void expectSameEverywhere(PatchColors const& colors, float key) const
    {
        for (int cell = 0; cell < colors.getCells(); ++cell)
            EXPECT_EQ(find(colors, cell, key), partnerByTheBook(colors, cell, key)) << cell << ", key " << key;
    }

    PartnerFinder find = nullptr;
};

TEST_P(PartnerScan, FindsThePartnerThatAPatchByPatchScanFinds)
{
    std::mt19937 generator(1);
    for (IntSize grid : {IntSize{1, 1}, {1, 7}, {5, 3}, {36, 46}, {17, 1}, {3, 43}})
        for (int i = 0; i < 20; ++i)
            expectSameEverywhere(randomColors(grid, generator), static_cast<float>(generator() % 12000));
}

// Rounded to less, both would seem to lie on the other side of the key.
TEST_P(PartnerScan, SeesTheSmallestDifferences)
{
    std::mt19937 generator(2);
    auto const nearly = [&](float value) {
        float const step = static_cast<float>(generator() % 3) - 1;
        return std::nextafter(value, value + step * 1000);
    };
    for (float const key : {25.0f, 100.0f, 1600.0f, 3600.0f, 8100.0f}) {
        PatchColors colors({4, 60}, paper);
        float const far = 50 + std::sqrt(key) / 2;
        float const near = 50 - std::sqrt(key) / 2;
        for (int cell = 0; cell < colors.getCells(); ++cell)
            colors.set(cell, {{nearly(generator() % 2 ? far : near), 12.3f, -3.21f}});
        expectSameEverywhere(colors, key);
    }
}

TEST_P(PartnerScan, TakesTheExtremesOfCielab)
{
    std::mt19937 generator(3);
    PatchColors colors({7, 50}, {{100, 0, 0}});
    auto const extreme = [&] { return generator() % 2 ? 127.0f : -127.0f; };
    for (int cell = 0; cell < colors.getCells(); ++cell)
        colors.set(cell, {{generator() % 2 ? 100.0f : 0.0f, extreme(), extreme()}});
    ASSERT_TRUE(colors.areFixed());
    for (float const key : {0.0f, 9999.0f, 64516.0f, 74515.9f, 99999.0f})
        expectSameEverywhere(colors, key);
}

TEST_P(PartnerScan, FindsPartnersAmongColorsOutsideOfCielab)
{
    std::mt19937 generator(4);
    PatchColors colors = randomColors({36, 46}, generator);
    colors.set(500, {{50, 127.5f, 0}});
    colors.set(900, {{1e30f, 0, -1e30f}});
    colors.set(901, {{std::numeric_limits<float>::infinity(), 0, 0}});
    ASSERT_FALSE(colors.areFixed());
    for (float const key : {25.0f, 2000.0f, 6000.0f})
        expectSameEverywhere(colors, key);
}

TEST_P(PartnerScan, NeverFindsWhatIsNotANumber)
{
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    PatchColors colors({1, 3}, {{90, 0, 0}});
    colors.set(0, {{nan, 0, 0}});
    colors.set(1, {{50, 0, 0}});
    colors.set(2, {{0, nan, 0}});
    EXPECT_EQ(find(colors, 1, 1), -1);
}

INSTANTIATE_TEST_SUITE_P(OfEveryWidth, PartnerScan, testing::Values(1, 4, 8, 16));

TEST(PartnerScan, HasNoOtherWidths)
{
    for (int width : {0, 2, 3, 5, 32})
        EXPECT_EQ(partnerFinderOf(width), nullptr);
}

// Two columns of three patches. The second of the left ones, of lightness 50, has two of 60 for neighbours and a key of
// 100. Paper is as light as it is: only the patch to its right can be its partner.
class PartnerOfAPoorPatch : public testing::Test
{
protected:
    int find(Lab const& other, Lab const& besideOther)
    {
        constexpr Lab neighbour{{60, 0, 0}};
        PatchColors colors({2, 3}, patch);
        colors.set(0, neighbour);
        colors.set(1, besideOther);
        colors.set(2, patch);
        colors.set(3, other);
        colors.set(4, neighbour);
        colors.set(5, besideOther);
        return findPartner(colors, 2, 100);
    }

    static constexpr Lab patch{{50, 0, 0}};
    static constexpr Lab black{{0, 0, 0}};
};

TEST_F(PartnerOfAPoorPatch, DiffersFromItsNewNeighboursByMoreThanTheKey)
{
    EXPECT_EQ(find({{70, 0, 0}}, black), -1);
    EXPECT_EQ(find({{70.001f, 0, 0}}, black), 3);
}

TEST_F(PartnerOfAPoorPatch, HasNeighboursThatDifferFromThePatchByMoreThanTheKey)
{
    EXPECT_EQ(find({{90, 0, 0}}, {{40, 0, 0}}), -1);
    EXPECT_EQ(find({{90, 0, 0}}, {{39.999f, 0, 0}}), 3);
}

TEST_F(PartnerOfAPoorPatch, DiffersFromItsNewNeighboursByALightnessOfFive)
{
    EXPECT_EQ(find({{55.001f, 70, 0}}, black), -1);
    EXPECT_EQ(find({{55, 70, 0}}, black), 3);
}

TEST_F(PartnerOfAPoorPatch, HasNeighboursThatDifferFromThePatchByALightnessOfFive)
{
    EXPECT_EQ(find({{90, 0, 0}}, {{45.001f, 70, 0}}), -1);
    EXPECT_EQ(find({{90, 0, 0}}, {{45, 70, 0}}), 3);
}

} // namespace
