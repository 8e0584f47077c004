// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "DeviceModel.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double ridge = 0.01;
constexpr int rounds = 7;

// The median length of a vector of three normally distributed components of deviation 1.
constexpr double medianLength = 1.5382;

// Differences below this are no sign of a bad model: instruments and presses spread that much. Delta E.
constexpr double usualDifference = 3;

double medianOf(std::vector<double> values)
{
    if (values.empty())
        return 0;
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// A reading and the patch that it shows.
struct Sample
{
    std::size_t patch = 0;
    std::size_t strip = 0; // of the patch
    LabColor lab{};
    double weight = 1;
    double squared = 0; // difference from what is expected
};

// \param step  takes every so many readings
std::vector<Sample> samplesOf(ChartReference const& chart, Readings const& readings, Assignment const& assignment,
                              std::size_t step = 1)
{
    std::vector<Sample> samples;
    for (std::size_t i = 0; i < readings.size(); i += step)
        if (auto const& reading = readings[i]; reading && assignment[i] != Assignment::nothing)
            samples.push_back({assignment[i], chart.patches[assignment[i]].strip, *reading, 1, 0});
    std::stable_sort(samples.begin(), samples.end(),
                     [](Sample const& a, Sample const& b) { return a.patch < b.patch; });
    return samples;
}

double medianDifference(std::vector<Sample> const& samples)
{
    std::vector<double> lengths;
    lengths.reserve(samples.size());
    for (Sample const& sample : samples)
        lengths.push_back(std::sqrt(sample.squared));
    return medianOf(std::move(lengths));
}

// Cauchy's weights: they fall with the square of the difference.
void weigh(std::vector<Sample>& samples)
{
    double const scale = std::max(0.1, 1.5 * medianDifference(samples));
    for (Sample& sample : samples)
        sample.weight = 1 / (1 + sample.squared / (scale * scale));
}

template <typename Iterator>
ColorRegression sumsOf(Iterator begin, Iterator end, PatchFeatures const& features)
{
    std::vector<Observation> observations;
    observations.reserve(static_cast<std::size_t>(end - begin));
    for (auto sample = begin; sample != end; ++sample)
        observations.push_back({features.of(sample->patch), sample->lab, sample->weight});
    ColorRegression sums(features.count());
    sums.add(observations);
    return sums;
}

ColorRegression sumsOf(std::vector<Sample> const& samples, PatchFeatures const& features)
{
    return sumsOf(samples.begin(), samples.end(), features);
}

double meanCost(std::vector<Sample> const& samples)
{
    double sum = 0;
    for (Sample const& sample : samples)
        sum += std::log1p(sample.squared / (usualDifference * usualDifference));
    return samples.empty() ? 0 : sum / static_cast<double>(samples.size());
}

ColorCoefficients fitAll(std::vector<Sample>& samples, PatchFeatures const& features)
{
    ColorCoefficients coefficients;
    for (int round = 0; round < rounds; ++round) {
        coefficients = sumsOf(samples, features).solve(ridge);
        for (Sample& sample : samples)
            sample.squared = squaredDifference(sample.lab, coefficients.at(features.of(sample.patch)));
        weigh(samples);
    }
    return coefficients;
}

// Calls what is to be done with the samples of each strip, by the patches that they show.
template <typename Function>
void forEachStrip(ChartReference const& chart, std::vector<Sample>& samples, Function function)
{
    auto begin = samples.begin();
    for (std::size_t strip = 0; strip < chart.strips.size(); ++strip) {
        auto const end = std::find_if(begin, samples.end(), [=](Sample const& s) { return s.strip != strip; });
        function(strip, begin, end);
        begin = end;
    }
}

template <typename Iterator>
ColorRegression without(ColorRegression sums, Iterator begin, Iterator end, PatchFeatures const& features)
{
    sums.subtract(sumsOf(begin, end, features));
    return sums;
}

// Products of at most `degree` of the device values, from -1 to 1, times `product`.
void addProducts(std::vector<double>& values, double const* device, std::size_t channels, int degree, double product)
{
    for (std::size_t i = 0; i < channels; ++i) {
        double const next = product * device[i];
        values.push_back(next);
        if (degree > 1)
            addProducts(values, device + i, channels - i, degree - 1, next);
    }
}

} // namespace

std::size_t PatchFeatures::countOf(std::size_t channels, int tier)
{
    std::size_t products =
        1; // of at most `tier` of the device values, 1 included: (channels + tier)! / channels! tier!
    for (std::size_t i = 1; i <= static_cast<std::size_t>(tier); ++i)
        products = products * (channels + i) / i;
    return 4 + products + (tier > 1 ? 6 : 0);
}

