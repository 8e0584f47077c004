// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Generators.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

TEST(GlyphGenerator, RebuildsTheGlyphs)
{
    TemporaryFolder const folder;
    ASSERT_EQ(run({MAKE_GLYPHS, "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf", folder.path() / "ascii.raw"}),
              0);
    expectSameBytes(folder.path() / "ascii.raw", "res/ascii.raw");
}

TEST(GlyphGenerator, FailsWithoutItsFont)
{
    TemporaryFolder const folder;
    EXPECT_EQ(run({MAKE_GLYPHS, folder.path() / "missing.ttf", folder.path() / "ascii.raw"}), EXIT_FAILURE);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}
