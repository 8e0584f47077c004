// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "StripMatch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace
{

// Prior odds, as natural logarithms: about 1 in 160,000 for each kind of fault of a column. Much less than faults
// really happen, because the model of the readings is only a model.
constexpr double faultPrior = 12;
constexpr double secondFaultPrior = 5; // reversed and exchanged at once

// How far a shift reaches.
constexpr int mostShift = 4;
constexpr std::size_t shiftCount = 2 * mostShift + 1;

// Fewer readings tell nothing about a column.
constexpr std::size_t fewestReadings = 4;

// A match is clear if a reading costs at most this share of one that has nothing to do with its patch.
constexpr double clearShare = 0.6;

// A shift begins at a row for sure if any other within reach is less probable by this factor, as a natural logarithm.
constexpr double exactOdds = 5;
constexpr std::ptrdiff_t breakReach = 6;

class StripMatcher
{
public:
    StripMatcher(ChartReference const& theChart, Readings const& theReadings, DeviceModel const& theModel)
        : chart(theChart), readings(theReadings), model(theModel), cost(theModel.spread)
    {
    }

    StripMatch match(std::size_t strip, StripMatch const& base)
    {
        StripMatch best = base;
        best.logOdds = 0;
        best.isClear = true;
        std::size_t const count = countReadings(strip);
        double const own = costAs(strip, base, std::numeric_limits<double>::infinity());
        double lowest = own;
        if (count >= fewestReadings && own > faultPrior) {
            tryReversed(strip, base, best, lowest);
            tryOthers(strip, base, best, lowest);
            if (!base.isReversed)
                tryShifts(strip, base, best, lowest);
        }
        best.logOdds = own - lowest;
        double const fit = costAs(strip, best, std::numeric_limits<double>::infinity());
        best.isClear = fit <= clearShare * cost.most() * static_cast<double>(count);
        best.isExact = !best.isShifted() || areBreaksExact(strip, best);
        return best;
    }

private:
    std::size_t countReadings(std::size_t strip) const
    {
        ChartStrip const& place = chart.strips[strip];
        auto const begin = readings.begin() + static_cast<std::ptrdiff_t>(place.first);
        return static_cast<std::size_t>(std::count_if(begin, begin + static_cast<std::ptrdiff_t>(place.count),
                                                      [](auto const& reading) { return reading.has_value(); }));
    }

    double costAt(std::size_t reading, std::size_t patch) const
    {
        auto const& lab = readings[reading];
        if (!lab)
            return 0;
        return patch == Assignment::nothing ? cost.most() : cost.of(squaredDifference(*lab, model.expected[patch]));
    }

    // Stops when the cost gets higher than the limit.
    double costAs(std::size_t strip, StripMatch const& match, double limit) const
    {
        ChartStrip const& place = chart.strips[strip];
        double sum = 0;
        for (std::size_t row = 0; row < place.count && sum <= limit; ++row)
            sum += costAt(place.first + row, match.patchAt(chart, row));
        return sum;
    }

    void consider(std::size_t strip, StripMatch candidate, double prior, StripMatch& best, double& lowest) const
    {
        double const sum = prior + costAs(strip, candidate, lowest - prior);
        if (sum < lowest) {
            lowest = sum;
            best = std::move(candidate);
        }
    }

    void tryReversed(std::size_t strip, StripMatch const& base, StripMatch& best, double& lowest) const
    {
        consider(strip, {base.source, !base.isReversed, {}}, faultPrior, best, lowest);
    }

    void tryOthers(std::size_t strip, StripMatch const& base, StripMatch& best, double& lowest) const
    {
        double const prior = faultPrior + std::log(static_cast<double>(chart.strips.size()));
        for (std::size_t other = 0; other < chart.strips.size(); ++other)
            if (other != base.source) {
                consider(strip, {other, base.isReversed, {}}, prior, best, lowest);
                consider(strip, {other, !base.isReversed, {}}, prior + secondFaultPrior, best, lowest);
            }
    }

    // The cheapest sequence of shifts along the strip. A change of the shift costs as much as a fault.
    void tryShifts(std::size_t strip, StripMatch const& base, StripMatch& best, double& lowest) const
    {
        std::size_t const rows = chart.strips[strip].count;
        std::vector<std::array<unsigned char, shiftCount>> from(rows);
        std::array<double, shiftCount> sums{};
        double const change = faultPrior + std::log(static_cast<double>(rows));
        for (std::size_t s = 0; s < shiftCount; ++s)
            sums[s] = s == mostShift ? 0 : change + std::fabs(static_cast<double>(s) - mostShift);
        for (std::size_t row = 0; row < rows; ++row) {
            std::array<double, shiftCount> next{};
            for (std::size_t s = 0; s < shiftCount; ++s) {
                std::size_t previous = s;
                double sum = sums[s];
                for (std::size_t t = 0; t < shiftCount && row > 0; ++t) {
                    double const changed =
                        sums[t] + change + std::fabs(static_cast<double>(s) - static_cast<double>(t));
                    if (t != s && changed < sum) {
                        sum = changed;
                        previous = t;
                    }
                }
                from[row][s] = static_cast<unsigned char>(previous);
                next[s] = sum + costAt(chart.strips[strip].first + row, shifted(base.source, row, shiftOf(s)));
            }
            sums = next;
        }
        std::size_t state = mostShift;
        for (std::size_t s = 0; s < shiftCount; ++s)
            if (sums[s] < sums[state])
                state = s;
        if (!(sums[state] < lowest))
            return;
        lowest = sums[state];
        best = {base.source, false, std::vector<int>(rows)};
        for (std::size_t row = rows; row-- > 0;) {
            best.shifts[row] = shiftOf(state);
            state = from[row][state];
        }
        if (std::all_of(best.shifts.begin(), best.shifts.end(), [](int shift) { return shift == 0; }))
            best.shifts.clear();
    }

    // Whether each shift would cost clearly more if it began some rows earlier or later.
    bool areBreaksExact(std::size_t strip, StripMatch const& match) const
    {
        std::size_t const first = chart.strips[strip].first;
        auto const rows = static_cast<std::ptrdiff_t>(match.shifts.size());
        auto const costOfShift = [&](std::ptrdiff_t row, int shift) {
            return costAt(first + static_cast<std::size_t>(row),
                          shifted(match.source, static_cast<std::size_t>(row), shift));
        };
        for (std::ptrdiff_t row = 0; row < rows; ++row) {
            int const after = match.shifts[static_cast<std::size_t>(row)];
            int const before = row == 0 ? 0 : match.shifts[static_cast<std::size_t>(row - 1)];
            if (after == before)
                continue;
            double later = 0;
            for (std::ptrdiff_t i = row; i < std::min(rows, row + breakReach); ++i) {
                later += costOfShift(i, before) - costOfShift(i, after);
                if (later < exactOdds)
                    return false;
            }
            double earlier = 0;
            for (std::ptrdiff_t i = row; i-- > std::max<std::ptrdiff_t>(0, row - breakReach);) {
                earlier += costOfShift(i, after) - costOfShift(i, before);
                if (earlier < exactOdds)
                    return false;
            }
        }
        return true;
    }

    static int shiftOf(std::size_t state) { return static_cast<int>(state) - mostShift; }

    std::size_t shifted(std::size_t source, std::size_t row, int shift) const
    {
        auto const shown = static_cast<std::ptrdiff_t>(row) - shift;
        ChartStrip const& place = chart.strips[source];
        return shown < 0 || shown >= static_cast<std::ptrdiff_t>(place.count)
                   ? Assignment::nothing
                   : place.first + static_cast<std::size_t>(shown);
    }

    ChartReference const& chart;
    Readings const& readings;
    DeviceModel const& model;
    ReadingCost cost;
};

} // namespace

