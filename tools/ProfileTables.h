// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Axis.h"
#include "CharacterisationData.h"

#include <lcms2.h>

#include <memory>
#include <vector>

using Pipeline = std::unique_ptr<cmsPipeline, decltype(&cmsPipelineFree)>;
using Table16 = std::vector<cmsUInt16Number>;
using Curves = std::vector<cmsToneCurve*>;

// A version 2 profile stores L* from 0 to 100 as 0 to 0xff00, and a* and b* from -128 as 0 with 256 steps each.
constexpr double greatestLightness = 100.0 * 0xffff / 0xff00;
constexpr double leastChroma = -128;
constexpr double greatestChroma = 65535.0 / 256 + leastChroma;

/// A channel from 0 to 1 in 16 bits; values outside become the nearest of these.
cmsUInt16Number encode(double value);

/// A colour as three numbers of a version 2 profile.
std::array<cmsUInt16Number, 3> encode(Lab const& lab);

/// The curve that leads from a channel's whole range to the evenly spaced nodes of a profile's table.
///
/// \param axis         where the nodes really lie
/// \param first, last  the channel's range
/// \param entries      numbers to store
cmsToneCurve* makeCurve(Axis const& axis, double first, double last, unsigned entries);

/// So many curves that change nothing.
Curves straightCurves(std::size_t count);

/// Curves, a table and curves: all that a version 2 profile can store. Takes the curves over.
///
/// \param nodes  of the table along each input
/// \param table  the outputs of all nodes, the last input changing fastest
Pipeline makePipeline(Curves const& inputCurves, std::size_t nodes, Table16 const& table, Curves const& outputCurves);
