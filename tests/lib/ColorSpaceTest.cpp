// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/ColorSpace.h"

#include <gtest/gtest.h>

#include <cstring>
#include <iterator>

TEST(ColorSpace, KeepsTheNumbersThatIndexItsTables)
{
    EXPECT_EQ(undefined, 0);
    EXPECT_EQ(CMYK, 1);
    EXPECT_EQ(RGB, 2);
}

TEST(ColorSpace, IsNamedAsInFiles)
{
    ASSERT_EQ(std::size(colorspace_names), 3U);
    EXPECT_STREQ(colorspace_names[undefined], "undefined");
    EXPECT_STREQ(colorspace_names[CMYK], "CMYK");
    EXPECT_STREQ(colorspace_names[RGB], "RGB");
}

TEST(ColorSpace, HasAChannelForEachLetterOfItsName)
{
    ASSERT_EQ(std::size(colorspace_nof_channels), 3U);
    for (ColorSpace const space : {CMYK, RGB})
        EXPECT_EQ(colorspace_nof_channels[space], static_cast<int>(std::strlen(colorspace_names[space])));
    EXPECT_EQ(colorspace_nof_channels[undefined], 0);
}
