// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "BestOrder.h"

#include "ColorEntry.h"
#include "InputFile.h"
#include "OrderSearch.h"
#include "search/OrderTasks.h"
#include "support/TestChart.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace
{

auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

BestOrder bestOrderOf(OrderTask const& task, int effort = 1)
{
    BestOrderSettings settings;
    settings.effort = effort;
    settings.columnsPerSheet = 2;
    return findBestOrder(task, settings);
}

std::vector<int> sorted(std::vector<int> numbers)
{
    std::ranges::sort(numbers);
    return numbers;
}

std::vector<int> upTo(std::size_t count)
{
    std::vector<int> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

void expectGoodOrder(OrderTask const& task)
{
    BestOrder const best = bestOrderOf(task);
    EXPECT_EQ(sorted(best.patchAt), upTo(task.colors.size()));
    EXPECT_EQ(best.smallest, smallestAlongScan(task, best.patchAt));
    EXPECT_GE(best.smallest, OrderSearch(task).run());
    EXPECT_LE(best.smallest, best.bound);
}

} // namespace

TEST(BestOrder, PutsTheGreyThatContrastsMostBetweenTwoAlike)
{
    // Paper 95: the orders 50 10 52 and 52 10 50 keep 40 and 42 apart and 43 from the paper. Others put 50 beside 52.
    BestOrder const best = bestOrderOf(taskOf({1, 3}, {grey(10), grey(50), grey(52)}));
    EXPECT_EQ(best.patchAt[1], 0);
    EXPECT_EQ(best.smallest, 40.0f * 40.0f);
}

TEST(BestOrder, ReachesTheOptimumOfTinyCharts)
{
    std::mt19937 generator(1);
    IntSize const grids[] = {{1, 1}, {1, 2}, {1, 3}, {1, 4}, {1, 5}, {1, 6}, {1, 7}, {1, 8}, {1, 9}, {2, 1},
                             {2, 2}, {2, 3}, {2, 4}, {3, 1}, {3, 2}, {3, 3}, {4, 2}, {5, 1}, {9, 1}};
    for (IntSize const grid : grids)
        for (int i = 0; i < 12; ++i) {
            OrderTask const task = randomTask(grid, generator);
            BestOrder const best = bestOrderOf(task);
            EXPECT_EQ(best.smallest, EveryOrder(task).getLargest()) << grid.width << " x " << grid.height << ' ' << i;
            EXPECT_GE(best.bound, best.smallest);
        }
}

TEST(BestOrder, IsAPermutationBetweenTheFastSearchAndTheBound)
{
    std::mt19937 generator(2);
    for (int i = 0; i < 2000; ++i) {
        auto const side = [&](unsigned limit) { return 1 + static_cast<int>(generator() % limit); };
        expectGoodOrder(randomTask({side(3), side(7)}, generator));
    }
}

TEST(BestOrder, IsAPermutationBetweenTheFastSearchAndTheBoundOnMediumChartsToo)
{
    std::mt19937 generator(3);
    for (int const height : {12, 24, 25, 40})
        expectGoodOrder(randomTask({240 / height, height}, generator));
}

TEST(BestOrder, NeedsNoGapsForNearNeutralsForWhichTheFastSearchNeedsThem)
{
    InputFile table;
    table.init(String(PATCHLOOM_EXAMPLES "rgb-near-neutrals-231.txt"));
    OrderTask task = taskOf({11, 21}, {});
    ColorEntry::getWhite(task.paper.values);
    for (ColorEntry const& entry : *table.getEntries()) {
        float const* const lab = entry.getLab();
        task.colors.push_back({{lab[0], lab[1], lab[2]}});
        task.takesPart.push_back(true);
    }
    constexpr float deltaEWithoutGaps = 18;
    EXPECT_LT(OrderSearch(task).run(), deltaEWithoutGaps * deltaEWithoutGaps);
    EXPECT_GE(bestOrderOf(task).smallest, deltaEWithoutGaps * deltaEWithoutGaps);
}

TEST(BestOrder, IsTheSameTwice)
{
    std::mt19937 generator(4);
    OrderTask const task = randomTask({5, 24}, generator);
    EXPECT_EQ(bestOrderOf(task).patchAt, bestOrderOf(task).patchAt);
}

TEST(BestOrder, IsNotWorseWithMoreEffort)
{
    std::mt19937 generator(6);
    for (IntSize const grid : {IntSize{2, 12}, IntSize{3, 25}, IntSize{4, 24}}) {
        OrderTask const task = randomTask(grid, generator);
        float last = 0;
        for (int const effort : {1, 2, 4}) {
            float const smallest = bestOrderOf(task, effort).smallest;
            EXPECT_GE(smallest, last);
            last = smallest;
        }
    }
}

TEST(BestOrder, TellsWhatItReachedAndTheBoundWhileItSearches)
{
    std::mt19937 generator(7);
    OrderTask const task = randomTask({4, 25}, generator);
    std::vector<float> reached;
    std::vector<float> bounds;
    BestOrderSettings settings;
    settings.progress = [&](float smallest, float bound) {
        reached.push_back(smallest);
        bounds.push_back(bound);
    };
    BestOrder const best = findBestOrder(task, settings);
    ASSERT_FALSE(reached.empty());
    EXPECT_TRUE(std::ranges::is_sorted(reached));
    EXPECT_LE(reached.back(), best.smallest);
    EXPECT_EQ(bounds, std::vector<float>(reached.size(), best.bound));
}

TEST(BestOrder, LeavesPatchesThatDoNotTakePartWhereTheFastSearchPutsThem)
{
    std::mt19937 generator(8);
    for (int i = 0; i < 50; ++i) {
        OrderTask task = randomTask({3, 6}, generator);
        for (int hidden = 15; hidden < 18; ++hidden)
            task.takesPart[static_cast<std::size_t>(hidden)] = false;
        OrderSearch fast(task);
        float const smallest = fast.run();
        BestOrder const best = bestOrderOf(task);
        EXPECT_EQ(sorted(best.patchAt), upTo(18));
        EXPECT_GE(best.smallest, smallest);
        EXPECT_LE(best.smallest, best.bound);
        for (int y = 0; y < 6; ++y)
            for (int x = 0; x < 3; ++x) {
                int const patch = fast.getPatchAt({x, y});
                if (patch >= 15) {
                    EXPECT_EQ(best.patchAt[static_cast<std::size_t>(3 * y + x)], patch);
                }
            }
    }
}

TEST(BestOrder, LeavesAChartWithoutPatchesToOrderAsItIs)
{
    EXPECT_TRUE(bestOrderOf(taskOf({0, 0}, {})).patchAt.empty());
    OrderTask task = taskOf({1, 2}, {grey(95), grey(95)});
    task.takesPart = {false, false};
    BestOrder const best = bestOrderOf(task);
    EXPECT_EQ(best.patchAt, (std::vector<int>{0, 1}));
    EXPECT_EQ(best.smallest, 0);
    EXPECT_EQ(best.bound, 0);
}

TEST(BestOrder, ReachesADifferenceOfZeroIfAllColorsAreTheSame)
{
    BestOrder const best = bestOrderOf(taskOf({2, 3}, std::vector<Lab>(6, grey(95))));
    EXPECT_EQ(best.smallest, 0);
    EXPECT_EQ(best.bound, 0);
}

TEST(BestOrder, EndsWithColorsThatAreNoNumbers)
{
    OrderTask task = taskOf({2, 3}, std::vector<Lab>(6, grey(50)));
    task.colors[1].values[0] = std::numeric_limits<float>::quiet_NaN();
    task.colors[4].values[1] = std::numeric_limits<float>::infinity();
    EXPECT_EQ(sorted(bestOrderOf(task).patchAt), upTo(6));
}
