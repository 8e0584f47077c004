// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any bytes as separated values, with a header line and as plain CMYK values without one.

#include "SeparatedValuesReader.h"
#include "TableProperties.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    for (ColorSpace const space : {undefined, CMYK}) {
        TableFile file = fileOf(data, size);
        readSeparatedValues(file, space);
        requireTables(file);
    }
    return 0;
}
