// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "report/NumberText.h"

#include "support/DecimalCommaLocale.h"

#include <gtest/gtest.h>

TEST(NumberText, AShortNumberHasNoZerosAtItsEnd)
{
    EXPECT_EQ(shortNumber(12.5, 3), "12.5");
    EXPECT_EQ(shortNumber(12, 3), "12");
    EXPECT_EQ(shortNumber(100, 0), "100");
    EXPECT_EQ(shortNumber(0.0004, 3), "0");
    EXPECT_EQ(shortNumber(-0.0004, 3), "0");
    EXPECT_EQ(shortNumber(-7.25, 1), "-7.2");
}

TEST(NumberText, AFixedNumberKeepsItsDecimals)
{
    EXPECT_EQ(fixedNumber(18, 2), "18.00");
    EXPECT_EQ(fixedNumber(17.996, 2), "18.00");
}

TEST(NumberText, HasADecimalPointUnderALocaleWithAComma)
{
    DecimalCommaLocale const locale;
    EXPECT_EQ(shortNumber(1234.5, 1), "1234.5");
    EXPECT_EQ(groupedNumber(1234567), "1,234,567");
}

TEST(NumberText, GroupsThreeDigits)
{
    EXPECT_EQ(groupedNumber(0), "0");
    EXPECT_EQ(groupedNumber(999), "999");
    EXPECT_EQ(groupedNumber(1000), "1,000");
    EXPECT_EQ(groupedNumber(-100), "-100");
    EXPECT_EQ(groupedNumber(-1000), "-1,000");
}

TEST(NumberText, CountsWithANoun)
{
    EXPECT_EQ(countOf(1, "sheet"), "1 sheet");
    EXPECT_EQ(countOf(2, "sheet"), "2 sheets");
    EXPECT_EQ(countOf(1617, "patch", "patches"), "1,617 patches");
}
