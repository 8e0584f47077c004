// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColorEngine.h"

#include <algorithm>

#include <lcms2.h>

void ColorEngine::CloseProfile::operator()(void* profile) const
{
    cmsCloseProfile(profile);
}

void ColorEngine::DeleteTransform::operator()(void* transform) const
{
    cmsDeleteTransform(transform);
}

ColorEngine::Transform ColorEngine::transformBetween(Profile const& from, unsigned fromFormat, Profile const& to,
                                                     unsigned toFormat)
{
    bool const canConvert = from && to;
    return Transform(
        canConvert ? cmsCreateTransform(from.get(), fromFormat, to.get(), toFormat, INTENT_ABSOLUTE_COLORIMETRIC, 0)
                   : nullptr);
}

ColorEngine::ColorEngine(String const& cmykPath, String const& rgbPath)
    : labprofile(cmsCreateLab4Profile(nullptr)), cmykprofile(cmsOpenProfileFromFile(cmykPath, "r")),
      rgbprofile(cmsOpenProfileFromFile(rgbPath, "r")),
      cmyktolab(transformBetween(cmykprofile, TYPE_CMYK_FLT, labprofile, TYPE_Lab_FLT)),
      rgbtolab(transformBetween(rgbprofile, TYPE_RGB_FLT, labprofile, TYPE_Lab_FLT)),
      labtorgb(transformBetween(labprofile, TYPE_Lab_FLT, rgbprofile, TYPE_RGB_FLT))
{
}

void ColorEngine::convert(Transform const& transform, float const* from, float* to, std::size_t count)
{
    if (transform)
        cmsDoTransform(transform.get(), from, to, static_cast<cmsUInt32Number>(count));
    else
        std::fill_n(to, 3 * count, 0.0f);
}

void ColorEngine::toLab(ColorSpace colorSpace, float const* device, float* labs, std::size_t count) const
{
    convert(colorSpace == CMYK ? cmyktolab : rgbtolab, device, labs, count);
}

void ColorEngine::toDisplay(float const* labs, float* displayColors, std::size_t count) const
{
    convert(labtorgb, labs, displayColors, count);
}

Lab ColorEngine::paper() const
{
    constexpr float unprinted[] = {0, 0, 0, 0};
    Lab lab{};
    toLab(CMYK, unprinted, lab.values, 1);
    return lab;
}

ColorEngine& colorEngine()
{
    static ColorEngine engine;
    return engine;
}
