// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PrinterProfile.h"

#include "Folders.h"
#include "lib/OvFile.h"
#include "support/ProfileColours.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <lcms2.h>

#include <string>
#include <vector>

namespace
{

using testing::HasSubstr;

std::string ownProfile(char const* name)
{
    String const bytes = RFile::readContents(respath + name);
    return {bytes.begin(), bytes.end()};
}

std::string bytesOf(cmsHPROFILE profile)
{
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    std::string bytes(size, 0);
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsCloseProfile(profile);
    return bytes;
}

} // namespace

TEST(PrinterProfileTest, GivesTheColoursOfCmyk)
{
    PrinterProfile const profile(ownProfile("generic.icc"), CMYK);
    EXPECT_EQ(profile.getFault(), "");
    float const percents[] = {0, 0, 0, 0, 40.5F, 30, 30, 10};
    float labs[6] = {};
    profile.toLab(percents, labs, 2);
    ProfileColours const expected(CMYK);
    auto const paper = expected.of({"0", "0", "0", "0"});
    auto const grey = expected.of({"40.5", "30", "30", "10"});
    for (std::size_t c = 0; c < 3; ++c) {
        EXPECT_NEAR(labs[c], paper[c], 0.01);
        EXPECT_NEAR(labs[3 + c], grey[c], 0.01);
    }
}

TEST(PrinterProfileTest, TakesRgbInPercent)
{
    PrinterProfile const profile(ownProfile("RGBgeneric.icc"), RGB);
    float const percents[] = {100, 20, 0};
    float lab[3] = {};
    profile.toLab(percents, lab, 1);
    auto const expected = ProfileColours(RGB).of({"255", "51", "0"});
    for (std::size_t c = 0; c < 3; ++c)
        EXPECT_NEAR(lab[c], expected[c], 0.01);
}

TEST(PrinterProfileTest, RefusesWhatIsNoProfile)
{
    for (char const* const bytes : {"", "acsp", "CMYK_C CMYK_M CMYK_Y CMYK_K\n0 0 0 0\n"})
        EXPECT_EQ(PrinterProfile(bytes, CMYK).getFault(), "is no ICC profile, or a damaged one");
}

TEST(PrinterProfileTest, RefusesAProfileForOtherColours)
{
    EXPECT_THAT(PrinterProfile(ownProfile("RGBgeneric.icc"), CMYK).getFault(), HasSubstr("is for RGB, not for CMYK"));
    EXPECT_THAT(PrinterProfile(ownProfile("generic.icc"), RGB).getFault(), HasSubstr("is for CMYK, not for RGB"));
}

TEST(PrinterProfileTest, RefusesAProfileOfAnotherKind)
{
    EXPECT_THAT(PrinterProfile(bytesOf(cmsCreateLab4Profile(nullptr)), CMYK).getFault(),
                HasSubstr("of the kind \"abst\", not of a printer"));
}

// An output profile with a header and no tables.
TEST(PrinterProfileTest, RefusesAProfileWithoutColours)
{
    cmsHPROFILE const empty = cmsCreateProfilePlaceholder(nullptr);
    cmsSetDeviceClass(empty, cmsSigOutputClass);
    cmsSetColorSpace(empty, cmsSigCmykData);
    cmsSetPCS(empty, cmsSigLabData);
    EXPECT_EQ(PrinterProfile(bytesOf(empty), CMYK).getFault(), "is damaged: it gives no colours for device values");
}

TEST(PrinterProfileTest, SurvivesEveryCutAndManyChangedBytes)
{
    std::string const whole = ownProfile("RGBgeneric.icc");
    float const percents[] = {10, 20, 30};
    float lab[3] = {};
    for (std::size_t length = 0; length < whole.size(); ++length)
        PrinterProfile(whole.substr(0, length), RGB).toLab(percents, lab, 1);
    for (std::size_t i = 0; i < whole.size(); ++i)
        for (char const byte : {'\0', '\x7f', '\xff'}) {
            std::string changed = whole;
            changed[i] = byte;
            PrinterProfile(changed, RGB).toLab(percents, lab, 1);
        }
    SUCCEED();
}

TEST(PrinterProfileTest, AnUnusableProfileGivesZeros)
{
    float const percents[] = {10, 20, 30};
    float lab[] = {1, 2, 3};
    PrinterProfile("", RGB).toLab(percents, lab, 1);
    EXPECT_THAT(lab, testing::Each(0));
}
