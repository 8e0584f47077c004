// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ProbePulls.h"

#include "NearestPoint.h"

#include <cstddef>

namespace
{

std::vector<Pull> pullsOf(std::vector<float> const& patchPlaces, std::vector<float> const& probePlaces,
                          std::vector<float> const& weights)
{
    NearestPoint const nearest(patchPlaces);
    std::vector<Pull> pulls(patchPlaces.size() / NearestPoint::dimensions);
    double whole = 0;
    for (std::size_t i = 0; i < weights.size(); ++i) {
        float const* const probe = &probePlaces[i * NearestPoint::dimensions];
        auto const [patch, squaredDistance] = nearest.find(probe);
        auto const weight = static_cast<double>(squaredDistance * weights[i]);
        Pull& pull = pulls[patch];
        for (std::size_t c = 0; c < NearestPoint::dimensions; ++c)
            pull.sum[c] += weight * static_cast<double>(probe[c] - patchPlaces[patch * NearestPoint::dimensions + c]);
        pull.weight += weight;
        whole += weight;
    }
    if (whole > 0)
        for (Pull& pull : pulls) {
            for (double& sum : pull.sum)
                sum /= whole;
            pull.weight /= whole;
        }
    return pulls;
}

} // namespace

std::vector<Pull> pullsInLab(std::vector<PrinterColor> const& patches, std::vector<PrinterColor> const& probes,
                             std::vector<float> const& weights)
{
    return pullsOf(placesInLab(patches), placesInLab(probes), weights);
}

std::vector<Pull> pullsInDevice(std::vector<PrinterColor> const& patches, std::vector<PrinterColor> const& probes,
                                std::vector<float> const& weights)
{
    return pullsOf(placesInDevice(patches), placesInDevice(probes), weights);
}
