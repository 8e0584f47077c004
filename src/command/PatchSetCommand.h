// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Arguments.h"
#include "Console.h"

/// Makes a table from nothing: its patches, the file, and a summary.
///
/// \return the exit status
int runPatchSet(PatchSetArguments const& arguments, Console const& console);
