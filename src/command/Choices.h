// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "layout/MeasurementLayout.h"
#include "layout/PageLayout.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A device to choose. Its values are those of an instrument preset, mm.
struct DeviceChoice
{
    std::string id;   ///< what the option takes: "gb-spot"
    std::string name; ///< the window's name, or the one in the presets file
    InstrumentPreset values;
    std::string origin; ///< "built in", or the presets file
};

/// A paper to choose: its size and margins, mm.
struct PaperChoice
{
    std::string id;
    std::string name;
    PageLayout sheet;
    std::string origin;
};

/// The devices and papers to choose from.
struct Choices
{
    std::vector<DeviceChoice> devices;
    std::vector<PaperChoice> papers;

    /// By its id, or by its name in any case; null for none.
    DeviceChoice const* device(std::string_view name) const;
    PaperChoice const* paper(std::string_view name) const;
};

/// The window's devices and papers.
Choices builtInChoices();

/// A name as an id: lower case letters and digits, with a hyphen for everything between them.
std::string idOf(std::string_view name);

/// A sheet's margins, mm.
RealBorder marginsOf(PageLayout const& sheet);
