// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColorEntry.h"

#include "ChartLayout.h"
#include "Folders.h"
#include "support/CapturedOutput.h"
#include "support/DecimalCommaLocale.h"
#include "support/StringText.h"
#include "support/TemporaryFolder.h"
#include "support/TestChart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <lcms2.h>

#include <array>
#include <limits>
#include <string>
#include <vector>

using testing::ElementsAre;

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

using Triple = std::array<float, 3>;

Triple tripleOf(float const* values)
{
    return {values[0], values[1], values[2]};
}

Triple labOf(ColorSpace colorSpace, std::string const& line)
{
    return tripleOf(entryOf(colorSpace, line).getLab());
}

std::vector<std::string> textsOf(ColorEntry const& entry)
{
    std::vector<std::string> texts;
    for (String const& value : entry.getValues())
        texts.push_back(textOf(value));
    return texts;
}

Array<String> textArray(std::vector<std::string> const& texts)
{
    Array<String> array(texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i)
        array[i] = String(texts[i].c_str());
    return array;
}

// A colour through a transform of its own between one of the program's profiles and CIELAB.
Triple transformed(char const* profileName, bool toLab, cmsUInt32Number deviceFormat, std::array<float, 4> input)
{
    cmsHPROFILE const device = cmsOpenProfileFromFile((textOf(respath) + profileName).c_str(), "r");
    cmsHPROFILE const lab = cmsCreateLab4Profile(nullptr);
    cmsHTRANSFORM const transform =
        toLab ? cmsCreateTransform(device, deviceFormat, lab, TYPE_Lab_FLT, INTENT_ABSOLUTE_COLORIMETRIC, 0)
              : cmsCreateTransform(lab, TYPE_Lab_FLT, device, deviceFormat, INTENT_ABSOLUTE_COLORIMETRIC, 0);
    Triple output{-1, -1, -1};
    cmsDoTransform(transform, input.data(), output.data(), 1);
    cmsDeleteTransform(transform);
    cmsCloseProfile(lab);
    cmsCloseProfile(device);
    return output;
}

Triple labOfCmyk(std::array<float, 4> percent)
{
    return transformed("generic.icc", true, TYPE_CMYK_FLT, percent);
}

Triple labOfRgb(Triple rgb)
{
    return transformed("RGBgeneric.icc", true, TYPE_RGB_FLT, {rgb[0] / 255.0F, rgb[1] / 255.0F, rgb[2] / 255.0F, 0});
}

Triple displayColorOf(Triple lab)
{
    return transformed("RGBgeneric.icc", false, TYPE_RGB_FLT, {lab[0], lab[1], lab[2], 0});
}

constexpr Triple zeros{0, 0, 0};

// Uses other resources, or none, while it lives.
class OtherResources
{
public:
    explicit OtherResources(String const& folder)
    {
        ColorEntry::endColorConversions();
        respath = folder;
    }

    ~OtherResources()
    {
        respath = original;
        ColorEntry::prepareColorConversions();
    }

private:
    String const original = respath;
};

} // namespace

TEST(ColorEntry, ColourSpacesHaveTheirNamesAndChannels)
{
    EXPECT_EQ(undefined, 0);
    EXPECT_EQ(CMYK, 1);
    EXPECT_EQ(RGB, 2);
    EXPECT_THAT(colorspace_names,
                ElementsAre(testing::StrEq("undefined"), testing::StrEq("CMYK"), testing::StrEq("RGB")));
    EXPECT_THAT(colorspace_nof_channels, ElementsAre(0, 4, 3));
}

TEST(ColorEntry, StatusesHaveTheirNumbers)
{
    EXPECT_EQ(Data, 0);
    EXPECT_EQ(Filler, 1);
    EXPECT_EQ(Hidden, 2);
    EXPECT_EQ(Invalid, 3);
}

TEST(ColorEntry, StartsWithoutValuesAndOutsideAnyHeap)
{
    ColorEntry const entry;
    EXPECT_EQ(entry.getValues().getCount(), 0U);
    EXPECT_EQ(entry.getValues().getCapacity(), 1U);
    EXPECT_EQ(entry.getHeapPosition(), 0U);
}

