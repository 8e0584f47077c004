// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/ColorSpace.h"

#include <cstddef>
#include <memory>
#include <string>

/// The colours of a printer by its ICC profile: CIELAB (D50, absolute colorimetric) of device values.
class PrinterProfile
{
public:
    /// \param bytes       what is in the profile's file
    /// \param colorSpace  CMYK or RGB: what the profile has to be for
    PrinterProfile(std::string const& bytes, ColorSpace colorSpace);

    /// Why the profile cannot be used, such as "is for RGB, not for CMYK"; empty for one that can.
    std::string const& getFault() const { return fault; }

    /// Computes the colours of device values. All are 0 with a profile that cannot be used.
    ///
    /// \param percents  channel after channel, colour after colour, 0 to 100
    /// \param labs      three numbers for each colour
    void toLab(float const* percents, float* labs, std::size_t count) const;

private:
    struct DeleteTransform
    {
        void operator()(void* transform) const;
    };

    bool hasColors() const;

    ColorSpace space;
    std::unique_ptr<void, DeleteTransform> transform;
    std::string fault;
};
