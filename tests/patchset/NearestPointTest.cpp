// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "patchset/NearestPoint.h"

#include "search/RandomNumbers.h"

#include <gtest/gtest.h>

namespace
{

std::vector<float> randomCoordinates(std::size_t count, int limit, std::uint64_t seed)
{
    RandomNumbers random(seed);
    std::vector<float> coordinates;
    for (std::size_t i = 0; i < 4 * count; ++i)
        coordinates.push_back(static_cast<float>(random.below(limit)));
    return coordinates;
}

// Looks at all points in their order.
NearestPoint::Answer plainNearest(std::vector<float> const& points, float const* place)
{
    NearestPoint::Answer best{0, 1e30F};
    for (std::size_t i = 0; i < points.size() / 4; ++i) {
        float sum = 0;
        for (std::size_t d = 0; d < 4; ++d)
            sum += (points[4 * i + d] - place[d]) * (points[4 * i + d] - place[d]);
        if (sum < best.squaredDistance)
            best = {static_cast<std::uint32_t>(i), sum};
    }
    return best;
}

} // namespace

TEST(NearestPointTest, FindsTheOnlyPoint)
{
    NearestPoint const nearest({1, 2, 3, 4});
    float const place[] = {1, 2, 3, 6};
    EXPECT_EQ(nearest.find(place).point, 0U);
    EXPECT_FLOAT_EQ(nearest.find(place).squaredDistance, 4);
}

// Few different coordinates give many equal distances.
TEST(NearestPointTest, FindsTheSameAsASearchOfAllPoints)
{
    for (int const limit : {3, 100, 10000})
        for (std::size_t const count : {2U, 9U, 100U, 2000U}) {
            auto const points = randomCoordinates(count, limit, count);
            auto const places = randomCoordinates(200, limit, 7);
            NearestPoint const nearest(points);
            for (std::size_t i = 0; i < places.size(); i += 4) {
                auto const expected = plainNearest(points, &places[i]);
                auto const found = nearest.find(&places[i]);
                ASSERT_EQ(found.point, expected.point);
                ASSERT_FLOAT_EQ(found.squaredDistance, expected.squaredDistance);
            }
        }
}

TEST(NearestPointTest, TakesTheFirstOfEqualPoints)
{
    std::vector<float> points(4 * 5000, 7);
    points[0] = 8;
    float const place[] = {7, 7, 7, 7};
    EXPECT_EQ(NearestPoint(points).find(place).point, 1U);
}

TEST(NearestPointTest, LaysOutColoursInBothSpaces)
{
    std::vector<PrinterColor> const colors{{{1, 2, 3, 4}, {{50, 5, -5}}}};
    EXPECT_EQ(placesInLab(colors), (std::vector<float>{50, 5, -5, 0}));
    EXPECT_EQ(placesInDevice(colors), (std::vector<float>{1, 2, 3, 4}));
}
