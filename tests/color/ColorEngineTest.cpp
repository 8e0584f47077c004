// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColorEngine.h"

#include "ColorEntry.h"
#include "Folders.h"
#include "support/ProfileColours.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace
{

using testing::Each;
using testing::ElementsAreArray;

using Triple = std::array<float, 3>;

ColorEngine engineOfProfiles()
{
    return {respath + "generic.icc", respath + "RGBgeneric.icc"};
}

Triple labOf(ColorEngine const& engine, ColorSpace colorSpace, std::array<float, 4> device)
{
    Triple lab{-1, -1, -1};
    engine.toLab(colorSpace, device.data(), lab.data(), 1);
    return lab;
}

Triple displayColorOf(ColorEngine const& engine, Triple lab)
{
    Triple color{-1, -1, -1};
    engine.toDisplay(lab.data(), color.data(), 1);
    return color;
}

void expectOnlyZeros(ColorEngine const& engine)
{
    EXPECT_THAT(labOf(engine, RGB, {0.5F, 0.5F, 0.5F, 0}), Each(0));
    EXPECT_THAT(labOf(engine, CMYK, {10, 20, 30, 40}), Each(0));
    EXPECT_THAT(displayColorOf(engine, {50, 10, 10}), Each(0));
    EXPECT_THAT(engine.paper().values, Each(0));
}

} // namespace

TEST(ColorEngine, GivesZerosWithoutProfiles)
{
    expectOnlyZeros(ColorEngine());
}

TEST(ColorEngine, GivesZerosWithPathsThatLeadNowhere)
{
    expectOnlyZeros(ColorEngine("/no/such/profile", "/no/such/profile"));
}

TEST(ColorEngine, TakesCmykInPercent)
{
    ColorEngine const engine = engineOfProfiles();
    ProfileColours const expected(CMYK);
    for (auto const& [device, texts] :
         {std::pair(std::array<float, 4>{50, 20, 0, 10}, std::vector<std::string>{"50", "20", "0", "10"}),
          std::pair(std::array<float, 4>{0, 0, 0, 100}, std::vector<std::string>{"0", "0", "0", "100"})}) {
        Triple const lab = labOf(engine, CMYK, device);
        EXPECT_LT(deltaE({lab[0], lab[1], lab[2]}, expected.of(texts)), 0.1);
    }
}

TEST(ColorEngine, TakesRgbFromZeroToOne)
{
    ColorEngine const engine = engineOfProfiles();
    Triple const white = labOf(engine, RGB, {1, 1, 1, 0});
    EXPECT_NEAR(white[0], 100, 0.1);
    EXPECT_NEAR(white[1], 0, 0.1);
    EXPECT_NEAR(white[2], 0, 0.1);
    // 51 / 255 = 0.2, 204 / 255 = 0.8
    Triple const lab = labOf(engine, RGB, {0.2F, 0.8F, 0, 0});
    EXPECT_LT(deltaE({lab[0], lab[1], lab[2]}, ProfileColours(RGB).of({"51", "204", "0"})), 0.1);
}

TEST(ColorEngine, TreatsAnUndefinedColourSpaceAsRgb)
{
    ColorEngine const engine = engineOfProfiles();
    EXPECT_EQ(labOf(engine, undefined, {0.2F, 0.8F, 0, 0}), labOf(engine, RGB, {0.2F, 0.8F, 0, 0}));
}

TEST(ColorEngine, PaperIsCmykWithoutInk)
{
    ColorEngine const engine = engineOfProfiles();
    EXPECT_THAT(engine.paper().values, ElementsAreArray(labOf(engine, CMYK, {0, 0, 0, 0})));
    EXPECT_GT(engine.paper().values[0], 90);
}

TEST(ColorEngine, DisplaysWhiteAndBlackAsTheExtremes)
{
    ColorEngine const engine = engineOfProfiles();
    for (float const color : displayColorOf(engine, {100, 0, 0}))
        EXPECT_NEAR(color, 1, 0.01);
    for (float const color : displayColorOf(engine, {0, 0, 0}))
        EXPECT_NEAR(color, 0, 0.01);
}

TEST(ColorEngine, ManyColoursAtOnceAreTheSameAsSingleColours)
{
    ColorEngine const engine = engineOfProfiles();
    constexpr std::size_t count = 300;
    std::vector<float> device;
    for (std::size_t i = 0; i < 4 * count; ++i)
        device.push_back(static_cast<float>(i * 37 % 101));
    std::vector<float> labs(3 * count);
    engine.toLab(CMYK, device.data(), labs.data(), count);
    for (std::size_t i = 0; i < count; ++i) {
        float const* const values = &device[4 * i];
        EXPECT_EQ((Triple{labs[3 * i], labs[3 * i + 1], labs[3 * i + 2]}),
                  labOf(engine, CMYK, {values[0], values[1], values[2], values[3]}));
    }
}

TEST(ColorEngine, TheProcessHasProfilesOnlyBetweenPreparingAndEndingConversions)
{
    expectOnlyZeros(colorEngine());
    ColorEntry::prepareColorConversions();
    EXPECT_EQ(labOf(colorEngine(), RGB, {1, 0, 0, 0}), labOf(engineOfProfiles(), RGB, {1, 0, 0, 0}));
    ColorEntry::endColorConversions();
    expectOnlyZeros(colorEngine());
}