TEST(ColorEntry, SetValuesMakesAPatchOfTexts)
{
    ColorEntry entry;
    entry.setValues(CMYK, textArray({"12.5", "+7", "1e1", "0"}));
    EXPECT_EQ(entry.getStatus(), Data);
    EXPECT_EQ(entry.getColorSpace(), CMYK);
    EXPECT_THAT(textsOf(entry), ElementsAre("12.5", "+7", "1e1", "0"));
    EXPECT_EQ(tripleOf(entry.getLab()), labOfCmyk({12.5F, 7, 10, 0}));
    EXPECT_EQ(tripleOf(entry.getDisplayColor()), displayColorOf(tripleOf(entry.getLab())));
}

TEST(ColorEntry, SetValuesReportsEveryChannelIfTheNumberOfTextsIsWrong)
{
    for (std::vector<std::string> const& texts : {std::vector<std::string>{}, {"1", "2"}, {"1", "2", "3", "4"}}) {
        ColorEntry entry = entryOf(RGB, "1 2 3");
        EXPECT_EQ(errorsOf([&] { entry.setValues(RGB, textArray(texts)); }),
                  "Array element out of bounds.\rArray element out of bounds.\rArray element out of bounds.\r");
        EXPECT_EQ(entry.getStatus(), Invalid);
        EXPECT_EQ(entry.getValues().getCount(), 0U);
    }
}

TEST(ColorEntry, TakeValuesLeavesTheColourToComputeColors)
{
    ColorEntry entries[2];
    entries[0].takeValues(RGB, textArray({"255", "0", "128"}));
    entries[1].takeValues(RGB, textArray({"1", "2", "3"}));
    EXPECT_EQ(entries[0].getStatus(), Data);
    EXPECT_EQ(tripleOf(entries[0].getLab()), zeros);
    EXPECT_EQ(tripleOf(entries[0].getDisplayColor()), zeros);
    ColorEntry::computeColors(entries, 2);
    EXPECT_EQ(tripleOf(entries[0].getLab()), labOfRgb({255, 0, 128}));
    EXPECT_EQ(tripleOf(entries[1].getLab()), labOfRgb({1, 2, 3}));
    EXPECT_EQ(tripleOf(entries[0].getDisplayColor()), displayColorOf(labOfRgb({255, 0, 128})));
}

TEST(ColorEntry, TakesCmykAsPercentThroughTheCmykProfile)
{
    EXPECT_EQ(labOf(CMYK, "0 0 0 0"), labOfCmyk({0, 0, 0, 0}));
    EXPECT_EQ(labOf(CMYK, "100 0 0 0"), labOfCmyk({100, 0, 0, 0}));
    EXPECT_EQ(labOf(CMYK, "12.5 33.3 1e1 +7"), labOfCmyk({12.5F, 33.3F, 10, 7}));
    EXPECT_EQ(labOf(CMYK, "0 0 0 100"), labOfCmyk({0, 0, 0, 100}));
    EXPECT_GT(labOf(CMYK, "0 0 0 0")[0], 90);
    EXPECT_LT(labOf(CMYK, "0 0 0 100")[0], 30);
}

TEST(ColorEntry, TakesRgbFrom0To255ThroughTheRgbProfile)
{
    EXPECT_EQ(labOf(RGB, "255 0 128"), labOfRgb({255, 0, 128}));
    EXPECT_EQ(labOf(RGB, "1 2 3"), labOfRgb({1, 2, 3}));
    EXPECT_EQ(labOf(RGB, "12.75 .5 1e2"), labOfRgb({12.75F, 0.5F, 100}));
    // White is L* 100 and neutral, mid-grey L* 53.6, as in sRGB.
    EXPECT_NEAR(labOf(RGB, "255 255 255")[0], 100, 0.1);
    EXPECT_NEAR(labOf(RGB, "255 255 255")[2], 0, 0.1);
    EXPECT_NEAR(labOf(RGB, "128 128 128")[0], 53.59, 0.1);
}

