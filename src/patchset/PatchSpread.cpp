// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PatchSpread.h"

#include "EvenDeviceValues.h"
#include "FarthestColors.h"
#include "PatchCentring.h"

#include <algorithm>

namespace
{

// Percent of a channel against delta E, squared. CMYK has many recipes for a colour, so its device values count more.
constexpr float devicePartOfCmyk = 0.5f;
constexpr float devicePartOfRgb = 0.25f;

constexpr int centringSteps = 8;

// So many candidates for each patch, but at least some for small tables.
constexpr std::size_t candidatesPerPatch = 6;
constexpr std::size_t fewestCandidates = 30000;

// The share of the work that the choice of the patches is; the rest is their centring.
constexpr double shareOfChoice = 0.3;

// Factors on the squared distances at each candidate: 1 far from the grey axis, the square of the weight on it.
std::vector<float> weightsOf(std::vector<PrinterColor> const& candidates, Printer const& printer, double neutralWeight)
{
    constexpr float squaredChromaOfHalf = 15 * 15;
    Lab const paper = printer.colorOf(printer.paper()).lab;
    std::vector<float> weights;
    weights.reserve(candidates.size());
    for (PrinterColor const& candidate : candidates) {
        Lab const grey = greyOf(paper, candidate.lab.values[0]);
        float const squaredChroma = squaredDeltaE(candidate.lab, grey);
        float const factor =
            1 + (static_cast<float>(neutralWeight) - 1) * squaredChromaOfHalf / (squaredChromaOfHalf + squaredChroma);
        weights.push_back(factor * factor);
    }
    return weights;
}

} // namespace

std::vector<DeviceSteps> spreadPatches(Printer const& printer, ValueScale const& scale, SpreadSettings const& settings,
                                       std::vector<PrinterColor> const& fixed, std::set<DeviceSteps> const& taken,
                                       std::size_t count)
{
    auto const report = [&](double share) {
        if (settings.progress)
            settings.progress(share);
    };
    std::size_t const wanted = std::max(fewestCandidates, candidatesPerPatch * (count + fixed.size()));
    auto const values = evenDeviceValues(scale, settings.inkLimit, wanted, settings.seed, taken);
    count = std::min(count, values.size());
    if (count == 0)
        return {};
    std::vector<PrinterColor> candidates;
    candidates.reserve(values.size());
    for (DeviceSteps const& value : values)
        candidates.push_back({scale.percentOf(value), {}});
    printer.computeColors(candidates);
    std::vector<float> weights = weightsOf(candidates, printer, settings.neutralWeight);
    float const devicePart = scale.getColorSpace() == CMYK ? devicePartOfCmyk : devicePartOfRgb;

    FarthestColors choice(candidates, weights, devicePart);
    for (PrinterColor const& color : fixed)
        choice.add(color);
    SpreadPatches patches{fixed, fixed.size(), {}, taken};
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t const farthest = choice.farthest();
        choice.add(candidates[farthest]);
        patches.colors.push_back(candidates[farthest]);
        patches.steps.push_back(values[farthest]);
        patches.taken.insert(values[farthest]);
        report(shareOfChoice * static_cast<double>(i) / static_cast<double>(count));
    }
    for (int step = 0; step < centringSteps; ++step) {
        report(shareOfChoice + (1 - shareOfChoice) * step / centringSteps);
        centrePatches(patches, {printer, scale, settings.inkLimit, devicePart, candidates, weights});
    }
    return patches.steps;
}
