// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "FileFault.h"
#include "lib/OvString.h"

#include <optional>

class ChartLayout;

// Tells the measuring software about a printed chart: its geometry, and a CGATS table of its patches.
//
//     <targetdescription>
//
//     	<name>New Chart</name>
//     	...
//     	<targetdefinition>
//     IS12642
//     ...
//     BEGIN_DATA
//     1	A1	N	100	0	0	0
//     2	A2	I	0	0	0	0
//     END_DATA
//     	</targetdefinition>
//
//     </targetdescription>

/// Writes a chart's target description, and replaces what is at the path. A chart without a colour space or chart pages
/// has no target description.
///
/// \return the fault, if the file could not be written whole
std::optional<FileFault> writeTargetDescription(ChartLayout const& layout, String const& path);
