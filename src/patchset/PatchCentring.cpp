// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PatchCentring.h"

#include "NormalEquations.h"
#include "ProbePulls.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace
{

constexpr std::size_t channels = 4;
constexpr std::size_t lightnessAndColors = 3;

using Slope = std::array<std::array<double, channels>, lightnessAndColors>;

// How much the colours of the patches that move change with each channel, per percent.
std::vector<Slope> slopesOf(SpreadPatches const& patches, Printer const& printer)
{
    constexpr float step = 2;
    std::size_t const used = printer.getChannels();
    std::vector<PrinterColor> moved;
    for (std::size_t i = patches.fixed; i < patches.colors.size(); ++i)
        for (std::size_t c = 0; c < used; ++c) {
            moved.push_back(patches.colors[i]);
            float& value = moved.back().device[c];
            value += value > 50 ? -step : step;
        }
    printer.computeColors(moved);
    std::vector<Slope> slopes(patches.colors.size() - patches.fixed);
    for (std::size_t i = 0; i < moved.size(); ++i) {
        PrinterColor const& from = patches.colors[patches.fixed + i / used];
        std::size_t const channel = i % used;
        for (std::size_t c = 0; c < lightnessAndColors; ++c)
            slopes[i / used][c][channel] = static_cast<double>((moved[i].lab.values[c] - from.lab.values[c]) /
                                                               (moved[i].device[channel] - from.device[channel]));
    }
    return slopes;
}

NormalEquations<channels> equationsOf(Slope const& slope, Pull const& inLab, Pull const& inDevice, double devicePart)
{
    // Small against the weight of any patch. It keeps a patch in its place that nothing is nearest to.
    constexpr double smallest = 1e-12;
    NormalEquations<channels> equations{};
    for (std::size_t row = 0; row < channels; ++row) {
        for (std::size_t column = 0; column < channels; ++column)
            for (std::size_t c = 0; c < lightnessAndColors; ++c)
                equations[row][column] += inLab.weight * (slope[c][row] * slope[c][column]);
        equations[row][row] += devicePart * inDevice.weight + smallest;
        for (std::size_t c = 0; c < lightnessAndColors; ++c)
            equations[row][channels] += slope[c][row] * inLab.sum[c];
        equations[row][channels] += devicePart * inDevice.sum[row];
    }
    return equations;
}

} // namespace

void centrePatches(SpreadPatches& patches, CentringTask const& task)
{
    auto const inLab = pullsInLab(patches.colors, task.probes, task.weights);
    auto const inDevice = pullsInDevice(patches.colors, task.probes, task.weights);
    auto const slopes = slopesOf(patches, task.printer);
    for (std::size_t i = 0; i < slopes.size(); ++i) {
        std::size_t const patch = patches.fixed + i;
        auto const move =
            solve(equationsOf(slopes[i], inLab[patch], inDevice[patch], static_cast<double>(task.devicePart)));
        DevicePercent device = patches.colors[patch].device;
        for (std::size_t c = 0; c < channels; ++c)
            device[c] += static_cast<float>(std::clamp(move[c], -100.0, 100.0));
        DeviceSteps const steps = task.scale.nearestWithin(device, task.inkLimit);
        if (!patches.taken.insert(steps).second)
            continue;
        patches.taken.erase(patches.steps[i]);
        patches.steps[i] = steps;
        patches.colors[patch].device = task.scale.percentOf(steps);
    }
    task.printer.computeColors(patches.colors);
}
