// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LocalModel.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

constexpr std::size_t neighborCount = 20;
constexpr std::size_t roughNeighbors = 10;

// The deviation of a component by the median length of a vector of three.
constexpr double medianLength = 1.5382;

struct Neighbor
{
    double squaredDistance = 0;
    std::size_t patch = 0;
};

// How alike the errors of the model are for similar patches.
struct ErrorLikeness
{
    double reach = 0.3;  // difference of device values at which likeness has fallen to 37 %
    double shared = 0.5; // share of the errors' variance that patches of equal device values share
};

constexpr ErrorLikeness likenesses[] = {{0.3, 0},   {0.12, 0.4}, {0.12, 0.8}, {0.25, 0.4}, {0.25, 0.8},
                                        {0.5, 0.4}, {0.5, 0.8},  {1, 0.5},    {1, 0.9}};

double medianOf(std::vector<double> values)
{
    if (values.empty())
        return 0;
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

class LocalModel
{
public:
    LocalModel(ChartReference const& theChart, Readings const& theReadings, DeviceModel const& theModel,
               std::vector<bool> const& theSuspects)
        : chart(theChart), model(theModel), suspects(theSuspects), errors(theReadings.size()),
          isRead(theReadings.size())
    {
        for (std::size_t i = 0; i < theReadings.size(); ++i) {
            isRead[i] = theReadings[i].has_value();
            for (std::size_t k = 0; k < 3 && isRead[i]; ++k)
                errors[i][k] = (*theReadings[i])[k] - model.expected[i][k];
        }
        findNeighbors();
    }

    std::vector<PatchExpectation> expectations()
    {
        chooseLikeness();
        std::size_t const count = chart.patches.size();
        std::vector<PatchExpectation> result(count);
        std::vector<double> lengths;
        std::vector<double> differences(count);
        for (std::size_t i = 0; i < count; ++i) {
            result[i] = predict(i, likeness);
            for (std::size_t k = 0; k < 3; ++k)
                result[i].lab[k] += model.expected[i][k];
            if (!isRead[i])
                continue;
            differences[i] = differenceOf(i, result[i]);
            if (!suspects[i])
                lengths.push_back(differences[i] / result[i].spread);
        }
        double const unit = std::max(1e-3, medianOf(std::move(lengths)) / medianLength);
        for (std::size_t i = 0; i < count; ++i) {
            double const own = result[i].spread * unit;
            double const around = roughness(i, differences) / medianLength;
            result[i].spread = std::sqrt(own * own + around * around);
        }
        for (std::size_t i = 0; i < count; ++i)
            result[i].score = isRead[i] ? differences[i] / result[i].spread : 0;
        return result;
    }

private:
    double squaredDistance(std::size_t p, std::size_t q) const
    {
        auto const& a = chart.patches[p];
        auto const& b = chart.patches[q];
        double sum = squaredDifference(a.lab, b.lab) * (1.0 / (120 * 120));
        for (std::size_t channel = 0; channel < 4; ++channel)
            sum += (a.device[channel] - b.device[channel]) * (a.device[channel] - b.device[channel]);
        return sum;
    }

    void findNeighbors()
    {
        std::size_t const count = chart.patches.size();
        std::vector<std::size_t> known;
        for (std::size_t i = 0; i < count; ++i)
            if (isRead[i] && !suspects[i])
                known.push_back(i);
        neighbors.resize(count);
        std::vector<Neighbor> nearest;
        for (std::size_t i = 0; i < count; ++i) {
            nearest.clear();
            for (std::size_t const j : known) {
                if (j == i)
                    continue;
                double const distance = squaredDistance(i, j);
                if (nearest.size() == neighborCount && distance >= nearest.back().squaredDistance)
                    continue;
                if (nearest.size() == neighborCount)
                    nearest.pop_back();
                auto const place = std::upper_bound(
                    nearest.begin(), nearest.end(), distance,
                    [](double value, Neighbor const& neighbor) { return value < neighbor.squaredDistance; });
                nearest.insert(place, {distance, j});
            }
            neighbors[i] = nearest;
        }
    }

    double differenceOf(std::size_t patch, PatchExpectation const& expectation) const
    {
        double sum = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            double const reading = errors[patch][k] + model.expected[patch][k];
            sum += (reading - expectation.lab[k]) * (reading - expectation.lab[k]);
        }
        return std::sqrt(sum);
    }

    // Simple kriging of the errors. The spread is relative: 1 for an error that nothing predicts.
    PatchExpectation predict(std::size_t patch, ErrorLikeness const& like) const
    {
        PatchExpectation result;
        auto const& near = neighbors[patch];
        result.spread = 1;
        result.isKnown = !near.empty();
        std::size_t const n = like.shared > 0 ? near.size() : 0;
        std::array<std::array<double, neighborCount>, neighborCount> factor;
        std::array<std::array<double, 4>, neighborCount> right; // likeness to the patch, and the errors
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t j = 0; j < i; ++j) {
                double sum = like.shared * std::exp(-std::sqrt(squaredDistance(near[i].patch, near[j].patch)) / like.reach);
                for (std::size_t k = 0; k < j; ++k)
                    sum -= factor[i][k] * factor[j][k];
                factor[i][j] = sum / factor[j][j];
            }
            double pivot = 1;
            for (std::size_t k = 0; k < i; ++k)
                pivot -= factor[i][k] * factor[i][k];
            factor[i][i] = std::sqrt(std::max(1e-9, pivot));
            auto const& error = errors[near[i].patch];
            std::array<double, 4> sums{like.shared * std::exp(-std::sqrt(near[i].squaredDistance) / like.reach), error[0],
                                       error[1], error[2]};
            for (std::size_t k = 0; k < i; ++k)
                for (std::size_t c = 0; c < 4; ++c)
                    sums[c] -= factor[i][k] * right[k][c];
            for (std::size_t c = 0; c < 4; ++c)
                right[i][c] = sums[c] / factor[i][i];
        }
        double explained = 0;
        for (std::size_t i = 0; i < n; ++i) {
            explained += right[i][0] * right[i][0];
            for (std::size_t k = 0; k < 3; ++k)
                result.lab[k] += right[i][0] * right[i][k + 1];
        }
        result.spread = std::sqrt(std::max(0.01, 1 - explained));
        return result;
    }

    // The likeness that predicts a sample of the patches best.
    void chooseLikeness()
    {
        constexpr std::size_t sampleSize = 250;
        std::size_t const step = std::max<std::size_t>(1, chart.patches.size() / sampleSize);
        double lowest = 0;
        for (ErrorLikeness const& candidate : likenesses) {
            double sum = 0;
            for (std::size_t i = 0; i < chart.patches.size(); i += step) {
                if (!isRead[i] || suspects[i])
                    continue;
                PatchExpectation const expectation = predict(i, candidate);
                LabColor rest{};
                for (std::size_t k = 0; k < 3; ++k)
                    rest[k] = errors[i][k] - expectation.lab[k];
                sum += std::log1p(squaredDifference(rest, {}) / (model.spread * model.spread));
            }
            if (&candidate == &likenesses[0] || sum < lowest) {
                lowest = sum;
                likeness = candidate;
            }
        }
    }

    // How far the readings of the most similar patches lie off, root mean square.
    double roughness(std::size_t patch, std::vector<double> const& differences) const
    {
        double sum = 0;
        std::size_t count = 0;
        for (Neighbor const& neighbor : neighbors[patch]) {
            sum += differences[neighbor.patch] * differences[neighbor.patch];
            if (++count == roughNeighbors)
                break;
        }
        return count == 0 ? model.spread * medianLength : std::sqrt(sum / static_cast<double>(count));
    }

    ChartReference const& chart;
    DeviceModel const& model;
    std::vector<bool> const& suspects;
    std::vector<LabColor> errors;
    std::vector<bool> isRead;
    std::vector<std::vector<Neighbor>> neighbors;
    ErrorLikeness likeness;
};

} // namespace

std::vector<PatchExpectation> expectPatches(ChartReference const& chart, Readings const& readings,
                                            DeviceModel const& model, std::vector<bool> const& suspects)
{
    return LocalModel(chart, readings, model, suspects).expectations();
}
