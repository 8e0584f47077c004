// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColorEntry.h"

#include "ChartLayout.h"
#include "EntryLines.h"
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
#include <cstring>
#include <limits>
#include <random>
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

// Lines of random values, some of them twice in a row, some with values that are no colours.
std::vector<std::string> variedLines(ColorSpace colorSpace, int count)
{
    std::mt19937 random(1);
    std::vector<std::string> lines;
    for (int i = 0; i < count; ++i) {
        std::string line;
        for (int channel = 0; channel < colorspace_nof_channels[colorSpace]; ++channel)
            line += std::to_string(static_cast<int>(random() % 300) - 20) + "." + std::to_string(random() % 10) + " ";
        if (i % 50 == 7)
            line = lines.back();
        if (i % 50 == 9)
            line = colorSpace == CMYK ? "inf x 1e400 nan" : "inf x 1e400";
        lines.push_back(line);
    }
    return lines;
}

constexpr Triple nought{0, 0, 0};

// Works with other resources, or none, until it dies.
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

// A scan chart of 3 columns and 3 rows.
struct NineGreys
{
    GrowingArray<ColorEntry> entries = entriesOf(RGB, {"0 0 0", "30 30 30", "60 60 60", "90 90 90", "120 120 120",
                                                       "150 150 150", "180 180 180", "210 210 210", "240 240 240"});
    ChartLayout chart = chartOf(entries, instrument(longRuler), rulerSheetFor({3, 3}, {1, 1}), {1, 1});

