// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Differences.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace
{

// Columns differ where their mean difference is so many times that of the middle column, and visible.
constexpr double differingRatio = 3;
constexpr double visibleDifference = 2;

struct Summary
{
    double mean = 0;
    double highest95 = 0;
    double largest = 0;
};

Summary summaryOf(std::vector<double> values)
{
    if (values.empty())
        return {};
    std::sort(values.begin(), values.end());
    double sum = 0;
    for (double const value : values)
        sum += value;
    std::size_t const rank = (95 * values.size() + 99) / 100; // the smallest rank that covers 95 %
    return {sum / static_cast<double>(values.size()), values[rank - 1], values.back()};
}

} // namespace

DifferenceStatistics statisticsOf(std::vector<ColorPair> const& pairs)
{
    std::vector<double> differences76;
    std::vector<double> differences2000;
    for (ColorPair const& pair : pairs) {
        differences76.push_back(deltaE76(pair.first, pair.second));
        differences2000.push_back(deltaE2000(pair.first, pair.second));
    }
    Summary const s76 = summaryOf(std::move(differences76));
    Summary const s2000 = summaryOf(std::move(differences2000));
    return {pairs.size(), s76.mean, s76.highest95, s76.largest, s2000.mean, s2000.highest95, s2000.largest};
}

std::vector<ColorPair> repeatsOf(ChartReference const& chart, Readings const& readings)
{
    std::map<std::array<double, 4>, std::vector<std::size_t>> groups;
    for (std::size_t i = 0; i < readings.size(); ++i)
        if (readings[i])
            groups[chart.patches[i].device].push_back(i);
    std::vector<ColorPair> pairs;
    for (auto const& [device, patches] : groups) {
        if (patches.size() < 2)
            continue;
        LabColor mean{};
        for (std::size_t const patch : patches)
            for (std::size_t k = 0; k < 3; ++k)
                mean[k] += readings[patch].value_or(LabColor{})[k] / static_cast<double>(patches.size());
        for (std::size_t const patch : patches)
            pairs.push_back({mean, readings[patch].value_or(LabColor{})});
    }
    return pairs;
}

MeasurementComparison compareMeasurements(ChartReference const& chart, Readings const& first, Readings const& second)
{
    MeasurementComparison comparison;
    std::vector<ColorPair> all;
    std::vector<double> means;
    for (ChartStrip const& strip : chart.strips) {
        std::vector<ColorPair> pairs;
        for (std::size_t i = strip.first; i < strip.first + strip.count; ++i)
            if (auto const& p = first[i], &q = second[i]; p && q)
                pairs.push_back({*p, *q});
        means.push_back(statisticsOf(pairs).mean76);
        all.insert(all.end(), pairs.begin(), pairs.end());
    }
    comparison.differences = statisticsOf(all);
    std::vector<double> sorted = means;
    std::sort(sorted.begin(), sorted.end());
    double const middle = sorted.empty() ? 0 : sorted[sorted.size() / 2];
    for (std::size_t i = 0; i < means.size(); ++i)
        if (means[i] > visibleDifference && means[i] > differingRatio * middle)
            comparison.columns.push_back(chart.strips[i].label);
    return comparison;
}
