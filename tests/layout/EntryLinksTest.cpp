// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The links between entries and their gaps.

#include "ColorEntry.h"

#include "ColorGap.h"
#include "NineGreys.h"
#include "support/CapturedOutput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

std::array<float, 3> tripleOf(float const* values)
{
    return {values[0], values[1], values[2]};
}

} // namespace

TEST(EntryLinks, ACopySharesTheValuesAndCopiesTheRest)
{
    NineGreys greys;
    ColorEntry const& original = greys.at(1, 1);
    ColorEntry const copy(original);
    EXPECT_EQ(copy.getValues().begin(), original.getValues().begin());
    EXPECT_EQ(copy.getStatus(), original.getStatus());
    EXPECT_EQ(copy.getColorSpace(), original.getColorSpace());
    EXPECT_EQ(tripleOf(copy.getLab()), tripleOf(original.getLab()));
    EXPECT_EQ(tripleOf(copy.getDisplayColor()), tripleOf(original.getDisplayColor()));
    EXPECT_EQ(copy.getKey(), original.getKey());
    EXPECT_EQ(copy.getIndex(), original.getIndex());
    EXPECT_EQ(copy.getHeapPosition(), original.getHeapPosition());
    for (RelativePosition const side : {Above, Right, Below, Left})
        EXPECT_EQ(copy.getGap(side), original.getGap(side));
}

TEST(EntryLinks, ACopyStandsInNoArrangement)
{
    NineGreys greys;
    ASSERT_NE(greys.at(1, 1).getArrangement(), nullptr);
    ColorEntry const copy = greys.at(1, 1);
    ColorEntry assigned;
    assigned = greys.at(1, 1);
    EXPECT_EQ(copy.getArrangement(), nullptr);
    EXPECT_EQ(assigned.getArrangement(), nullptr);
}

TEST(EntryLinks, AnEntryForgetsItsGaps)
{
    NineGreys greys;
    ColorEntry& entry = greys.at(1, 1);
    entry.initGaps();
    for (RelativePosition const side : {Above, Right, Below, Left})
        EXPECT_EQ(entry.getGap(side), nullptr);
}

TEST(EntryLinks, AnEntryForgetsItsGapsWhenItBecomesWhite)
{
    NineGreys greys;
    ColorEntry& entry = greys.at(1, 1);
    entry.initAsWhite(RGB, false);
    for (RelativePosition const side : {Above, Right, Below, Left})
        EXPECT_EQ(entry.getGap(side), nullptr);
}

TEST(EntryLinks, AnEntryWithoutGapsHasPaperForNeighbours)
{
    ColorEntry const entry;
    for (RelativePosition const position : {Above, Right, Below, Left})
        EXPECT_EQ(entry.getNeighbor(position), &ColorEntry::whitePatch);
}

TEST(EntryLinks, APositionPastLeftCountsAsAbove)
{
    NineGreys greys;
    EXPECT_EQ(greys.at(1, 1).getNeighbor(static_cast<RelativePosition>(4)), &greys.at(1, 0));
    EXPECT_EQ(greys.at(1, 1).getNeighbor(static_cast<RelativePosition>(1000)), &greys.at(1, 0));
}

TEST(EntryLinks, TheKeyCountsDifferencesAlongAndAcrossTheScanAsAsked)
{
    NineGreys greys;
    ColorEntry& entry = greys.at(1, 1);
    auto const differenceAt = [&](int x, int y) {
        return ColorEntry::computeSqDe(entry.getLab(), greys.at(x, y).getLab());
    };
    float const along = std::min(differenceAt(1, 0), differenceAt(1, 2));
    float const across = std::min(differenceAt(0, 1), differenceAt(2, 1));
    ASSERT_NE(along, across);
    entry.recomputeDe(true, false);
    EXPECT_EQ(entry.getKey(), along);
    entry.recomputeDe(false, true);
    EXPECT_EQ(entry.getKey(), across);
    entry.recomputeDe(true, true);
    EXPECT_EQ(entry.getKey(), std::min(along, across));
    entry.recomputeDe(false, false);
    EXPECT_EQ(entry.getKey(), 100000.0F);
}