std::size_t StripMatch::patchAt(ChartReference const& chart, std::size_t row) const
{
    ChartStrip const& place = chart.strips[source];
    auto shown = static_cast<std::ptrdiff_t>(row) - (isShifted() ? shifts[row] : 0);
    if (isReversed)
        shown = static_cast<std::ptrdiff_t>(place.count) - 1 - shown;
    return shown < 0 || shown >= static_cast<std::ptrdiff_t>(place.count)
               ? Assignment::nothing
               : place.first + static_cast<std::size_t>(shown);
}

// The density of Student's distribution at its centre is 0.078 / spread^3. A reading that has nothing to do with its
// patch lies anywhere in a volume of 500,000 cubic units of CIELAB, and one in a hundred readings may do so.
ReadingCost::ReadingCost(double spread)
    : scale(1 / (3 * spread * spread)), highest(std::max(4.0, std::log(0.078 * 500'000 / 0.01) - 3 * std::log(spread)))
{
}

double ReadingCost::of(double squaredDifference) const
{
    return std::min(highest, 3 * std::log1p(squaredDifference * scale));
}

std::vector<StripMatch> matchStrips(ChartReference const& chart, Readings const& readings, DeviceModel const& model,
                                    std::vector<StripMatch> const& base)
{
    StripMatcher matcher(chart, readings, model);
    std::vector<StripMatch> matches;
    matches.reserve(base.size());
    for (std::size_t strip = 0; strip < base.size(); ++strip)
        matches.push_back(matcher.match(strip, base[strip]));
    return matches;
}

Assignment assignmentOf(ChartReference const& chart, std::vector<StripMatch> const& matches)
{
    Assignment assignment(chart.patches.size());
    for (std::size_t strip = 0; strip < matches.size(); ++strip)
        for (std::size_t row = 0; row < chart.strips[strip].count; ++row)
            assignment[chart.strips[strip].first + row] =
                matches[strip].isClear ? matches[strip].patchAt(chart, row) : Assignment::nothing;
    return assignment;
}
