// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/OvString.h"

/// Opens the standard descriptors that are closed. Otherwise the next file would get their number, and messages would
/// be written into it.
void openStandardDescriptors();

/// Lets a write to a file at its size limit, and to a pipe that nobody reads, fail instead of ending the process.
void surviveFailedWrites();

/// Sets exepath and respath, and prepares the colour conversions.
///
/// \param programFolder  folder of the executable, without an ending slash; the resources lie in "../Resources/"
void useResourcesBeside(String const& programFolder);
