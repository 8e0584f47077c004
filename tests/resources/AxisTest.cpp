// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Axis.h"

#include <gtest/gtest.h>

TEST(Axis, PlacesACoordinateBetweenItsNodes)
{
    Axis const axis({0, 10, 30, 100});
    EXPECT_EQ(axis.positionOf(5), 0.5);
    EXPECT_EQ(axis.positionOf(15), 1.25);
    EXPECT_EQ(axis.positionOf(65), 2.5);
}

TEST(Axis, PlacesItsNodesAtWholeNumbers)
{
    Axis const axis({0, 10, 30, 100});
    for (std::size_t node = 0; node < axis.getCount(); ++node)
        EXPECT_EQ(axis.positionOf(axis[node]), static_cast<double>(node));
}

TEST(Axis, HoldsCoordinatesOutsideAtTheNearestNode)
{
    Axis const axis({0, 10, 30, 100});
    EXPECT_EQ(axis.positionOf(-1), 0);
    EXPECT_EQ(axis.positionOf(101), 3);
}
