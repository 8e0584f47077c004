// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "OrderTask.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <random>
#include <utility>
#include <vector>

/// A task in which all patches take part. White paper, without a cast.
inline OrderTask taskOf(IntSize grid, std::vector<Lab> colors)
{
    std::size_t const count = colors.size();
    return {grid, {{95, 0, 0}}, std::move(colors), std::vector<bool>(count, true)};
}

/// A grey of a lightness.
inline Lab grey(float lightness)
{
    return {{lightness, 0, 0}};
}

/// Colours of whole numbers, so that many differences are equal. About a fifth are repeats, and some are paper white.
inline OrderTask randomTask(IntSize grid, std::mt19937& generator)
{
    auto const upTo = [&](unsigned limit) { return static_cast<float>(generator() % limit); };
    OrderTask task = taskOf(grid, {});
    for (int i = 0; i < grid.width * grid.height; ++i) {
        Lab color{{upTo(101), upTo(141) - 70, upTo(141) - 70}};
        if (i > 0 && generator() % 6 == 0)
            color = task.colors[generator() % task.colors.size()];
        else if (generator() % 12 == 0)
            color = task.paper;
        task.colors.push_back(color);
        task.takesPart.push_back(true);
    }
    return task;
}

/// The smallest squared delta E along the scan of an order, row after row, paper included.
inline float smallestAlongScan(OrderTask const& task, std::vector<int> const& patchAt)
{
    float smallest = furthestSquaredDeltaE;
    auto const colorAt = [&](int x, int y) {
        return y < 0 || y >= task.grid.height
                   ? task.paper
                   : task.colors[static_cast<std::size_t>(patchAt[static_cast<std::size_t>(y * task.grid.width + x)])];
    };
    for (int x = 0; x < task.grid.width; ++x)
        for (int y = 0; y <= task.grid.height; ++y)
            smallest = std::min(smallest, squaredDeltaE(colorAt(x, y - 1), colorAt(x, y)));
    return smallest;
}

/// Tries every order of a tiny task, cell after cell down each column.
class EveryOrder
{
public:
    explicit EveryOrder(OrderTask const& orderTask) : task(orderTask), patches(task.colors.size())
    {
        std::iota(patches.begin(), patches.end(), std::size_t{0});
        placeFrom(0, furthestSquaredDeltaE);
    }

    /// The largest smallest squared delta E along the scan.
    float getLargest() const { return largest; }

private:
    void placeFrom(std::size_t cell, float smallest)
    {
        if (smallest <= largest)
            return;
        if (cell == patches.size()) {
            largest = smallest;
            return;
        }
        auto const height = static_cast<std::size_t>(task.grid.height);
        for (std::size_t i = cell; i < patches.size(); ++i) {
            std::swap(patches[cell], patches[i]);
            Lab const& color = task.colors[patches[cell]];
            Lab const& before = cell % height == 0 ? task.paper : task.colors[patches[cell - 1]];
            float smaller = std::min(smallest, squaredDeltaE(before, color));
            if (cell % height == height - 1)
                smaller = std::min(smaller, squaredDeltaE(color, task.paper));
            placeFrom(cell + 1, smaller);
            std::swap(patches[cell], patches[i]);
        }
    }

    OrderTask const& task;
    std::vector<std::size_t> patches;
    float largest = -1;
};
