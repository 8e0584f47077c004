// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <vector>

/// The unevenly spaced nodes of a colour table along one channel.
class Axis
{
public:
    /// \param nodes  two or more, rising
    explicit Axis(std::vector<double> nodes);

    std::size_t getCount() const;

    /// The coordinate of a node.
    double operator[](std::size_t node) const;

    /// Where a coordinate lies between the nodes: 2.25 is a quarter of the way from node 2 to node 3. Coordinates
    /// outside the nodes lie at the nearest one.
    double positionOf(double coordinate) const;

private:
    std::vector<double> m_nodes;
};
