// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "StripSearch.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{

constexpr int mostRounds = 6;

// Another order explains the readings if it costs at most this share of the chart's own.
constexpr double orderShare = 0.7;

// A model that explains the readings costs at most this, in robust costs of a reading.
constexpr double explainedCost = 3.6;

// Sheets are exchanged if this share of their strips is.
constexpr double sheetShare = 0.6;

bool isSame(StripMatch const& a, StripMatch const& b)
{
    return a.source == b.source && a.isReversed == b.isReversed && a.shifts == b.shifts && a.isClear == b.isClear;
}

std::vector<StripMatch> ownStrips(ChartReference const& chart)
{
    std::vector<StripMatch> own(chart.strips.size());
    for (std::size_t strip = 0; strip < own.size(); ++strip)
        own[strip].source = strip;
    return own;
}

// The sheet that a sheet's readings are of, by most of its strips.
std::size_t sourceOfSheet(ChartReference const& chart, std::vector<StripMatch> const& matches, std::size_t sheet)
{
    auto const [first, last] = chart.stripsOf(sheet);
    std::vector<std::size_t> votes(chart.sheetCount);
    for (std::size_t strip = first; strip < last; ++strip) {
        std::size_t const source = matches[strip].source;
        std::size_t const other = chart.strips[source].sheet;
        if (matches[strip].isClear && source - chart.stripsOf(other)[0] == strip - first)
            ++votes[other];
    }
    auto const winner = static_cast<std::size_t>(std::max_element(votes.begin(), votes.end()) - votes.begin());
    bool const isClear = static_cast<double>(votes[winner]) >= sheetShare * static_cast<double>(last - first);
    return isClear ? winner : sheet;
}

std::vector<StripMatch> baseOf(ChartReference const& chart, std::vector<StripMatch> const& matches)
{
    std::vector<StripMatch> base = ownStrips(chart);
    for (std::size_t sheet = 0; sheet < chart.sheetCount; ++sheet) {
        std::size_t const source = sourceOfSheet(chart, matches, sheet);
        auto const [first, last] = chart.stripsOf(sheet);
        auto const [sourceFirst, sourceLast] = chart.stripsOf(source);
        for (std::size_t i = 0; i < std::min(last - first, sourceLast - sourceFirst); ++i)
            base[first + i].source = sourceFirst + i;
    }
    return base;
}

class StripSearch
{
public:
    StripSearch(ChartReference const& theChart, Readings const& theReadings) : chart(theChart)
    {
        for (int tier = 0; tier < modelTiers && PatchFeatures::countOf(chart.channels(), tier) <= mostFeatures; ++tier)
            features.emplace_back(chart, tier);
        result.readings = theReadings;
        auto const count = static_cast<std::size_t>(std::count_if(
            theReadings.begin(), theReadings.end(), [](auto const& reading) { return reading.has_value(); }));
        simpleTier = count >= 3 * features[1].count() ? 1 : 0;
    }

    StripExplanation explain(std::vector<ReadingOrder> const& orders)
    {
        StartingPoint start = chooseStart();
        if (chooseOrder(orders, start.cost))
            start = chooseStart();
        result.matches = std::move(start.matches);
        settle(ownStrips(chart));
        result.base = baseOf(chart, result.matches);
        if (result.hasExchangedSheets()) {
            for (StripMatch const& match : result.matches)
                result.sheetLogOdds += match.logOdds;
            settle(result.base);
        }
        result.isExplained = result.model.cost < explainedCost;
        return std::move(result);
    }

private:
    double costOf(Readings const& readings, Assignment const& assignment) const
    {
        return costOfAssignment(chart, readings, assignment, features[static_cast<std::size_t>(simpleTier)]);
    }

    struct StartingPoint
    {
        std::vector<StripMatch> matches;
        double cost = 0;
    };

    // Returns whether another order explains the readings much better than the chart's own does.
    bool chooseOrder(std::vector<ReadingOrder> const& orders, double own)
    {
        Readings const stored = result.readings;
        double lowest = orderShare * own;
        result.order = orders.front();
        for (std::size_t i = 1; i < orders.size(); ++i) {
            double const cost = costOf(stored, orders[i].assignment);
            if (cost >= lowest)
                continue;
            lowest = cost;
            result.order = orders[i];
            result.orderLogOdds = (own - cost) * static_cast<double>(stored.size());
        }
        result.readings = reordered(stored, result.order.assignment);
        return !result.order.text.empty();
    }

    StartingPoint chooseStart() const
    {
        auto const points = startingPoints(chart);
        std::size_t best = 0;
        double lowest = 0;
        for (std::size_t i = 0; i < points.size(); ++i) {
            Assignment const assignment = assignmentOf(chart, points[i]);
            double cost = costOf(result.readings, assignment);
            // Readings that are left out cost as much as the others would at random.
            cost += 3 *
                    static_cast<double>(std::count_if(points[i].begin(), points[i].end(),
                                                      [](StripMatch const& match) { return !match.isClear; })) /
                    static_cast<double>(points[i].size());
            if (i == 0 || cost < lowest) {
                lowest = cost;
                best = i;
            }
        }
        return {points[best], lowest};
    }

    // Learns and matches until nothing changes.
    void settle(std::vector<StripMatch> const& base)
    {
        for (int round = 0; round < mostRounds; ++round) {
            Assignment const assignment = assignmentOf(chart, result.matches);
            auto const tier = static_cast<std::size_t>(result.model.tier);
            result.model = round == 0
                               ? learnBestModel(chart, result.readings, assignment, features)
                               : learnModel(chart, result.readings, assignment, features[tier], result.model.tier);
            std::vector<StripMatch> matches = matchStrips(chart, result.readings, result.model, base);
            bool const isSettled =
                std::equal(matches.begin(), matches.end(), result.matches.begin(), result.matches.end(), isSame);
            result.matches = std::move(matches);
            if (isSettled)
                break;
        }
    }

    ChartReference const& chart;
    std::vector<PatchFeatures> features;
    int simpleTier = 1;
    StripExplanation result;
};

} // namespace

bool StripExplanation::hasExchangedSheets() const
{
    for (std::size_t strip = 0; strip < base.size(); ++strip)
        if (base[strip].source != strip)
            return true;
    return false;
}

StripExplanation explainStrips(ChartReference const& chart, Readings const& readings,
                               std::vector<ReadingOrder> const& orders)
{
    return StripSearch(chart, readings).explain(orders);
}
