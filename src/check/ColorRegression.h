// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "LabColor.h"

#include <cstddef>
#include <utility>
#include <vector>

/// The coefficients of a linear regression from features to CIELAB: three for each feature.
class ColorCoefficients
{
public:
    ColorCoefficients() = default;
    explicit ColorCoefficients(std::vector<double> values) : coefficients(std::move(values)) {}

    /// \param features  as many as the regression has
    LabColor at(double const* features) const
    {
        LabColor lab{};
        for (std::size_t i = 0; 3 * i < coefficients.size(); ++i)
            for (std::size_t k = 0; k < 3; ++k)
                lab[k] += features[i] * coefficients[3 * i + k];
        return lab;
    }

    bool isEmpty() const { return coefficients.empty(); }

private:
    std::vector<double> coefficients;
};

/// Cholesky's factor of a regression's normal equations.
class RegressionFactor
{
public:
    /// \param squares  upper triangle, row after row
    /// \param ridge    added to the diagonal
    RegressionFactor(std::vector<double> squares, std::size_t featureCount, double ridge);

    ColorCoefficients solve(std::vector<double> targets) const;

    /// The variance of what the regression expects, as a share of the variance of a target of weight 1: x' A^-1 x.
    /// Small among the data, large far from them.
    double leverage(double const* features) const;

private:
    std::size_t count;
    std::vector<double> rows; // upper triangle, with the reciprocals of the diagonal
};

/// What a regression learns from.
struct Observation
{
    double const* features = nullptr;
    LabColor target{};
    double weight = 1;
};

/// The normal equations of a weighted linear regression with CIELAB as the target. Sums over a part of the
/// data can be subtracted, so that a regression without that part needs no new sums over the rest.
class ColorRegression
{
public:
    explicit ColorRegression(std::size_t featureCount);

    void add(std::vector<Observation> const& observations);
    void subtract(ColorRegression const& other);

    /// The coefficients with the smallest sum of weighted squares.
    ///
    /// \param ridge  added to the diagonal: holds back features that the data do not determine
    ColorCoefficients solve(double ridge) const { return factor(ridge).solve(targets); }

    RegressionFactor factor(double ridge) const { return {squares, count, ridge}; }

private:
    template <std::size_t groupSize>
    void addGroup(Observation const* group);

    std::size_t count;
    std::vector<double> squares; // upper triangle, row after row
    std::vector<double> targets; // three for each feature
};
