// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/ProfileColours.h"

#include <lcms2.h>

#include <algorithm>
#include <cmath>

namespace
{

cmsHTRANSFORM toLab(char const* profile, cmsUInt32Number format)
{
    cmsHPROFILE const device = cmsOpenProfileFromFile(profile, "r");
    cmsHPROFILE const lab = cmsCreateLab4Profile(nullptr);
    cmsHTRANSFORM const transform = cmsCreateTransform(device, format, lab, TYPE_Lab_DBL, INTENT_ABSOLUTE_COLORIMETRIC,
                                                       cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE);
    cmsCloseProfile(lab);
    cmsCloseProfile(device);
    return transform;
}

ProfileColours::Lab convert(cmsHTRANSFORM transform, std::array<double, 4> const& device)
{
    ProfileColours::Lab lab{};
    cmsDoTransform(transform, device.data(), lab.data(), 1);
    return lab;
}

} // namespace

ProfileColours::ProfileColours(ColorSpace colorSpace) : scale(colorSpace == CMYK ? 1 : 255)
{
    cmsHTRANSFORM const cmyk = toLab(PATCHLOOM_RESOURCES "generic.icc", TYPE_CMYK_DBL);
    paper = convert(cmyk, {0, 0, 0, 0});
    transform = colorSpace == CMYK ? cmyk : toLab(PATCHLOOM_RESOURCES "RGBgeneric.icc", TYPE_RGB_DBL);
    if (transform != cmyk)
        cmsDeleteTransform(cmyk);
}

ProfileColours::~ProfileColours()
{
    cmsDeleteTransform(transform);
}

ProfileColours::Lab ProfileColours::of(std::vector<std::string> const& values) const
{
    std::array<double, 4> device{};
    std::transform(values.begin(), values.end(), device.begin(),
                   [this](std::string const& text) { return std::stod(text) / scale; });
    return convert(transform, device);
}

double deltaE(ProfileColours::Lab const& p, ProfileColours::Lab const& q)
{
    return std::hypot(p[0] - q[0], p[1] - q[1], p[2] - q[2]);
}
