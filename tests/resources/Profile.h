// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Generators.h"

#include <lcms2.h>

#include <array>

/// An open profile of the source tree; null where it cannot be opened.
class Profile
{
public:
    explicit Profile(std::string const& name) : m_handle(cmsOpenProfileFromFile(sourceFile(name).c_str(), "r")) {}
    ~Profile()
    {
        if (m_handle != nullptr)
            cmsCloseProfile(m_handle);
    }
    Profile(Profile const&) = delete;
    Profile& operator=(Profile const&) = delete;

    cmsHPROFILE get() const { return m_handle; }

private:
    cmsHPROFILE m_handle;
};

/// A transform between a profile's colours and CIELAB, of plain floats and without any flag.
class Transform
{
public:
    enum Direction { toLab, fromLab };

    Transform(Profile const& profile, cmsUInt32Number deviceFormat, cmsUInt32Number intent, Direction direction)
    {
        cmsHPROFILE const lab = cmsCreateLab4Profile(nullptr);
        m_handle = direction == toLab ? cmsCreateTransform(profile.get(), deviceFormat, lab, TYPE_Lab_FLT, intent, 0)
                                      : cmsCreateTransform(lab, TYPE_Lab_FLT, profile.get(), deviceFormat, intent, 0);
        cmsCloseProfile(lab);
    }
    ~Transform() { cmsDeleteTransform(m_handle); }
    Transform(Transform const&) = delete;
    Transform& operator=(Transform const&) = delete;

    template <std::size_t outputs, std::size_t inputs>
    std::array<float, outputs> apply(std::array<float, inputs> const& colour) const
    {
        std::array<float, outputs> result;
        cmsDoTransform(m_handle, colour.data(), result.data(), 1);
        return result;
    }

private:
    cmsHTRANSFORM m_handle;
};
