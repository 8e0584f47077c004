// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PrinterProfile.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include <lcms2.h>

namespace
{

struct CloseProfile
{
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};

using Profile = std::unique_ptr<void, CloseProfile>;

// The four letters of a signature; those that are none become "?".
std::string lettersOf(cmsUInt32Number signature)
{
    std::string letters;
    for (int shift = 24; shift >= 0; shift -= 8) {
        auto const letter = static_cast<unsigned char>(signature >> shift & 0xffU);
        letters += letter >= 0x20 && letter < 0x7f ? static_cast<char>(letter) : '?';
    }
    return letters.substr(0, letters.find_last_not_of(' ') + 1);
}

std::string faultOfKind(Profile const& profile, ColorSpace space)
{
    auto const kind = cmsGetDeviceClass(profile.get());
    if (kind != cmsSigOutputClass && kind != cmsSigDisplayClass)
        return "is a profile of the kind \"" + lettersOf(kind) +
               "\", not of a printer or a display; take the profile that the printer's prints are made with";
    auto const colors = cmsGetColorSpace(profile.get());
    if (colors != (space == CMYK ? cmsSigCmykData : cmsSigRgbData))
        return "is for " + lettersOf(colors) + ", not for " + colorspace_names[space] +
               "; take another profile, or another --space";
    return "";
}

constexpr char damaged[] = "is damaged: it gives no colours for device values";

} // namespace

void PrinterProfile::DeleteTransform::operator()(void* transform) const
{
    cmsDeleteTransform(transform);
}

PrinterProfile::PrinterProfile(std::string const& bytes, ColorSpace colorSpace) : space(colorSpace)
{
    bool const isTooLarge = bytes.size() > std::numeric_limits<cmsUInt32Number>::max();
    Profile const profile(isTooLarge ? nullptr
                                     : cmsOpenProfileFromMem(bytes.data(), static_cast<cmsUInt32Number>(bytes.size())));
    if (!profile) {
        fault = "is no ICC profile, or a damaged one";
        return;
    }
    fault = faultOfKind(profile, space);
    if (!fault.empty())
        return;
    Profile const lab(cmsCreateLab4Profile(nullptr));
    transform.reset(cmsCreateTransform(profile.get(), space == CMYK ? TYPE_CMYK_FLT : TYPE_RGB_FLT, lab.get(),
                                       TYPE_Lab_FLT, INTENT_ABSOLUTE_COLORIMETRIC, 0));
    if (!transform || !hasColors()) {
        transform.reset();
        fault = damaged;
    }
}

// Whether all full and empty channels give finite colours, and not all the same lightness.
bool PrinterProfile::hasColors() const
{
    constexpr float leastContrast = 5;
    std::size_t const channels = space == CMYK ? 4 : 3;
    std::vector<float> percents;
    std::size_t const corners = std::size_t{1} << channels;
    for (std::size_t corner = 0; corner < corners; ++corner)
        for (std::size_t c = 0; c < channels; ++c)
            percents.push_back((corner >> c & 1U) != 0 ? 100.0f : 0.0f);
    std::vector<float> labs(3 * corners);
    toLab(percents.data(), labs.data(), corners);
    float darkest = std::numeric_limits<float>::max();
    float lightest = std::numeric_limits<float>::lowest();
    for (std::size_t i = 0; i < labs.size(); ++i) {
        if (!std::isfinite(labs[i]))
            return false;
        if (i % 3 == 0) {
            darkest = std::min(darkest, labs[i]);
            lightest = std::max(lightest, labs[i]);
        }
    }
    return lightest - darkest >= leastContrast;
}

void PrinterProfile::toLab(float const* percents, float* labs, std::size_t count) const
{
    if (!transform) {
        std::fill_n(labs, 3 * count, 0.0f);
        return;
    }
    // The library takes CMYK in percent and RGB from 0 to 1.
    if (space == CMYK) {
        cmsDoTransform(transform.get(), percents, labs, static_cast<cmsUInt32Number>(count));
        return;
    }
    std::vector<float> shares(percents, percents + 3 * count);
    for (float& share : shares)
        share /= 100;
    cmsDoTransform(transform.get(), shares.data(), labs, static_cast<cmsUInt32Number>(count));
}
