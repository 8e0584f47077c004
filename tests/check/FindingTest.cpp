// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Finding.h"

#include "support/DecimalCommaLocale.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

using testing::HasSubstr;

TEST(Finding, HasTheNameOfItsKind)
{
    EXPECT_EQ(nameOf(FindingKind::reversed), "reversed");
    EXPECT_EQ(nameOf(FindingKind::shifted), "shifted");
    EXPECT_EQ(nameOf(FindingKind::exchanged), "exchanged");
    EXPECT_EQ(nameOf(FindingKind::repeated), "repeated");
    EXPECT_EQ(nameOf(FindingKind::sheets), "sheets");
    EXPECT_EQ(nameOf(FindingKind::order), "order");
    EXPECT_EQ(nameOf(FindingKind::patch), "patch");
    EXPECT_EQ(nameOf(FindingKind::missing), "missing");
    EXPECT_EQ(nameOf(FindingKind::extra), "extra");
    EXPECT_EQ(nameOf(FindingKind::impossible), "impossible");
    EXPECT_EQ(nameOf(FindingKind::paper), "paper");
    EXPECT_EQ(nameOf(FindingKind::drift), "drift");
    EXPECT_EQ(nameOf(FindingKind::repeats), "repeats");
}

TEST(Finding, NamesAnImpossibleLightnessInFourDigits)
{
    EXPECT_EQ(impossibleLightness(-12.5), "L* is -12.5, outside 0 to 110");
    EXPECT_EQ(impossibleLightness(123.4567), "L* is 123.5, outside 0 to 110");
}

TEST(Finding, NamesAnImpossibleLightnessInAsManyDigitsAsShowThatItIsImpossible)
{
    EXPECT_EQ(impossibleLightness(110.04), "L* is 110.04, outside 0 to 110");
    EXPECT_EQ(impossibleLightness(110.00123), "L* is 110.001, outside 0 to 110");
}

TEST(Finding, NamesALightnessThatIsNoFiniteNumber)
{
    for (double const value : {std::numeric_limits<double>::infinity(), std::nan("")})
        EXPECT_EQ(impossibleLightness(value), "L* is no finite number, outside 0 to 110");
}

TEST(Finding, NamesALightnessWithAPointUnderALocaleWithDecimalCommas)
{
    DecimalCommaLocale const locale;
    EXPECT_THAT(impossibleLightness(-0.25), HasSubstr("-0.25"));
}

} // namespace
