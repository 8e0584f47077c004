// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Profile.h"

#include "CharacterisationData.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace
{

using FloatLab = std::array<float, 3>;
using FloatCmyk = std::array<float, 4>;

template <class OneLab, class OtherLab>
double deltaE(OneLab const& one, OtherLab const& other)
{
    double squared = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        double const difference = static_cast<double>(one[i]) - static_cast<double>(other[i]);
        squared += difference * difference;
    }
    return std::sqrt(squared);
}

double mean(std::vector<double> const& values)
{
    return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

float totalInk(FloatCmyk const& device)
{
    return device[0] + device[1] + device[2] + device[3];
}

FloatCmyk toFloats(Cmyk const& device)
{
    FloatCmyk floats;
    std::ranges::transform(device, floats.begin(), [](double percent) { return static_cast<float>(percent); });
    return floats;
}

class CmykProfile : public testing::Test
{
protected:
    Transform toLab(cmsUInt32Number intent) const { return {m_profile, TYPE_CMYK_FLT, intent, Transform::toLab}; }
    Transform fromLab(cmsUInt32Number intent) const { return {m_profile, TYPE_CMYK_FLT, intent, Transform::fromLab}; }

    /// What the table of a tag itself gives, channels from 0 to 1, before any colour engine adapts it.
    template <std::size_t outputs, std::size_t inputs>
    std::array<float, outputs> lookUp(cmsTagSignature tag, std::array<float, inputs> const& colour) const
    {
        std::array<float, outputs> result{};
        cmsPipelineEvalFloat(colour.data(), result.data(),
                             static_cast<cmsPipeline const*>(cmsReadTag(m_profile.get(), tag)));
        return result;
    }

    Profile m_profile{"res/generic.icc"};
    std::vector<MeasuredPatch> m_patches = readCharacterisationData(sourceFile("res/fogra39/FOGRA39L.ti3"));
};

/// A version 2 profile's numbers for a colour: 100 is 0xff00, and 0 on the chroma axes 0x8000.
FloatLab encode(double lightness, double a, double b)
{
    return {static_cast<float>(lightness / 100 * 0xff00 / 0xffff), static_cast<float>((a + 128) * 256 / 0xffff),
            static_cast<float>((b + 128) * 256 / 0xffff)};
}

double lightnessOf(FloatLab const& encoded)
{
    return static_cast<double>(encoded[0]) * 100 * 0xffff / 0xff00;
}

} // namespace

TEST_F(CmykProfile, IsAnOutputProfileFromInksToLab)
{
    ASSERT_NE(m_profile.get(), nullptr);
    EXPECT_EQ(cmsGetDeviceClass(m_profile.get()), cmsSigOutputClass);
    EXPECT_EQ(cmsGetColorSpace(m_profile.get()), cmsSigCmykData);
    EXPECT_EQ(cmsGetPCS(m_profile.get()), cmsSigLabData);
}

TEST_F(CmykProfile, HasTheTagsThatOutputProfilesMustHave)
{
    for (cmsTagSignature const tag :
         {cmsSigProfileDescriptionTag, cmsSigCopyrightTag, cmsSigMediaWhitePointTag, cmsSigAToB0Tag, cmsSigAToB1Tag,
          cmsSigAToB2Tag, cmsSigBToA0Tag, cmsSigBToA1Tag, cmsSigBToA2Tag, cmsSigGamutTag})
        EXPECT_NE(cmsReadTag(m_profile.get(), tag), nullptr) << std::hex << tag;
}

TEST_F(CmykProfile, TakesThePaperOfTheDataForItsWhitePoint)
{
    auto const* const white = static_cast<cmsCIEXYZ const*>(cmsReadTag(m_profile.get(), cmsSigMediaWhitePointTag));
    ASSERT_NE(white, nullptr);
    // The XYZ that the data lists beside the paper's CIELAB.
    EXPECT_NEAR(white->X, 0.8448, 1e-4);
    EXPECT_NEAR(white->Y, 0.8762, 1e-4);
    EXPECT_NEAR(white->Z, 0.7457, 1e-4);
}

TEST_F(CmykProfile, ReturnsTheMeasuredColours)
{
    ASSERT_EQ(m_patches.size(), 1617U);
    Transform const transform = toLab(INTENT_ABSOLUTE_COLORIMETRIC);
    std::vector<double> errors;
    for (MeasuredPatch const& patch : m_patches)
        errors.push_back(deltaE(transform.apply<3>(toFloats(patch.device)), patch.lab));
    EXPECT_LE(mean(errors), 0.05);
    EXPECT_LE(std::ranges::max(errors), 0.5);
}

TEST_F(CmykProfile, MeetsPaperAndSolidInksExactly)
{
    Transform const transform = toLab(INTENT_ABSOLUTE_COLORIMETRIC);
    EXPECT_LT(deltaE(transform.apply<3>(FloatCmyk{0, 0, 0, 0}), std::array{95.0, 0.0, -2.0}), 0.02);
    EXPECT_LT(deltaE(transform.apply<3>(FloatCmyk{100, 0, 0, 0}), std::array{55.0, -37.0, -50.0}), 0.02);
    EXPECT_LT(deltaE(transform.apply<3>(FloatCmyk{0, 100, 0, 0}), std::array{48.0, 74.0, -3.0}), 0.02);
    EXPECT_LT(deltaE(transform.apply<3>(FloatCmyk{0, 0, 100, 0}), std::array{89.0, -5.0, 93.0}), 0.02);
    EXPECT_LT(deltaE(transform.apply<3>(FloatCmyk{0, 0, 0, 100}), std::array{16.0, 0.0, 0.0}), 0.02);
}

