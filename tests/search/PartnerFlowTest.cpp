// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PartnerFlow.h"

#include "search/OrderTasks.h"

#include <gtest/gtest.h>

namespace
{

bool areComplete(OrderTask const& task, float threshold, PartnerNeeds const& needs)
{
    std::vector<int> all(task.colors.size() + 1);
    std::iota(all.begin(), all.end(), 0);
    FarPairs pairs(PairDifference(task), all);
    pairs.renew(threshold * threshold);
    return PartnerFlow(pairs, needs).isComplete();
}

} // namespace

TEST(PartnerFlow, GivesEachPatchAPartner)
{
    OrderTask const task = taskOf({1, 4}, {grey(10), grey(20), grey(60), grey(70)});
    EXPECT_TRUE(areComplete(task, 50, {1, 1, 0, 1}));
    EXPECT_FALSE(areComplete(task, 51, {1, 1, 0, 1}));
}

// Three colours, each 100 from the two others: each pair can be half a couple.
TEST(PartnerFlow, SharesPartners)
{
    OrderTask const task = taskOf({1, 3}, {{{50, 100, 0}}, {{50, 0, 100}}, {{50, -100, -100}}});
    EXPECT_TRUE(areComplete(task, 100, {1, 1, 0, 1}));
}

TEST(PartnerFlow, CountsAPartnerOnce)
{
    OrderTask const task = taskOf({1, 2}, {grey(10), grey(70)});
    EXPECT_TRUE(areComplete(task, 50, {2, 2, 0, 2}));
    EXPECT_FALSE(areComplete(task, 50, {2, 2, 0, 1}));
}

TEST(PartnerFlow, LetsThePaperTakeItsShare)
{
    // Only two patches are far from the paper, 95.
    OrderTask const task = taskOf({1, 4}, {grey(10), grey(20), grey(60), grey(70)});
    EXPECT_TRUE(areComplete(task, 40, {0, 1, 2, 1}));
    EXPECT_FALSE(areComplete(task, 40, {0, 1, 3, 1}));
    EXPECT_FALSE(areComplete(task, 40, {1, 1, 2, 1})) << "60 and 70 have no one left";
}

// Two light patches and one dark: each light one needs half, and the dark one can give one.
TEST(PartnerFlow, LetsAPatchGiveMoreThanItNeeds)
{
    OrderTask const task = taskOf({1, 3}, {grey(10), grey(80), grey(80)});
    EXPECT_TRUE(areComplete(task, 50, {1, 2, 0, 2}));
    EXPECT_FALSE(areComplete(task, 50, {2, 2, 0, 2}));
}

TEST(PartnerFlow, FindsTheSameAfterOtherThresholds)
{
    std::mt19937 generator(1);
    for (int i = 0; i < 100; ++i) {
        OrderTask const task = randomTask({3, 8}, generator);
        std::vector<int> all(task.colors.size() + 1);
        std::iota(all.begin(), all.end(), 0);
        FarPairs pairs(PairDifference(task), all);
        PartnerNeeds const needs{3, 4, 8, 2};
        PartnerFlow flow(pairs, needs);
        for (int step = 0; step < 8; ++step) {
            auto const threshold = static_cast<float>(generator() % 90);
            pairs.renew(threshold * threshold);
            EXPECT_EQ(flow.isComplete(), areComplete(task, threshold, needs));
        }
    }
}
