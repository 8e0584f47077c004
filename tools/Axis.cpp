// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Axis.h"

#include <algorithm>
#include <utility>

Axis::Axis(std::vector<double> nodes) : m_nodes(std::move(nodes)) {}

std::size_t Axis::getCount() const
{
    return m_nodes.size();
}

double Axis::operator[](std::size_t node) const
{
    return m_nodes[node];
}

double Axis::positionOf(double coordinate) const
{
    double const inside = std::clamp(coordinate, m_nodes.front(), m_nodes.back());
    auto const next = std::upper_bound(m_nodes.begin() + 1, m_nodes.end() - 1, inside);
    auto const low = static_cast<std::size_t>(next - m_nodes.begin()) - 1;
    return static_cast<double>(low) + (inside - m_nodes[low]) / (m_nodes[low + 1] - m_nodes[low]);
}
