// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lib/ColorSpace.h"
#include "lib/Geometry.h"

#include <string>
#include <variant>
#include <vector>

// A target description (see TargetDescriptionReader.h) with the values of its envelope:
//
//     	<name>New Chart</name>
//     	<pages>2</pages>
//     	<rows>32</rows>
//     	<columns>26</columns>
//     	<patchWidth>8.00mm</patchWidth>
//     	<patchHeight>8.00mm</patchHeight>
//     	<horizontalGap>0.00mm</horizontalGap>
//     	<verticalGap>0.00mm</verticalGap>

/// One cell of a described chart.
struct DescribedCell
{
    std::string label;
    bool isOfTable = false;          ///< CONTROL is N
    std::vector<std::string> values; ///< as they are written, one for each channel
};

/// What a target description tells about a chart.
struct ChartDescription
{
    std::string name;
    ColorSpace colorSpace = undefined;
    int pages = 0;
    IntSize grid; ///< of a chart page
    RealSize patch;
    RealSize gap;
    std::vector<DescribedCell> cells; ///< grid times pages; in the order of reading
};

/// Reads a target description.
///
/// \param bytes  what is in the file
/// \return the description, or why it cannot be used
std::variant<ChartDescription, std::string> readChartDescription(std::string bytes);
