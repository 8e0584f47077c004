// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Profile.h"

#include <gtest/gtest.h>

namespace
{

class RgbProfile : public testing::Test
{
protected:
    Profile m_profile{"res/RGBgeneric.icc"};
};

} // namespace

TEST_F(RgbProfile, IsADisplayProfileWithAllItNeeds)
{
    ASSERT_NE(m_profile.get(), nullptr);
    EXPECT_EQ(cmsGetDeviceClass(m_profile.get()), cmsSigDisplayClass);
    EXPECT_EQ(cmsGetColorSpace(m_profile.get()), cmsSigRgbData);
    EXPECT_EQ(cmsGetPCS(m_profile.get()), cmsSigXYZData);
    for (cmsTagSignature const tag : {cmsSigProfileDescriptionTag, cmsSigCopyrightTag, cmsSigMediaWhitePointTag,
                                      cmsSigChromaticAdaptationTag, cmsSigRedColorantTag, cmsSigGreenColorantTag,
                                      cmsSigBlueColorantTag, cmsSigRedTRCTag, cmsSigGreenTRCTag, cmsSigBlueTRCTag})
        EXPECT_TRUE(cmsIsTag(m_profile.get(), tag)) << std::hex << tag;
}

TEST_F(RgbProfile, GivesThePublishedColoursOfItsPrimaries)
{
    struct
    {
        std::array<float, 3> rgb;
        std::array<double, 3> lab;
    } const published[] = {
        {{1, 1, 1}, {100, 0, 0}},
        {{0, 0, 0}, {0, 0, 0}},
        {{1, 0, 0}, {54.29, 80.81, 69.89}},
        {{0, 1, 0}, {87.82, -79.28, 80.99}},
        {{0, 0, 1}, {29.57, 68.30, -112.03}},
    };
    Transform const transform(m_profile, TYPE_RGB_FLT, INTENT_ABSOLUTE_COLORIMETRIC, Transform::toLab);
    for (auto const& [rgb, lab] : published) {
        std::array<float, 3> const found = transform.apply<3>(rgb);
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(found[i], lab[i], 0.02);
    }
}

TEST_F(RgbProfile, HasTheStraightPieceNearBlackAndThePowerAboveIt)
{
    // L* of a grey value: below 0.04045 luminance is a 12.92th and L* is 903.3 times that; for 0.5 luminance is
    // ((0.5 + 0.055) / 1.055) ^ 2.4 = 0.21404, and 116 * 0.21404 ^ (1 / 3) - 16 = 53.389.
    Transform const transform(m_profile, TYPE_RGB_FLT, INTENT_ABSOLUTE_COLORIMETRIC, Transform::toLab);
    EXPECT_NEAR(transform.apply<3>(std::array{0.02F, 0.02F, 0.02F})[0], 0.02 / 12.92 * 903.3, 0.005);
    EXPECT_NEAR(transform.apply<3>(std::array{0.5F, 0.5F, 0.5F})[0], 53.389, 0.005);
}

TEST_F(RgbProfile, TurnsItsColoursBackIntoThemselves)
{
    Transform const toLab(m_profile, TYPE_RGB_FLT, INTENT_ABSOLUTE_COLORIMETRIC, Transform::toLab);
    Transform const fromLab(m_profile, TYPE_RGB_FLT, INTENT_ABSOLUTE_COLORIMETRIC, Transform::fromLab);
    for (std::array<float, 3> const& rgb : {std::array{0.2F, 0.4F, 0.6F}, {1.0F, 0.5F, 0.0F}, {0.0F, 0.01F, 0.9F}}) {
        std::array<float, 3> const back = fromLab.apply<3>(toLab.apply<3>(rgb));
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(back[i], rgb[i], 1e-4);
    }
}
