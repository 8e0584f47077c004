// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Printer.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// What a patch of a set is there for.
enum class PatchKind { included, white, corner, ramp, neutral, spread };

inline constexpr std::size_t patchKindCount = 6;

/// A patch that must be in a set, with its values as they are to be written.
struct IncludedPatch
{
    std::string text;
    DevicePercent device{};
};

/// What is wished of a set of patches. Kinds without a number get one by the number of patches, as far as there is room
/// for them.
struct PatchSetWish
{
    /// The largest number of patches.
    static constexpr std::size_t mostPatches = 20'000;

    /// An ink limit below this leaves no full ink, percent.
    static constexpr double leastInkLimit = 100;

    std::size_t patches = 0; ///< from 1 to mostPatches
    double inkLimit = 320;   ///< percent, from leastInkLimit to 400; only for CMYK
    ValueStep step = ValueStep::tenth;
    std::optional<int> whites;   ///< repeats of the paper, with those included
    std::optional<int> neutrals; ///< steps of each grey axis
    std::optional<int> ramps;    ///< steps of each ramp
    double neutralWeight = 1;    ///< as in SpreadSettings
    std::uint64_t seed = 0;
    std::vector<IncludedPatch> included; ///< in order; repeats are kept
    std::function<void(double share)> progress;
};

struct SetPatch
{
    PatchKind kind;
    std::string text; ///< values as written, with blanks between
    PrinterColor color;
};

/// A set of patches for a printer, or why there is none.
struct PatchSet
{
    std::vector<SetPatch> patches;
    std::array<std::size_t, patchKindCount> counts{}; ///< of each kind
    std::string fault;                                ///< one line; empty for a set that was made

    std::size_t countOf(PatchKind kind) const { return counts[static_cast<std::size_t>(kind)]; }
    std::vector<PrinterColor> colors() const;
};

/// Makes a set of exactly as many patches as wished. No patch is there twice except for white and included ones. Each
/// patch is within the ink limit as written. The same wish gives the same set everywhere.
PatchSet makePatchSet(Printer const& printer, PatchSetWish const& wish);
