// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PrintTable.h"

#include <algorithm>
#include <utility>

PrintTable::PrintTable(std::array<Axis, 4> axes, std::function<Lab(Cmyk const&)> const& colourOf)
    : m_axes(std::move(axes))
{
    for (std::size_t c = 0; c < m_axes[0].getCount(); ++c)
        for (std::size_t m = 0; m < m_axes[1].getCount(); ++m)
            for (std::size_t y = 0; y < m_axes[2].getCount(); ++y)
                for (std::size_t k = 0; k < m_axes[3].getCount(); ++k)
                    m_colours.push_back(colourOf({m_axes[0][c], m_axes[1][m], m_axes[2][y], m_axes[3][k]}));
}

std::array<Axis, 4> const& PrintTable::getAxes() const
{
    return m_axes;
}

std::vector<Lab> const& PrintTable::getColours() const
{
    return m_colours;
}

Lab PrintTable::at(Cmyk const& device, Slopes& slopes) const
{
    std::array<std::size_t, 4> low;
    std::array<std::array<double, 2>, 4> share; // of the lower and the upper node of each ink
    std::array<double, 4> perPercent;
    for (std::size_t ink = 0; ink < 4; ++ink) {
        Axis const& axis = m_axes[ink];
        double const position = axis.positionOf(device[ink]);
        low[ink] = std::min(static_cast<std::size_t>(position), axis.getCount() - 2);
        double const upper = position - static_cast<double>(low[ink]);
        share[ink] = {1 - upper, upper};
        perPercent[ink] = 1 / (axis[low[ink] + 1] - axis[low[ink]]);
    }

    Lab lab{};
    slopes = {};
    for (unsigned corner = 0; corner < 16; ++corner) {
        std::array<double, 4> factor;
        std::array<double, 4> slopeFactor;
        std::size_t node = 0;
        for (std::size_t ink = 0; ink < 4; ++ink) {
            bool const upper = (corner >> ink & 1) != 0;
            factor[ink] = share[ink][upper];
            slopeFactor[ink] = upper ? perPercent[ink] : -perPercent[ink];
            node = node * m_axes[ink].getCount() + low[ink] + upper;
        }
        std::array const weights{
            factor[0] * factor[1] * factor[2] * factor[3],      slopeFactor[0] * factor[1] * factor[2] * factor[3],
            factor[0] * slopeFactor[1] * factor[2] * factor[3], factor[0] * factor[1] * slopeFactor[2] * factor[3],
            factor[0] * factor[1] * factor[2] * slopeFactor[3],
        };
        for (std::size_t channel = 0; channel < 3; ++channel) {
            double const value = m_colours[node][channel];
            lab[channel] += weights[0] * value;
            for (std::size_t ink = 0; ink < 4; ++ink)
                slopes[ink][channel] += weights[ink + 1] * value;
        }
    }
    return lab;
}
