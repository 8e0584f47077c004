// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ReadingTrend.h"

#include <algorithm>
#include <cmath>

namespace
{

// Sums over readings: of the place in the reading, from -0.5 to 0.5, and of what the device values leave unexplained.
struct TrendSums
{
    double count = 0;
    double place = 0;
    double places = 0; // squares
    LabColor rest{};
    LabColor products{}; // of place and rest
    double rests = 0;    // squares

    void add(double at, LabColor const& value)
    {
        count += 1;
        place += at;
        places += at * at;
        for (std::size_t k = 0; k < 3; ++k) {
            rest[k] += value[k];
            products[k] += at * value[k];
            rests += value[k] * value[k];
        }
    }

    double squaredPlaces() const { return count > 0 ? places - place * place / count : 0; }
    double product(std::size_t k) const { return count > 0 ? products[k] - place * rest[k] / count : 0; }

    double squaredRests() const
    {
        double sum = rests;
        for (std::size_t k = 0; k < 3 && count > 0; ++k)
            sum -= rest[k] * rest[k] / count;
        return sum;
    }
};

} // namespace

ReadingTrend trendOf(ChartReference const& chart, Readings const& readings, DeviceModel const& model)
{
    double const last = std::max(1.0, static_cast<double>(readings.size()) - 1);
    TrendSums all;
    std::vector<TrendSums> sheets(chart.sheetCount);
    for (std::size_t i = 0; i < readings.size(); ++i) {
        auto const& reading = readings[i];
        if (!reading)
            continue;
        double const place = static_cast<double>(i) / last - 0.5;
        LabColor rest{};
        for (std::size_t k = 0; k < 3; ++k)
            rest[k] = (*reading)[k] - model.expected[i][k] + place * model.drift[k];
        all.add(place, rest);
        sheets[chart.stripOf(i).sheet].add(place, rest);
    }

    ReadingTrend trend;
    trend.drift = model.drift;
    double steadyRest = all.squaredRests();
    for (std::size_t k = 0; k < 3 && all.squaredPlaces() > 0; ++k)
        steadyRest -= all.product(k) * all.product(k) / all.squaredPlaces();
    double stepsRest = 0;
    double squaredPlaces = 0;
    LabColor products{};
    for (TrendSums const& sheet : sheets) {
        stepsRest += sheet.squaredRests();
        squaredPlaces += sheet.squaredPlaces();
        for (std::size_t k = 0; k < 3; ++k)
            products[k] += sheet.product(k);
        LabColor offset{};
        for (std::size_t k = 0; k < 3 && sheet.count > 0; ++k)
            offset[k] = sheet.rest[k] / sheet.count - all.rest[k] / all.count;
        trend.offsets.push_back(offset);
        trend.counts.push_back(static_cast<std::size_t>(sheet.count));
    }
    trend.isSteps = chart.sheetCount > 1 && stepsRest < steadyRest;
    if (trend.isSteps)
        for (std::size_t k = 0; k < 3; ++k)
            trend.drift[k] = squaredPlaces > 0 ? products[k] / squaredPlaces : 0;
    else
        squaredPlaces = all.squaredPlaces();
    trend.chance = squaredPlaces > 0 ? model.spread / std::sqrt(squaredPlaces) : 0;
    return trend;
}
