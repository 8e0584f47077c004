// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// The file of a path relative to the source tree.
std::filesystem::path sourceFile(std::string const& name);

/// Runs a program to its end.
///
/// \param command  the program and its arguments
/// \return its exit status; -1 where it did not start or was stopped
int run(std::vector<std::string> const& command);

/// Expects a made file to be the committed one, whose path is relative to the source tree. A failure names the file and
/// does not print its contents.
void expectSameBytes(std::filesystem::path const& made, std::string const& committed);
