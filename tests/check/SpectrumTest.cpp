// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Spectrum.h"

#include <gtest/gtest.h>

namespace
{

std::vector<SpectralBand> flat(double reflectance)
{
    return {{380, reflectance}, {780, reflectance}};
}

TEST(Spectrum, OfThePerfectWhiteIsTheProfilesWhite)
{
    auto const xyz = xyzOfSpectrum(flat(1));
    EXPECT_NEAR(xyz[0], 0.9642, 1e-12);
    EXPECT_NEAR(xyz[1], 1, 1e-12);
    EXPECT_NEAR(xyz[2], 0.8249, 1e-12);
}

TEST(Spectrum, OfAGreyIsItsShareOfWhite)
{
    EXPECT_NEAR(xyzOfSpectrum(flat(0.18))[1], 0.18, 1e-12);
}

TEST(Spectrum, IsConstantBeyondItsBands)
{
    EXPECT_NEAR(xyzOfSpectrum({{550, 0.4}})[2], 0.4 * 0.8249, 1e-12);
}

// A straight line through 0 at 300 nm and 1 at 800 nm, in steps of 20 and of 5 nm.
TEST(Spectrum, IsLinearBetweenItsBands)
{
    auto const line = [](int step) {
        std::vector<SpectralBand> bands;
        for (int wavelength = 380; wavelength <= 780; wavelength += step)
            bands.push_back({static_cast<double>(wavelength), (wavelength - 300) / 500.0});
        return xyzOfSpectrum(bands);
    };
    for (std::size_t k = 0; k < 3; ++k)
        EXPECT_NEAR(line(20)[k], line(5)[k], 1e-12);
}

// The observer sees blue mostly in Z and red hardly in Z.
TEST(Spectrum, OfBlueAndRedLight)
{
    auto const blue = xyzOfSpectrum({{500, 1}, {510, 0}});
    auto const red = xyzOfSpectrum({{600, 0}, {610, 1}});
    EXPECT_GT(blue[2], 0.95 * 0.8249);
    EXPECT_LT(blue[1], 0.2);
    EXPECT_LT(red[2], 0.001);
    EXPECT_GT(red[0], red[1]);
}

} // namespace
