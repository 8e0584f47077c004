// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ProfileFile.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

bool setTexts(cmsHPROFILE profile, char const* description, char const* copyright)
{
    std::array<std::pair<cmsTagSignature, char const*>, 4> const texts{{
        {cmsSigProfileDescriptionTag, description},
        {cmsSigCopyrightTag, copyright},
        {cmsSigDeviceMfgDescTag, "Patchloom"},
        {cmsSigDeviceModelDescTag, description},
    }};
    return std::ranges::all_of(texts, [profile](auto const& text) {
        cmsMLU* const mlu = cmsMLUalloc(nullptr, 1);
        bool const written = cmsMLUsetASCII(mlu, "en", "US", text.second) && cmsWriteTag(profile, text.first, mlu);
        cmsMLUfree(mlu);
        return written;
    });
}

bool saveProfile(cmsHPROFILE profile, std::filesystem::path const& file)
{
    cmsUInt32Number size = 0;
    if (!cmsSaveProfileToMem(profile, nullptr, &size))
        return false;
    std::vector<char> bytes(size);
    if (!cmsSaveProfileToMem(profile, bytes.data(), &size))
        return false;

    // Little CMS dates a profile now and has no call to change that. The date is six big-endian 16-bit numbers: year,
    // month, day, hours, minutes, seconds.
    constexpr std::size_t dateOffset = 24;
    constexpr std::array<char, 12> date{0x07, '\xea', 0, 1, 0, 1, 0, 0, 0, 0, 0, 0}; // 2026-01-01 00:00:00
    std::ranges::copy(date, bytes.begin() + dateOffset);

    std::ofstream stream(file, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(size));
    return static_cast<bool>(stream.flush());
}