TEST(ColorEntry, PassesValuesOutOfRangeToTheColourEngineUnchanged)
{
    float const infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(labOf(RGB, "300 -5 65535"), labOfRgb({300, -5, 65535}));
    EXPECT_NE(labOf(RGB, "300 -5 65535"), labOf(RGB, "255 0 255"));
    EXPECT_EQ(labOf(CMYK, "300 -5 0 101"), labOfCmyk({300, -5, 0, 101}));
    EXPECT_THAT(labOf(RGB, "1e400 0 0"),
                testing::Pointwise(testing::NanSensitiveFloatEq(), labOfRgb({infinity, 0, 0})));
    EXPECT_THAT(labOf(CMYK, "1e400 -1e400 0 0"),
                testing::Pointwise(testing::NanSensitiveFloatEq(), labOfCmyk({infinity, -infinity, 0, 0})));
    EXPECT_EQ(entryOf(CMYK, "nan nan nan nan").getStatus(), Data);
}

TEST(ColorEntry, ReadsATextThatIsNoNumberAsZero)
{
    EXPECT_EQ(errorsOf([] { EXPECT_EQ(labOf(RGB, "abc 10 #"), labOf(RGB, "0 10 0")); }), "");
    EXPECT_EQ(labOf(CMYK, "12x --3 7 ."), labOf(CMYK, "12 0 7 0"));
}

TEST(ColorEntry, ReadsDecimalPointsUnderADecimalCommaLocale)
{
    Triple const rgb = labOf(RGB, "12.75 0.5 100.25");
    Triple const cmyk = labOf(CMYK, "12.5 33.3 10 7");
    Triple const cut = labOf(RGB, "12 0 100");
    DecimalCommaLocale const locale;
    ASSERT_TRUE(locale.isInForce());
    EXPECT_EQ(labOf(RGB, "12.75 0.5 100.25"), rgb);
    EXPECT_EQ(labOf(CMYK, "12.5 33.3 10 7"), cmyk);
    EXPECT_EQ(labOf(RGB, "12,75 0,5 100,25"), cut);
    EXPECT_EQ(entryOf(RGB, "12.75 0.5 100.25").getRealValue(0), 12.75);
}

TEST(ColorEntry, IsBlackWithoutAColourSpace)
{
    ColorEntry const entry = entryOf(undefined, "");
    EXPECT_EQ(entry.getStatus(), Data);
    EXPECT_EQ(tripleOf(entry.getLab()), labOfRgb({0, 0, 0}));
}

TEST(ColorEntry, TakesItsDisplayColourFromTheRgbProfile)
{
    for (auto const& [colorSpace, line] : {std::pair(CMYK, "50 20 0 10"), std::pair(RGB, "255 0 128"),
                                           std::pair(RGB, "10 20 30"), std::pair(undefined, "")}) {
        ColorEntry const entry = entryOf(colorSpace, line);
        EXPECT_EQ(tripleOf(entry.getDisplayColor()), displayColorOf(tripleOf(entry.getLab()))) << line;
    }
    EXPECT_NEAR(entryOf(RGB, "255 0 51").getDisplayColor()[0], 1, 0.01);
    EXPECT_NEAR(entryOf(RGB, "255 0 51").getDisplayColor()[1], 0, 0.01);
    EXPECT_NEAR(entryOf(RGB, "255 0 51").getDisplayColor()[2], 0.2, 0.01);
}

TEST(ColorEntry, PaperWhiteHasTheValuesThatPrintNothingAndThePapersColour)
{
    struct White
    {
        ColorSpace colorSpace;
        std::vector<std::string> values;
    };
    for (White const& white :
         {White{RGB, {"255", "255", "255"}}, White{CMYK, {"0", "0", "0", "0"}}, White{undefined, {"0", "0", "0"}}})
        for (bool const hidden : {false, true}) {
            ColorEntry entry;
            entry.initAsWhite(white.colorSpace, hidden);
            EXPECT_EQ(entry.getStatus(), hidden ? Hidden : Filler);
            EXPECT_EQ(entry.getColorSpace(), white.colorSpace);
            EXPECT_EQ(textsOf(entry), white.values);
            EXPECT_EQ(tripleOf(entry.getLab()), labOfCmyk({0, 0, 0, 0}));
            EXPECT_EQ(tripleOf(entry.getDisplayColor()), displayColorOf(labOfCmyk({0, 0, 0, 0})));
            for (RelativePosition const side : {Above, Right, Below, Left})
                EXPECT_EQ(entry.getGap(side), nullptr);
        }
    EXPECT_NE(labOfCmyk({0, 0, 0, 0}), labOfRgb({255, 255, 255})) << "paper is not RGB white";
}

