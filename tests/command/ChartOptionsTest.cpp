// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "command/ChartSettings.h"

#include "support/DecimalCommaLocale.h"
#include "support/GeometryValues.h"

#include <gmock/gmock.h>

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using Strings = std::vector<std::string>;

ChartArguments argumentsOf(Strings const& options)
{
    Strings words = {"chart", "folder/My Table.v2.txt"};
    words.insert(words.end(), options.begin(), options.end());
    Arguments const arguments = parseArguments(words);
    EXPECT_TRUE(std::holds_alternative<ChartArguments>(arguments));
    return std::get<ChartArguments>(arguments);
}

ChartSettings settingsOf(Strings const& options)
{
    auto const settings = chartSettings(argumentsOf(options), builtInChoices());
    WrongUse const* const wrong = std::get_if<WrongUse>(&settings);
    EXPECT_FALSE(wrong) << (wrong ? wrong->text : "");
    return wrong ? ChartSettings{} : std::get<ChartSettings>(settings);
}

std::string faultOf(Strings const& options)
{
    auto const settings = chartSettings(argumentsOf(options), builtInChoices());
    WrongUse const* const wrong = std::get_if<WrongUse>(&settings);
    EXPECT_TRUE(wrong);
    return wrong ? wrong->text : "";
}

} // namespace

TEST(ChartOptions, AreTheWindowsByDefault)
{
    ChartSettings const settings = settingsOf({});
    EXPECT_EQ(settings.device.name, "GB+ Spot");
    EXPECT_EQ(settings.paperName, "A4 Portrait");
    EXPECT_EQ(settings.sheet.getContent(), (RealRect{5, 15, 200, 277}));
    EXPECT_EQ(settings.patch, (RealSize{8, 8}));
    EXPECT_EQ(settings.name, "My Table.v2");
    EXPECT_THAT(settings.kinds, ElementsAre(&epsImages));
    EXPECT_EQ(settings.parentFolder, ".");
    EXPECT_EQ(settings.gaps, GapRule::automatic);
    EXPECT_EQ(settings.order.kind, OrderMethod::standard);
    EXPECT_FALSE(settings.clipsToContent);
    EXPECT_EQ(settings.sheets.tiff, (TIFFFormat{300, TIFFCompression::none}));
    EXPECT_FALSE(settings.sheets.hasScaleMark);
}

TEST(ChartOptions, ChooseDeviceAndPaperByIdOrNameInAnyCase)
{
    for (auto const& [word, name] : {std::pair{"gb-scan", "GB+ Scan"},
                                     {"GB+ SCAN", "GB+ Scan"},
                                     {"Long-Ruler", "VT-30 Long Ruler"},
                                     {"vt-30 standard ruler", "VT-30 Standard Ruler"}})
        EXPECT_EQ(settingsOf({"--device", word}).device.name, std::string(name));
    for (auto const& [word, name] : {std::pair{"a3-landscape", "A3 Landscape"}, {"LETTER PORTRAIT", "Letter Portrait"}})
        EXPECT_EQ(settingsOf({"--paper", word}).paperName, std::string(name));
    for (Choices const choices = builtInChoices(); PaperChoice const& paper : choices.papers)
        EXPECT_EQ(settingsOf({"-p", paper.id}).paperName, paper.name);
}

TEST(ChartOptions, MakeASheetOfOnesOwn)
{
    ChartSettings const bare = settingsOf({"-p", "320.5x450"});
    EXPECT_EQ(bare.sheet.getSize(), (RealSize{320.5, 450}));
    EXPECT_EQ(bare.sheet.getContent(), (RealRect{0, 0, 320.5, 450}));
    // Top, right, bottom, left; the content counts from the lower-left corner.
    EXPECT_EQ(settingsOf({"-p", "300x400", "-m", "1,2,3,4.5"}).sheet.getContent(), (RealRect{4.5, 3, 293.5, 396}));
    EXPECT_EQ(settingsOf({"-m", "0,0,0,0"}).sheet.getContent(), (RealRect{0, 0, 210, 297}));
}

