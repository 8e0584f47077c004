// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "FillDistance.h"

#include "NearestPoint.h"
#include "search/RandomNumbers.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace
{

constexpr std::size_t probeCount = 20000;

std::vector<PrinterColor> randomColors(Printer const& printer, double inkLimit, std::uint64_t seed)
{
    RandomNumbers random(seed);
    std::vector<PrinterColor> colors;
    while (colors.size() < probeCount) {
        PrinterColor color;
        float sum = 0;
        for (std::size_t c = 0; c < printer.getChannels(); ++c) {
            color.device[c] = static_cast<float>(random.next() >> 40) * (100.0f / static_cast<float>(1 << 24));
            sum += color.device[c];
        }
        if (printer.getColorSpace() != CMYK || static_cast<double>(sum) <= inkLimit)
            colors.push_back(color);
    }
    printer.computeColors(colors);
    return colors;
}

FillDistance statisticsOf(std::vector<double> distances)
{
    std::sort(distances.begin(), distances.end());
    double const sum = std::accumulate(distances.begin(), distances.end(), 0.0);
    return {sum / static_cast<double>(distances.size()), distances[distances.size() * 99 / 100 - 1], distances.back()};
}

} // namespace

FillDistances fillDistancesOf(Printer const& printer, double inkLimit, std::vector<PrinterColor> const& patches,
                              std::uint64_t seed)
{
    NearestPoint const inLab(placesInLab(patches));
    NearestPoint const inDevice(placesInDevice(patches));
    auto const probes = randomColors(printer, inkLimit, seed);
    auto const labs = placesInLab(probes);
    auto const devices = placesInDevice(probes);
    std::vector<double> deltaE;
    std::vector<double> device;
    for (std::size_t i = 0; i < labs.size(); i += NearestPoint::dimensions) {
        deltaE.push_back(std::sqrt(static_cast<double>(inLab.find(&labs[i]).squaredDistance)));
        device.push_back(std::sqrt(static_cast<double>(inDevice.find(&devices[i]).squaredDistance)));
    }
    return {statisticsOf(std::move(deltaE)), statisticsOf(std::move(device))};
}
