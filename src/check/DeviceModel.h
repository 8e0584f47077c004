// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Assignment.h"
#include "ChartReference.h"
#include "ColorRegression.h"

#include <vector>

/// How rich models of the printer get: the highest degree of the products of device values, and the most features. A
/// rich model needs many patches.
inline constexpr int modelTiers = 7;
inline constexpr std::size_t mostFeatures = 100;

/// The features that a patch's colour is predicted from, patch after patch: its colour through the program's own
/// profile, powers and products of its device values, and where it stands in the reading.
class PatchFeatures
{
public:
    /// \param tier  from 0 to modelTiers - 1
    PatchFeatures(ChartReference const& chart, int tier);

    std::size_t count() const { return featureCount; }
    double const* of(std::size_t patch) const { return &values[patch * featureCount]; }

    /// The feature that is the place in the reading, from -1 to 1.
    static constexpr std::size_t place = 1;

    /// How many features there are for a number of channels.
    static std::size_t countOf(std::size_t channels, int tier);

private:
    std::size_t featureCount = 0;
    std::vector<double> values;
};

/// A smooth model of the printer, learnt from the measurement itself. It knows nothing about the printer beforehand.
struct DeviceModel
{
    /// What each patch should measure, by a model that was learnt without the readings that show the patch's strip.
    std::vector<LabColor> expected;

    /// Spread of the readings around what is expected, for each of L*, a* and b*: a robust estimate.
    double spread = 0;

    /// Mean robust cost of a reading: small for a model that explains the readings.
    double cost = 0;

    /// Change of colour from the first patch to the last that the device values do not explain.
    LabColor drift{};

    int tier = 0;
};

/// Learns a model by a robust regression: readings far from what the others say count little.
///
/// \param assignment  which patch each reading shows; readings that show nothing are left out
DeviceModel learnModel(ChartReference const& chart, Readings const& readings, Assignment const& assignment,
                       PatchFeatures const& features, int tier);

/// The same, with the richest model that predicts strips it has not seen better than simpler ones do.
DeviceModel learnBestModel(ChartReference const& chart, Readings const& readings, Assignment const& assignment,
                           std::vector<PatchFeatures> const& features);

/// How far each patch lies from the patches that a model expects it by: the variance of what is expected, as a share of
/// the variance of a reading. Below 1 among many similar patches. Above 1 the model extrapolates.
std::vector<double> leverages(ChartReference const& chart, Readings const& readings, DeviceModel const& model);

/// The robust cost of assigning readings by a simple model, for comparisons of assignments that differ much.
double costOfAssignment(ChartReference const& chart, Readings const& readings, Assignment const& assignment,
                        PatchFeatures const& features);
