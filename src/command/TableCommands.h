// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Arguments.h"
#include "Console.h"

/// Writes a table as the plain table that the window opens, and its rows' identifiers.
///
/// \return the exit status
int runConvert(ConvertArguments const& arguments, Console const& console);

/// Tells what is in a table.
///
/// \return the exit status
int runDescribe(DescribeArguments const& arguments, Console const& console);
