// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PartnerFinder.h"

#include "ColorEntry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
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

// Calls `use` for each cell of the grid.
template <typename Use>
void forEachCell(PatchColors const& colors, IntSize grid, Use const& use)
{
    for (int y = 0; y < grid.height; ++y)
        for (int x = 0; x < grid.width; ++x)
            use(colors.cellAt({x, y}));
}

PatchColors randomColors(IntSize grid, std::mt19937& generator)
{
    PatchColors colors(grid, paper);
    forEachCell(colors, grid, [&](int cell) { colors.set(cell, randomColor(generator)); });
    return colors;
}

bool isFurther(Lab const& a, Lab const& b, float key)
{
    return ColorEntry::computeSqDe(a.values, b.values) > key &&
           ColorEntry::computeSqDLStar(a.values, b.values) >= 25.0f;
}

int partnerByTheBook(PatchColors const& colors, IntSize grid, int cell, float key)
{
    int const row = colors.getRowLength();
    int partner = -1;
    forEachCell(colors, grid, [&](int other) {
        if (partner < 0 && isFurther(colors.at(cell), colors.at(other - row), key) &&
            isFurther(colors.at(cell), colors.at(other + row), key) &&
            isFurther(colors.at(other), colors.at(cell - row), key) &&
            isFurther(colors.at(other), colors.at(cell + row), key))
            partner = other;
    });
    return partner;
}

class PartnerScanOf : public testing::TestWithParam<int>
{
protected:
    void SetUp() override
    {
        if (!PartnerFinder::hasWidth(GetParam()))
            GTEST_SKIP() << "This processor has no instructions of that width.";
    }

    void expectSameEverywhere(PatchColors const& colors, IntSize grid, float key) const
    {
        PartnerFinder partners(GetParam());
        forEachCell(colors, grid, [&](int cell) {
            EXPECT_EQ(partners.find(colors, cell, key), partnerByTheBook(colors, grid, cell, key))
                << cell << ", key " << key;
        });
    }
};

TEST_P(PartnerScanOf, FindsThePartnerThatAPatchByPatchScanFinds)
{
    std::mt19937 generator(1);
    for (IntSize grid : {IntSize{1, 1}, {1, 7}, {5, 3}, {36, 46}, {17, 1}, {3, 43}})
        for (int i = 0; i < 20; ++i)
            expectSameEverywhere(randomColors(grid, generator), grid, static_cast<float>(generator() % 12000));
}

// With coarser rounding, both would seem to be on the other side of the key.
TEST_P(PartnerScanOf, DistinguishesTheSmallestDifferences)
{
    std::mt19937 generator(2);
    auto const nearly = [&](float value) {
        float const step = static_cast<float>(generator() % 3) - 1;
        return std::nextafter(value, value + step * 1000);
    };
    for (float const key : {25.0f, 100.0f, 1600.0f, 3600.0f, 8100.0f}) {
        IntSize const grid{4, 60};
        PatchColors colors(grid, paper);
        float const far = 50 + std::sqrt(key) / 2;
        float const near = 50 - std::sqrt(key) / 2;
        forEachCell(colors, grid, [&](int cell) {
            colors.set(cell, {{nearly(generator() % 2 ? far : near), 12.3f, -3.21f}});
        });
        expectSameEverywhere(colors, grid, key);
    }
}

// All differ enough in chroma. Only the lightness decides.
TEST_P(PartnerScanOf, DistinguishesTheSmallestDifferencesInLightness)
{
    std::mt19937 generator(4);
    float const steps[] = {44.9f, 44.98f, 44.99f, 45, 45.01f, 45.02f, 49.99f, 50, 54.98f, 54.99f, 55, 55.01f, 55.1f};
    for (int i = 0; i < 20; ++i) {
        IntSize const grid{4, 60};
        PatchColors colors(grid, paper);
        forEachCell(colors, grid, [&](int cell) {
            float const lightness = steps[generator() % std::size(steps)];
            float const step = static_cast<float>(generator() % 3) - 1;
            colors.set(cell, {{std::nextafter(lightness, lightness + step), generator() % 2 ? 60.0f : -60.0f, 0}});
        });
        expectSameEverywhere(colors, grid, 2500);
    }
}

