// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "patchset/PatchSet.h"

#include "color/ColorEntry.h"
#include "patchset/FillDistance.h"
#include "support/PlainPrinter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <map>
#include <string>

namespace
{

using testing::HasSubstr;

PatchSetWish wishOf(std::size_t patches)
{
    PatchSetWish wish;
    wish.patches = patches;
    return wish;
}

std::vector<std::string> textsOf(PatchSet const& set)
{
    std::vector<std::string> texts;
    for (SetPatch const& patch : set.patches)
        texts.push_back(patch.text);
    return texts;
}

double sumOf(std::string const& text)
{
    double sum = 0;
    for (char const *next = text.data(), *const end = next + text.size(); next < end; ++next) {
        double value = 0;
        next = std::from_chars(next, end, value).ptr;
        sum += value;
    }
    return sum;
}

// How often each text is there.
std::map<std::string, std::size_t> repeatsOf(PatchSet const& set)
{
    std::map<std::string, std::size_t> repeats;
    for (SetPatch const& patch : set.patches)
        ++repeats[patch.text];
    return repeats;
}

class PatchSetTest : public testing::Test
{
protected:
    PatchSetTest() { ColorEntry::prepareColorConversions(); }
    ~PatchSetTest() override { ColorEntry::endColorConversions(); }
};

} // namespace

TEST_F(PatchSetTest, HasExactlyAsManyPatchesAsWished)
{
    for (ColorSpace const space : {CMYK, RGB})
        for (std::size_t const patches : {1U, 2U, 3U, 4U, 5U, 7U, 12U, 19U, 25U, 63U, 100U, 257U}) {
            PatchSet const set = makePatchSet(plainPrinter(space), wishOf(patches));
            EXPECT_EQ(set.fault, "");
            EXPECT_EQ(set.patches.size(), patches);
            std::size_t all = 0;
            for (std::size_t const count : set.counts)
                all += count;
            EXPECT_EQ(all, patches);
        }
}

TEST_F(PatchSetTest, MakesALargeSet)
{
    PatchSet const set = makePatchSet(plainPrinter(RGB), wishOf(6000));
    EXPECT_EQ(set.patches.size(), 6000U);
    EXPECT_EQ(repeatsOf(set).size(), 6000U - 3);
}

TEST_F(PatchSetTest, RepeatsOnlyTheWhites)
{
    for (ColorSpace const space : {CMYK, RGB})
        for (ValueStep const step : {ValueStep::whole, ValueStep::tenth, ValueStep::eightBit}) {
            PatchSetWish wish = wishOf(120);
            wish.step = step;
            auto repeats = repeatsOf(makePatchSet(plainPrinter(space), wish));
            std::string const white = space == CMYK ? "0 0 0 0" : "255 255 255";
            EXPECT_EQ(repeats[white], 4U);
            repeats.erase(white);
            for (auto const& [text, count] : repeats)
                EXPECT_EQ(count, 1U) << text;
        }
}

TEST_F(PatchSetTest, EveryPatchIsWithinTheInkLimitAsWritten)
{
    for (ValueStep const step : {ValueStep::whole, ValueStep::tenth, ValueStep::eightBit})
        for (double const limit : {100.0, 133.3, 240.0, 300.0, 400.0}) {
            PatchSetWish wish = wishOf(60);
            wish.inkLimit = limit;
            wish.step = step;
            PatchSet const set = makePatchSet(ownPrinter(CMYK), wish);
            EXPECT_EQ(set.patches.size(), 60U);
            for (std::string const& text : textsOf(set))
                EXPECT_LE(sumOf(text), limit + 1e-9) << text;
        }
}

TEST_F(PatchSetTest, WritesValuesInTheStepsWished)
{
    PatchSetWish wish = wishOf(200);
    wish.step = ValueStep::whole;
    for (std::string const& text : textsOf(makePatchSet(plainPrinter(CMYK), wish)))
        EXPECT_EQ(text.find('.'), std::string::npos) << text;
}

TEST_F(PatchSetTest, SpreadsTheWhitesThroughTheTable)
{
    PatchSetWish wish = wishOf(100);
    wish.whites = 5;
    std::vector<std::size_t> places;
    PatchSet const set = makePatchSet(plainPrinter(CMYK), wish);
    for (std::size_t i = 0; i < set.patches.size(); ++i)
        if (set.patches[i].kind == PatchKind::white)
            places.push_back(i);
    EXPECT_EQ(places, (std::vector<std::size_t>{0, 20, 40, 60, 80}));
}

TEST_F(PatchSetTest, HasTheWishedRampsAndNeutrals)
{
    PatchSetWish wish = wishOf(400);
    wish.ramps = 5;
    wish.neutrals = 10;
    wish.whites = 0;
    PatchSet const set = makePatchSet(plainPrinter(CMYK), wish);
    auto const texts = textsOf(set);
    EXPECT_THAT(texts, testing::Contains("0 40 0 0"));
    EXPECT_THAT(texts, testing::Contains("60 60 0 0"));
    EXPECT_EQ(set.countOf(PatchKind::ramp), 50U);
    EXPECT_GE(set.countOf(PatchKind::neutral), 18U);
    EXPECT_EQ(set.countOf(PatchKind::white), 0U);
    EXPECT_THAT(texts, testing::Not(testing::Contains("0 0 0 0")));
}

