// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Printer.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// Finds the nearest of some points in three or four dimensions: a k-d tree. Among points of the same distance it takes
/// the first.
class NearestPoint
{
public:
    static constexpr std::size_t dimensions = 4;

    struct Answer
    {
        std::uint32_t point = 0;
        float squaredDistance = 0;
    };

    /// \param coordinates  four for each point, at least one point; spare ones are 0
    explicit NearestPoint(std::vector<float> coordinates);

    /// The nearest point to four coordinates.
    Answer find(float const* place) const;

private:
    // A box of points. Children follow each other; a leaf has none.
    struct Node
    {
        std::uint32_t first = 0;
        std::uint32_t end = 0;
        std::uint32_t child = 0;
        float low[dimensions];
        float high[dimensions];
    };

    static constexpr std::uint32_t leafSize = 8;
    static constexpr std::uint32_t nobody = UINT32_MAX;

    float const* placeOf(std::uint32_t point) const { return &points[point * dimensions]; }
    void keepFirstOfEqual();
    void build(std::size_t node);
    static float squaredDistanceTo(Node const& node, float const* place);

    std::vector<float> points;        // by their numbers; only while the tree is built
    std::vector<std::uint32_t> order; // the points in the order of the leaves
    std::vector<float> ordered;       // their coordinates
    std::vector<Node> nodes;
};

/// The coordinates of colours in CIELAB.
std::vector<float> placesInLab(std::vector<PrinterColor> const& colors);

/// The coordinates of colours in device values.
std::vector<float> placesInDevice(std::vector<PrinterColor> const& colors);
