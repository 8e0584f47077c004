// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "CharacterisationData.h"

/// The smooth colour of every ink mixture, through scattered measurements: a cubic polyharmonic spline.
///
/// Only additions, multiplications, divisions and square roots go into it, so that it gives the same bits everywhere.
class Spline
{
public:
    /// \param patches  measurements, no two of the same ink mixture, not all in one plane
    explicit Spline(std::vector<MeasuredPatch> const& patches);

    /// The colour of an ink mixture; exactly the measured one at a measured mixture, but for rounding.
    Lab at(Cmyk const& device) const;

private:
    std::vector<Cmyk> m_centres; // 0 to 1
    std::vector<Lab> m_weights;  // one for each centre, then a constant and one for each ink
};
