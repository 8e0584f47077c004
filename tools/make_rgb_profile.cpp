// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Writes the sRGB profile: make_rgb_profile <output file>

#include "ProfileFile.h"

#include <array>
#include <cstdlib>
#include <iostream>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: make_rgb_profile <output file>\n";
        return EXIT_FAILURE;
    }

    // IEC 61966-2-1: white D65, the primaries of BT.709, and a curve with a straight piece near black.
    constexpr cmsCIExyY white{0.3127, 0.3290, 1.0};
    constexpr cmsCIExyYTRIPLE primaries{{0.64, 0.33, 1.0}, {0.30, 0.60, 1.0}, {0.15, 0.06, 1.0}};
    constexpr cmsInt32Number powerWithStraightPiece = 4;
    constexpr std::array curveParameters{2.4, 1.0 / 1.055, 0.055 / 1.055, 1.0 / 12.92, 0.04045};

    cmsToneCurve* const curve = cmsBuildParametricToneCurve(nullptr, powerWithStraightPiece, curveParameters.data());
    std::array<cmsToneCurve*, 3> const curves{curve, curve, curve};
    cmsHPROFILE const profile = cmsCreateRGBProfile(&white, &primaries, curves.data());
    bool const written = setTexts(profile, "sRGB", "No copyright, use freely") && saveProfile(profile, argv[1]);
    cmsCloseProfile(profile);
    cmsFreeToneCurve(curve);

    if (!written) {
        std::cerr << "Cannot write " << argv[1] << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
