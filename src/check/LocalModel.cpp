// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LocalModel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>

namespace
{

constexpr std::size_t neighborCount = 20;
constexpr std::size_t candidateCount = 26; // some of them may be suspect
constexpr std::size_t roughNeighbors = 10;

// Larger charts have similar patches enough among a part of theirs.
constexpr std::size_t mostCandidates = 20'000;

// A right reading may differ so much though similar ones agree: printers and instruments are not smoother. Delta E.
constexpr double leastSpread = 1;

// How much more may be wrong where the model extrapolates: by its leverage, by the errors of similar patches, and by
// how far all similar patches lie to one side. Chosen on simulated prints, so that right readings have small scores.
constexpr double leverageWeight = 3;
constexpr double roughnessWeight = 1.5;
constexpr double onesidednessWeight = 2;

// Readings with a score above this predict nothing for other patches.
constexpr double suspectScore = 2;

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

// A patch as a point: similar patches are near.
using Point = std::array<double, 7>;

Point pointOf(ChartPatch const& patch)
{
    constexpr double labScale = 1.0 / 120; // delta E that counts as much as a whole channel
    return {patch.lab[0] * labScale, patch.lab[1] * labScale, patch.lab[2] * labScale, patch.device[0],
            patch.device[1],         patch.device[2],         patch.device[3]};
}

class LocalModel
{
public:
    LocalModel(ChartReference const& chart, Readings const& readings, DeviceModel const& theModel)
        : model(theModel), reaches(leverages(chart, readings, theModel)), errors(readings.size()),
          isRead(readings.size()), isSuspect(readings.size())
    {
        for (ChartPatch const& patch : chart.patches)
            points.push_back(pointOf(patch));
        for (std::size_t i = 0; i < readings.size(); ++i) {
            auto const& reading = readings[i];
            isRead[i] = reading.has_value();
            for (std::size_t k = 0; k < 3 && reading; ++k)
                errors[i][k] = (*reading)[k] - model.expected[i][k];
        }
        findNeighbors();
    }

    std::vector<PatchExpectation> expectations()
    {
        std::vector<PatchExpectation> const first = expectAll();
        for (std::size_t i = 0; i < first.size(); ++i)
            isSuspect[i] = first[i].score > suspectScore;
        for (std::vector<Neighbor>& near : neighbors)
            std::erase_if(near, [this](Neighbor const& neighbor) { return isSuspect[neighbor.patch]; });
        return expectAll();
    }

private:
    std::vector<PatchExpectation> expectAll()
    {
        chooseLikeness();
        std::vector<PatchExpectation> result(points.size());
        std::vector<double> differences(points.size());
        std::vector<double> lengths;
        for (std::size_t i = 0; i < points.size(); ++i) {
            result[i] = predict(i, likeness);
            if (isRead[i])
                differences[i] = std::sqrt(squaredDifference(errors[i], result[i].lab));
            if (isRead[i] && !isSuspect[i])
                lengths.push_back(differences[i] / result[i].spread);
            for (std::size_t k = 0; k < 3; ++k)
                result[i].lab[k] += model.expected[i][k];
        }
        double const unit = std::max(1e-3, medianOf(std::move(lengths)) / medianLength);
        for (std::size_t i = 0; i < points.size(); ++i) {
            double const own = result[i].spread * unit;
            double const around = roughnessWeight * roughness(i, differences) / medianLength;
            double const reach = 1 + leverageWeight * reaches[i];
            double const side = 1 + onesidednessWeight * std::pow(onesidedness(i), 4);
            result[i].spread = side * std::sqrt((own * own + leastSpread * leastSpread) * reach + around * around);
            result[i].score = isRead[i] ? differences[i] / result[i].spread : 0;
        }
        return result;
    }

    double squaredDistance(std::size_t p, std::size_t q) const
    {
        double sum = 0;
        for (std::size_t k = 0; k < std::tuple_size_v<Point>; ++k)
            sum += (points[p][k] - points[q][k]) * (points[p][k] - points[q][k]);
        return sum;
    }

