// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PlaceLine.h"
#include "RandomNumbers.h"

#include <cstdint>

/// Moves the patches of a line until no neighbours are in conflict or the work is done. There are never more conflicts
/// than before.
///
/// \param work  how many words of 64 pairs may be looked at, about; what was used is taken off
/// \return whether no conflict is left
bool repairConflicts(PlaceLine& line, RandomNumbers& random, std::int64_t& work);