TEST(ColorEntry, ReplacesItsValuesWhenItBecomesWhite)
{
    ColorEntry entry = entryOf(CMYK, "1 2 3 4");
    ColorEntry const copy(entry);
    entry.initAsWhite(RGB, false);
    EXPECT_THAT(textsOf(entry), ElementsAre("255", "255", "255"));
    entry.initAsWhite(CMYK, true);
    EXPECT_THAT(textsOf(entry), ElementsAre("0", "0", "0", "0"));
    EXPECT_THAT(textsOf(copy), ElementsAre("1", "2", "3", "4"));
}

TEST(ColorEntry, PaperWhiteIsTheCmykProfilesUnprintedPaper)
{
    Triple white{};
    ColorEntry::getWhite(white.data());
    EXPECT_EQ(white, labOfCmyk({0, 0, 0, 0}));
}

TEST(ColorEntry, WhitePatchIsBarePaper)
{
    ColorEntry const& paper = ColorEntry::whitePatch;
    EXPECT_EQ(paper.getStatus(), Hidden);
    EXPECT_EQ(paper.getColorSpace(), undefined);
    EXPECT_THAT(textsOf(paper), ElementsAre("0", "0", "0"));
    EXPECT_EQ(tripleOf(paper.getLab()), labOfCmyk({0, 0, 0, 0}));
    EXPECT_EQ(paper.getHeapPosition(), 0U);
}

TEST(ColorEntry, GivesItsChannelsAsNumbers)
{
    ColorEntry const entry = entryOf(CMYK, "12.5 1e400 abc -5");
    EXPECT_EQ(entry.getRealValue(0), 12.5);
    EXPECT_EQ(entry.getRealValue(1), std::numeric_limits<double>::infinity());
    EXPECT_EQ(entry.getRealValue(2), 0);
    EXPECT_EQ(entry.getRealValue(3), -5);
}

TEST(ColorEntry, ReportsAMissingChannelAndGivesZero)
{
    ColorEntry const entry = entryOf(RGB, "1 2 3");
    for (int const channel : {3, 4, 1000000, -1, std::numeric_limits<int>::min()}) {
        double value = -1;
        EXPECT_EQ(errorsOf([&] { value = entry.getRealValue(channel); }), "Array element out of bounds.\r") << channel;
        EXPECT_EQ(value, 0);
    }
}

TEST(ColorEntry, SquaredDifferenceAddsTheSquaresOfTheThreeCoordinates)
{
    float const dark[] = {50, 10, -20};
    float const light[] = {55, 10, -20};
    float const far[] = {53, 14, -8};
    EXPECT_EQ(ColorEntry::computeSqDe(dark, dark), 0);
    EXPECT_EQ(ColorEntry::computeSqDe(dark, light), 25);
    EXPECT_EQ(ColorEntry::computeSqDe(light, dark), 25);
    EXPECT_EQ(ColorEntry::computeSqDe(dark, far), 9 + 16 + 144);
    EXPECT_EQ(ColorEntry::computeSqDLStar(dark, far), 9);
    EXPECT_EQ(ColorEntry::computeSqDLStar(far, dark), 9);
}

TEST(ColorEntry, SquaredDifferenceIsSummedInOrderInSinglePrecision)
{
    // 1 + 2^-24 rounds to 1, twice. 2^-24 + 2^-24 would count.
    float const origin[] = {0, 0, 0};
    float const near[] = {1, 0x1p-12F, 0x1p-12F};
    EXPECT_EQ(ColorEntry::computeSqDe(near, origin), 1.0F);
    // (1 + 2^-12)^2 = 1 + 2^-11 + 2^-24 rounds to 1 + 2^-11. Adding 2^-24 rounds to the same. With a single rounding at
    // the end, the sum would be 2^-23 more.
    float const rounded[] = {1 + 0x1p-12F, 0x1p-12F, 0};
    EXPECT_EQ(ColorEntry::computeSqDe(rounded, origin), 1 + 0x1p-11F);
}

