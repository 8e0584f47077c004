// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Lab.h"
#include "lib/ColorSpace.h"
#include "lib/OvString.h"

#include <cstddef>
#include <memory>

/// Converts device colours to CIELAB (D50, absolute colorimetric) and CIELAB to colours for a display. Works on plain
/// numbers. Colours that need a missing or unusable profile are 0.
class ColorEngine
{
public:
    /// An engine without profiles: all colours are 0.
    ColorEngine() = default;

    /// Opens the profiles at two paths.
    ColorEngine(String const& cmykPath, String const& rgbPath);

    /// \param colorSpace  of the device colours; `undefined` counts as RGB
    /// \param device      channel after channel, colour after colour: CMYK in percent, RGB from 0 to 1
    /// \param labs        three numbers for each colour
    void toLab(ColorSpace colorSpace, float const* device, float* labs, std::size_t count) const;

    /// \param labs           three numbers for each colour
    /// \param displayColors  red, green and blue of each colour, from 0 to 1
    void toDisplay(float const* labs, float* displayColors, std::size_t count) const;

    /// The CMYK profile's unprinted paper.
    Lab paper() const;

private:
    struct CloseProfile
    {
        void operator()(void* profile) const;
    };
    struct DeleteTransform
    {
        void operator()(void* transform) const;
    };
    using Profile = std::unique_ptr<void, CloseProfile>;
    using Transform = std::unique_ptr<void, DeleteTransform>;

    static Transform transformBetween(Profile const& from, unsigned fromFormat, Profile const& to, unsigned toFormat);
    static void convert(Transform const& transform, float const* from, float* to, std::size_t count);

    Profile labprofile;
    Profile cmykprofile;
    Profile rgbprofile;
    Transform cmyktolab;
    Transform rgbtolab;
    Transform labtorgb;
};

/// The colour engine of the whole process. It has no profiles until ColorEntry::prepareColorConversions has run.
ColorEngine& colorEngine();
