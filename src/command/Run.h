// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

/// Does what the arguments that follow the program's name ask for. The process must be set up.
///
/// \return the exit status
int run(std::vector<std::string> const& arguments);
