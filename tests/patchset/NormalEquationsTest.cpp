// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "patchset/NormalEquations.h"

#include <gtest/gtest.h>

// 4x + y = 9, x + 3y = 5 has x = 2, y = 1.
TEST(NormalEquationsTest, SolvesTwoEquations)
{
    auto const solution = solve<2>({{{4, 1, 9}, {1, 3, 5}}});
    EXPECT_DOUBLE_EQ(solution[0], 2);
    EXPECT_DOUBLE_EQ(solution[1], 1);
}

// The second equation says the same as the first.
TEST(NormalEquationsTest, AnOpenUnknownIsZero)
{
    EXPECT_EQ(solve<2>({{{1, 1, 3}, {1, 1, 3}}}), (std::array<double, 2>{3, 0}));
    EXPECT_EQ(solve<2>({{{0, 0, 0}, {0, 2, 4}}}), (std::array<double, 2>{0, 2}));
}

TEST(NormalEquationsTest, SolvesADiagonal)
{
    auto const solution = solve<3>({{{2, 0, 0, 2}, {0, 4, 0, 2}, {0, 0, 5, 20}}});
    EXPECT_EQ(solution, (std::array<double, 3>{1, 0.5, 4}));
}
