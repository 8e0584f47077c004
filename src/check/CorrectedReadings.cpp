// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "CorrectedReadings.h"

#include <cmath>

namespace
{

// One in a million.
double const certainOdds = std::log(1e6);

// Which strips are put right. Strips that hold each other's readings are put right together or not at all.
std::vector<bool> strippedOfDoubt(ChartReference const& chart, StripExplanation const& explanation, bool onlyCertain)
{
    std::size_t const count = chart.strips.size();
    bool const areSheetsCertain =
        !onlyCertain || !explanation.hasExchangedSheets() || explanation.sheetLogOdds > certainOdds;
    std::vector<bool> isPutRight(count);
    std::vector<std::size_t> home(count, count);
    for (std::size_t strip = 0; strip < count; ++strip) {
        StripMatch const& match = explanation.matches[strip];
        bool const isOwn = match.source == explanation.base[strip].source && !match.isReversed && !match.isShifted();
        bool const isCertain = isOwn || (match.logOdds > certainOdds && match.isExact);
        isPutRight[strip] = match.isClear && areSheetsCertain && (!onlyCertain || isCertain);
        home[explanation.base[strip].source] = strip;
    }
    for (bool isChanged = true; isChanged;) {
        isChanged = false;
        for (std::size_t strip = 0; strip < count; ++strip) {
            std::size_t const owner = home[explanation.matches[strip].source];
            if (isPutRight[strip] && owner < count && owner != strip && !isPutRight[owner]) {
                isPutRight[strip] = false;
                isChanged = true;
            }
        }
    }
    return isPutRight;
}

} // namespace

ReadingPlaces correctedPlaces(ChartReference const& chart, StripExplanation const& explanation, bool onlyCertain)
{
    std::size_t const nothing = Assignment::nothing;
    ReadingPlaces places(chart.patches.size(), nothing);
    if (!explanation.isExplained ||
        (onlyCertain && !explanation.order.text.empty() && explanation.orderLogOdds < certainOdds)) {
        for (std::size_t i = 0; i < places.size(); ++i)
            places[i] = i;
        return places;
    }
    std::vector<bool> const isPutRight = strippedOfDoubt(chart, explanation, onlyCertain);
    // Strips that hold their own readings come first: a second reading of a strip replaces nothing.
    for (bool const isOwn : {true, false})
        for (std::size_t strip = 0; strip < chart.strips.size(); ++strip) {
            StripMatch const& match = explanation.matches[strip];
            StripMatch own;
            own.source = strip;
            StripMatch const& used = isPutRight[strip] ? match : own;
            if (isOwn != (used.source == explanation.base[strip].source))
                continue;
            ChartStrip const& place = chart.strips[strip];
            for (std::size_t row = 0; row < place.count; ++row) {
                std::size_t const patch = used.patchAt(chart, row);
                if (patch != nothing && places[patch] == nothing)
                    places[patch] = place.first + row;
            }
        }
    // From places in the chart's order to places as they were read.
    Assignment const& order = explanation.order.assignment;
    std::vector<std::size_t> readAt(places.size(), nothing);
    for (std::size_t i = 0; i < order.size(); ++i)
        if (order[i] != nothing)
            readAt[order[i]] = i;
    for (std::size_t& place : places)
        if (place != nothing)
            place = readAt[place];
    return places;
}
