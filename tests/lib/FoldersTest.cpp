// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/Folders.h"

#include "lib/OvFile.h"
#include "support/StringText.h"

#include <gtest/gtest.h>

TEST(Folders, LeaveTheExecutablesFolderEmptyUntilItIsSet)
{
    EXPECT_EQ(textOf(exepath), "");
}

TEST(Folders, OpenAResourceByItsFileName)
{
    EXPECT_EQ(RFile(String(respath, "ascii.raw")).getFileSize(), 1024 * 1024);
}