TEST_P(PartnerScanOf, TakesTheExtremesOfCielab)
{
    std::mt19937 generator(3);
    IntSize const grid{7, 50};
    PatchColors colors(grid, {{100, 0, 0}});
    auto const extreme = [&] { return generator() % 2 ? 127.0f : -127.0f; };
    forEachCell(colors, grid, [&](int cell) {
        colors.set(cell, {{generator() % 2 ? 100.0f : 0.0f, extreme(), extreme()}});
    });
    ASSERT_TRUE(colors.areFixed());
    for (float const key : {0.0f, 9999.0f, 64516.0f, 74515.9f, 99999.0f})
        expectSameEverywhere(colors, grid, key);
}

TEST_P(PartnerScanOf, FindsPartnersAmongColorsOutsideOfCielab)
{
    std::mt19937 generator(4);
    IntSize const grid{36, 46};
    PatchColors colors = randomColors(grid, generator);
    colors.set(colors.cellAt({5, 13}), {{50, 127.5f, 0}});
    colors.set(colors.cellAt({9, 30}), {{1e30f, 0, -1e30f}});
    colors.set(colors.cellAt({10, 30}), {{std::numeric_limits<float>::infinity(), 0, 0}});
    ASSERT_FALSE(colors.areFixed());
    for (float const key : {25.0f, 2000.0f, 6000.0f})
        expectSameEverywhere(colors, grid, key);
}

TEST_P(PartnerScanOf, NeverFindsColorsThatAreNotNumbers)
{
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    PatchColors colors({1, 3}, {{90, 0, 0}});
    colors.set(colors.cellAt({0, 0}), {{nan, 0, 0}});
    colors.set(colors.cellAt({0, 1}), {{50, 0, 0}});
    colors.set(colors.cellAt({0, 2}), {{0, nan, 0}});
    EXPECT_EQ(PartnerFinder(GetParam()).find(colors, colors.cellAt({0, 1}), 1), -1);
}

INSTANTIATE_TEST_SUITE_P(EveryWidth, PartnerScanOf, testing::Values(1, 4, 8, 16));

TEST(PartnerFinder, HasNoOtherWidths)
{
    for (int width : {0, 2, 3, 5, 32})
        EXPECT_FALSE(PartnerFinder::hasWidth(width)) << width;
}

// Two columns of three patches. The second patch of the left column has a lightness of 50. Its neighbours have 60, so
// its key is 100. Paper has the same lightness of 50: only the patch on the right can be the partner.
class PartnerOfAPoorPatch : public testing::Test
{
protected:
    bool fits(Lab const& other, Lab const& besideOther)
    {
        constexpr Lab neighbour{{60, 0, 0}};
        PatchColors colors({2, 3}, patch);
        colors.set(colors.cellAt({0, 0}), neighbour);
        colors.set(colors.cellAt({0, 1}), patch);
        colors.set(colors.cellAt({0, 2}), neighbour);
        colors.set(colors.cellAt({1, 0}), besideOther);
        colors.set(colors.cellAt({1, 1}), other);
        colors.set(colors.cellAt({1, 2}), besideOther);
        int const partner = PartnerFinder().find(colors, colors.cellAt({0, 1}), 100);
        EXPECT_TRUE(partner == -1 || partner == colors.cellAt({1, 1}));
        return partner >= 0;
    }

    static constexpr Lab patch{{50, 0, 0}};
    static constexpr Lab black{{0, 0, 0}};
};

TEST_F(PartnerOfAPoorPatch, DiffersFromItsNewNeighboursByMoreThanTheKey)
{
    EXPECT_FALSE(fits({{70, 0, 0}}, black));
    EXPECT_TRUE(fits({{70.001f, 0, 0}}, black));
}

TEST_F(PartnerOfAPoorPatch, HasNeighboursThatDifferFromThePatchByMoreThanTheKey)
{
    EXPECT_FALSE(fits({{90, 0, 0}}, {{40, 0, 0}}));
    EXPECT_TRUE(fits({{90, 0, 0}}, {{39.999f, 0, 0}}));
}

TEST_F(PartnerOfAPoorPatch, DiffersFromItsNewNeighboursByALightnessOfFive)
{
    EXPECT_FALSE(fits({{55.001f, 70, 0}}, black));
    EXPECT_TRUE(fits({{55, 70, 0}}, black));
}

TEST_F(PartnerOfAPoorPatch, HasNeighboursThatDifferFromThePatchByALightnessOfFive)
{
    EXPECT_FALSE(fits({{90, 0, 0}}, {{45.001f, 70, 0}}));
    EXPECT_TRUE(fits({{90, 0, 0}}, {{45, 70, 0}}));
}

} // namespace
