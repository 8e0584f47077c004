// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Printer.h"

#include <array>
#include <vector>

/// What pulls at a patch: the probes that are nearest to it. Each counts by its squared distance and its own weight, so
/// that the far ones pull most. The weights of all patches add up to 1.
struct Pull
{
    std::array<double, 4> sum{}; ///< weighted differences of the probes from the patch; spare ones are 0
    double weight = 0;           ///< of the probes; how much the patch is needed
};

/// The pulls at each patch by distances in CIELAB.
///
/// \param patches  at least one
/// \param weights  of the probes
std::vector<Pull> pullsInLab(std::vector<PrinterColor> const& patches, std::vector<PrinterColor> const& probes,
                             std::vector<float> const& weights);

/// The same by distances in device values.
std::vector<Pull> pullsInDevice(std::vector<PrinterColor> const& patches, std::vector<PrinterColor> const& probes,
                                std::vector<float> const& weights);
