// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Arguments.h"
#include "Console.h"

/// Compares measurements with the chart that they are of, tells what is wrong, and puts right what is certain.
///
/// \return the exit status: 0 nothing found, 1 findings, 2 wrong use or files that cannot be read or written
int runCheck(CheckArguments const& arguments, Console const& console);
