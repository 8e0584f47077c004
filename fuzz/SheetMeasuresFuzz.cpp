// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any bytes as the start of a sheet's EPS file.

#include "Fuzzing.h"
#include "SheetMeasures.h"

#include <cmath>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    auto const measures = sheetMeasures({reinterpret_cast<char const*>(data), size});
    if (measures)
        require(!std::isnan(measures->size.width) && !std::isnan(measures->block.x), "lengths are numbers");
    return 0;
}
