// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvLocale.h"

#include "support/DecimalCommaLocale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>

namespace
{

std::string printed(double number)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", number);
    return text;
}

} // namespace

TEST(ParseReal, ReadsThePointUnderADecimalCommaLocale)
{
    DecimalCommaLocale const locale;
    ASSERT_TRUE(locale.isInForce());
    ASSERT_EQ(std::atof("1.5"), 1.0) << "atof must be caught by the locale, or the next line shows nothing";
    EXPECT_EQ(parseReal("1.5"), 1.5);
}

TEST(ParseReal, EndsANumberAtAComma)
{
    DecimalCommaLocale const locale;
    ASSERT_TRUE(locale.isInForce());
    EXPECT_EQ(parseReal("1,5"), 1.0);
}

TEST(ParseReal, ReadsWhatAtofReads)
{
    EXPECT_EQ(parseReal(" \t-12.25e1x"), -122.5);
    EXPECT_EQ(parseReal("0x10"), 16.0);
    EXPECT_EQ(parseReal(""), 0.0);
    EXPECT_EQ(parseReal("x"), 0.0);
    EXPECT_EQ(parseReal("1e400"), std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(parseReal("nan")));
}

TEST(PointedNumbers, ArePrintedUnderADecimalCommaLocale)
{
    DecimalCommaLocale const locale;
    ASSERT_TRUE(locale.isInForce());
    PointedNumbers const pointed;
    EXPECT_EQ(printed(0.25), "0.25");
}

TEST(PointedNumbers, LeaveTheLocaleAsItWas)
{
    DecimalCommaLocale const locale;
    ASSERT_TRUE(locale.isInForce());
    {
        PointedNumbers const outer;
        {
            PointedNumbers const inner;
        }
        EXPECT_EQ(printed(0.25), "0.25");
    }
    EXPECT_EQ(printed(0.25), "0,25");
}