TEST_F(PatchSetTest, HasTheIncludedPatchesAsTheyAre)
{
    PatchSetWish wish = wishOf(50);
    wish.included = {{"33.333 0 0 0", {33.333F, 0, 0, 0}},
                     {"100 0 0 0", {100, 0, 0, 0}},
                     {"100 0 0 0", {100, 0, 0, 0}},
                     {"0 0 0 0", {0, 0, 0, 0}}};
    PatchSet const set = makePatchSet(plainPrinter(CMYK), wish);
    auto repeats = repeatsOf(set);
    EXPECT_EQ(set.patches.size(), 50U);
    EXPECT_EQ(set.countOf(PatchKind::included), 4U);
    EXPECT_EQ(repeats["33.333 0 0 0"], 1U);
    EXPECT_EQ(repeats["100 0 0 0"], 2U);
    EXPECT_EQ(repeats["0 0 0 0"], 4U);
    EXPECT_EQ(set.countOf(PatchKind::white), 3U);
}

TEST_F(PatchSetTest, TellsThatTheFixedPatchesAreTooMany)
{
    PatchSetWish wish = wishOf(20);
    wish.whites = 12;
    wish.included.assign(9, {"1 2 3 4", {1, 2, 3, 4}});
    PatchSet const set = makePatchSet(plainPrinter(CMYK), wish);
    EXPECT_EQ(set.fault, "the patches that must be in are 21: 9 included, 12 white; the table is to have 20");
    EXPECT_TRUE(set.patches.empty());
    wish.patches = 21;
    EXPECT_EQ(makePatchSet(plainPrinter(CMYK), wish).patches.size(), 21U);
}

TEST_F(PatchSetTest, CountsWishedRampsAsFixed)
{
    PatchSetWish wish = wishOf(30);
    wish.ramps = 10;
    EXPECT_THAT(makePatchSet(plainPrinter(CMYK), wish).fault, HasSubstr("100 on ramps"));
}

TEST_F(PatchSetTest, IsTheSameForTheSameWish)
{
    PatchSetWish wish = wishOf(150);
    wish.seed = 77;
    auto const first = textsOf(makePatchSet(ownPrinter(CMYK), wish));
    EXPECT_EQ(textsOf(makePatchSet(ownPrinter(CMYK), wish)), first);
    wish.seed = 78;
    EXPECT_NE(textsOf(makePatchSet(ownPrinter(CMYK), wish)), first);
}

TEST_F(PatchSetTest, SurvivesAPrinterThatGivesNoColours)
{
    Printer const broken(CMYK, [](float const*, float* labs, std::size_t count) {
        std::fill_n(labs, 3 * count, std::numeric_limits<float>::quiet_NaN());
    });
    EXPECT_EQ(makePatchSet(broken, wishOf(1000)).patches.size(), 1000U);
}

// Colours that jump between the ends of single precision, as a damaged profile may give them.
TEST_F(PatchSetTest, SurvivesAPrinterWithWildColours)
{
    for (ColorSpace const space : {CMYK, RGB}) {
        Printer const wild(space, [space](float const* percents, float* labs, std::size_t count) {
            std::size_t const channels = space == CMYK ? 4 : 3;
            for (std::size_t i = 0; i < 3 * count; ++i) {
                float const percent = percents[i / 3 * channels + i % 3];
                labs[i] = static_cast<int>(percent) % 2 == 0 ? 1e38F : -1e38F;
            }
        });
        PatchSet const set = makePatchSet(wild, wishOf(200));
        EXPECT_EQ(set.patches.size(), 200U);
        EXPECT_EQ(repeatsOf(set).size(), 200U - 3);
    }
}

// What we promise for 500 RGB patches, and for 500 CMYK patches within 300 %.
TEST_F(PatchSetTest, LeavesNoColourFarFromAPatch)
{
    PatchSetWish wish = wishOf(500);
    wish.step = ValueStep::eightBit;
    auto const rgb = fillDistancesOf(ownPrinter(RGB), 400, makePatchSet(ownPrinter(RGB), wish).colors(), 42);
    EXPECT_LE(rgb.deltaE.mean, 5.8);
    EXPECT_LE(rgb.deltaE.nearlyLargest, 9.6);
    EXPECT_LE(rgb.deltaE.largest, 11.6);
    EXPECT_LE(rgb.device.mean, 6.7);
    EXPECT_LE(rgb.device.nearlyLargest, 12.5);
    EXPECT_LE(rgb.device.largest, 15.6);
    wish.step = ValueStep::tenth;
    wish.inkLimit = 300;
    auto const cmyk = fillDistancesOf(ownPrinter(CMYK), 300, makePatchSet(ownPrinter(CMYK), wish).colors(), 42);
    EXPECT_LE(cmyk.deltaE.mean, 4.1);
    EXPECT_LE(cmyk.deltaE.nearlyLargest, 8.6);
    EXPECT_LE(cmyk.deltaE.largest, 12.4);
    EXPECT_LE(cmyk.device.mean, 12.4);
    EXPECT_LE(cmyk.device.nearlyLargest, 19.5);
    EXPECT_LE(cmyk.device.largest, 24.6);
}