TEST(ChartOptions, TakeOnePatchSideAtLeastAndTwoExactly)
{
    EXPECT_EQ(settingsOf({"-s", "7", "-d", "gb-scan"}).patch, (RealSize{7, 8}));
    EXPECT_EQ(settingsOf({"-s", "2", "-d", "long-ruler"}).patch, (RealSize{7, 8}));
    EXPECT_EQ(settingsOf({"-s", "10.25"}).patch, (RealSize{10.25, 10.25}));
    EXPECT_EQ(settingsOf({"-s", "7.5x9", "-d", "gb-scan"}).patch, (RealSize{7.5, 9}));
}

TEST(ChartOptions, TakeTheRestAsTheyAre)
{
    ChartSettings const settings = settingsOf({"-n", "n", "-f", "tiff,eps,tiff", "-o", "there", "--clip", "--gaps",
                                               "never", "--order", "best", "--effort", "12"});
    EXPECT_EQ(settings.name, "n");
    EXPECT_THAT(settings.kinds, ElementsAre(&epsImages, &tiffImages));
    EXPECT_EQ(settings.parentFolder, "there");
    EXPECT_TRUE(settings.clipsToContent);
    EXPECT_EQ(settings.gaps, GapRule::never);
    EXPECT_EQ(settings.order.kind, OrderMethod::best);
    EXPECT_EQ(settings.order.effort, 12);
    EXPECT_EQ(settingsOf({"--gaps", "always"}).gaps, GapRule::always);
    EXPECT_THAT(settingsOf({"-f", "tiff"}).kinds, ElementsAre(&tiffImages));
    EXPECT_THAT(settingsOf({"-f", "pdf"}).kinds, ElementsAre(&pdfImages));
    EXPECT_THAT(settingsOf({"-f", "pdf,tiff,eps"}).kinds, ElementsAre(&epsImages, &tiffImages, &pdfImages));
    EXPECT_TRUE(settingsOf({"--scale-mark"}).sheets.hasScaleMark);
}

TEST(ChartOptions, ChooseHowFinelyAndHowTIFFSheetsArePacked)
{
    for (auto const& [text, resolution] : {std::pair{"72", 72.0}, {"304.8", 304.8}, {"3e2", 300.0}, {"2400", 2400.0}})
        EXPECT_EQ(settingsOf({"-f", "eps,tiff", "--resolution", text}).sheets.tiff,
                  (TIFFFormat{resolution, TIFFCompression::none}));
    for (auto const& [text, compression] : {std::pair{"none", TIFFCompression::none},
                                            {"lzw", TIFFCompression::lzw},
                                            {"deflate", TIFFCompression::deflate}})
        EXPECT_EQ(settingsOf({"--compression", text, "-f", "tiff"}).sheets.tiff, (TIFFFormat{300, compression}));
}

TEST(ChartOptions, ReadNumbersWithPointsUnderADecimalCommaLocale)
{
    DecimalCommaLocale const german;
    ASSERT_TRUE(german.isInForce());
    EXPECT_EQ(settingsOf({"-s", "7.5x9"}).patch, (RealSize{7.5, 9}));
    EXPECT_EQ(settingsOf({"-p", "300.5x400"}).sheet.getSize(), (RealSize{300.5, 400}));
    EXPECT_EQ(settingsOf({"-f", "tiff", "--resolution", "304.8"}).sheets.tiff.resolution, 304.8);
    EXPECT_EQ(millimetres(7.5), "7.5");
}

