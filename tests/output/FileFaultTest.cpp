// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "FileFault.h"

#include "support/FileSizeLimit.h"
#include "support/FileTest.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

using FileFaultTest = FileTest;

TEST_F(FileFaultTest, AFileThatIsOnTheDiskHasNoFault)
{
    WFile file(path, false, 0644);
    file.writeString(String("whole"));
    EXPECT_FALSE(closeFile(file, path));
    EXPECT_EQ(onDisk(), "whole");
}

TEST_F(FileFaultTest, AFileThatCannotBeOpenedHasTheSystemsError)
{
    String const missing = folder.pathOf("missing/file");
    WFile file(missing, false, 0644);
    auto const fault = closeFile(file, missing);
    ASSERT_TRUE(fault);
    auto const [where, error] = fault.value_or(FileFault{"", 0});
    EXPECT_EQ(where, missing);
    EXPECT_EQ(error, ENOENT);
}

TEST_F(FileFaultTest, AFileThatIsCutOffWhenItIsClosedHasAFault)
{
    WFile file(path, false, 0644);
    file.writeString(String("too long"));
    FileSizeLimit const limit(3);
    auto const fault = closeFile(file, path);
    ASSERT_TRUE(fault);
    auto const [where, error] = fault.value_or(FileFault{"", 0});
    EXPECT_EQ(where, path);
    EXPECT_EQ(error, EFBIG);
}