TEST(EntryLinks, AHiddenEntryKeepsItsKey)
{
    NineGreys greys;
    PointerPool<ColorGap> pool;
    pool.init(4);
    ColorEntry entry;
    entry.initAsWhite(RGB, true);
    float const key = entry.getKey();
    entry.renewGaps(&pool, {1, 1}, &greys.chart);
    entry.recomputeDe(true, true);
    EXPECT_EQ(entry.getKey(), key);
    entry.initAsWhite(RGB, false);
    entry.renewGaps(&pool, {1, 1}, &greys.chart);
    entry.recomputeDe(true, true);
    EXPECT_NE(entry.getKey(), key);
}

TEST(EntryLinks, AnEntryMovesInTheHeapToItsNewKey)
{
    NineGreys greys;
    MinBackHeap<ColorEntry*, float> heap;
    heap.init(2);
    ColorEntry& entry = greys.at(1, 1);
    ColorEntry& other = greys.at(0, 0);
    heap.insert(1, &entry, entry.getHeapBackPointer());
    heap.insert(2, &other, other.getHeapBackPointer());
    ASSERT_EQ(entry.getHeapPosition(), 1U);
    entry.recomputeDe(false, false);
    entry.reenterHeap(&heap);
    EXPECT_EQ(entry.getHeapPosition(), 2U);
    EXPECT_EQ(other.getHeapPosition(), 1U);
    EXPECT_EQ(heap.getRecord(2).key, 100000.0F);
}

TEST(EntryLinks, AnEntryOutsideTheHeapStaysOutside)
{
    MinBackHeap<ColorEntry*, float> heap;
    heap.init(1);
    ColorEntry entry = entryOf(RGB, "1 2 3");
    EXPECT_EQ(errorsOf([&] { entry.reenterHeap(&heap); }), "");
    EXPECT_EQ(heap.getSize(), 0U);
}

TEST(EntryLinks, RenewedGapsAreSharedWithTheNeighbours)
{
    NineGreys greys;
    for (int x = 0; x < 3; ++x)
        for (int y = 0; y < 3; ++y)
            greys.at(x, y).initGaps();
    PointerPool<ColorGap> pool;
    pool.init(7);
    ColorEntry& corner = greys.at(0, 2);
    corner.renewGaps(&pool, {0, 2}, &greys.chart);
    EXPECT_EQ(pool.getFreeCount(), 3U);
    EXPECT_EQ(corner.getNeighbor(Above), &greys.at(0, 1));
    EXPECT_EQ(corner.getNeighbor(Right), &greys.at(1, 2));
    EXPECT_EQ(corner.getNeighbor(Below), &ColorEntry::whitePatch);
    EXPECT_EQ(corner.getNeighbor(Left), &ColorEntry::whitePatch);
    EXPECT_EQ(corner.getGap(Above)->getSecond(), &corner);
    EXPECT_EQ(corner.getGap(Right)->getFirst(), &corner);
    EXPECT_EQ(corner.getGap(Below)->getFirst(), &corner);
    EXPECT_EQ(corner.getGap(Left)->getSecond(), &corner);
    EXPECT_TRUE(corner.getGap(Above)->isAcrossScan());
    EXPECT_FALSE(corner.getGap(Right)->isAcrossScan());
    EXPECT_TRUE(corner.getGap(Below)->isAcrossScan());
    EXPECT_FALSE(corner.getGap(Left)->isAcrossScan());
    EXPECT_EQ(corner.getGap(Above)->getSqDe(), ColorEntry::computeSqDe(corner.getLab(), greys.at(0, 1).getLab()));

    ColorEntry& above = greys.at(0, 1);
    above.renewGaps(&pool, {0, 1}, &greys.chart);
    EXPECT_EQ(pool.getFreeCount(), 0U);
    EXPECT_EQ(above.getGap(Below), corner.getGap(Above));
    EXPECT_EQ(above.getNeighbor(Below), &corner);
    EXPECT_EQ(corner.getNeighbor(Above), &above);
}

TEST(EntryLinks, ASharedGapIsComputedAgain)
{
    NineGreys greys;
    ColorEntry& above = greys.at(0, 1);
    ColorEntry& corner = greys.at(0, 2);
    float const earlier = corner.getGap(Above)->getSqDe();
    above.initAsWhite(RGB, false);
    PointerPool<ColorGap> pool;
    pool.init(4);
    above.renewGaps(&pool, {0, 1}, &greys.chart);
    ASSERT_EQ(above.getGap(Below), corner.getGap(Above));
    EXPECT_EQ(corner.getGap(Above)->getSqDe(), ColorEntry::computeSqDe(corner.getLab(), above.getLab()));
    EXPECT_NE(corner.getGap(Above)->getSqDe(), earlier);
}