TEST(ChartOptions, AreRefusedWithTheirNameAndWhatWasFound)
{
    struct
    {
        Strings options;
        char const* fault;
    } const cases[] = {
        {{"-d", "gb"}, "--device: there is no device \"gb\""},
        {{"-d", ""}, "--device: there is no device \"\""},
        {{"-p", "a5"}, "--paper: \"a5\" is neither"},
        {{"-p", "210"}, "--paper: "},
        {{"-p", "0x297"}, "--paper: "},
        {{"-p", "210x-1"}, "--paper: "},
        {{"-p", "210x297x3"}, "--paper: "},
        {{"-p", "210mmx297"}, "--paper: "},
        {{"-p", "infx297"}, "--paper: "},
        {{"-p", "1e9x297"}, "--paper: "},
        {{"-m", "1,2,3"}, "--margins: \"1,2,3\" is no list of four"},
        {{"-m", "1,2,3,4,5"}, "--margins: "},
        {{"-m", "1,2,3,x"}, "--margins: "},
        {{"-m", "1;2;3;4"}, "--margins: "},
        {{"-m", "-1,0,0,0"}, "--margins: "},
        {{"-m", "0,105,0,105"}, "--margins: 0,105,0,105 leaves nothing of a sheet of 210 x 297 mm"},
        {{"-s", "0"}, "--patch: \"0\" is no size"},
        {{"-s", "7,5"}, "--patch: \"7,5\" is no size"},
        {{"-s", "nan"}, "--patch: "},
        {{"-s", "8x"}, "--patch: "},
        {{"-s", ""}, "--patch: "},
        {{"-s", "6x7.9", "-d", "gb-scan"}, "--patch: 6x7.9 mm is below the smallest patch of GB+ Scan, 6x8 mm"},
        {{"-s", "5.9x8"}, "--patch: 5.9x8 mm is below"},
        {{"-f", "png"}, "--format: \"png\" is no format"},
        {{"-f", "eps,"}, "--format: \"\" is no format"},
        {{"-f", "EPS"}, "--format: \"EPS\""},
        {{"-f", "tiff", "--resolution", "71.9"},
         "--resolution: \"71.9\" is no number of dots per inch from 72 to 2400"},
        {{"-f", "tiff", "--resolution", "2400.1"}, "--resolution: \"2400.1\""},
        {{"-f", "tiff", "--resolution", "300dpi"}, "--resolution: \"300dpi\""},
        {{"-f", "tiff", "--resolution", "300,5"}, "--resolution: \"300,5\""},
        {{"-f", "tiff", "--resolution", "nan"}, "--resolution: \"nan\""},
        {{"-f", "tiff", "--resolution", "inf"}, "--resolution: \"inf\""},
        {{"-f", "tiff", "--resolution", "-300"}, "--resolution: \"-300\""},
        {{"--resolution", "300"}, "--resolution: is for TIFF sheets; add tiff to --format"},
        {{"-f", "eps,pdf", "--resolution", "600"}, "--resolution: is for TIFF sheets"},
        {{"-f", "tiff", "--compression", "zip"}, "--compression: \"zip\" is not none, lzw or deflate"},
        {{"-f", "tiff", "--compression", "LZW"}, "--compression: \"LZW\""},
        {{"--compression", "none"}, "--compression: is for TIFF sheets; add tiff to --format"},
        {{"-f", "pdf", "--compression", "lzw"}, "--compression: is for TIFF sheets"},
        {{"--gaps", "sometimes"}, "--gaps: \"sometimes\" is not auto, never or always"},
        {{"--order", "worst"}, "--order: \"worst\" is not standard or best"},
        {{"--effort", "0"}, "--effort: \"0\" is no whole number from 1 to 1000"},
        {{"--effort", "1001"}, "--effort: "},
        {{"--effort", "2.5"}, "--effort: "},
        {{"-n", "a/b", "--lenient"}, "--name: \"a/b\" has a slash"},
        {{"-n", "a&b"}, "--name: \"a&b\" has a backslash"},
        {{"-n", ".."}, "--name: \"..\" is no name of a folder"},
    };
    for (auto const& [options, fault] : cases)
        EXPECT_THAT(faultOf(options), StartsWith(fault));
}

TEST(ChartOptions, NameTheFirstFaultOnly)
{
    EXPECT_THAT(faultOf({"-d", "none", "-p", "none", "-m", "none", "-s", "none"}), StartsWith("--device: "));
}
