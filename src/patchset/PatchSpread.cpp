// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PatchSpread.h"

#include "EvenDeviceValues.h"
#include "FarthestColors.h"
#include "PatchCentring.h"
#include "ProbePulls.h"

#include <algorithm>
#include <utility>

namespace
{

// Percent of a channel against delta E, squared: for the mean distances, and for the largest ones.
struct DeviceParts
{
    float spread;
    float largest;
};

constexpr DeviceParts partsOfCmyk{0.65f, 0.2f};
constexpr DeviceParts partsOfRgb{0.25f, 0.5f};

// Candidates for each patch: many for small tables, fewer for large ones, so that these do not take too long.
constexpr std::size_t candidatesPerPatch = 120;
constexpr std::size_t usualCandidates = 60'000;
constexpr std::size_t fewestCandidatesPerPatch = 6;
constexpr std::size_t fewestCandidates = 4'000;

std::size_t candidatesFor(std::size_t patches)
{
    std::size_t const wanted = std::clamp(candidatesPerPatch * patches, fewestCandidates, usualCandidates);
    return std::max(wanted, fewestCandidatesPerPatch * patches);
}

// Rounds of centring. After each round but the last, the patches that are needed least move to the farthest colours.
constexpr int rounds = 4;
constexpr int stepsPerRound = 3;
constexpr std::size_t patchesPerMovedOne = 40;

// One of so many patches is kept for the colours that are farthest when all others have their places.
constexpr std::size_t patchesPerReserve = 50;

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

// Spreads patches over the candidates.
class Spreading
{
public:
    Spreading(Printer const& where, ValueScale const& valueScale, SpreadSettings const& how,
              std::vector<PrinterColor> const& fixed, std::set<DeviceSteps> const& taken, std::size_t count)
        : printer(where), scale(valueScale), settings(how),
          parts(scale.getColorSpace() == CMYK ? partsOfCmyk : partsOfRgb),
          values(evenDeviceValues(scale, settings.inkLimit, candidatesFor(count + fixed.size()), settings.seed, taken)),
          patches{fixed, fixed.size(), {}, taken}
    {
        for (DeviceSteps const& value : values)
            candidates.push_back({scale.percentOf(value), {}});
        printer.computeColors(candidates);
        weights = weightsOf(candidates, printer, settings.neutralWeight);
    }

    std::vector<DeviceSteps> run(std::size_t wanted)
    {
        std::size_t const count = std::min(wanted, values.size());
        if (count == 0)
            return {};
        std::size_t const reserve = count / patchesPerReserve;
        choose(count - reserve, {parts.spread, DistanceRule::sum}, shareOfChoice);
        for (int round = 0; round < rounds; ++round) {
            if (round > 0)
                moveLeastNeeded();
            centre(round);
        }
        choose(reserve, {parts.largest, DistanceRule::larger}, 0);
        return patches.steps;
    }

private:
    struct Distance
    {
        float devicePart;
        DistanceRule rule;
    };

    void report(double share) const
    {
        if (settings.progress)
            settings.progress(share);
    }

    // Adds the farthest candidates, except for those whose values are taken.
    void choose(std::size_t count, Distance const& distance, double shareOfWork)
    {
        FarthestColors farthest(candidates, weights, distance.devicePart, distance.rule);
        for (PrinterColor const& color : patches.colors)
            farthest.add(color);
        for (std::size_t i = 0; i < count; ++i) {
            std::uint32_t const next = farthest.farthest();
            farthest.add(candidates[next]);
            patches.colors.push_back(candidates[next]);
            patches.steps.push_back(values[next]);
            patches.taken.insert(values[next]);
            if (shareOfWork > 0)
                report(shareOfWork * static_cast<double>(i) / static_cast<double>(count));
        }
    }

    void centre(int round)
    {
        for (int step = 0; step < stepsPerRound; ++step) {
            double const share = static_cast<double>(round * stepsPerRound + step) / (rounds * stepsPerRound);
            report(shareOfChoice + (1 - shareOfChoice) * share);
            centrePatches(patches, {printer, scale, settings.inkLimit, parts.spread, candidates, weights});
        }
    }

    // The patches that the least pulls at come last, and are removed.
    void removeLeastNeeded(std::size_t count)
    {
        auto const inLab = pullsInLab(patches.colors, candidates, weights);
        auto const inDevice = pullsInDevice(patches.colors, candidates, weights);
        std::vector<std::pair<double, std::size_t>> needs;
        for (std::size_t i = patches.fixed; i < patches.colors.size(); ++i)
            needs.emplace_back(inLab[i].weight + inDevice[i].weight, i);
        std::sort(needs.begin(), needs.end());
        std::vector<bool> goes(patches.colors.size());
        for (std::size_t i = 0; i < count; ++i)
            goes[needs[i].second] = true;
        SpreadPatches rest{{}, patches.fixed, {}, std::move(patches.taken)};
        for (std::size_t i = 0; i < patches.colors.size(); ++i) {
            if (goes[i]) {
                rest.taken.erase(patches.steps[i - patches.fixed]);
                continue;
            }
            rest.colors.push_back(patches.colors[i]);
            if (i >= patches.fixed)
                rest.steps.push_back(patches.steps[i - patches.fixed]);
        }
        patches = std::move(rest);
    }

    void moveLeastNeeded()
    {
        std::size_t const count = patches.steps.size() / patchesPerMovedOne;
        if (count == 0)
            return;
        removeLeastNeeded(count);
        choose(count, {parts.largest, DistanceRule::larger}, 0);
    }

    Printer const& printer;
    ValueScale const& scale;
    SpreadSettings const& settings;
    DeviceParts parts;
    std::vector<DeviceSteps> values;
    SpreadPatches patches;
    std::vector<PrinterColor> candidates;
    std::vector<float> weights;
};

} // namespace

std::vector<DeviceSteps> spreadPatches(Printer const& printer, ValueScale const& scale, SpreadSettings const& settings,
                                       std::vector<PrinterColor> const& fixed, std::set<DeviceSteps> const& taken,
                                       std::size_t count)
{
    return Spreading(printer, scale, settings, fixed, taken, count).run(count);
}