TEST(ColorEntry, IsBlackWithoutAnyProfileAndReportsNothing)
{
    TemporaryFolder const empty;
    OtherResources const none(empty.pathWithSlash());
    EXPECT_EQ(errorsOf([] { ColorEntry::prepareColorConversions(); }), "");
    EXPECT_EQ(errorsOf([] {
                  for (auto const& [colorSpace, line] :
                       {std::pair(RGB, "10 20 30"), std::pair(CMYK, "10 20 30 40"), std::pair(undefined, "")}) {
                      ColorEntry const entry = entryOf(colorSpace, line);
                      EXPECT_EQ(entry.getStatus(), Data);
                      EXPECT_EQ(tripleOf(entry.getLab()), zeros);
                      EXPECT_EQ(tripleOf(entry.getDisplayColor()), zeros);
                  }
                  Triple white{1, 2, 3};
                  ColorEntry::getWhite(white.data());
                  EXPECT_EQ(white, zeros);
              }),
              "");
    EXPECT_EQ(ColorEntry::whitePatch.getStatus(), Hidden);
    EXPECT_EQ(tripleOf(ColorEntry::whitePatch.getLab()), zeros);
    ColorEntry::endColorConversions();
}

TEST(ColorEntry, IsArrangedEvenWithoutAnyProfile)
{
    TemporaryFolder const empty;
    OtherResources const none(empty.pathWithSlash());
    ColorEntry::prepareColorConversions();
    GrowingArray<ColorEntry> entries = greyEntries(30);
    ChartLayout chart = chartOf(entries, instrument(longRuler), paper(a4Portrait), {10, 10});
    EXPECT_EQ(chart.computeLayout(0, 0), 0);
    EXPECT_TRUE(chart.hasSomethingToOutpot());
    ColorEntry::endColorConversions();
}

TEST(ColorEntry, HasItsRgbColoursWithoutTheCmykProfile)
{
    TemporaryFolder const folder;
    Triple const grey = labOfRgb({128, 128, 128});
    std::filesystem::copy_file(textOf(respath) + "RGBgeneric.icc", folder.path() / "RGBgeneric.icc");
    OtherResources const others(folder.pathWithSlash());
    ColorEntry::prepareColorConversions();
    EXPECT_EQ(labOf(RGB, "128 128 128"), grey);
    EXPECT_EQ(labOf(CMYK, "10 20 30 40"), zeros);
    EXPECT_EQ(tripleOf(ColorEntry::whitePatch.getLab()), zeros);
    ColorEntry::endColorConversions();
}

TEST(ColorEntry, HasItsCmykColoursWithoutTheRgbProfile)
{
    TemporaryFolder const folder;
    Triple const cyan = labOfCmyk({100, 0, 0, 0});
    std::filesystem::copy_file(textOf(respath) + "generic.icc", folder.path() / "generic.icc");
    OtherResources const others(folder.pathWithSlash());
    ColorEntry::prepareColorConversions();
    EXPECT_EQ(labOf(CMYK, "100 0 0 0"), cyan);
    EXPECT_EQ(labOf(RGB, "128 128 128"), zeros);
    EXPECT_EQ(tripleOf(entryOf(CMYK, "100 0 0 0").getDisplayColor()), zeros);
    ColorEntry::endColorConversions();
}

TEST(ColorEntry, IsBlackWithDamagedOrWrongProfiles)
{
    TemporaryFolder const folder;
    std::filesystem::copy_file(textOf(respath) + "RGBgeneric.icc", folder.path() / "generic.icc");
    folder.write("RGBgeneric.icc", std::string(300, 'x'));
    OtherResources const others(folder.pathWithSlash());
    EXPECT_EQ(errorsOf([] { ColorEntry::prepareColorConversions(); }), "");
    EXPECT_EQ(labOf(CMYK, "10 20 30 40"), zeros);
    EXPECT_EQ(labOf(RGB, "128 128 128"), zeros);
    ColorEntry::endColorConversions();
}

TEST(ColorEntry, IsBlackAfterTheConversionsHaveEnded)
{
    OtherResources const same{respath};
    EXPECT_EQ(labOf(RGB, "128 128 128"), zeros);
    EXPECT_EQ(labOf(CMYK, "10 20 30 40"), zeros);
    ColorEntry::endColorConversions();
}
