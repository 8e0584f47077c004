// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColorRegression.h"

#include <array>
#include <cmath>
#include <utility>

namespace
{

// Where a row of the upper triangle begins, less its first column: the element (i, j) is at rowOffset + j.
std::size_t rowOffset(std::size_t row, std::size_t count)
{
    return row * count - row * (row + 1) / 2;
}

} // namespace

ColorRegression::ColorRegression(std::size_t featureCount)
    : count(featureCount), squares(featureCount * (featureCount + 1) / 2), targets(3 * featureCount)
{
}

// Several observations at once: the sums are read and written once for all of them.
template <std::size_t groupSize>
void ColorRegression::addGroup(Observation const* group)
{
    for (std::size_t i = 0; i < count; ++i) {
        std::array<double, groupSize> weighted;
        for (std::size_t g = 0; g < groupSize; ++g)
            weighted[g] = group[g].weight * group[g].features[i];
        double* const row = squares.data() + rowOffset(i, count);
        for (std::size_t j = i; j < count; ++j) {
            double sum = weighted[0] * group[0].features[j];
            for (std::size_t g = 1; g < groupSize; ++g)
                sum += weighted[g] * group[g].features[j];
            row[j] += sum;
        }
        for (std::size_t k = 0; k < 3; ++k)
            for (std::size_t g = 0; g < groupSize; ++g)
                targets[3 * i + k] += weighted[g] * group[g].target[k];
    }
}

void ColorRegression::add(std::vector<Observation> const& observations)
{
    constexpr std::size_t groupSize = 4;
    std::size_t next = 0;
    for (; next + groupSize <= observations.size(); next += groupSize)
        addGroup<groupSize>(&observations[next]);
    for (; next < observations.size(); ++next)
        addGroup<1>(&observations[next]);
}

void ColorRegression::subtract(ColorRegression const& other)
{
    for (std::size_t i = 0; i < squares.size(); ++i)
        squares[i] -= other.squares[i];
    for (std::size_t i = 0; i < targets.size(); ++i)
        targets[i] -= other.targets[i];
}

// Row by row: each row is subtracted from those below, which compilers turn into vector code. The matrix is positive
// definite thanks to the ridge. A pivot that rounding has made too small takes its feature out.
RegressionFactor::RegressionFactor(std::vector<double> squares, std::size_t featureCount, double ridge)
    : count(featureCount), rows(std::move(squares))
{
    std::vector<double> diagonal(count);
    for (std::size_t i = 0; i < count; ++i)
        diagonal[i] = rows[rowOffset(i, count) + i];
    for (std::size_t i = 0; i < count; ++i) {
        double* const row = rows.data() + rowOffset(i, count);
        double const pivot = row[i] + ridge;
        bool const isDetermined = pivot > 1e-12 * (diagonal[i] + ridge);
        double const scale = isDetermined ? 1 / std::sqrt(pivot) : 0;
        row[i] = scale;
        for (std::size_t j = i + 1; j < count; ++j)
            row[j] *= scale;
        for (std::size_t below = i + 1; below < count; ++below) {
            double const share = row[below];
            double* const other = rows.data() + rowOffset(below, count);
            for (std::size_t j = below; j < count; ++j)
                other[j] -= share * row[j];
        }
    }
}

ColorCoefficients RegressionFactor::solve(std::vector<double> targets) const
{
    for (std::size_t i = 0; i < count; ++i) {
        double const* const row = rows.data() + rowOffset(i, count);
        for (std::size_t k = 0; k < 3; ++k)
            targets[3 * i + k] *= row[i];
        for (std::size_t below = i + 1; below < count; ++below)
            for (std::size_t k = 0; k < 3; ++k)
                targets[3 * below + k] -= row[below] * targets[3 * i + k];
    }
    for (std::size_t i = count; i-- > 0;) {
        double const* const row = rows.data() + rowOffset(i, count);
        for (std::size_t k = 0; k < 3; ++k) {
            double value = targets[3 * i + k];
            for (std::size_t j = i + 1; j < count; ++j)
                value -= row[j] * targets[3 * j + k];
            targets[3 * i + k] = value * row[i];
        }
    }
    return ColorCoefficients(std::move(targets));
}

double RegressionFactor::leverage(double const* features) const
{
    std::vector<double> rest(features, features + count);
    double sum = 0;
    for (std::size_t i = 0; i < count; ++i) {
        double const* const row = rows.data() + rowOffset(i, count);
        double const value = rest[i] * row[i];
        sum += value * value;
        for (std::size_t below = i + 1; below < count; ++below)
            rest[below] -= row[below] * value;
    }
    return sum;
}
