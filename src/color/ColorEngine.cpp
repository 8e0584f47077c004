// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColorConversions.h"

#include <algorithm>

#include <lcms2.h>

void ColorConversions::CloseProfile::operator()(void* profile) const
{
    cmsCloseProfile(profile);
}

void ColorConversions::DeleteTransform::operator()(void* transform) const
{
    cmsDeleteTransform(transform);
}

ColorConversions::Transform ColorConversions::transformBetween(Profile const& from, unsigned fromFormat,
                                                               Profile const& to, unsigned toFormat)
{
    bool const canConvert = from && to;
    return Transform(
        canConvert ? cmsCreateTransform(from.get(), fromFormat, to.get(), toFormat, INTENT_ABSOLUTE_COLORIMETRIC, 0)
                   : nullptr);
}

ColorConversions::ColorConversions(String const& cmykPath, String const& rgbPath)
    : labprofile(cmsCreateLab4Profile(nullptr)), cmykprofile(cmsOpenProfileFromFile(cmykPath, "r")),
      rgbprofile(cmsOpenProfileFromFile(rgbPath, "r")),
      cmyktolab(transformBetween(cmykprofile, TYPE_CMYK_FLT, labprofile, TYPE_Lab_FLT)),
      rgbtolab(transformBetween(rgbprofile, TYPE_RGB_FLT, labprofile, TYPE_Lab_FLT)),
      labtorgb(transformBetween(labprofile, TYPE_Lab_FLT, rgbprofile, TYPE_RGB_FLT))
{
}

void ColorConversions::convert(Transform const& transform, float const* from, float* to, std::size_t count)
{
    if (transform)
        cmsDoTransform(transform.get(), from, to, static_cast<cmsUInt32Number>(count));
    else
        std::fill_n(to, 3 * count, 0.0f);
}

void ColorConversions::toLab(ColorSpace colorSpace, float const* device, float* labs, std::size_t count) const
{
    convert(colorSpace == CMYK ? cmyktolab : rgbtolab, device, labs, count);
}

void ColorConversions::toDisplay(float const* labs, float* displayColors, std::size_t count) const
{
    convert(labtorgb, labs, displayColors, count);
}

Lab ColorConversions::paper() const
{
    constexpr float unprinted[] = {0, 0, 0, 0};
    Lab lab{};
    toLab(CMYK, unprinted, lab.values, 1);
    return lab;
}

ColorConversions& colorConversions()
{
    static ColorConversions conversions;
    return conversions;
}
