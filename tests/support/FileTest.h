// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/OvFile.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <sstream>
#include <string>

/// A test of files, with a folder and a path in it.
class FileTest : public testing::Test
{
protected:
    TemporaryFolder const folder;
    String const path = folder.pathOf("file");

    /// The bytes that are in the file now, read without the classes under test.
    std::string onDisk() const
    {
        std::ostringstream bytes;
        bytes << std::ifstream(path.getNullTerminatedString(), std::ios::binary).rdbuf();
        return bytes.str();
    }

    /// The bytes of a new file after `write` has written to it.
    template <typename Write>
    std::string written(Write const& write) const
    {
        {
            WFile file(path, false, 0644);
            write(file);
        }
        return onDisk();
    }

    /// Writes a file with these bytes and returns its path.
    String holding(std::string const& bytes) const { return folder.write("file", bytes); }
};

/// The numbers 0, 1, ... 255, 0, ... as bytes.
inline std::string countingBytes(std::size_t count)
{
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i)
        bytes += static_cast<char>(i);
    return bytes;
}

/// How many descriptors the process has open.
inline int openDescriptors()
{
    int count = 0;
    for (int descriptor = 0; descriptor < 256; ++descriptor)
        count += fcntl(descriptor, F_GETFD) >= 0;
    return count;
}
