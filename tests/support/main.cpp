// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Folders.h"

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    respath = String(PATCHLOOM_RESOURCES);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
