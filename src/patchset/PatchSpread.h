// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Printer.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>
#include <vector>

/// How patches are to be spread.
struct SpreadSettings
{
    double inkLimit = 400;    ///< percent; only for CMYK
    double neutralWeight = 1; ///< how much denser patches lie at the grey axis than far from it, from 1 on
    std::uint64_t seed = 0;
    std::function<void(double share)> progress; ///< called with the share of the work done, from 0 to 1; may be empty
};

/// Spreads patches over the colours of a printer, so that no colour is far from a patch, in CIELAB and in device values
/// at once. The values of all patches differ. One printer, scale and settings give the same patches everywhere.
///
/// \param fixed  patches that are there already; the new ones keep away from them
/// \param taken  values that no new patch may have
/// \param count  how many new patches
/// \return fewer only where the ink limit leaves no more values
std::vector<DeviceSteps> spreadPatches(Printer const& printer, ValueScale const& scale, SpreadSettings const& settings,
                                       std::vector<PrinterColor> const& fixed, std::set<DeviceSteps> const& taken,
                                       std::size_t count);