TEST_F(CmykProfile, DarkensWithEveryInkStep)
{
    Transform const transform = toLab(INTENT_ABSOLUTE_COLORIMETRIC);
    for (float const other : {0.0F, 33.0F, 66.0F}) {
        for (std::size_t ink = 0; ink < 4; ++ink) {
            FloatCmyk device{other, other, other, 0};
            float last = 101;
            for (float amount = 0; amount <= 100; amount += 2.5F) {
                device[ink] = amount;
                float const lightness = transform.apply<3>(device)[0];
                EXPECT_LT(lightness, last) << ink << ' ' << other << ' ' << amount;
                last = lightness;
            }
        }
    }
}

TEST_F(CmykProfile, FindsInksForTheMeasuredColours)
{
    for (cmsUInt32Number const intent : std::initializer_list<cmsUInt32Number>{
             INTENT_PERCEPTUAL, INTENT_RELATIVE_COLORIMETRIC, INTENT_SATURATION, INTENT_ABSOLUTE_COLORIMETRIC}) {
        Transform const there = toLab(intent);
        Transform const back = fromLab(intent);
        std::vector<double> errors;
        for (MeasuredPatch const& patch : m_patches) {
            FloatCmyk const device = toFloats(patch.device);
            if (totalInk(device) > 330) // would ask for more ink than is ever given
                continue;
            FloatLab const lab = there.apply<3>(device);
            errors.push_back(deltaE(there.apply<3>(back.apply<4>(lab)), lab));
        }
        EXPECT_LE(mean(errors), 0.6) << intent;
        EXPECT_LE(std::ranges::max(errors), 3.5) << intent;
    }
}

TEST_F(CmykProfile, LeavesPaperBare)
{
    for (cmsTagSignature const tag : {cmsSigBToA0Tag, cmsSigBToA1Tag, cmsSigBToA2Tag})
        EXPECT_LT(totalInk(lookUp<4>(tag, encode(100, 0, 0))), 1e-4) << std::hex << tag;
}

TEST_F(CmykProfile, NeverGivesMoreInkThanPaperTakes)
{
    for (cmsTagSignature const tag : {cmsSigBToA0Tag, cmsSigBToA1Tag, cmsSigBToA2Tag}) {
        float most = 0;
        for (int lightness = 0; lightness <= 100; lightness += 4)
            for (int a = -128; a <= 127; a += 15)
                for (int b = -128; b <= 127; b += 15)
                    most = std::max(most, totalInk(lookUp<4>(tag, encode(lightness, a, b))));
        EXPECT_LE(most, 3.3001F) << std::hex << tag;
    }
}

TEST_F(CmykProfile, BringsInBlackSteadilyAlongTheGreys)
{
    for (cmsTagSignature const tag : {cmsSigBToA0Tag, cmsSigBToA1Tag, cmsSigBToA2Tag}) {
        float last = 0;
        for (int lightness = 100; lightness >= 0; --lightness) {
            float const black = lookUp<4>(tag, encode(lightness, 0, 0))[3];
            EXPECT_GE(black, last - 1e-4F) << lightness;
            EXPECT_LE(black, last + 0.04F) << lightness;
            last = black;
        }
        EXPECT_GT(last, 0.95F) << std::hex << tag;
    }
}

TEST_F(CmykProfile, TakesItsDarkestPrintForBlackWherePicturesMatter)
{
    FloatCmyk const darkest = lookUp<4>(cmsSigBToA0Tag, encode(0, 0, 0));
    EXPECT_NEAR(lightnessOf(lookUp<3>(cmsSigAToB0Tag, darkest)), 0, 1);
    EXPECT_NEAR(lightnessOf(lookUp<3>(cmsSigAToB2Tag, darkest)), 0, 1);
    EXPECT_GT(lightnessOf(lookUp<3>(cmsSigAToB1Tag, darkest)), 8);
}

TEST_F(CmykProfile, KeepsLightnessOrChromaOfWhatItCannotPrint)
{
    // Far more chroma than print has; what is kept shows in the colorimetric table.
    FloatLab const wanted = encode(60, 100, 60);
    FloatLab const perceptual = lookUp<3>(cmsSigAToB0Tag, lookUp<4>(cmsSigBToA0Tag, wanted));
    FloatLab const saturated = lookUp<3>(cmsSigAToB2Tag, lookUp<4>(cmsSigBToA2Tag, wanted));
    EXPECT_LT(std::abs(lightnessOf(perceptual) - 60), std::abs(lightnessOf(saturated) - 60));
    EXPECT_LT(perceptual[1], saturated[1]);
}

TEST_F(CmykProfile, KnowsWhatCanBePrinted)
{
    EXPECT_EQ(lookUp<1>(cmsSigGamutTag, encode(100, 0, 0))[0], 0);
    EXPECT_EQ(lookUp<1>(cmsSigGamutTag, encode(50, 0, 0))[0], 0);
    EXPECT_EQ(lookUp<1>(cmsSigGamutTag, encode(50, 40, 20))[0], 0);
    EXPECT_EQ(lookUp<1>(cmsSigGamutTag, encode(50, 110, 0))[0], 1);
    EXPECT_EQ(lookUp<1>(cmsSigGamutTag, encode(0, 0, 0))[0], 1);
    EXPECT_EQ(lookUp<1>(cmsSigGamutTag, encode(90, -80, 80))[0], 1);
}
