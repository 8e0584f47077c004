// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SpreadsheetDamage.h"

#include <gtest/gtest.h>

namespace
{

TEST(SpreadsheetDamage, IsRecognised)
{
    for (char const* cell : {"01-Feb", "2. Jan", "Jan 55", "05. Mrz", "2023-05-10", "10.05.2023", "5/10/2023", "10/5"})
        EXPECT_EQ(spreadsheetDamageIn(cell), "a date") << cell;
    for (char const* cell : {"#VALUE!", "#REF!", "#NAME?", "#DIV/0!", "#N/A"})
        EXPECT_EQ(spreadsheetDamageIn(cell), "an error value") << cell;
    for (char const* cell : {"1,234.5", "1.234,5", "1'234.5", "1,234,567"})
        EXPECT_EQ(spreadsheetDamageIn(cell), "grouped digits") << cell;
    EXPECT_EQ(spreadsheetDamageIn("=A1*2"), "a formula");
    EXPECT_EQ(spreadsheetDamageIn("####"), "a number hidden by a narrow column");
}

TEST(SpreadsheetDamage, IsNotSeenInOtherTexts)
{
    for (char const* cell : {"", "n/a", "-5.9M", "A1", "12", "12,5", "#FF0000", "=", "white", "12-5", ".", ","})
        EXPECT_EQ(spreadsheetDamageIn(cell), "") << cell;
}

} // namespace