    void findNeighbors()
    {
        std::size_t const step = 1 + points.size() / mostCandidates;
        neighbors.resize(points.size());
        std::vector<Neighbor> nearest;
        for (std::size_t i = 0; i < points.size(); ++i) {
            nearest.clear();
            for (std::size_t j = 0; j < points.size(); j += step) {
                double const distance = squaredDistance(i, j);
                bool const isFull = nearest.size() == candidateCount;
                if (j == i || !isRead[j] || (isFull && distance >= nearest.back().squaredDistance))
                    continue;
                if (isFull)
                    nearest.pop_back();
                auto const place = std::upper_bound(
                    nearest.begin(), nearest.end(), distance,
                    [](double value, Neighbor const& neighbor) { return value < neighbor.squaredDistance; });
                nearest.insert(place, {distance, j});
            }
            neighbors[i] = nearest;
        }
    }

    // Simple kriging of the errors. The spread is relative: 1 for an error that nothing predicts.
    PatchExpectation predict(std::size_t patch, ErrorLikeness const& like) const
    {
        PatchExpectation result;
        auto const& near = neighbors[patch];
        result.spread = 1;
        std::size_t const n = like.shared > 0 ? std::min(near.size(), neighborCount) : 0;
        std::array<std::array<double, neighborCount>, neighborCount> factor;
        std::array<std::array<double, 4>, neighborCount> right; // likeness to the patch, and the errors
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t j = 0; j < i; ++j) {
                double sum =
                    like.shared * std::exp(-std::sqrt(squaredDistance(near[i].patch, near[j].patch)) / like.reach);
                for (std::size_t k = 0; k < j; ++k)
                    sum -= factor[i][k] * factor[j][k];
                factor[i][j] = sum / factor[j][j];
            }
            double pivot = 1;
            for (std::size_t k = 0; k < i; ++k)
                pivot -= factor[i][k] * factor[i][k];
            factor[i][i] = std::sqrt(std::max(1e-9, pivot));
            auto const& error = errors[near[i].patch];
            std::array<double, 4> sums{like.shared * std::exp(-std::sqrt(near[i].squaredDistance) / like.reach),
                                       error[0], error[1], error[2]};
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
        std::size_t const step = std::max<std::size_t>(1, points.size() / sampleSize);
        double lowest = 0;
        for (ErrorLikeness const& candidate : likenesses) {
            double sum = 0;
            for (std::size_t i = 0; i < points.size(); i += step) {
                if (!isRead[i] || isSuspect[i])
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

    // The length of the mean direction to the most similar patches: near 0 among them, near 1 beside them all.
    double onesidedness(std::size_t patch) const
    {
        Point sum{};
        std::size_t count = 0;
        for (Neighbor const& neighbor : neighbors[patch]) {
            double const distance = std::sqrt(neighbor.squaredDistance);
            for (std::size_t k = 0; k < sum.size() && distance > 0; ++k)
                sum[k] += (points[neighbor.patch][k] - points[patch][k]) / distance;
            if (++count == roughNeighbors)
                break;
        }
        double squared = 0;
        for (double const component : sum)
            squared += component * component;
        return count == 0 ? 0 : std::sqrt(squared) / static_cast<double>(count);
    }

    DeviceModel const& model;
    std::vector<double> reaches; // leverages
    std::vector<Point> points;
    std::vector<LabColor> errors; // of the model
    std::vector<bool> isRead;
    std::vector<bool> isSuspect;
    std::vector<std::vector<Neighbor>> neighbors;
    ErrorLikeness likeness;
};

} // namespace

std::vector<PatchExpectation> expectPatches(ChartReference const& chart, Readings const& readings,
                                            DeviceModel const& model)
{
    return LocalModel(chart, readings, model).expectations();
}
