// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "DataTable.h"

// What the program writes beside the sheets of a chart: an envelope that looks like XML, and in it a table of the CGATS
// family. The name in the envelope is not escaped, so that it is no XML for sure.
//
//     <targetdescription>
//     	<name>New Chart</name>
//     	<colorSpace>CMYK</colorSpace>
//     	<targetdefinition>
//     IS12642
//     ...
//     BEGIN_DATA
//     1	A1	N	100	0	0	0
//     2	A2	I	0	0	0	0
//     END_DATA
//     	</targetdefinition>
//     </targetdescription>

/// Whether a text begins as a target description does.
bool isTargetDescription(std::string_view text);

/// Reads the table of a target description with all its rows, those of white fillers (CONTROL I) included.
void readTargetDescription(TableFile& file);
