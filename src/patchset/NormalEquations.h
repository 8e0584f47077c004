// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <cstddef>

/// Linear equations with a symmetric, positive definite matrix. The last number of each row is its right side.
template <std::size_t unknowns>
using NormalEquations = std::array<std::array<double, unknowns + 1>, unknowns>;

/// Solves the equations by elimination. Such a matrix needs no pivots. An unknown that the equations leave open, or
/// that rounding leaves open, becomes 0.
template <std::size_t unknowns>
std::array<double, unknowns> solve(NormalEquations<unknowns> equations)
{
    constexpr double leastPivot = 1e-30;
    auto const isOpen = [&](std::size_t row) { return !(equations[row][row] > leastPivot); };
    for (std::size_t row = 0; row < unknowns; ++row) {
        if (isOpen(row))
            continue;
        for (std::size_t below = row + 1; below < unknowns; ++below) {
            double const factor = equations[below][row] / equations[row][row];
            for (std::size_t column = row; column <= unknowns; ++column)
                equations[below][column] -= factor * equations[row][column];
        }
    }
    std::array<double, unknowns> solution{};
    for (std::size_t row = unknowns; row-- > 0;) {
        if (isOpen(row))
            continue;
        solution[row] = equations[row][unknowns];
        for (std::size_t column = row + 1; column < unknowns; ++column)
            solution[row] -= equations[row][column] * solution[column];
        solution[row] /= equations[row][row];
    }
    return solution;
}
