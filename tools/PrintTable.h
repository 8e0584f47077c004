// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Axis.h"
#include "CharacterisationData.h"

#include <functional>

/// The colours of the ink mixtures on a grid, and by interpolation of all between.
class PrintTable
{
public:
    /// How each channel of the colour changes with each ink, per percent.
    using Slopes = std::array<Lab, 4>;

    PrintTable(std::array<Axis, 4> axes, std::function<Lab(Cmyk const&)> const& colourOf);

    /// The nodes along C, M, Y and K.
    std::array<Axis, 4> const& getAxes() const;

    /// The colours of all nodes, K changing fastest and C slowest.
    std::vector<Lab> const& getColours() const;

    /// The colour of an ink mixture, linear in each ink between the nodes.
    ///
    /// \param slopes  takes the slopes there; those of the cell above where the mixture lies on a node
    Lab at(Cmyk const& device, Slopes& slopes) const;

private:
    std::array<Axis, 4> m_axes;
    std::vector<Lab> m_colours;
};
