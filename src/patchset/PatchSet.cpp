// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PatchSet.h"

#include "InkRamps.h"
#include "NeutralAxis.h"
#include "PatchSpread.h"

#include <algorithm>
#include <set>
#include <utility>

namespace
{

constexpr int usualWhites = 4;
constexpr int mostUsualRampSteps = 20;

// Patches per square of ramp steps: 4 steps for 500 patches, 8 for 1,600.
constexpr int patchesPerSquaredStep = 25;

int usualRampSteps(std::size_t patches)
{
    int steps = 0;
    while (steps < mostUsualRampSteps && patchesPerSquaredStep * (steps + 1) * (steps + 1) <= static_cast<int>(patches))
        ++steps;
    return steps;
}

// Fills a set kind after kind.
class SetMaker
{
public:
    SetMaker(Printer const& where, PatchSetWish const& what)
        : printer(where), wish(what), scale(where.getColorSpace(), what.step)
    {
    }

    PatchSet make()
    {
        addIncluded();
        addWhites();
        // Wished kinds come before the usual ones, so that these leave them their room.
        auto const corners = cornerValues(scale, wish.inkLimit);
        auto const ramps = rampValues(scale, wish.inkLimit, wish.ramps.value_or(usualRampSteps(wish.patches)));
        auto const neutrals =
            neutralValues(printer, scale, wish.inkLimit, wish.neutrals.value_or(2 * usualRampSteps(wish.patches)));
        if (wish.ramps)
            addWished(PatchKind::ramp, ramps);
        if (wish.neutrals)
            addWished(PatchKind::neutral, neutrals);
        if (set.patches.size() + whites > wish.patches) {
            tellExcess();
            return std::move(set);
        }
        addUsual(PatchKind::corner, corners);
        addUsual(PatchKind::ramp, ramps);
        addUsual(PatchKind::neutral, neutrals);
        addSpread();
        placeWhites();
        return std::move(set);
    }

private:
    void add(PatchKind kind, std::string text, DevicePercent const& device)
    {
        set.patches.push_back({kind, std::move(text), printer.colorOf(device)});
        ++set.counts[static_cast<std::size_t>(kind)];
    }

    void addIncluded()
    {
        for (IncludedPatch const& patch : wish.included) {
            DeviceSteps const nearest = scale.nearest(patch.device);
            if (scale.percentOf(nearest) == patch.device)
                taken.insert(nearest);
            includedWhites += patch.device == printer.paper() ? 1U : 0U;
            add(PatchKind::included, patch.text, patch.device);
        }
    }

    void addWhites()
    {
        auto const wished = static_cast<std::size_t>(wish.whites.value_or(usualWhites));
        whites = wished - std::min(wished, includedWhites);
        std::size_t const room = wish.patches - std::min(wish.patches, set.patches.size());
        if (!wish.whites)
            whites = std::min(whites, room);
        taken.insert(paperValue(scale));
    }

    void addWished(PatchKind kind, std::vector<DeviceSteps> const& values)
    {
        for (DeviceSteps const& value : values)
            if (taken.insert(value).second)
                add(kind, scale.textOf(value), scale.percentOf(value));
    }

    void addUsual(PatchKind kind, std::vector<DeviceSteps> const& values)
    {
        for (DeviceSteps const& value : values)
            if (room() > 0 && taken.insert(value).second)
                add(kind, scale.textOf(value), scale.percentOf(value));
    }

    std::size_t room() const { return wish.patches - set.patches.size() - whites; }

    void tellExcess()
    {
        std::size_t const fixed = set.patches.size() + whites;
        set.fault = "the patches that must be in are " + std::to_string(fixed) + ": ";
        auto const part = [&](std::size_t count, char const* what) {
            if (count > 0)
                set.fault += std::to_string(count) + " " + what + ", ";
        };
        part(set.countOf(PatchKind::included), "included");
        part(whites, "white");
        part(set.countOf(PatchKind::ramp), "on ramps");
        part(set.countOf(PatchKind::neutral), "on the grey axis");
        set.fault.resize(set.fault.size() - 2);
        set.fault += "; the table is to have " + std::to_string(wish.patches);
        set.patches.clear();
    }

    void addSpread()
    {
        std::vector<PrinterColor> fixed = set.colors();
        if (whites > 0)
            fixed.push_back(printer.colorOf(printer.paper()));
        auto const values = spreadPatches(printer, scale, {wish.inkLimit, wish.neutralWeight, wish.seed, wish.progress},
                                          fixed, taken, room());
        std::vector<PrinterColor> colors;
        colors.reserve(values.size());
        for (DeviceSteps const& value : values)
            colors.push_back({scale.percentOf(value), {}});
        printer.computeColors(colors);
        for (std::size_t i = 0; i < values.size(); ++i)
            set.patches.push_back({PatchKind::spread, scale.textOf(values[i]), colors[i]});
        set.counts[static_cast<std::size_t>(PatchKind::spread)] = values.size();
    }

    // The first white patch comes first, and the others at equal distances.
    void placeWhites()
    {
        std::vector<SetPatch> others = std::exchange(set.patches, {});
        SetPatch const white{PatchKind::white, scale.textOf(paperValue(scale)), printer.colorOf(printer.paper())};
        std::size_t const all = others.size() + whites;
        std::size_t next = 0;
        for (std::size_t place = 0; place < all; ++place) {
            std::size_t const placed = place - next;
            bool const isWhite = placed < whites && place * whites >= placed * all;
            set.patches.push_back(isWhite ? white : others[next++]);
        }
        set.counts[static_cast<std::size_t>(PatchKind::white)] = whites;
    }

    Printer const& printer;
    PatchSetWish const& wish;
    ValueScale scale;
    PatchSet set;
    std::set<DeviceSteps> taken;
    std::size_t whites = 0;
    std::size_t includedWhites = 0;
};

} // namespace

std::vector<PrinterColor> PatchSet::colors() const
{
    std::vector<PrinterColor> colors;
    colors.reserve(patches.size());
    for (SetPatch const& patch : patches)
        colors.push_back(patch.color);
    return colors;
}

PatchSet makePatchSet(Printer const& printer, PatchSetWish const& wish)
{
    return SetMaker(printer, wish).make();
}