    NineGreys() { chart.computeLayout(0, 0); }
    ColorEntry& at(int x, int y) { return *chart.getColorEntry({x, y}); }
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

TEST(ColorEntry, ThatIsNewHasNoValuesAndIsInNoHeap)
{
    ColorEntry const entry;
    EXPECT_EQ(entry.getValues().getCount(), 0U);
    EXPECT_EQ(entry.getValues().getCapacity(), 1U);
    EXPECT_EQ(entry.getHeapPosition(), 0U);
}

TEST(ColorEntry, TakesItsValuesFromALineAsTheyAreWritten)
{
    ColorEntry const entry = entryOf(CMYK, "\t 0.50 +007 1e2  \t-3,5 ");
    EXPECT_EQ(entry.getStatus(), Data);
    EXPECT_EQ(entry.getColorSpace(), CMYK);
    EXPECT_THAT(textsOf(entry), ElementsAre("0.50", "+007", "1e2", "-3,5"));
}

TEST(ColorEntry, TakesOneLineOffTheTextAndTheWhitespaceAfterIt)
{
    for (char const* const text : {"1 2 3\n4 5 6", "1 2 3\r4 5 6", "1 2 3\r\n4 5 6", "1 2 3\n\r\n \t\n 4 5 6"}) {
        String rest(text);
        ColorEntry entry;
        entry.parseFromString(rest, RGB);
        EXPECT_THAT(textsOf(entry), ElementsAre("1", "2", "3"));
        EXPECT_EQ(textOf(rest), "4 5 6");
        entry = ColorEntry();
        entry.parseFromString(rest, RGB);
        EXPECT_THAT(textsOf(entry), ElementsAre("4", "5", "6"));
        EXPECT_EQ(rest.getCount(), 0U);
    }
}

TEST(ColorEntry, SplitsALineAtControlCharactersAndBytesBeyondAscii)
{
    EXPECT_THAT(textsOf(entryOf(RGB, "1\xA0"
                                     "2\xC3\xA4"
                                     "3")),
                ElementsAre("1", "2", "3"));
    EXPECT_THAT(textsOf(entryOf(RGB, "\xEF\xBB\xBF"
                                     "1\x01"
                                     "2\v3\x80")),
                ElementsAre("1", "2", "3"));
}

TEST(ColorEntry, OfALineWithTheWrongNumberOfValuesIsInvalidAndReportsEveryChannel)
{
    struct Line
    {
        ColorSpace colorSpace;
        char const* text;
        int reports;
    };
    for (Line const& line : {Line{RGB, "1 2", 3}, Line{RGB, "1 2 3 4", 3}, Line{RGB, "", 3}, Line{CMYK, "1 2 3", 4},
                             Line{CMYK, "1 2 3 4 5", 4}, Line{undefined, "1", 0}}) {
        SCOPED_TRACE(line.text);
        ColorEntry entry;
        std::string reports;
        for (int i = 0; i < line.reports; ++i)
            reports += "Array element out of bounds.\r";
        EXPECT_EQ(errorsOf([&] { entry = entryOf(line.colorSpace, line.text); }), reports);
        EXPECT_EQ(entry.getStatus(), Invalid);
        EXPECT_EQ(entry.getColorSpace(), line.colorSpace);
        EXPECT_EQ(entry.getValues().getCount(), 0U);
    }
}

TEST(ColorEntry, OfManyLinesAtOnceIsTheSameToTheBitAsOfItsLineAlone)
{
    for (ColorSpace const colorSpace : {CMYK, RGB})
        // Fewer lines than are converted at once, as many, and more.
        for (int const count : {0, 1, 2, 255, 256, 257, 512, 700}) {
            std::vector<std::string> const lines = variedLines(colorSpace, count);
            std::string text;
            for (std::string const& line : lines)
                text += line + "\n";
            String rest(text.c_str());
            GrowingArray<ColorEntry> entries;
            EXPECT_TRUE(takeEntries(rest, colorSpace, entries));
            EXPECT_EQ(rest.getCount(), 0U);
            ASSERT_EQ(entries.getCount(), lines.size());
            for (std::size_t i = 0; i < lines.size(); ++i) {
                ColorEntry const alone = entryOf(colorSpace, lines[i]);
                EXPECT_EQ(std::memcmp(entries[i].getLab(), alone.getLab(), sizeof(Triple)), 0) << lines[i];
                EXPECT_EQ(std::memcmp(entries[i].getDisplayColor(), alone.getDisplayColor(), sizeof(Triple)), 0);
                EXPECT_EQ(textsOf(entries[i]), textsOf(alone));
                EXPECT_EQ(entries[i].getStatus(), Data);
                EXPECT_EQ(entries[i].getColorSpace(), colorSpace);
            }
        }
}

TEST(ColorEntry, OfManyLinesAtOnceLeavesOutThoseThatAreInvalid)
{
    // The first and the last line of those that are converted at once, and a stretch that is longer than they are.
    auto const isBad = [](int line) { return line == 0 || line == 255 || line == 256 || (line > 600 && line < 1200); };
    std::string text;
    std::vector<std::string> good;
    std::string reports;
    for (int i = 0; i < 1300; ++i) {
        std::string const first = std::to_string(i);
        text += first + (isBad(i) ? " 2\n" : " 2 3\n");
        if (!isBad(i))
            good.push_back(first);
        else
            for (int channel = 0; channel < 3; ++channel)
                reports += "Array element out of bounds.\r";
    }
    String rest(text.c_str());
    GrowingArray<ColorEntry> entries = entriesOf(RGB, {"9 9 9"});
    EXPECT_EQ(errorsOf([&] { EXPECT_FALSE(takeEntries(rest, RGB, entries)); }), reports);
    EXPECT_EQ(rest.getCount(), 0U);
    ASSERT_EQ(entries.getCount(), good.size() + 1);
    EXPECT_EQ(tripleOf(entries[0].getLab()), labOf(RGB, "9 9 9"));
    for (std::size_t i = 0; i < good.size(); ++i) {
        EXPECT_THAT(textsOf(entries[i + 1]), ElementsAre(good[i], "2", "3"));
        EXPECT_EQ(tripleOf(entries[i + 1].getLab()), labOf(RGB, good[i] + " 2 3"));
    }
}

TEST(ColorEntry, OfManyLinesAtOnceKeepsItsValuesWhateverBecomesOfTheOthers)
{
    ColorEntry second;
    {
        String text("1 2 3\n4 5 6\n7 8 9\n");
        GrowingArray<ColorEntry> entries;
        ASSERT_TRUE(takeEntries(text, RGB, entries));
        entries[0].initAsWhite(CMYK, false);
        entries[2].initAsWhite(CMYK, false);
        second = entries[1];
        entries[1].initAsWhite(CMYK, false);
    }
    EXPECT_THAT(textsOf(second), ElementsAre("4", "5", "6"));
    EXPECT_EQ(second.getRealValue(2), 6);
    EXPECT_EQ(errorsOf([&] { EXPECT_EQ(second.getRealValue(3), 0); }), "Array element out of bounds.\r");
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

TEST(ColorEntry, HandsValuesOutOfRangeToTheColourEngineAsTheyAre)
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

TEST(ColorEntry, ReadsATextThatIsNoNumberAsNought)
{
    EXPECT_EQ(errorsOf([] { EXPECT_EQ(labOf(RGB, "abc 10 #"), labOf(RGB, "0 10 0")); }), "");
    EXPECT_EQ(labOf(CMYK, "12x --3 7 ."), labOf(CMYK, "12 0 7 0"));
}

TEST(ColorEntry, ReadsDecimalPointsUnderALocaleOfDecimalCommas)
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

TEST(ColorEntry, OfNoColourSpaceIsBlack)
{
    ColorEntry const entry = entryOf(undefined, "");
    EXPECT_EQ(entry.getStatus(), Data);
    EXPECT_EQ(tripleOf(entry.getLab()), labOfRgb({0, 0, 0}));
}

TEST(ColorEntry, IsDisplayedThroughTheRgbProfile)
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

TEST(ColorEntry, OfWhiteHasTheValuesThatPrintNothingAndPapersColour)
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

TEST(ColorEntry, StartsItsValuesAfreshAsWhite)
{
    ColorEntry entry = entryOf(CMYK, "1 2 3 4");
    ColorEntry const copy(entry);
    entry.initAsWhite(RGB, false);
    EXPECT_THAT(textsOf(entry), ElementsAre("255", "255", "255"));
    entry.initAsWhite(CMYK, true);
    EXPECT_THAT(textsOf(entry), ElementsAre("0", "0", "0", "0"));
    EXPECT_THAT(textsOf(copy), ElementsAre("1", "2", "3", "4"));
}

TEST(ColorEntry, GivesPaperWhiteAsTheCmykProfilesUnprintedPaper)
{
    Triple white{};
    ColorEntry::getWhite(white.data());
    EXPECT_EQ(white, labOfCmyk({0, 0, 0, 0}));
}

TEST(ColorEntry, StandsForBarePaperOnceForAll)
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

TEST(ColorEntry, ReportsAChannelThatItDoesNotHaveAndGivesNought)
{
    ColorEntry const entry = entryOf(RGB, "1 2 3");
    for (int const channel : {3, 4, 1000000, -1, std::numeric_limits<int>::min()}) {
        double value = -1;
        EXPECT_EQ(errorsOf([&] { value = entry.getRealValue(channel); }), "Array element out of bounds.\r") << channel;
        EXPECT_EQ(value, 0);
    }
}

TEST(ColorEntry, SquaredDifferenceIsThatOfTheThreeCoordinates)
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

TEST(ColorEntry, SquaredDifferenceIsSummedInSinglePrecisionInItsOrder)
{
    // 1 + 2^-24 rounds to 1, twice; 2^-24 + 2^-24 would count.
    float const origin[] = {0, 0, 0};
    float const near[] = {1, 0x1p-12F, 0x1p-12F};
    EXPECT_EQ(ColorEntry::computeSqDe(near, origin), 1.0F);
    // (1 + 2^-12)^2 = 1 + 2^-11 + 2^-24 rounds to 1 + 2^-11, and so does that and 2^-24. Rounded once, in the end,
    // the sum would be 2^-23 more.
    float const rounded[] = {1 + 0x1p-12F, 0x1p-12F, 0};
    EXPECT_EQ(ColorEntry::computeSqDe(rounded, origin), 1 + 0x1p-11F);
}

TEST(ColorEntry, CopiesShareTheirValuesAndCopyTheRest)
{
    NineGreys greys;
    ColorEntry const& original = greys.at(1, 1);
    ColorEntry const copy(original);
    EXPECT_EQ(copy.getValues().begin(), original.getValues().begin());
    EXPECT_EQ(copy.getStatus(), original.getStatus());
    EXPECT_EQ(copy.getColorSpace(), original.getColorSpace());
    EXPECT_EQ(tripleOf(copy.getLab()), tripleOf(original.getLab()));
    EXPECT_EQ(tripleOf(copy.getDisplayColor()), tripleOf(original.getDisplayColor()));
    EXPECT_EQ(copy.getKey(), original.getKey());
    EXPECT_EQ(copy.getIndex(), original.getIndex());
    EXPECT_EQ(copy.getHeapPosition(), original.getHeapPosition());
    for (RelativePosition const side : {Above, Right, Below, Left})
        EXPECT_EQ(copy.getGap(side), original.getGap(side));
}

TEST(ColorEntry, WithoutAnyProfileIsBlackAndSaysNothing)
{
    TemporaryFolder const empty;
    OtherResources const none(empty.pathWithSlash());
    EXPECT_EQ(errorsOf([] { ColorEntry::prepareColorConversions(); }), "");
    EXPECT_EQ(errorsOf([] {
                  for (auto const& [colorSpace, line] :
                       {std::pair(RGB, "10 20 30"), std::pair(CMYK, "10 20 30 40"), std::pair(undefined, "")}) {
                      ColorEntry const entry = entryOf(colorSpace, line);
                      EXPECT_EQ(entry.getStatus(), Data);
                      EXPECT_EQ(tripleOf(entry.getLab()), nought);
                      EXPECT_EQ(tripleOf(entry.getDisplayColor()), nought);
                  }
                  Triple white{1, 2, 3};
                  ColorEntry::getWhite(white.data());
                  EXPECT_EQ(white, nought);
              }),
              "");
    EXPECT_EQ(ColorEntry::whitePatch.getStatus(), Hidden);
    EXPECT_EQ(tripleOf(ColorEntry::whitePatch.getLab()), nought);
    ColorEntry::endColorConversions();
}

TEST(ColorEntry, WithoutAnyProfileIsArrangedAllTheSame)
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

TEST(ColorEntry, WithoutTheCmykProfileStillHasItsRgbColours)
{
    TemporaryFolder const folder;
    Triple const grey = labOfRgb({128, 128, 128});
    std::filesystem::copy_file(textOf(respath) + "RGBgeneric.icc", folder.path() / "RGBgeneric.icc");
    OtherResources const others(folder.pathWithSlash());
    ColorEntry::prepareColorConversions();
    EXPECT_EQ(labOf(RGB, "128 128 128"), grey);
    EXPECT_EQ(labOf(CMYK, "10 20 30 40"), nought);
    EXPECT_EQ(tripleOf(ColorEntry::whitePatch.getLab()), nought);
    ColorEntry::endColorConversions();
}

TEST(ColorEntry, WithoutTheRgbProfileStillHasItsCmykColours)
{
    TemporaryFolder const folder;
    Triple const cyan = labOfCmyk({100, 0, 0, 0});
    std::filesystem::copy_file(textOf(respath) + "generic.icc", folder.path() / "generic.icc");
    OtherResources const others(folder.pathWithSlash());
    ColorEntry::prepareColorConversions();
    EXPECT_EQ(labOf(CMYK, "100 0 0 0"), cyan);
    EXPECT_EQ(labOf(RGB, "128 128 128"), nought);
    EXPECT_EQ(tripleOf(entryOf(CMYK, "100 0 0 0").getDisplayColor()), nought);
    ColorEntry::endColorConversions();
}

TEST(ColorEntry, WithFilesThatAreNoProfilesOrTheWrongOnesIsBlack)
{
    TemporaryFolder const folder;
    std::filesystem::copy_file(textOf(respath) + "RGBgeneric.icc", folder.path() / "generic.icc");
    folder.write("RGBgeneric.icc", std::string(300, 'x'));
    OtherResources const others(folder.pathWithSlash());
    EXPECT_EQ(errorsOf([] { ColorEntry::prepareColorConversions(); }), "");
    EXPECT_EQ(labOf(CMYK, "10 20 30 40"), nought);
    EXPECT_EQ(labOf(RGB, "128 128 128"), nought);
    ColorEntry::endColorConversions();
}

TEST(ColorEntry, IsBlackOutsideTheTimeOfTheConversions)
{
    OtherResources const same{respath};
    EXPECT_EQ(labOf(RGB, "128 128 128"), nought);
    EXPECT_EQ(labOf(CMYK, "10 20 30 40"), nought);
    ColorEntry::endColorConversions();
}

TEST(ColorEntry, ForgetsItsGaps)
{
    NineGreys greys;
    ColorEntry& entry = greys.at(1, 1);
    entry.initGaps();
    for (RelativePosition const side : {Above, Right, Below, Left})
        EXPECT_EQ(entry.getGap(side), nullptr);
}

TEST(ColorEntry, ForgetsItsGapsWhenItBecomesWhite)
{
    NineGreys greys;
    ColorEntry& entry = greys.at(1, 1);
    entry.initAsWhite(RGB, false);
    for (RelativePosition const side : {Above, Right, Below, Left})
        EXPECT_EQ(entry.getGap(side), nullptr);
}

TEST(ColorEntry, IsSurroundedByPaperWhereItHasNoGaps)
{
    ColorEntry const entry;
    for (RelativePosition const position : {Above, Right, Below, Left})
        EXPECT_EQ(entry.getNeighbor(position), &ColorEntry::whitePatch);
}

TEST(ColorEntry, TakesAPositionPastLeftAsAbove)
{
    NineGreys greys;
    EXPECT_EQ(greys.at(1, 1).getNeighbor(static_cast<RelativePosition>(4)), &greys.at(1, 0));
    EXPECT_EQ(greys.at(1, 1).getNeighbor(static_cast<RelativePosition>(1000)), &greys.at(1, 0));
}

TEST(ColorEntry, CountsTheDifferencesAlongAndAcrossTheScanAsAsked)
{
    NineGreys greys;
    ColorEntry& entry = greys.at(1, 1);
    auto const differenceAt = [&](int x, int y) {
        return ColorEntry::computeSqDe(entry.getLab(), greys.at(x, y).getLab());
    };
    float const along = std::min(differenceAt(1, 0), differenceAt(1, 2));
    float const across = std::min(differenceAt(0, 1), differenceAt(2, 1));
    ASSERT_NE(along, across);
    entry.recomputeDe(true, false);
    EXPECT_EQ(entry.getKey(), along);
    entry.recomputeDe(false, true);
    EXPECT_EQ(entry.getKey(), across);
    entry.recomputeDe(true, true);
    EXPECT_EQ(entry.getKey(), std::min(along, across));
    entry.recomputeDe(false, false);
    EXPECT_EQ(entry.getKey(), 100000.0F);
}

TEST(ColorEntry, KeepsItsKeyWhereItIsNotArranged)
{
    NineGreys greys;
    PointerPool<ColorGap> pool;
    pool.init(4);
    ColorEntry entry;
    entry.initAsWhite(RGB, true);
    float const key = entry.getKey();
    entry.renewGaps(&pool, {1, 1}, &greys.chart);
    entry.recomputeDe(true, true);
    EXPECT_EQ(entry.getKey(), key);
    entry.initAsWhite(RGB, false);
    entry.renewGaps(&pool, {1, 1}, &greys.chart);
    entry.recomputeDe(true, true);
    EXPECT_NE(entry.getKey(), key);
}

TEST(ColorEntry, ReentersTheHeapWithItsNewKey)
{
    NineGreys greys;
    MinBackHeap<ColorEntry*, float> heap;
    heap.init(2);
    ColorEntry& entry = greys.at(1, 1);
    ColorEntry& other = greys.at(0, 0);
    heap.insert(1, &entry, entry.getHeapBackPointer());
    heap.insert(2, &other, other.getHeapBackPointer());
    ASSERT_EQ(entry.getHeapPosition(), 1U);
    entry.recomputeDe(false, false);
    entry.reenterHeap(&heap);
    EXPECT_EQ(entry.getHeapPosition(), 2U);
    EXPECT_EQ(other.getHeapPosition(), 1U);
    EXPECT_EQ(heap.getRecord(2).key, 100000.0F);
}

TEST(ColorEntry, StaysOutOfAHeapThatItIsNotIn)
{
    MinBackHeap<ColorEntry*, float> heap;
    heap.init(1);
    ColorEntry entry = entryOf(RGB, "1 2 3");
    EXPECT_EQ(errorsOf([&] { entry.reenterHeap(&heap); }), "");
    EXPECT_EQ(heap.getSize(), 0U);
}

TEST(ColorEntry, RenewsItsGapsAndSharesThoseOfItsNeighbours)
{
    NineGreys greys;
    for (int x = 0; x < 3; ++x)
        for (int y = 0; y < 3; ++y)
            greys.at(x, y).initGaps();
    PointerPool<ColorGap> pool;
    pool.init(7);
    ColorEntry& corner = greys.at(0, 2);
    corner.renewGaps(&pool, {0, 2}, &greys.chart);
    EXPECT_EQ(pool.getFreeCount(), 3U);
    EXPECT_EQ(corner.getNeighbor(Above), &greys.at(0, 1));
    EXPECT_EQ(corner.getNeighbor(Right), &greys.at(1, 2));
    EXPECT_EQ(corner.getNeighbor(Below), &ColorEntry::whitePatch);
    EXPECT_EQ(corner.getNeighbor(Left), &ColorEntry::whitePatch);
    EXPECT_EQ(corner.getGap(Above)->getSecond(), &corner);
    EXPECT_EQ(corner.getGap(Right)->getFirst(), &corner);
    EXPECT_EQ(corner.getGap(Below)->getFirst(), &corner);
    EXPECT_EQ(corner.getGap(Left)->getSecond(), &corner);
    EXPECT_TRUE(corner.getGap(Above)->isAcrossScan());
    EXPECT_FALSE(corner.getGap(Right)->isAcrossScan());
    EXPECT_TRUE(corner.getGap(Below)->isAcrossScan());
    EXPECT_FALSE(corner.getGap(Left)->isAcrossScan());
    EXPECT_EQ(corner.getGap(Above)->getSqDe(), ColorEntry::computeSqDe(corner.getLab(), greys.at(0, 1).getLab()));

    ColorEntry& above = greys.at(0, 1);
    above.renewGaps(&pool, {0, 1}, &greys.chart);
    EXPECT_EQ(pool.getFreeCount(), 0U);
    EXPECT_EQ(above.getGap(Below), corner.getGap(Above));
    EXPECT_EQ(above.getNeighbor(Below), &corner);
    EXPECT_EQ(corner.getNeighbor(Above), &above);
}

TEST(ColorEntry, ComputesASharedGapAgain)
{
    NineGreys greys;
    ColorEntry& above = greys.at(0, 1);
    ColorEntry& corner = greys.at(0, 2);
    float const earlier = corner.getGap(Above)->getSqDe();
    above.initAsWhite(RGB, false);
    PointerPool<ColorGap> pool;
    pool.init(4);
    above.renewGaps(&pool, {0, 1}, &greys.chart);
    ASSERT_EQ(above.getGap(Below), corner.getGap(Above));
    EXPECT_EQ(corner.getGap(Above)->getSqDe(), ColorEntry::computeSqDe(corner.getLab(), above.getLab()));
    EXPECT_NE(corner.getGap(Above)->getSqDe(), earlier);
}
