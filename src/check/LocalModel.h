// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Assignment.h"
#include "ChartReference.h"
#include "DeviceModel.h"

#include <vector>

/// What a patch should measure by all other patches, and how far a right reading may lie from that.
struct PatchExpectation
{
    LabColor lab{};
    double spread = 0; // of each component
    double score = 0;  // how far the reading lies off, in spreads
};

/// Refines a model where it is not exact: what the model leaves unexplained is predicted from the patches with the most
/// similar device values (kriging). Where similar patches are predicted badly, or there are none, the spread is large.
/// Readings that lie far off predict nothing for other patches.
std::vector<PatchExpectation> expectPatches(ChartReference const& chart, Readings const& readings,
                                            DeviceModel const& model);