PatchFeatures::PatchFeatures(ChartReference const& chart, int tier)
{
    std::size_t const channels = chart.channels();
    double const last = std::max(1.0, static_cast<double>(chart.patches.size()) - 1);
    for (std::size_t i = 0; i < chart.patches.size(); ++i) {
        ChartPatch const& patch = chart.patches[i];
        double const lab[] = {patch.lab[0] / 50 - 1, patch.lab[1] / 50, patch.lab[2] / 50};
        double device[4];
        for (std::size_t channel = 0; channel < channels; ++channel)
            device[channel] = 2 * patch.device[channel] - 1;
        values.push_back(1);
        values.push_back(2 * static_cast<double>(i) / last - 1);
        values.insert(values.end(), std::begin(lab), std::end(lab));
        if (tier > 0)
            addProducts(values, device, channels, tier, 1);
        if (tier > 1)
            for (std::size_t k = 0; k < 3; ++k)
                for (std::size_t l = k; l < 3; ++l)
                    values.push_back(lab[k] * lab[l]);
        if (i == 0)
            featureCount = values.size();
    }
}

DeviceModel learnModel(ChartReference const& chart, Readings const& readings, Assignment const& assignment,
                       PatchFeatures const& features, int tier)
{
    std::vector<Sample> samples = samplesOf(chart, readings, assignment);
    DeviceModel model;
    model.tier = tier;
    fitAll(samples, features);
    ColorRegression const all = sumsOf(samples, features);
    ColorCoefficients const coefficients = all.solve(ridge);
    double unit[mostFeatures] = {};
    unit[PatchFeatures::place] = 2;
    model.drift = coefficients.at(unit);
    model.expected.resize(chart.patches.size());
    forEachStrip(chart, samples, [&](std::size_t strip, auto begin, auto end) {
        ColorRegression const others = without(all, begin, end, features);
        ColorCoefficients const learnt = begin == end ? coefficients : others.solve(ridge);
        ChartStrip const& place = chart.strips[strip];
        for (std::size_t patch = place.first; patch < place.first + place.count; ++patch)
            model.expected[patch] = learnt.at(features.of(patch));
        for (auto sample = begin; sample != end; ++sample)
            sample->squared = squaredDifference(sample->lab, model.expected[sample->patch]);
    });
    model.spread = std::max(0.2, medianDifference(samples) / medianLength);
    model.cost = meanCost(samples);
    return model;
}

DeviceModel learnBestModel(ChartReference const& chart, Readings const& readings, Assignment const& assignment,
                           std::vector<PatchFeatures> const& features)
{
    DeviceModel best = learnModel(chart, readings, assignment, features[0], 0);
    std::size_t const count = samplesOf(chart, readings, assignment).size();
    for (std::size_t tier = 1; tier < features.size() && features[tier].count() * 3 <= count; ++tier) {
        DeviceModel model = learnModel(chart, readings, assignment, features[tier], static_cast<int>(tier));
        if (model.cost < best.cost)
            best = std::move(model);
    }
    return best;
}

std::vector<double> leverages(ChartReference const& chart, Readings const& readings, DeviceModel const& model)
{
    PatchFeatures const features(chart, model.tier);
    std::vector<Sample> samples = samplesOf(chart, readings, Assignment(chart.patches.size()));
    for (Sample& sample : samples)
        sample.squared = squaredDifference(sample.lab, model.expected[sample.patch]);
    weigh(samples);
    ColorRegression const all = sumsOf(samples, features);
    std::vector<double> result(chart.patches.size());
    forEachStrip(chart, samples, [&](std::size_t strip, auto begin, auto end) {
        RegressionFactor const factor = without(all, begin, end, features).factor(ridge);
        ChartStrip const& place = chart.strips[strip];
        for (std::size_t patch = place.first; patch < place.first + place.count; ++patch)
            result[patch] = factor.leverage(features.of(patch));
    });
    return result;
}

double costOfAssignment(ChartReference const& chart, Readings const& readings, Assignment const& assignment,
                        PatchFeatures const& features)
{
    constexpr std::size_t enough = 1000;
    std::vector<Sample> samples =
        samplesOf(chart, readings, assignment, std::max<std::size_t>(1, readings.size() / enough));
    fitAll(samples, features);
    return meanCost(samples);
}
