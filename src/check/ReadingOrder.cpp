// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ReadingOrder.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace
{

// More sheets or strips than these need no help: an error leaves most of the readings in place.
constexpr std::size_t fewSheets = 6;
constexpr std::size_t fewStrips = 12;

using Places = std::vector<std::size_t>; // patches

// The patches of strips, row by row.
Places rowWise(ChartReference const& chart, std::size_t first, std::size_t last)
{
    Places places;
    std::size_t rows = 0;
    for (std::size_t strip = first; strip < last; ++strip)
        rows = std::max(rows, chart.strips[strip].count);
    for (std::size_t row = 0; row < rows; ++row)
        for (std::size_t strip = first; strip < last; ++strip)
            if (row < chart.strips[strip].count)
                places.push_back(chart.strips[strip].first + row);
    return places;
}

// The patches of strips from the last to the first, or each from its last row to its first, or both.
Places columnWise(ChartReference const& chart, std::size_t first, std::size_t last, bool fromRight, bool fromBottom)
{
    Places places;
    for (std::size_t i = first; i < last; ++i) {
        ChartStrip const& strip = chart.strips[fromRight ? first + last - 1 - i : i];
        for (std::size_t row = 0; row < strip.count; ++row)
            places.push_back(strip.first + (fromBottom ? strip.count - 1 - row : row));
    }
    return places;
}

// The patches of strips, every other strip backwards.
Places toAndFro(ChartReference const& chart, std::size_t firstReversed)
{
    Places places;
    for (std::size_t i = 0; i < chart.strips.size(); ++i) {
        ChartStrip const& strip = chart.strips[i];
        for (std::size_t row = 0; row < strip.count; ++row)
            places.push_back(strip.first + (i % 2 == firstReversed ? strip.count - 1 - row : row));
    }
    return places;
}

class OrderList
{
public:
    explicit OrderList(ChartReference const& theChart) : chart(theChart)
    {
        orders.push_back({"", Assignment(chart.patches.size())});
    }

    // Readings stored in the chart's order, that were read in this one.
    void add(std::string const& text, Places const& places)
    {
        Assignment assignment(chart.patches.size());
        for (std::size_t i = 0; i < places.size(); ++i)
            assignment[i] = places[i];
        keep(text, std::move(assignment));
    }

    // Readings stored in this order, that were read in the chart's.
    void addInverse(std::string const& text, Places const& places)
    {
        Assignment assignment(chart.patches.size());
        for (std::size_t i = 0; i < places.size(); ++i)
            assignment[places[i]] = i;
        keep(text, std::move(assignment));
    }

    // The same on each sheet.
    template <typename PlacesOf>
    void addOnSheets(std::string const& text, PlacesOf placesOf, bool withInverse)
    {
        Places all;
        for (std::size_t sheet = 0; sheet < chart.sheetCount; ++sheet) {
            auto const [first, last] = chart.stripsOf(sheet);
            Places const part = placesOf(first, last);
            all.insert(all.end(), part.begin(), part.end());
        }
        add(text, all);
        if (withInverse)
            addInverse(text, all);
    }

    std::vector<ReadingOrder> orders;

private:
    void keep(std::string const& text, Assignment assignment)
    {
        for (ReadingOrder const& order : orders)
            if (order.assignment == assignment)
                return;
        orders.push_back({text, std::move(assignment)});
    }

    ChartReference const& chart;
};

} // namespace

std::vector<ReadingOrder> candidateOrders(ChartReference const& chart)
{
    std::size_t const strips = chart.strips.size();
    OrderList list(chart);
    list.add("every column was read from its last row to its first", columnWise(chart, 0, strips, false, true));
    list.add("the columns were read from the last to the first", columnWise(chart, 0, strips, true, false));
    list.add("the chart was read from its last patch to its first", columnWise(chart, 0, strips, true, true));
    list.addOnSheets(
        "the columns of each sheet were read from the last to the first",
        [&](auto first, auto last) { return columnWise(chart, first, last, true, false); }, false);
    list.addOnSheets(
        "each sheet was read upside down",
        [&](auto first, auto last) { return columnWise(chart, first, last, true, true); }, false);
    list.add("the chart was read row by row", rowWise(chart, 0, strips));
    list.addInverse("the readings were stored row by row", rowWise(chart, 0, strips));
    list.addOnSheets(
        "each sheet was read row by row", [&](auto first, auto last) { return rowWise(chart, first, last); }, true);
    list.add("every other column was read backwards, beginning with the second", toAndFro(chart, 1));
    list.add("every other column was read backwards, beginning with the first", toAndFro(chart, 0));
    return std::move(list.orders);
}

Readings reordered(Readings const& readings, Assignment const& order)
{
    Readings result(readings.size());
    for (std::size_t i = 0; i < readings.size(); ++i)
        if (order[i] != Assignment::nothing)
            result[order[i]] = readings[i];
    return result;
}

std::vector<std::vector<StripMatch>> startingPoints(ChartReference const& chart)
{
    std::size_t const strips = chart.strips.size();
    std::vector<StripMatch> own(strips);
    for (std::size_t strip = 0; strip < strips; ++strip)
        own[strip].source = strip;
    std::vector<std::vector<StripMatch>> points{own};

    auto const addSheets = [&](std::vector<std::size_t> const& sources) {
        std::vector<StripMatch> point = own;
        for (std::size_t sheet = 0; sheet < chart.sheetCount; ++sheet) {
            auto const [first, last] = chart.stripsOf(sheet);
            auto const [sourceFirst, sourceLast] = chart.stripsOf(sources[sheet]);
            for (std::size_t i = 0; i < std::min(last - first, sourceLast - sourceFirst); ++i)
                point[first + i].source = sourceFirst + i;
        }
        points.push_back(std::move(point));
    };
    if (chart.sheetCount > 1 && chart.sheetCount <= fewSheets) {
        std::vector<std::size_t> sources(chart.sheetCount);
        std::iota(sources.begin(), sources.end(), std::size_t{0});
        for (std::size_t i = 0; i < chart.sheetCount; ++i)
            for (std::size_t j = i + 1; j < chart.sheetCount; ++j) {
                std::swap(sources[i], sources[j]);
                addSheets(sources);
                std::swap(sources[i], sources[j]);
            }
        for (std::size_t turn = 1; turn < chart.sheetCount && chart.sheetCount > 2; ++turn) {
            std::rotate(sources.begin(), sources.begin() + 1, sources.end());
            addSheets(sources);
        }
    }
    if (strips > fewStrips)
        return points;
    for (std::size_t i = 0; i < strips; ++i) {
        std::vector<StripMatch> point = own;
        point[i].isReversed = true;
        points.push_back(point);
        point[i].isClear = false;
        points.push_back(point);
        for (std::size_t j = i + 1; j < strips; ++j) {
            point = own;
            std::swap(point[i].source, point[j].source);
            points.push_back(point);
        }
    }
    return points;
}
