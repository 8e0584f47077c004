// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ReadingOrder.h"

#include "support/CheckedChart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using testing::Contains;
using testing::ElementsAre;
using testing::SizeIs;

using Patches = std::vector<std::size_t>;

std::vector<Patches> ordersOf(ChartReference const& chart)
{
    std::vector<Patches> orders;
    for (ReadingOrder const& order : candidateOrders(chart))
        orders.push_back(patchesOf(order.assignment));
    return orders;
}

// The strips that a starting point says were read, one digit for each: "10" for two that are exchanged. "r" stands
// behind a strip that was read backwards. "-" stands for a strip that tells nothing.
std::string textOf(std::vector<StripMatch> const& point)
{
    std::string text;
    for (StripMatch const& match : point)
        text += match.isClear ? std::to_string(match.source) + (match.isReversed ? "r" : "") : "-";
    return text;
}

std::vector<std::string> startsOf(CheckedChartSize const& size)
{
    std::vector<std::string> texts;
    for (std::vector<StripMatch> const& point : startingPoints(checkedChart(size)))
        texts.push_back(textOf(point));
    return texts;
}

// Patches of the two columns:   0 3
//                               1 4
//                               2 5
TEST(ReadingOrder, KnowsEachOrderOfASheetOnce)
{
    EXPECT_THAT(ordersOf(checkedChart({1, 2, 3})), ElementsAre(Patches{0, 1, 2, 3, 4, 5},   // the chart's own
                                                               Patches{2, 1, 0, 5, 4, 3},   // columns backwards
                                                               Patches{3, 4, 5, 0, 1, 2},   // from the last column
                                                               Patches{5, 4, 3, 2, 1, 0},   // from the last patch
                                                               Patches{0, 3, 1, 4, 2, 5},   // read row by row
                                                               Patches{0, 2, 4, 1, 3, 5},   // stored row by row
                                                               Patches{0, 1, 2, 5, 4, 3},   // to and fro
                                                               Patches{2, 1, 0, 3, 4, 5})); // fro and to
}

// Patches of the two sheets:   0 1   2 3
TEST(ReadingOrder, TurnsEachSheetByItself)
{
    auto const orders = candidateOrders(checkedChart({2, 2, 1}));
    auto const found = std::find_if(orders.begin(), orders.end(), [](ReadingOrder const& order) {
        return order.text == "the columns of each sheet were read from the last to the first";
    });
    ASSERT_NE(found, orders.end());
    EXPECT_THAT(patchesOf(found->assignment), ElementsAre(1, 0, 3, 2));
}

// Patches of the two sheets:   0 2   4 6
//                              1 3   5 7
TEST(ReadingOrder, GoesAlongTheRowsOfEachSheetByItself)
{
    auto const orders = ordersOf(checkedChart({2, 2, 2}));
    EXPECT_THAT(orders, Contains(Patches{0, 2, 1, 3, 4, 6, 5, 7}));
    EXPECT_THAT(orders, Contains(Patches{0, 2, 4, 6, 1, 3, 5, 7}));
}

// Patches of the two columns:   0 3
//                               1 4
//                               2
TEST(ReadingOrder, PassesOverPlacesThatAShortColumnDoesNotHave)
{
    ChartReference chart = checkedChart({1, 2, 3});
    chart.patches.pop_back();
    --chart.strips.back().count;
    EXPECT_THAT(ordersOf(chart), Contains(Patches{0, 3, 1, 4, 2}));
}

TEST(ReadingOrder, HasATextUnlessItIsTheChartsOwn)
{
    auto const orders = candidateOrders(checkedChart({2, 2, 3}));
    EXPECT_EQ(orders.front().text, "");
    for (std::size_t i = 1; i < orders.size(); ++i)
        EXPECT_NE(orders[i].text, "");
}

TEST(ReadingOrder, PutsReadingsAtThePatchesThatTheyShow)
{
    Assignment order(4);
    order[0] = 2;
    order[1] = Assignment::nothing;
    order[2] = 3;
    order[3] = 0;
    Readings const readings{LabColor{10, 0, 0}, LabColor{20, 0, 0}, LabColor{30, 0, 0}, LabColor{40, 0, 0}};
    EXPECT_THAT(reordered(readings, order),
                ElementsAre(LabColor{40, 0, 0}, std::nullopt, LabColor{10, 0, 0}, LabColor{30, 0, 0}));
}

TEST(ReadingOrder, StartsFromEachSingleFaultOfAFewStrips)
{
    EXPECT_THAT(startsOf({1, 3, 2}),
                ElementsAre("012", "0r12", "-12", "102", "210", "01r2", "0-2", "021", "012r", "01-"));
}

TEST(ReadingOrder, StartsFromSheetsThatAreExchangedOrInACircle)
{
    auto const starts = startsOf({3, 1, 2});
    ASSERT_THAT(starts, SizeIs(15)); // 1 right, 5 of sheets, 9 of strips
    EXPECT_THAT(std::vector(starts.begin() + 1, starts.begin() + 6), ElementsAre("102", "210", "021", "120", "201"));
}

// Thirteen strips, and seven sheets of two strips.
TEST(ReadingOrder, StartsOnlyFromThePlainOrderOfManyStripsAndSheets)
{
    EXPECT_THAT(startsOf({1, 13, 2}), SizeIs(1));
    EXPECT_THAT(startsOf({7, 2, 2}), SizeIs(1));
}

} // namespace
