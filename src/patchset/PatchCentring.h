// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Printer.h"

#include <cstddef>
#include <set>
#include <vector>

/// What the centring of patches needs to know.
struct CentringTask
{
    Printer const& printer;
    ValueScale scale;
    double inkLimit;  ///< percent
    float devicePart; ///< as in FarthestColors
    std::vector<PrinterColor> const& probes;
    std::vector<float> const& weights; ///< of the probes
};

/// Patches that are to lie in the middle of what is nearest to them.
struct SpreadPatches
{
    std::vector<PrinterColor> colors; ///< those that stay come first
    std::size_t fixed = 0;            ///< how many stay
    std::vector<DeviceSteps> steps;   ///< of those that move
    std::set<DeviceSteps> taken;      ///< all values of patches
};

/// Moves each patch to where the probes nearest to it are less far: one step of least squares that weights each probe
/// by its squared distance, so that the far ones count most. The move is computed in device values, through the slope
/// of the printer's colours. A patch stays if its new values belong to another one.
void centrePatches(SpreadPatches& patches, CentringTask const& task);
