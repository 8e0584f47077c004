// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// The file of a path relative to the source tree.
std::filesystem::path sourceFile(std::string const& name);

/// The bytes of a file; empty where it cannot be read.
std::string readBytes(std::filesystem::path const& file);

/// An empty folder that goes away with its content.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;

    std::filesystem::path operator/(std::string const& name) const;
    std::filesystem::path const& path() const;

private:
    std::filesystem::path m_path;
};

/// Runs a program to its end.
///
/// \param command  the program and its arguments
/// \return its exit status; -1 where it did not start or was stopped
int run(std::vector<std::string> const& command);
