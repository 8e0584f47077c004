// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any bytes as a target description with the values of its envelope.

#include "ChartDescription.h"
#include "Fuzzing.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    auto const result = readChartDescription({reinterpret_cast<char const*>(data), size});
    auto const* const chart = std::get_if<ChartDescription>(&result);
    if (!chart) {
        require(!std::get<std::string>(result).empty(), "a description that cannot be used has a reason");
        return 0;
    }
    auto const cells = static_cast<std::size_t>(chart->grid.width) * static_cast<std::size_t>(chart->grid.height) *
                       static_cast<std::size_t>(chart->pages);
    require(chart->cells.size() == cells, "there is a row for each cell");
    require(chart->patch.width > 0 && chart->patch.height > 0, "patches have a size");
    for (DescribedCell const& cell : chart->cells)
        require(cell.values.size() == static_cast<std::size_t>(colorspace_nof_channels[chart->colorSpace]),
                "a cell has a value for each channel");
    return 0;
}
