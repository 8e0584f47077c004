// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ColorEntry.h"
#include "Folders.h"

#include <cstdio>
#include <cstdlib>
#include <string>

/// Ends the program with a finding unless something that always holds does.
inline void require(bool holds, char const* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "Does not hold: %s\n", what);
    std::abort();
}

/// Ends the program with a finding unless there is no fault.
inline void requireNoFault(std::string const& fault)
{
    require(fault.empty(), fault.c_str());
}

/// Makes the resources known and prepares the colours, for the run of the program.
inline void prepareColors()
{
    respath = String(PATCHLOOM_RESOURCES);
    ColorEntry::prepareColorConversions();
}
